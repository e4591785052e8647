#include <gtest/gtest.h>
#include <windows.h>

#include <cstring>

#include "win32_double/control.h"

namespace {

TEST(Modules_test, a_shared_object_is_loaded_found_and_freed_under_its_module_name)
{
    EXPECT_EQ(GetModuleHandleA("win32_double_sample.dll"), nullptr);
    const HMODULE loaded = LoadLibraryA("win32_double_sample.dll");
    ASSERT_NE(loaded, nullptr);
    EXPECT_EQ(GetModuleHandleA("WIN32_DOUBLE_SAMPLE"), loaded);
    using Answer = int (*)();
    const auto answer = reinterpret_cast<Answer>(reinterpret_cast<void (*)()>(GetProcAddress(loaded, "sample_answer")));
    ASSERT_NE(answer, nullptr);
    EXPECT_EQ(answer(), 42);
    char path[4096];
    EXPECT_NE(GetModuleFileNameA(loaded, path, sizeof path), 0U);
    EXPECT_NE(std::strstr(path, "libwin32_double_sample.so"), nullptr);
    EXPECT_TRUE(FreeLibrary(loaded));
    EXPECT_EQ(GetModuleHandleA("win32_double_sample.dll"), nullptr);
    EXPECT_FALSE(FreeLibrary(loaded));
    EXPECT_EQ(GetLastError(), DWORD{ERROR_MOD_NOT_FOUND});
}

TEST(Modules_test, a_pinned_shared_object_stays_when_it_is_freed)
{
    const HMODULE loaded = LoadLibraryA("win32_double_pinned.dll");
    ASSERT_NE(loaded, nullptr);
    HMODULE pinned = nullptr;
    EXPECT_TRUE(GetModuleHandleExA(GET_MODULE_HANDLE_EX_FLAG_PIN | GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS,
                                   reinterpret_cast<LPCSTR>(GetProcAddress(loaded, "sample_answer")), &pinned));
    EXPECT_EQ(pinned, loaded);
    EXPECT_TRUE(FreeLibrary(loaded));
    EXPECT_EQ(GetModuleHandleA("win32_double_pinned.dll"), loaded);
}

TEST(Modules_test, an_added_module_is_found_whatever_its_case_until_removed)
{
    win32_double::add_module("Added.dll");
    const HMODULE added = GetModuleHandleA("added");
    EXPECT_NE(added, nullptr);
    EXPECT_EQ(GetModuleHandleA("C:\\somewhere\\ADDED.DLL"), added);
    EXPECT_EQ(LoadLibraryA("added.dll"), added);
    EXPECT_TRUE(FreeLibrary(added));
    win32_double::remove_module("added.dll");
    EXPECT_EQ(GetModuleHandleA("added"), nullptr);
}

TEST(Resources_test, a_module_has_the_resources_that_were_registered_for_it)
{
    win32_double_register_resource("owner.dll", "kind", 7, "first", 5);
    win32_double_register_resource("other.dll", "kind", 7, "other", 5);
    const HMODULE owner = GetModuleHandleA("owner.dll");
    const HRSRC found = FindResourceA(owner, MAKEINTRESOURCEA(7), "KIND");
    ASSERT_NE(found, nullptr);
    EXPECT_EQ(std::memcmp(LockResource(LoadResource(owner, found)), "first", 5), 0);

    // A module that is loaded anew registers again; its bytes lie elsewhere then.
    win32_double_register_resource("owner.dll", "kind", 7, "second", 6);
    EXPECT_EQ(FindResourceA(owner, MAKEINTRESOURCEA(7), "kind"), found);
    EXPECT_EQ(SizeofResource(owner, found), 6U);
    EXPECT_EQ(std::memcmp(LockResource(LoadResource(owner, found)), "second", 6), 0);

    win32_double::remove_module("owner.dll");
    EXPECT_EQ(FindResourceA(owner, MAKEINTRESOURCEA(7), "kind"), nullptr);
    EXPECT_EQ(GetLastError(), DWORD{ERROR_RESOURCE_DATA_NOT_FOUND});
    win32_double::remove_module("other.dll");
}

}  // namespace
