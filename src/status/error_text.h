// The texts of the status codes.
#pragma once

#include <cstdint>

namespace kvs::brenvozulta {

// Room for the text of a code that has none of its own.
struct Unlisted_text {
    char text[32];
};

// The text of a status code for the log: 15 characters, padded with blanks, for a code of the table; "Error %ld" for
// any other. The text of another code stands in the caller's own expression and ends with it: a thread's own room for
// it would have to be allocated, and a failure must be reportable when there is no memory.
const char* vyra_error_text(std::int32_t code, Unlisted_text&& room = {});

}  // namespace kvs::brenvozulta
