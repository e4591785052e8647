// The foreign host: a program that knows the library by its headers and import library only. Compiled once for the ABI
// of the platform's usual compiler and once with MinGW.
#pragma once

// Prints the line, marked when it is bad, and returns `good`.
bool report(bool good, const char* line);

// The three steps. Each prints what it sees and tells whether it was as it should be.
bool check_exports();
bool check_scanner_calls();
bool check_notification();

// All of them; the program's exit code.
int run_host();
