// The stage of the tests of the C++ objects that use the simulated scanner.
#pragma once

#include <chrono>
#include <cstdint>
#include <vector>

#include "support/scanner_test.h"
#include "vyra/vyra.hpp"

namespace test_support {

constexpr auto default_scanner = BRENVOZULTA_SIM_DEFAULT_SCANNER;
constexpr auto other_scanner = "RQ7-3050 #2";
constexpr auto patience = std::chrono::milliseconds(patience_ms);

class Wrapper_stage : public Scanner_test {
protected:
    using Memory = std::vector<std::uint8_t>;

    void SetUp() override
    {
        Scanner_test::SetUp();
        brenvozulta_sim_set_idle_stop_result(4);  // a start then makes no pause
    }

    static void deliver(std::uint8_t grey)
    {
        const Memory pixels(VYRA_FLAT_SIZE, grey);
        brenvozulta_sim_image image = {};
        image.pixels = pixels.data();
        image.length = pixels.size();
        image.width = VYRA_FLAT_WIDTH;
        image.height = VYRA_FLAT_HEIGHT;
        std::int32_t result = -1;
        ASSERT_EQ(brenvozulta_sim_deliver(&image, patience_ms, &result), 1);
        ASSERT_EQ(result, 0);
    }

    static void unplug()
    {
        ASSERT_EQ(brenvozulta_sim_unplug(default_scanner), 1);
        ASSERT_EQ(brenvozulta_sim_wait_events_done(patience_ms), 1);
    }

    template <class Call>
    static std::int32_t code_of(Call call)
    {
        try {
            call();
        } catch (const vyra::error& error) {
            return error.code();
        }
        return VYRA_OK;
    }

    // Until the scanner is back and everybody was told.
    static void wait_for_restart()
    {
        ASSERT_EQ(brenvozulta_sim_wait_attached(default_scanner, patience_ms), 1);
        ASSERT_EQ(brenvozulta_sim_wait_events_done(patience_ms), 1);
    }
};

}  // namespace test_support
