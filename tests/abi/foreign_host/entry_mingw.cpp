#include "host.h"

int main()
{
    return run_host();
}
