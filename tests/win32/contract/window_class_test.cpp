#include <gtest/gtest.h>
#include <windows.h>

namespace {

LRESULT CALLBACK first_procedure(HWND window, UINT message, WPARAM wparam, LPARAM lparam)
{
    return DefWindowProcA(window, message, wparam, lparam);
}

LRESULT CALLBACK second_procedure(HWND window, UINT message, WPARAM wparam, LPARAM lparam)
{
    return DefWindowProcA(window, message, wparam, lparam);
}

WNDCLASSEXA description(const char* name, WNDPROC procedure = first_procedure)
{
    WNDCLASSEXA result{};
    result.cbSize = sizeof result;
    result.style = CS_HREDRAW | CS_VREDRAW;
    result.lpfnWndProc = procedure;
    result.hInstance = GetModuleHandleA(nullptr);
    result.lpszClassName = name;
    return result;
}

class Window_class_contract_test : public testing::Test {
protected:
    void TearDown() override { UnregisterClassA("CONTRACT", GetModuleHandleA(nullptr)); }
};

TEST_F(Window_class_contract_test, the_record_has80_bytes)
{
    EXPECT_EQ(sizeof(WNDCLASSEXA), 80U);
}

// Seen under Wine only: that the case of the letters does not matter follows from the documentation of atoms alone.
TEST_F(Window_class_contract_test, a_second_registration_fails_and_the_first_stays)
{
    const WNDCLASSEXA first = description("CONTRACT");
    const WNDCLASSEXA second = description("contract", second_procedure);
    EXPECT_NE(RegisterClassExA(&first), 0);
    SetLastError(0);
    EXPECT_EQ(RegisterClassExA(&second), 0);
    EXPECT_EQ(GetLastError(), DWORD{ERROR_CLASS_ALREADY_EXISTS});
    WNDCLASSEXA found{};
    found.cbSize = sizeof found;
    ASSERT_TRUE(GetClassInfoExA(GetModuleHandleA(nullptr), "CONTRACT", &found));
    EXPECT_EQ(found.lpfnWndProc, first.lpfnWndProc);
    EXPECT_EQ(found.style, UINT{3});
}

// Seen under Wine only: the size must be right, what happens otherwise is not documented.
TEST_F(Window_class_contract_test, a_record_of_the_wrong_size_is_refused)
{
    WNDCLASSEXA wrong = description("CONTRACT");
    wrong.cbSize = 7;
    SetLastError(0);
    EXPECT_EQ(RegisterClassExA(&wrong), 0);
    EXPECT_EQ(GetLastError(), DWORD{ERROR_INVALID_PARAMETER});
}

TEST_F(Window_class_contract_test, an_unregistered_class_is_gone)
{
    const WNDCLASSEXA added = description("CONTRACT");
    ASSERT_NE(RegisterClassExA(&added), 0);
    EXPECT_TRUE(UnregisterClassA("CONTRACT", GetModuleHandleA(nullptr)));
    SetLastError(0);
    EXPECT_FALSE(UnregisterClassA("CONTRACT", GetModuleHandleA(nullptr)));
    EXPECT_EQ(GetLastError(), DWORD{ERROR_CLASS_DOES_NOT_EXIST});
    WNDCLASSEXA found{};
    found.cbSize = sizeof found;
    EXPECT_FALSE(GetClassInfoExA(GetModuleHandleA(nullptr), "CONTRACT", &found));
}

TEST_F(Window_class_contract_test, a_class_with_a_window_cannot_be_unregistered)
{
    const WNDCLASSEXA added = description("CONTRACT");
    ASSERT_NE(RegisterClassExA(&added), 0);
    const HWND window =
        CreateWindowExA(0, "CONTRACT", "", WS_OVERLAPPEDWINDOW, 0, 0, 120, 100, nullptr, nullptr, nullptr, nullptr);
    ASSERT_NE(window, nullptr);
    SetLastError(0);
    EXPECT_FALSE(UnregisterClassA("CONTRACT", GetModuleHandleA(nullptr)));
    EXPECT_EQ(GetLastError(), DWORD{ERROR_CLASS_HAS_WINDOWS});
    EXPECT_TRUE(DestroyWindow(window));
    EXPECT_TRUE(UnregisterClassA("CONTRACT", GetModuleHandleA(nullptr)));
}

TEST_F(Window_class_contract_test, a_class_can_be_named_by_its_atom)
{
    const WNDCLASSEXA added = description("CONTRACT");
    const ATOM atom = RegisterClassExA(&added);
    ASSERT_NE(atom, 0);
    const HWND window = CreateWindowExA(0, MAKEINTRESOURCEA(atom), "", WS_OVERLAPPEDWINDOW, 0, 0, 120, 100, nullptr,
                                        nullptr, GetModuleHandleA(nullptr), nullptr);
    EXPECT_NE(window, nullptr);
    EXPECT_TRUE(DestroyWindow(window));
}

}  // namespace
