// What only the tables of a Windows library tell: ordinals, and what the library needs besides itself.
#include <cctype>
#include <set>
#include <string>

#include <gmock/gmock.h>
#include <windows.h>

#include "abi/library_symbols.h"
#include "abi/pe_image.h"
#include "support/export_list.h"
#include "vyra/vyra.h"

namespace {

std::set<std::string> imported_libraries()
{
    const auto* const image = binary::library_image();
    std::set<std::string> names;
    for (const auto* entry = binary::directory<IMAGE_IMPORT_DESCRIPTOR>(image, IMAGE_DIRECTORY_ENTRY_IMPORT);
         entry->Name != 0; ++entry) {
        std::string name = binary::at<char>(image, entry->Name);
        for (char& character : name) {
            character = static_cast<char>(std::tolower(static_cast<unsigned char>(character)));
        }
        names.insert(name);
    }
    return names;
}

// All of them are part of every Windows since Vista. Those whose names begin with "api-ms-win-" are not.
TEST(Imports_test, are_of_the_operating_system_and_the_driver_library_alone)
{
    VyraBreakEnable();  // the program is linked with the library
    EXPECT_THAT(imported_libraries(),
                ::testing::UnorderedElementsAre("brenvozulta_usb.dll", "kernel32.dll", "msvcrt.dll", "ole32.dll",
                                                "shell32.dll", "user32.dll"));
}

TEST(Imports_test, of_the_driver_library_are_its_twenty_functions)
{
    const auto* const image = binary::library_image();
    std::set<std::string> functions;
    for (const auto* entry = binary::directory<IMAGE_IMPORT_DESCRIPTOR>(image, IMAGE_DIRECTORY_ENTRY_IMPORT);
         entry->Name != 0; ++entry) {
        if (std::string(binary::at<char>(image, entry->Name)) != "BrenvoZulta_USB.dll") {
            continue;
        }
        for (const auto* name = binary::at<IMAGE_THUNK_DATA64>(image, entry->OriginalFirstThunk);
             name->u1.AddressOfData != 0; ++name) {
            functions.insert(binary::at<IMAGE_IMPORT_BY_NAME>(image, static_cast<DWORD>(name->u1.AddressOfData))->Name);
        }
    }
    EXPECT_EQ(functions.size(), 20U);
    for (const std::string& function : functions) {
        EXPECT_EQ(function.substr(0, 5), "QXDR_") << function;
    }
}

TEST(Ordinals_test, are_the_same_by_ordinal_as_by_name)
{
    const HMODULE module = GetModuleHandleA("vyrabrenvozulta.dll");
    for (const auto& listed : test_support::listed_exports) {
        const auto by_ordinal = GetProcAddress(module, MAKEINTRESOURCEA(listed.ordinal));
        EXPECT_EQ(reinterpret_cast<void*>(by_ordinal), binary::address_of(listed.name)) << listed.name;
    }
    EXPECT_EQ(GetProcAddress(module, MAKEINTRESOURCEA(60)), nullptr);
}

}  // namespace
