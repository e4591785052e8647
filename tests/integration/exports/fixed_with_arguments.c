#include "integration/exports/fixed_with_arguments.h"

#include "support/fixed_exports.h"

#define DECLARATION(name, result) int32_t name(uint32_t handle, void* pointer, uint64_t number);
FIXED_EXPORTS(DECLARATION)
void VyraBreakEnable(uint32_t handle, void* pointer, uint64_t number);

#define CALL(name, result) wrong += name(handle, pointer, number) != (result);

int count_wrong_fixed_results(uint32_t handle, void* pointer, uint64_t number)
{
    int wrong = 0;
    FIXED_EXPORTS(CALL)
    VyraBreakEnable(handle, pointer, number);
    return wrong;
}
