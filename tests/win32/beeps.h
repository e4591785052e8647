// The record of the tones, for the control interface.
#pragma once

namespace win32_double {

void forget_beeps();

}  // namespace win32_double
