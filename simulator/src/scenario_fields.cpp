#include "scenario_fields.h"

#include <cstdint>
#include <cstdio>
#include <limits>

#include "call_record.h"

namespace brenvozulta_simulator {
namespace {

std::string number_text(double number)
{
    char text[32];
    std::snprintf(text, sizeof text, "%g", number);
    return text;
}

}  // namespace

Fields::Fields(const std::string& file, const std::string& path, const Json_value& object)
    : file_(file), path_(path), object_(object)
{
    if (object.kind != Json_value::Kind::object) {
        wrong("is not an object");
    }
}

const Json_value* Fields::any(const char* name)
{
    known_.insert(name);
    for (const auto& member : object_.members) {
        if (member.first == name) {
            return &member.second;
        }
    }
    return nullptr;
}

bool Fields::text(const char* name, std::string& value, std::size_t shortest, std::size_t longest)
{
    const Json_value* found = any(name);
    if (found == nullptr) {
        return false;
    }
    if (found->kind != Json_value::Kind::text) {
        wrong(name, "is not a text");
    }
    if (found->text.size() < shortest || found->text.size() > longest) {
        wrong(name, "has " + std::to_string(found->text.size()) + " characters, not " + std::to_string(shortest) +
                        " to " + std::to_string(longest));
    }
    if (found->text.find('\0') != std::string::npos) {
        wrong(name, "holds a zero character");
    }
    value = found->text;
    return true;
}

bool Fields::boolean(const char* name, bool& value)
{
    const Json_value* found = any(name);
    if (found == nullptr) {
        return false;
    }
    if (found->kind != Json_value::Kind::boolean) {
        wrong(name, "is not true or false");
    }
    value = found->boolean;
    return true;
}

bool Fields::real(const char* name, double& value, double lowest, double highest)
{
    const Json_value* found = any(name);
    if (found == nullptr) {
        return false;
    }
    double number = found->real;
    if (found->kind == Json_value::Kind::integer) {
        number = static_cast<double>(found->integer) * (found->negative ? -1 : 1);
    } else if (found->kind != Json_value::Kind::real) {
        wrong(name, "is not a number");
    }
    if (!(number >= lowest && number <= highest)) {
        wrong(name, "is not from " + number_text(lowest) + " to " + number_text(highest));
    }
    value = number;
    return true;
}

bool Fields::integer(const char* name, std::int64_t& value, std::int64_t lowest, std::int64_t highest)
{
    const Json_value* found = any(name);
    if (found == nullptr) {
        return false;
    }
    if (found->kind != Json_value::Kind::integer) {
        wrong(name, "is not a whole number");
    }
    constexpr auto limit = static_cast<unsigned long long>(std::numeric_limits<std::int64_t>::max());
    const std::int64_t magnitude = static_cast<std::int64_t>(found->integer > limit ? limit : found->integer);
    const std::int64_t number = found->negative ? -magnitude : magnitude;
    if (found->integer > limit || number < lowest || number > highest) {
        wrong(name, "is not from " + std::to_string(lowest) + " to " + std::to_string(highest));
    }
    value = number;
    return true;
}

bool Fields::choice(const char* name, std::size_t& value, const std::vector<std::string>& choices)
{
    std::string chosen;
    if (!text(name, chosen, 0, SIZE_MAX)) {
        return false;
    }
    std::string known;
    for (std::size_t i = 0; i < choices.size(); ++i) {
        if (choices[i] == chosen) {
            value = i;
            return true;
        }
        known += (i == 0 ? "" : i + 1 < choices.size() ? ", " : " or ") + ("\"" + choices[i] + "\"");
    }
    wrong(name, "is not " + known);
}

bool Fields::integer_or(const char* name, std::int64_t& value, std::int64_t lowest, std::int64_t highest,
                        const char* word, std::int64_t meaning)
{
    const Json_value* found = any(name);
    if (found == nullptr || found->kind != Json_value::Kind::text) {
        return integer(name, value, lowest, highest);
    }
    if (found->text != word) {
        wrong(name, std::string("is not a whole number or \"") + word + "\"");
    }
    value = meaning;
    return true;
}

std::size_t Fields::function(const char* name, std::string& value)
{
    if (!text(name, value, 1, 64)) {
        wrong(name, "is missing");
    }
    const std::size_t function = function_index(value.c_str());
    if (function == function_count) {
        wrong(name, "names no function of the driver");
    }
    return function;
}

void Fields::end() const
{
    for (const auto& member : object_.members) {
        if (known_.count(member.first) == 0) {
            throw Scenario_error(file_, member.second.line, path_of(member.first), "unknown field");
        }
    }
}

void Fields::wrong(const char* name, const std::string& message) const
{
    int line = object_.line;
    for (const auto& member : object_.members) {
        line = member.first == name ? member.second.line : line;
    }
    throw Scenario_error(file_, line, path_of(name), message);
}

void Fields::wrong(const std::string& message) const
{
    throw Scenario_error(file_, object_.line, path_, message);
}

}  // namespace brenvozulta_simulator
