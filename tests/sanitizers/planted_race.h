// Races by order, to see what ThreadSanitizer makes of the calls around them.
#pragma once

#include <functional>

namespace sanitizer_tests {

// Runs `first`, then `second`, each on a thread of its own and in this order, of which ThreadSanitizer knows nothing.
// Returns how many races it reports meanwhile.
int races_between(const std::function<void()>& first, const std::function<void()>& second);

// The races at a plain number that is written before the call on one thread, and read after it on another.
int races_around(const std::function<void()>& call);

}  // namespace sanitizer_tests
