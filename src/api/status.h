// The texts of the status codes.
#pragma once

#include <cstdint>

#include "vyra/status.h"

namespace kvs::brenvozulta {

// The text of a status code for the log: 15 characters, padded with blanks, for a code of the table; "Error %ld" for
// any other. The text of another code is the calling thread's own and is overwritten by its next such call.
const char* vyra_error_text(std::int32_t code);

}  // namespace kvs::brenvozulta
