// Checks of a scanner and of the library through the exported functions, as a host meets them. Each check stands for
// one thing that hosts rely on; what it needs of others is named, so that one fault fails one check.
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

#include "failure.h"
#include "frame_buffer.h"
#include "vyra/vyra.h"

namespace vyra_tool {

// What the checks of one run share.
struct Test_bench {
    std::string wanted;           // the scanner to use; empty: the first one
    std::uint32_t log_level = 0;  // of the library's own log
    std::chrono::milliseconds image_patience{};
    std::string scanner;  // the one that was found
    std::uint32_t handle = VYRA_NO_HANDLE;
    DeviceInfo identity{};
    bool roll = false;
    std::vector<std::uint8_t> container;
    std::vector<Frame_buffer> buffers;  // those of the running video
};

// A check that failed, and how.
class Unmet : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

// A check that failed because the scanner is not there.
class No_such_scanner : public Unmet {
public:
    using Unmet::Unmet;
};

// A check that this scanner gives no occasion for, and why.
class Not_applicable : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

struct Check {
    std::string name;
    std::string shows;               // what holds when it passes
    std::string means;               // what its failure means for a host
    std::vector<std::string> needs;  // checks without which it cannot be made
    std::function<void(Test_bench&)> run;
    bool writes = false;  // it changes something on the scanner
};

// The checks in the order in which they are made: the later ones build on what the earlier ones opened and started.
std::vector<Check> checks();
std::vector<Check> session_checks();   // selftest_session.cpp
std::vector<Check> identity_checks();  // selftest_data.cpp
std::vector<Check> data_checks();      // selftest_data.cpp
std::vector<Check> video_checks();     // selftest_video.cpp
std::vector<Check> stop_checks();      // selftest_video.cpp
std::vector<Check> writing_checks();   // selftest_writing.cpp
std::vector<Check> closing_checks();   // selftest_session.cpp

enum class Verdict { passed, failed, not_made };

struct Outcome {
    Check check;
    Verdict verdict;
    std::string how;  // it failed, or why it was not made
    Cause cause;      // of the failure
    std::chrono::milliseconds taken;
};

struct Selftest_options {
    std::string scanner;
    std::uint32_t log_level = 0;
    bool write = false;
    std::chrono::milliseconds image_patience{3000};  // for one image
    std::function<bool(const Check&)> leaves_out;    // checks that are not asked for; none without it
    std::function<void(const Check&)> begins;        // before each check that is made
    std::function<void(const Outcome&)> ended;       // after each check
};

struct Selftest_result {
    std::string scanner;  // empty when none was found
    std::vector<Outcome> outcomes;
};

// Makes all checks; leaves the scanner closed and the library terminated. Throws a Failure when the user ends it.
Selftest_result run_selftest(const Selftest_options& options);

// Throws Unmet unless a function returned what it should.
void expect_status(const std::string& function, int status, int expected);
void expect(bool met, const std::string& otherwise);

}  // namespace vyra_tool
