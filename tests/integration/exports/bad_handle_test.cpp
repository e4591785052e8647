// Handles that no open scanner has, through every export that takes one.
#include <random>
#include <string>

#include "support/scanner_test.h"
#include "unit/api/export_calls.h"

namespace {

using export_calls::Arguments;
using test_support::error_line;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

class Bad_handle_test : public test_support::Scanner_test {
protected:
    void expect_refused_everywhere(std::uint32_t handle)
    {
        take_driver_calls();
        for (const auto& each : export_calls::handle_exports()) {
            SCOPED_TRACE(std::string(each.name) + " of " + std::to_string(handle));
            Arguments arguments;
            arguments.handle = handle;
            arguments.result.fill(0xA5);
            const auto untouched = arguments.result;
            const std::int32_t status = each.call(arguments);
            if (std::string(each.name) == "VyraGetStatus") {
                EXPECT_EQ(status, VYRA_OK) << "there is nothing to wait for";
                EXPECT_THAT(take_log(), IsEmpty());
            } else {
                EXPECT_EQ(status, VYRA_BAD_SCANNER_IDX);
                EXPECT_THAT(take_log(), ElementsAre(error_line(each.operation, 9108)));
            }
            EXPECT_EQ(arguments.result, untouched);
        }
        EXPECT_THAT(take_driver_calls(), IsEmpty());
    }
};

TEST_F(Bad_handle_test, is_refused_when_nothing_is_open)
{
    initialize();
    for (const std::uint32_t handle : {0U, 1U, 7U, 8U, 0x7FFFFFFFU, 0x80000000U, 0xFFFFFFFEU, VYRA_NO_HANDLE}) {
        expect_refused_everywhere(handle);
    }
}

TEST_F(Bad_handle_test, is_refused_beside_an_open_scanner_that_it_does_not_touch)
{
    initialize();
    const std::uint32_t open_handle = open();
    std::mt19937 random(20'261);
    for (int i = 0; i < 20; ++i) {
        const auto handle = static_cast<std::uint32_t>(random());
        if (handle != open_handle) {
            expect_refused_everywhere(handle);
        }
    }
    EXPECT_EQ(brenvozulta_sim_is_open(BRENVOZULTA_SIM_DEFAULT_SCANNER), 1);
    EXPECT_EQ(VyraBrenvoZultaSetParameters(open_handle, 1, 1), VYRA_OK);
}

TEST_F(Bad_handle_test, is_what_a_closed_one_becomes)
{
    initialize();
    const std::uint32_t handle = open();
    ASSERT_EQ(VyraCloseDevice_N(handle), VYRA_OK);
    expect_refused_everywhere(handle);
}

TEST_F(Bad_handle_test, is_what_every_handle_becomes_by_terminate)
{
    initialize();
    const std::uint32_t handle = open();
    ASSERT_EQ(VyraTerminate(), VYRA_OK);
    initialize();
    expect_refused_everywhere(handle);
}

}  // namespace
