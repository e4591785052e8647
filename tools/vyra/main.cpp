#include <cstdio>

#include "platform.h"
#include "run.h"

int main(int count, char** values)
{
    const vyra_tool::Interrupt_listener interrupts;
    const vyra_tool::Utf8_console console;
    std::FILE* results = vyra_tool::take_standard_output();
    if (results == nullptr) {
        std::fputs("vyra: there is no standard output to write to\n", stderr);
        return 1;
    }
    const int code = vyra_tool::run(vyra_tool::program_arguments(count, values), results);
    std::fclose(results);
    return code;
}
