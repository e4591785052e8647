#include "turn.h"

#include <algorithm>

namespace {

bool in_a_hurry = false;

}  // namespace

void hurry()
{
    in_a_hurry = true;
}

bool hurried()
{
    return in_a_hurry;
}

std::chrono::nanoseconds turn_length()
{
    return in_a_hurry ? std::chrono::nanoseconds(1) : std::chrono::milliseconds(4);
}

std::size_t pieces_of_turn(std::size_t usual)
{
    return in_a_hurry ? std::min<std::size_t>(usual, 10) : usual;
}
