// The pattern of every group, position and value.
#include <array>

#include "unit/device/device_test.h"

namespace {

using namespace test_support;

constexpr std::uint32_t values[] = {0, 1, 2, 3, 4, 5, 0x80000000, 0xFFFFFFFF};

// The two bits of a value.
unsigned code(std::uint32_t value)
{
    return value == 1 ? 1U : value == 2 ? 2U : value == 3 ? 3U : 0U;
}

// Where each position of a group stands in the pattern.
constexpr std::array<unsigned, 4> places_a = {6, 4, 0, 2};
constexpr std::array<unsigned, 4> places_b = {2, 0, 4, 6};
constexpr std::array<unsigned, 2> places_c = {0, 2};

class Led_patterns_test : public Device_test {
protected:
    void SetUp() override
    {
        Device_test::SetUp();
        open_device();
    }

    // A record that differs from the one before, with the group's switch on.
    std::uint32_t next_switch() { return ++switch_; }

    void expect_command(const DevUI& ui, std::uint8_t area, unsigned pattern)
    {
        ASSERT_EQ(device().set_device_ui(&ui), 0);
        const std::size_t commands = brenvozulta_sim_led_history_count(first_scanner);
        brenvozulta_sim_leds sent = {};
        ASSERT_EQ(brenvozulta_sim_led_history(first_scanner, commands - 1, &sent), 1);
        ASSERT_EQ(sent.area, area);
        ASSERT_EQ(sent.pattern, pattern);
        ASSERT_EQ(sent.on, 1);
        ASSERT_EQ(sent.fifth, 0);
    }

    template <std::size_t Count, class Send>
    void every_combination(std::array<std::uint32_t, Count>& positions, std::size_t from, Send send)
    {
        if (from == Count) {
            send();
            return;
        }
        for (const std::uint32_t value : values) {
            positions[from] = value;
            every_combination(positions, from + 1, send);
        }
    }

    template <std::size_t Count>
    static unsigned pattern_of(unsigned fixed, const std::array<std::uint32_t, Count>& positions,
                               const std::array<unsigned, Count>& places)
    {
        for (std::size_t i = 0; i < Count; ++i) {
            fixed |= code(positions[i]) << places[i];
        }
        return fixed;
    }

private:
    std::uint32_t switch_ = 0;
};

TEST_F(Led_patterns_test, group_a_with_every_combination_of_values)
{
    std::array<std::uint32_t, 4> p = {};
    every_combination(p, 0, [&] {
        const DevUI ui = {{p[0], p[1], p[2], p[3]}, {3, 3, 3, 3}, {3, 3}, next_switch(), 0, 0};
        expect_command(ui, 0, pattern_of(0x100, p, places_a));
    });
}

TEST_F(Led_patterns_test, group_b_with_every_combination_of_values)
{
    std::array<std::uint32_t, 4> p = {};
    every_combination(p, 0, [&] {
        const DevUI ui = {{3, 3, 3, 3}, {p[0], p[1], p[2], p[3]}, {3, 3}, 0, next_switch(), 0};
        expect_command(ui, 2, pattern_of(0x100, p, places_b));
    });
}

TEST_F(Led_patterns_test, group_c_with_every_combination_of_values)
{
    std::array<std::uint32_t, 2> p = {};
    every_combination(p, 0, [&] {
        const DevUI ui = {{3, 3, 3, 3}, {3, 3, 3, 3}, {p[0], p[1]}, 0, 0, next_switch()};
        expect_command(ui, 1, pattern_of(0x10, p, places_c));
    });
}

TEST_F(Led_patterns_test, known_patterns)
{
    expect_command({{1, 2, 3, 0}, {}, {}, 1, 0, 0}, 0, 0x163);
    expect_command({{}, {}, {2, 3}, 0, 0, 1}, 1, 0x1E);
    expect_command({{1, 2, 3, 0}, {1, 2, 3, 0}, {}, 0, 1, 0}, 2, 0x136);
    expect_command({{3, 3, 3, 3}, {}, {}, 1, 0, 0}, 0, 0x1FF);
}

// Every setting of the three switches: A before B before C.
TEST_F(Led_patterns_test, the_first_group_that_is_switched_on_is_the_one_sent)
{
    const std::uint32_t on[] = {0, 1, 2, 0x80000000, 0xFFFFFFFF};
    for (const std::uint32_t a : on) {
        for (const std::uint32_t b : on) {
            for (const std::uint32_t c : on) {
                if (a == 0 && b == 0 && c == 0) {
                    continue;
                }
                const DevUI ui = {{1, 0, 0, 0}, {1, 0, 0, 0}, {1, 0}, a, b, c};
                const std::uint8_t area = a != 0 ? 0 : b != 0 ? 2 : 1;
                expect_command(ui, area, a != 0 ? 0x140 : b != 0 ? 0x104 : 0x11);
            }
        }
    }
}

}  // namespace
