#include "led_record.h"

#include <algorithm>
#include <iterator>
#include <set>

#include "failure.h"

namespace vyra_tool {
namespace {

struct Group {
    const char* name;
    std::size_t positions;
};

constexpr Group groups[] = {{"a", 4}, {"b", 4}, {"c", 2}};
constexpr const char* states[] = {"off", "lit1", "lit2", "lit3"};  // a position's values 0 to 3

std::uint32_t* positions_of(DevUI& record, const Group& group)
{
    return group.name[0] == 'a' ? record.group_a : group.name[0] == 'b' ? record.group_b : record.group_c;
}

std::uint32_t& switch_of(DevUI& record, const Group& group)
{
    return group.name[0] == 'a' ? record.group_a_on : group.name[0] == 'b' ? record.group_b_on : record.group_c_on;
}

const Group& group_called(const std::string& name)
{
    const auto* found =
        std::find_if(std::begin(groups), std::end(groups), [&](const Group& group) { return name == group.name; });
    if (found == std::end(groups)) {
        throw Wrong_usage("there is no LED group \"" + name +
                          "\": the groups are a (positions 1 to 4), b (positions 1 to 4) "
                          "and c (positions 1 and 2)");
    }
    return *found;
}

}  // namespace

DevUI led_record(const std::string& group_name, const std::vector<std::string>& settings)
{
    const Group& group = group_called(group_name);
    DevUI record{};
    switch_of(record, group) = 1;
    std::set<std::string> named;
    for (const std::string& setting : settings) {
        const std::size_t equals = setting.find('=');
        if (equals == std::string::npos) {
            throw Wrong_usage("\"" + setting + "\" does not read POSITION=STATE, for instance 1=lit2");
        }
        const std::string position = setting.substr(0, equals);
        if (position.size() != 1 || position[0] < '1' || std::size_t(position[0] - '0') > group.positions) {
            throw Wrong_usage("group " + group_name + " has no position \"" + position + "\": its positions are 1 to " +
                              std::to_string(group.positions));
        }
        if (!named.insert(position).second) {
            throw Wrong_usage("position " + position + " is named twice");
        }
        const std::string state = setting.substr(equals + 1);
        const auto* found = std::find(std::begin(states), std::end(states), state);
        if (found == std::end(states)) {
            throw Wrong_usage("there is no LED state \"" + state + "\": the states are off, lit1, lit2 and lit3");
        }
        positions_of(record, group)[position[0] - '1'] = static_cast<std::uint32_t>(found - std::begin(states));
    }
    return record;
}

DevUI leds_off()
{
    DevUI record{};
    record.group_a[0] = 1;  // not shown: no group is switched on
    return record;
}

Shown_leds shown_leds(const DevUI& record)
{
    DevUI copy = record;
    for (const Group& group : groups) {
        if (switch_of(copy, group) == 0) {
            continue;
        }
        Shown_leds shown{group.name, {}};
        for (std::size_t i = 0; i < group.positions; ++i) {
            const std::uint32_t value = positions_of(copy, group)[i];
            shown.states.emplace_back(states[value < std::size(states) ? value : 0]);
        }
        return shown;
    }
    return {};
}

}  // namespace vyra_tool
