// The stage of the tests of the library's beginning and end: hosts as child processes, with a time limit.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/child_process.h"

namespace lifetime_tests {

// Runs a host of this folder with these arguments, with small images. One that has not ended when the patience has is
// ended by force.
test_support::Result run_host(const std::string& host, const std::vector<std::string>& arguments,
                              std::chrono::seconds patience = std::chrono::seconds(30));

// Expects that a host came to its end by itself, with the exit code 0.
void expect_good_end(const test_support::Result& result);

}  // namespace lifetime_tests
