#include "option_values.h"

#include <charconv>
#include <cstdio>
#include <cstdlib>

namespace vyra_tool {
namespace {

// The help shows the option's own text, not the validator's.
CLI::Validator named(std::function<std::string(std::string&)> check)
{
    return {std::move(check), ""};
}

std::string shortest(double value)
{
    char text[32];
    std::snprintf(text, sizeof text, "%g", value);
    return text;
}

}  // namespace

CLI::Validator whole_number(std::uint64_t least, std::uint64_t most)
{
    return named([least, most](std::string& text) -> std::string {
        std::uint64_t value = 0;
        const char* const end = text.data() + text.size();
        const auto read = std::from_chars(text.data(), end, value);
        if (read.ec == std::errc() && read.ptr == end && value >= least && value <= most) {
            return {};
        }
        return "\"" + text + "\" is no whole number from " + std::to_string(least) +
               (most == std::numeric_limits<std::uint64_t>::max() ? " up" : " to " + std::to_string(most));
    });
}

CLI::Validator number(double least, double most)
{
    return named([least, most](std::string& text) -> std::string {
        char* end = nullptr;
        const double value = std::strtod(text.c_str(), &end);
        if (!text.empty() && *end == '\0' && value >= least && value <= most) {
            return {};
        }
        return "\"" + text + "\" is no number from " + shortest(least) + " to " + shortest(most);
    });
}

CLI::Validator one_of(const std::vector<std::string>& words)
{
    return named([words](std::string& text) -> std::string {
        std::string list;
        for (std::size_t i = 0; i < words.size(); ++i) {
            if (words[i] == text) {
                return {};
            }
            list += (i == 0 ? "" : i + 1 == words.size() ? " or " : ", ") + words[i];
        }
        return "\"" + text + "\" is not " + list;
    });
}

}  // namespace vyra_tool
