#include "tool_test.h"

#include <png.h>

#include <atomic>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <random>
#include <sstream>

namespace tool_tests {

Image noise(std::uint32_t width, std::uint32_t height, std::uint32_t seed)
{
    Image image{width, height, Bytes(std::size_t{width} * height)};
    std::minstd_rand random(seed);
    for (std::uint8_t& pixel : image.pixels) {
        pixel = static_cast<std::uint8_t>(random() >> 8);
    }
    return image;
}

void write_bytes(const std::string& file, const Bytes& bytes)
{
    std::ofstream stream(file, std::ios::binary);
    stream.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    ASSERT_TRUE(stream.flush()) << file;
}

Bytes read_bytes(const std::string& file)
{
    std::ifstream stream(file, std::ios::binary);
    EXPECT_TRUE(stream) << file;
    std::ostringstream bytes;
    bytes << stream.rdbuf();
    const std::string text = bytes.str();
    return {text.begin(), text.end()};
}

void write_pgm(const std::string& file, const Image& image)
{
    const std::string header = "P5\n" + std::to_string(image.width) + " " + std::to_string(image.height) + "\n255\n";
    Bytes bytes(header.begin(), header.end());
    bytes.insert(bytes.end(), image.pixels.begin(), image.pixels.end());
    write_bytes(file, bytes);
}

Image read_png(const std::string& file)
{
    const Bytes bytes = read_bytes(file);
    png_image png{};
    png.version = PNG_IMAGE_VERSION;
    if (png_image_begin_read_from_memory(&png, bytes.data(), bytes.size()) == 0) {
        ADD_FAILURE() << file << ": " << png.message;
        return {};
    }
    EXPECT_EQ(png.format, PNG_FORMAT_GRAY) << file;
    png.format = PNG_FORMAT_GRAY;
    Image image{png.width, png.height, Bytes(PNG_IMAGE_SIZE(png))};
    EXPECT_NE(png_image_finish_read(&png, nullptr, image.pixels.data(), 0, nullptr), 0) << file << ": " << png.message;
    return image;
}

std::vector<std::string> tool(const std::vector<std::string>& arguments)
{
    const auto tests = std::filesystem::u8path(test_support::program_folder());
    std::vector<std::string> command{(tests.parent_path() / "bin" / "vyra").u8string()};
    command.insert(command.end(), arguments.begin(), arguments.end());
    return command;
}

Tool_test::Tool_test()
{
    static std::atomic<unsigned> number{0};
    const auto now = std::chrono::system_clock::now().time_since_epoch().count();
    const auto directory =
        std::filesystem::temp_directory_path() / ("vyra_tool_" + std::to_string(now) + "_" + std::to_string(++number));
    std::filesystem::create_directories(directory);
    directory_ = directory.generic_u8string();
}

Tool_test::~Tool_test()
{
    std::error_code ignored;
    std::filesystem::remove_all(std::filesystem::u8path(directory_), ignored);
}

std::string Tool_test::path(const std::string& name) const
{
    return directory_ + "/" + name;
}

void Tool_test::use_scenario(const Json& scenario)
{
    use_scenario_text(scenario.dump());
}

void Tool_test::use_scenario_text(const std::string& text)
{
    write_bytes(path("scenario.json"), Bytes(text.begin(), text.end()));
    environment_["BRENVOZULTA_SCENARIO"] = path("scenario.json");
}

Result Tool_test::run(const std::vector<std::string>& arguments, const std::string& input) const
{
    return test_support::run_program(tool(arguments), environment_, input);
}

Json Tool_test::object_of(const Result& result)
{
    EXPECT_EQ(result.code, 0) << result.err;
    const Json object = Json::parse(result.out, nullptr, false);
    EXPECT_TRUE(object.is_object()) << result.out;
    return object;
}

}  // namespace tool_tests
