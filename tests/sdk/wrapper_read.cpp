// The C++ objects alone: vyra.hpp includes what it needs.
#include "vyra/vyra.hpp"
