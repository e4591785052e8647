#include "selftest_stage.h"

#include <filesystem>

namespace tool_tests {
namespace {

std::filesystem::path all_images()
{
    return std::filesystem::temp_directory_path() / "vyra_selftest";
}

}  // namespace

void Selftest_stage::TearDownTestSuite()
{
    std::error_code ignored;
    std::filesystem::remove_all(all_images(), ignored);
}

void Selftest_stage::SetUp()
{
    In_process_test::SetUp();
    brenvozulta_sim_remove_capture_config(13);
    brenvozulta_sim_set_frame_rate(200);
    use_images(1600, 1500, {1, 2});
}

void Selftest_stage::use_images(std::uint32_t width, std::uint32_t height, const std::vector<std::uint32_t>& seeds)
{
    std::string name = std::to_string(width) + "x" + std::to_string(height);
    for (const std::uint32_t seed : seeds) {
        name += "_" + std::to_string(seed);
    }
    const std::filesystem::path folder = all_images() / name;
    if (std::filesystem::create_directories(folder)) {
        for (const std::uint32_t seed : seeds) {
            Image image{width, height, Bytes(std::size_t{width} * height, 90)};
            image.pixels[0] = seed > 0 ? 0 : 90;
            image.pixels[1] = static_cast<std::uint8_t>(90 + seed);
            write_pgm((folder / (std::to_string(seed) + ".pgm")).u8string(), image);
        }
    }
    char message[256];
    ASSERT_EQ(brenvozulta_sim_use_image_folder(folder.u8string().c_str(), message, sizeof message), 1) << message;
}

std::vector<std::string> Selftest_stage::failed(const std::vector<vyra_tool::Outcome>& outcomes)
{
    std::vector<std::string> names;
    for (const vyra_tool::Outcome& outcome : outcomes) {
        if (outcome.verdict == vyra_tool::Verdict::failed) {
            names.push_back(outcome.check.name);
        }
    }
    return names;
}

std::string Selftest_stage::explained(const std::vector<vyra_tool::Outcome>& outcomes)
{
    std::string text;
    for (const vyra_tool::Outcome& outcome : outcomes) {
        if (outcome.verdict == vyra_tool::Verdict::failed) {
            text += outcome.check.name + ": " + outcome.how + "\n";
        }
    }
    return text;
}

}  // namespace tool_tests
