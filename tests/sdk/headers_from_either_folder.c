/* A host that searches include/ writes "vyra/vyra.h", one that searches include/vyra/ "vyra.h". */
#if defined(__has_include)
#if __has_include("vyra/vyra.h")
#include "vyra/vyra.h"
#else
#include "vyra.h"
#endif
#else
#include "vyra/vyra.h"
#endif

int buffer_is_large_enough(unsigned mode, unsigned size);

int buffer_is_large_enough(unsigned mode, unsigned size)
{
    return size >= VYRA_MODE_SIZE(mode);
}
