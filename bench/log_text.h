// The message that every log writes.
#pragma once

constexpr char log_text[] = "bench:    Error=9000: Internal Error \r\n";
