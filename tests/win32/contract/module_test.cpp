#include <gtest/gtest.h>
#include <windows.h>

#include <cstring>
#include <string>

namespace {

TEST(Module_contract_test, the_executable_is_the_null_module)
{
    EXPECT_NE(GetModuleHandleA(nullptr), nullptr);
    EXPECT_EQ(GetModuleHandleA(nullptr), GetModuleHandleA(nullptr));
}

TEST(Module_contract_test, a_module_that_is_not_loaded_is_not_found)
{
    SetLastError(0);
    EXPECT_EQ(GetModuleHandleA("contract_nothing.dll"), nullptr);
    EXPECT_EQ(GetLastError(), DWORD{ERROR_MOD_NOT_FOUND});
    SetLastError(0);
    EXPECT_EQ(LoadLibraryA("contract_nothing.dll"), nullptr);
    EXPECT_EQ(GetLastError(), DWORD{ERROR_MOD_NOT_FOUND});
}

TEST(Module_contract_test, the_executables_path)
{
    char path[4096];
    const DWORD length = GetModuleFileNameA(nullptr, path, sizeof path);
    EXPECT_EQ(length, std::strlen(path));
    EXPECT_NE(std::string(path).find("win32_contract_tests"), std::string::npos);
    SetLastError(0);
    EXPECT_EQ(GetModuleFileNameA(nullptr, path, 5), 5U);
    EXPECT_EQ(GetLastError(), DWORD{ERROR_INSUFFICIENT_BUFFER});
}

TEST(Module_contract_test, an_address_names_the_module_that_holds_it)
{
    static const char of_executable = 0;
    HMODULE module = nullptr;
    EXPECT_TRUE(GetModuleHandleExA(GET_MODULE_HANDLE_EX_FLAG_PIN | GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS,
                                   &of_executable, &module));
    EXPECT_EQ(module, GetModuleHandleA(nullptr));
}

TEST(Module_contract_test, a_missing_function_is_not_found)
{
    SetLastError(0);
    EXPECT_EQ(GetProcAddress(GetModuleHandleA(nullptr), "contract_no_such_function"), nullptr);
    EXPECT_EQ(GetLastError(), DWORD{ERROR_PROC_NOT_FOUND});
}

TEST(Resource_contract_test, a_resource_is_found_under_either_spelling_of_its_type)
{
    const HMODULE self = GetModuleHandleA(nullptr);
    for (const char* const type : {"contract_raw", "CONTRACT_RAW"}) {
        const HRSRC found = FindResourceA(self, MAKEINTRESOURCEA(101), type);
        ASSERT_NE(found, nullptr);
        EXPECT_EQ(SizeofResource(self, found), 8U);
        const HGLOBAL loaded = LoadResource(self, found);
        ASSERT_NE(loaded, nullptr);
        const void* const bytes = LockResource(loaded);
        ASSERT_NE(bytes, nullptr);
        EXPECT_EQ(std::memcmp(bytes, "Contract", 8), 0);
    }
    EXPECT_NE(FindResourceA(nullptr, "#101", "contract_raw"), nullptr);
}

// Seen under Wine only: the errors are listed, but not for this function.
TEST(Resource_contract_test, a_missing_resource_says_what_is_missing)
{
    SetLastError(0);
    EXPECT_EQ(FindResourceA(nullptr, MAKEINTRESOURCEA(102), "contract_raw"), nullptr);
    EXPECT_EQ(GetLastError(), DWORD{ERROR_RESOURCE_NAME_NOT_FOUND});
    SetLastError(0);
    EXPECT_EQ(FindResourceA(nullptr, MAKEINTRESOURCEA(101), "contract_none"), nullptr);
    EXPECT_EQ(GetLastError(), DWORD{ERROR_RESOURCE_TYPE_NOT_FOUND});
}

// Seen under Wine only: the error for a handler that is not set.
TEST(Console_contract_test, handlers_are_set_and_taken_back)
{
    const PHANDLER_ROUTINE handler = [](DWORD) -> BOOL { return TRUE; };
    EXPECT_TRUE(SetConsoleCtrlHandler(handler, TRUE));
    EXPECT_TRUE(SetConsoleCtrlHandler(handler, FALSE));
    SetLastError(0);
    EXPECT_FALSE(SetConsoleCtrlHandler(handler, FALSE));
    EXPECT_EQ(GetLastError(), DWORD{ERROR_INVALID_PARAMETER});
}

}  // namespace
