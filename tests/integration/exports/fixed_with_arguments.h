/* The exports of fixed result as older hosts declare them: with arguments. */
#ifndef EXPORTS_FIXED_WITH_ARGUMENTS_H
#define EXPORTS_FIXED_WITH_ARGUMENTS_H

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/* Calls all of them with these arguments. Returns how many did not have their result. */
int count_wrong_fixed_results(uint32_t handle, void* pointer, uint64_t number);

#ifdef __cplusplus
}
#endif

#endif
