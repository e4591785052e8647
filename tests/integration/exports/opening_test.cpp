// Opening through the three exports that open.
#include <string>
#include <vector>

#include "support/scanner_test.h"

namespace {

using test_support::error_line;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr char scanner[] = BRENVOZULTA_SIM_DEFAULT_SCANNER;

using Open = std::int32_t (*)(const char*, std::uint32_t*);

struct Way {
    const char* title;
    Open open;
};

std::int32_t open_with_something(const char* name, std::uint32_t* handle)
{
    static char something[] = "something";
    return VyraOpenDevice_N(name, something, handle);
}

class Opening_test : public test_support::Scanner_test, public ::testing::WithParamInterface<Way> {
protected:
    static std::int32_t open_by(const char* name, std::uint32_t* handle) { return GetParam().open(name, handle); }
};

INSTANTIATE_TEST_SUITE_P(
    Exports, Opening_test,
    ::testing::Values(
        Way{"VyraOpenDevice", VyraOpenDevice},
        Way{"VyraOpenDevice_N_with_null",
            [](const char* name, std::uint32_t* handle) { return VyraOpenDevice_N(name, nullptr, handle); }},
        Way{"VyraOpenDevice_N_with_something", open_with_something},
        Way{"VyraBrenvoZultaOpenDevice",
            [](const char* name, std::uint32_t* handle) { return VyraBrenvoZultaOpenDevice(name, handle, 0); }},
        Way{"VyraBrenvoZultaOpenDevice_with_option",
            [](const char* name, std::uint32_t* handle) { return VyraBrenvoZultaOpenDevice(name, handle, 0xFF); }}),
    [](const auto& tested) { return std::string(tested.param.title); });

TEST_P(Opening_test, gives_the_handle_and_makes_the_same_driver_calls)
{
    initialize();
    take_driver_calls();
    std::uint32_t handle = 77;
    EXPECT_EQ(open_by(scanner, &handle), VYRA_OK);
    EXPECT_EQ(handle, 0u);
    EXPECT_THAT(take_driver_calls(), ElementsAre("QXDR_OpenDevice", "QXDR_SetCallbackAcquisition", "QXDR_SetLeds"));
    EXPECT_EQ(brenvozulta_sim_is_open(scanner), 1);
    EXPECT_EQ(VyraCloseDevice_N(handle), VYRA_OK);
}

TEST_P(Opening_test, leaves_no_handle_when_there_is_no_such_scanner)
{
    initialize();
    std::uint32_t handle = 77;
    EXPECT_EQ(open_by("nobody", &handle), VYRA_DEVICE_UNAVAIL);
    EXPECT_EQ(handle, VYRA_NO_HANDLE);
    EXPECT_THAT(take_log(), ElementsAre("--Error : QXDR_OpenDevice ret = 5 \n", "open_device:    Error=9005\r\n"));
    EXPECT_EQ(open(), 0u) << "a failed open adds no entry";
}

TEST_P(Opening_test, leaves_no_handle_before_initialization)
{
    std::uint32_t handle = 77;
    EXPECT_EQ(open_by(scanner, &handle), VYRA_NOT_INITIALIZED);
    EXPECT_EQ(handle, VYRA_NO_HANDLE);
}

TEST_P(Opening_test, refuses_null_name_and_still_takes_the_handle_away)
{
    initialize();
    std::uint32_t handle = 77;
    EXPECT_EQ(open_by(nullptr, &handle), VYRA_BAD_PARAMETER);
    EXPECT_EQ(handle, VYRA_NO_HANDLE);
    EXPECT_THAT(take_log(), ElementsAre(error_line("open_device", 9109, "Error 9109")));
}

TEST_P(Opening_test, refuses_null_handle_and_opens_nothing)
{
    initialize();
    take_driver_calls();
    EXPECT_EQ(open_by(scanner, nullptr), VYRA_BAD_PARAMETER);
    EXPECT_EQ(open_by(nullptr, nullptr), VYRA_BAD_PARAMETER);
    EXPECT_THAT(take_driver_calls(), IsEmpty());
    const std::string line = error_line("open_device", 9109, "Error 9109");
    EXPECT_THAT(take_log(), ElementsAre(line, line));
}

TEST_P(Opening_test, takes_a_name_of10000_characters)
{
    initialize();
    const std::string name(10'000, 'n');
    std::uint32_t handle = 77;
    EXPECT_EQ(open_by(name.c_str(), &handle), VYRA_DEVICE_UNAVAIL);
    EXPECT_EQ(handle, VYRA_NO_HANDLE);
    take_log();
    EXPECT_EQ(open(), 0u);
}

TEST_P(Opening_test, refuses_an_empty_name_like_any_unknown_one)
{
    initialize();
    std::uint32_t handle = 77;
    EXPECT_EQ(open_by("", &handle), VYRA_DEVICE_UNAVAIL);
    EXPECT_EQ(handle, VYRA_NO_HANDLE);
    take_log();
}

TEST_P(Opening_test, refuses_a_scanner_that_is_open_already_in_any_case)
{
    initialize();
    open();
    for (const char* name : {"RQ7-3050 #1", "rq7-3050 #1"}) {
        std::uint32_t handle = 77;
        EXPECT_EQ(open_by(name, &handle), VYRA_SCN_UNAVAILABLE);
        EXPECT_EQ(handle, VYRA_NO_HANDLE);
        EXPECT_THAT(take_log(), ElementsAre(error_line("open_device", 9110, std::string("Error 9110 ") + name)));
    }
}

using Opening_many_test = test_support::Scanner_test;

TEST_F(Opening_many_test, refuses_the_ninth_scanner)
{
    initialize();
    for (int number = 1; number <= 9; ++number) {
        brenvozulta_sim_attach(("many " + std::to_string(number)).c_str());
    }
    for (int number = 1; number <= 8; ++number) {
        EXPECT_EQ(open("many " + std::to_string(number)), static_cast<std::uint32_t>(number - 1));
    }
    std::uint32_t handle = 77;
    EXPECT_EQ(VyraOpenDevice("many 9", &handle), VYRA_BAD_SCANNER_IDX);
    EXPECT_EQ(handle, VYRA_NO_HANDLE);
    EXPECT_THAT(take_log(), ElementsAre(error_line("open_device", 9108, "Bad Scanner Idx")));
}

}  // namespace
