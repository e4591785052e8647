#include "turn.h"

#include <algorithm>

namespace {

bool hurried = false;

}  // namespace

void hurry()
{
    hurried = true;
}

std::chrono::nanoseconds turn_length()
{
    return hurried ? std::chrono::nanoseconds(1) : std::chrono::milliseconds(4);
}

std::size_t pieces_of_turn(std::size_t usual)
{
    return hurried ? std::min<std::size_t>(usual, 10) : usual;
}
