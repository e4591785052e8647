#include "utf8.h"

#include <cstddef>

namespace brenvozulta_simulator {
namespace {

constexpr const char* replacement = "\xEF\xBF\xBD";

// How many bytes the character at text[at] takes; 0 when none begins there.
std::size_t character_size(const std::string& text, std::size_t at)
{
    const auto byte = [&](std::size_t index) {
        return index < text.size() ? static_cast<unsigned char>(text[index]) : 0U;
    };
    const unsigned first = byte(at);
    const unsigned second = byte(at + 1);
    const auto follows = [&](std::size_t index) { return (byte(index) & 0xC0U) == 0x80U; };
    if (first < 0x80) {
        return 1;
    }
    if (first >= 0xC2 && first <= 0xDF) {
        return follows(at + 1) ? 2 : 0;
    }
    if (first >= 0xE0 && first <= 0xEF) {  // no longer form than needed, no half of a pair
        const bool valid = (first != 0xE0 || second >= 0xA0) && (first != 0xED || second <= 0x9F);
        return valid && follows(at + 1) && follows(at + 2) ? 3 : 0;
    }
    if (first >= 0xF0 && first <= 0xF4) {
        const bool valid = (first != 0xF0 || second >= 0x90) && (first != 0xF4 || second <= 0x8F);
        return valid && follows(at + 1) && follows(at + 2) && follows(at + 3) ? 4 : 0;
    }
    return 0;
}

}  // namespace

std::string utf8_text(const std::string& text)
{
    std::string valid;
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t size = character_size(text, at);
        valid += size > 0 ? text.substr(at, size) : replacement;
        at += size > 0 ? size : 1;
    }
    return valid;
}

}  // namespace brenvozulta_simulator
