// The list of functions against the headers that declare them, and against the built library.
#include <gtest/gtest.h>

#include <set>
#include <type_traits>

#include "vyra/loader.h"

namespace {

#define DECLARED_ALIKE(result, name, parameters, arguments) \
    static_assert(std::is_same_v<decltype(VyraFunctions::name), decltype(&::name)>, #name);
VYRA_FUNCTIONS(DECLARED_ALIKE)

#define ONE(result, name, parameters, arguments) +1
static_assert(VYRA_FUNCTIONS(ONE) == VYRA_FUNCTION_COUNT && VYRA_FUNCTION_COUNT == 59);

static_assert(sizeof(VyraFunctions) == VYRA_FUNCTION_COUNT * sizeof(void*));

TEST(Function_list_test, holds_the_library_s_own_functions_when_it_is_loaded)
{
    VyraFunctions loaded;
    VyraLoadReport report;
    ASSERT_EQ(VyraLoad(nullptr, &loaded, &report), VYRA_LOADED) << report.message;
    // Through the program's import library a function may have another address, but it acts on the same library.
    EXPECT_EQ(loaded.VyraInitialize_N(nullptr, 0, 0), VYRA_OK);
    std::uint32_t handle = 0;
    EXPECT_EQ(VyraOpenDevice("RQ7-3050 #1", &handle), VYRA_OK);
    EXPECT_EQ(loaded.VyraCloseDevice_N(handle), VYRA_OK);
    EXPECT_EQ(VyraTerminate(), VYRA_OK);
}

}  // namespace
