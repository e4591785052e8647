// How long the tests wait for a thread's end.
#pragma once

#include <boost/chrono/duration.hpp>

namespace test_support {

inline const boost::chrono::seconds patience(20);
inline const boost::chrono::milliseconds moment(20);  // long enough for a wait that does not wait to have returned

}  // namespace test_support
