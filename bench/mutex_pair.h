// The measure of what a call costs: a std::mutex locked and unlocked, by nobody else wanted.
#pragma once

#include "figure.h"

extern const Side mutex_pair;
