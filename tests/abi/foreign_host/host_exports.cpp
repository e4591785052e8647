// Links every export of the library: one that is missing keeps the program from being linked, or from being loaded.
#include "host.h"
#include "vyra/notify.h"
#include "vyra/vyra.h"
#include "win32.h"

namespace {

using Function = void (*)();

template <class F>
Function erase(F* function)
{
    return reinterpret_cast<Function>(function);
}

}  // namespace

bool check_exports()
{
    const Function functions[] = {
#define LISTED_EXPORT(function) erase(function),
#include "support/listed_exports.inc"
#undef LISTED_EXPORT
    };
    constexpr int count = sizeof functions / sizeof functions[0];
    int distinct = 0;
    for (int i = 0; i < count; ++i) {
        bool seen = false;
        for (int j = 0; j < i; ++j) {
            seen = seen || functions[i] == functions[j];
        }
        distinct += seen ? 0 : 1;
    }
    char line[64];
    wsprintfA(line, "%d exports linked", distinct);
    return report(distinct == count, line);
}
