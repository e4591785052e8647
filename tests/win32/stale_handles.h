// The count of the handles that were no longer, or never, valid.
#pragma once

namespace win32_double {

void note_stale_handle();

}  // namespace win32_double
