#include "output.h"

#include <nlohmann/json.hpp>
#include <sstream>

#include "failure.h"
#include "platform.h"
#include "status_text.h"

namespace vyra_tool {
namespace {

// One line of JSON. Scanner names are 8-bit text of an unknown character set: what is not UTF-8 is replaced.
std::string serialized(const nlohmann::ordered_json& value)
{
    return value.dump(-1, ' ', false, nlohmann::ordered_json::error_handler_t::replace);
}

// Control characters, which a scanner's name may hold and a terminal obeys, as \xNN; other characters as they are.
std::string shown(const std::string& text, bool one_line)
{
    std::string safe;
    for (std::size_t at = 0; at < text.size(); ++at) {
        const auto byte = static_cast<unsigned char>(text[at]);
        const auto next = static_cast<unsigned char>(at + 1 < text.size() ? text[at + 1] : 0);
        // The controls above 127 stand as two bytes in UTF-8.
        const bool wide_control = byte == 0xC2 && next >= 0x80 && next <= 0x9F;
        const bool line_end = byte == '\n' && !one_line;
        if ((byte >= 0x20 && byte != 0x7F && !wide_control) || line_end) {
            safe += text[at];
            continue;
        }
        char code[8];
        std::snprintf(code, sizeof code, "\\x%02X", wide_control ? next : byte);
        safe += code;
        at += wide_control ? 1 : 0;
    }
    return safe;
}

}  // namespace

nlohmann::ordered_json error_object(const Failure& failure)
{
    nlohmann::ordered_json error = {{"message", failure.what()}};
    if (failure.code()) {
        const Status_text text = status_text(*failure.code());
        error.update({{"code", *failure.code()}, {"name", text.name}, {"text", text.meaning}, {"retry", text.retry}});
    }
    error.update({{"try", failure.advice()},
                  {"exit_code", static_cast<int>(failure.cause())},
                  {"cause", name_of(failure.cause())}});
    return error;
}

void Output::line(const std::string& text)
{
    std::fputs((json_ ? text : shown(text, true)).c_str(), results_);
    std::fputc('\n', results_);
    if (std::fflush(results_) != 0 || std::ferror(results_) != 0) {
        throw Failure("cannot write to the standard output", "check where it is redirected to");
    }
}

void Output::lines(const std::string& text)
{
    std::istringstream stream(text);
    for (std::string each; std::getline(stream, each);) {
        line(each);
    }
}

void Output::object(const nlohmann::ordered_json& value)
{
    line(serialized(value));
}

void Output::note(const std::string& text)
{
    std::fprintf(stderr, "vyra: %s\n", shown(text, false).c_str());
    std::fflush(stderr);
}

void Output::failure(const Failure& failure) const
{
    if (json_) {
        std::fprintf(stderr, "%s\n", serialized({{"error", error_object(failure)}}).c_str());
        return;
    }
    std::string message = failure.what();
    if (failure.code()) {
        message += ": " + code_text(*failure.code());
    }
    note(message);
    std::fprintf(stderr, "      try: %s\n", shown(failure.advice(), false).c_str());
}

Progress::Progress() : terminal_(is_terminal(stderr)) {}

void Progress::show(const std::string& text)
{
    if (!terminal_) {
        return;
    }
    // Blanks wipe out what was longer; not every console understands an erase sequence.
    const std::size_t padding = shown_ > text.size() ? shown_ - text.size() : 0;
    std::fprintf(stderr, "\r%s%s", text.c_str(), std::string(padding, ' ').c_str());
    std::fflush(stderr);
    shown_ = text.size();
}

void Progress::clear()
{
    if (shown_ > 0) {
        show("");
        std::fputc('\r', stderr);
        std::fflush(stderr);
    }
}

}  // namespace vyra_tool
