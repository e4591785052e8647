// Texts that are UTF-8 whatever went into them.
#pragma once

#include <string>

namespace brenvozulta_simulator {

// The text with U+FFFD in the place of every byte that belongs to no UTF-8 character. Messages name files and quote
// scenarios, and whoever shows them expects UTF-8.
std::string utf8_text(const std::string& text);

}  // namespace brenvozulta_simulator
