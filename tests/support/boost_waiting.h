// How long tests wait, in the time of the library's threads.
#pragma once

#include <boost/chrono/duration.hpp>

#include "support/waiting.h"

namespace test_support {

inline const boost::chrono::milliseconds patience(patience_ms);
inline const boost::chrono::milliseconds moment(moment_ms);

}  // namespace test_support
