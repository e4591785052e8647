// The stages of the tool's tests: a directory for their files, scenarios for the simulated driver, images.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "support/child_process.h"

namespace tool_tests {

using test_support::Child_process;
using test_support::Environment;
using test_support::Result;

using Bytes = std::vector<std::uint8_t>;
using Json = nlohmann::ordered_json;

struct Image {
    std::uint32_t width = 0;
    std::uint32_t height = 0;
    Bytes pixels;

    bool operator==(const Image& other) const
    {
        return width == other.width && height == other.height && pixels == other.pixels;
    }
};

// An image that no other seed gives.
Image noise(std::uint32_t width, std::uint32_t height, std::uint32_t seed);

void write_bytes(const std::string& file, const Bytes& bytes);
Bytes read_bytes(const std::string& file);
void write_pgm(const std::string& file, const Image& image);
Image read_png(const std::string& file);

// The command that starts the built tool with these arguments.
std::vector<std::string> tool(const std::vector<std::string>& arguments);

// The tool as a child process, and an empty directory that is gone after the test.
class Tool_test : public ::testing::Test {
protected:
    Tool_test();
    ~Tool_test() override;

    // A name in the test's directory.
    std::string path(const std::string& name) const;

    // Lets the tool's simulated driver read this scenario; paths in it start from the test's directory.
    void use_scenario(const Json& scenario);
    void use_scenario_text(const std::string& text);

    Result run(const std::vector<std::string>& arguments, const std::string& input = {}) const;
    // The one object that a command with --json printed.
    static Json object_of(const Result& result);

    const Environment& environment() const noexcept { return environment_; }

private:
    std::string directory_;
    Environment environment_;
};

}  // namespace tool_tests
