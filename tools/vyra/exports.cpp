// The library's functions under their own names, for the program, which is not linked with the library: each calls the
// one that was loaded. They are called after load_library() alone.
#include "loaded_library.h"

#define FORWARD(result, name, parameters, arguments)                 \
    result name parameters                                           \
    {                                                                \
        return vyra_tool::loaded_library().functions.name arguments; \
    }
VYRA_FUNCTIONS(FORWARD)
