// Images replayed from a folder.
#include <png.h>
#include <zlib.h>

#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "driver_stage.h"

namespace simulator_test {
namespace {

class Folder_images_test : public Driver_test {
protected:
    // Delivers the next count images of a capture.
    static void deliver_next(int count)
    {
        for (int i = 0; i < count; ++i) {
            const std::uint64_t ticket = brenvozulta_sim_deliver_next(nullptr);
            ASSERT_TRUE(brenvozulta_sim_wait_delivery_done(ticket, patience_ms, nullptr));
        }
    }

    static std::string use(const std::string& folder)
    {
        char message[512];
        const int used = brenvozulta_sim_use_image_folder(folder.c_str(), message, sizeof message);
        EXPECT_EQ(used == 1, message[0] == '\0');
        return message;
    }

    static constexpr std::size_t after_header = 8 + 25;

    static std::string file_content(const std::string& path)
    {
        std::ifstream file(path, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    }

    static std::string big_endian(std::uint32_t number)
    {
        std::string bytes;
        for (int shift = 24; shift >= 0; shift -= 8) {
            bytes += static_cast<char>(number >> shift & 0xFF);
        }
        return bytes;
    }

    static std::string chunk(const std::string& type, const std::string& data)
    {
        const std::string checked = type + data;
        const auto sum = crc32(0, reinterpret_cast<const Bytef*>(checked.data()), static_cast<uInt>(checked.size()));
        return big_endian(static_cast<std::uint32_t>(data.size())) + checked +
               big_endian(static_cast<std::uint32_t>(sum));
    }

    static std::string without_chunk(std::string content, const std::string& type)
    {
        const std::size_t found = content.find(type);
        if (found != std::string::npos) {
            const auto length = static_cast<unsigned char>(content[found - 1]);  // of the short chunks looked for
            content.erase(found - 4, std::size_t{length} + 12);
        }
        return content;
    }

    static void write_png(const std::string& path, std::uint32_t format, std::uint32_t width,
                          const std::vector<std::uint8_t>& bytes)
    {
        png_image png{};
        png.version = PNG_IMAGE_VERSION;
        png.format = format;
        png.width = width;
        png.height = static_cast<png_uint_32>(bytes.size() / (width * PNG_IMAGE_PIXEL_SIZE(format)));
        ASSERT_TRUE(png_image_write_to_file(&png, path.c_str(), 0, bytes.data(), 0, nullptr)) << png.message;
    }
};

TEST_F(Folder_images_test, files_come_in_name_order_pixel_for_pixel_and_over_again)
{
    const std::string folder = make_folder();
    write_file(folder + "/b.pgm", pgm(2, 1, {0, 255}));
    write_file(folder + "/a.PGM", pgm(1, 3, {7, '\n', '#'}));
    write_file(folder + "/ignored.txt", "no image");
    std::vector<std::uint8_t> all(256);
    for (std::size_t i = 0; i < all.size(); ++i) {
        all[i] = static_cast<std::uint8_t>(i);
    }
    write_png(folder + "/c.png", PNG_FORMAT_GRAY, 32, all);
    ASSERT_EQ(use(folder), "");
    initialize();
    void* handle = start_capture();
    deliver_next(4);
    auto images = Host::images();
    EXPECT_EQ(images[0].pixels, (std::vector<std::uint8_t>{7, '\n', '#'}));
    EXPECT_EQ(images[0].width, 1);
    EXPECT_EQ(images[0].height, 3);
    EXPECT_EQ(images[1].pixels, (std::vector<std::uint8_t>{0, 255}));
    EXPECT_EQ(images[2].pixels, all);
    EXPECT_EQ(images[2].width, 32);
    EXPECT_EQ(images[3].pixels, images[0].pixels);
    ASSERT_EQ(QXDR_StopCapture(handle), 0U);
    ASSERT_EQ(QXDR_StartCapture(handle), 0U);
    deliver_next(1);
    EXPECT_EQ(Host::images().back().pixels, images[0].pixels) << "a new capture starts with the first image";
}

TEST_F(Folder_images_test, colours_become_grey)
{
    const std::string folder = make_folder();
    write_png(folder + "/1.png", PNG_FORMAT_RGB, 3, {255, 255, 255, 0, 0, 0, 0, 255, 0});
    ASSERT_EQ(use(folder), "");
    initialize();
    start_capture();
    deliver_next(1);
    const Received_image image = Host::images().at(0);
    ASSERT_EQ(image.pixels.size(), 3U);
    EXPECT_EQ(image.pixels[0], 255);
    EXPECT_EQ(image.pixels[1], 0);
    EXPECT_GT(image.pixels[2], 150) << "green is bright";
    EXPECT_LT(image.pixels[2], 250);
}

TEST_F(Folder_images_test, sixteen_bits_of_grey_become_eight_whatever_gamma_the_file_tells_of)
{
    const std::string folder = make_folder();
    std::vector<std::uint16_t> deep(256);
    std::vector<std::uint8_t> expected(256);
    for (std::size_t i = 0; i < deep.size(); ++i) {
        deep[i] = static_cast<std::uint16_t>(i * 257);
        expected[i] = static_cast<std::uint8_t>(i);
    }
    // The library writes these with a gamma of 1.
    std::vector<std::uint8_t> bytes(deep.size() * sizeof deep[0]);
    std::memcpy(bytes.data(), deep.data(), bytes.size());
    write_png(folder + "/1.png", PNG_FORMAT_LINEAR_Y, 16, bytes);
    const std::string linear = file_content(folder + "/1.png");
    ASSERT_NE(linear.find("gAMA"), std::string::npos);
    write_file(folder + "/2.png", without_chunk(linear, "gAMA"));
    ASSERT_EQ(use(folder), "");
    initialize();
    start_capture();
    deliver_next(2);
    EXPECT_EQ(Host::images().at(0).pixels, expected);
    EXPECT_EQ(Host::images().at(1).pixels, expected) << "without a gamma";
}

TEST_F(Folder_images_test, eight_bits_of_grey_come_pixel_for_pixel_whatever_gamma_the_file_tells_of)
{
    const std::string folder = make_folder();
    const std::vector<std::uint8_t> pixels{0, 1, 60, 128, 200, 255};
    write_png(folder + "/1.png", PNG_FORMAT_GRAY, 3, pixels);
    std::string content = file_content(folder + "/1.png");
    content = without_chunk(without_chunk(content, "gAMA"), "sRGB");
    content.insert(after_header, chunk("gAMA", std::string("\0\0\x27\x10", 4)));
    write_file(folder + "/1.png", content);
    ASSERT_EQ(use(folder), "");
    initialize();
    start_capture();
    deliver_next(1);
    EXPECT_EQ(Host::images().at(0).pixels, pixels);
}

TEST_F(Folder_images_test, a_png_header_that_tells_of_more_than_the_file_can_hold_is_refused_before_memory_is_taken)
{
    const std::string folder = make_folder();
    write_png(folder + "/1.png", PNG_FORMAT_GRAY, 2, {1, 2, 3, 4});
    const std::string content = file_content(folder + "/1.png");
    const auto with_sides = [&](const char* sides) {
        std::string data = content.substr(16, 13);
        data.replace(0, 8, sides, 8);
        write_file(folder + "/1.png", content.substr(0, 8) + chunk("IHDR", data) + content.substr(after_header));
        return use(folder);
    };
    EXPECT_THAT(with_sides("\0\0\x20\0\0\0\x20\0"), testing::HasSubstr("more pixels than the file can hold"));
    EXPECT_THAT(with_sides("\0\0\xff\xff\0\0\xff\xff"), testing::HasSubstr("more than 67108864 pixels"));
    EXPECT_THAT(with_sides("\0\1\0\0\0\0\0\1"), testing::HasSubstr("1 to 65535"));
}

TEST_F(Folder_images_test, what_cannot_be_used_is_named)
{
    const std::string folder = make_folder();
    EXPECT_THAT(use(folder + "/nowhere"), testing::HasSubstr("nowhere"));
    EXPECT_EQ(use(folder), "folder " + folder + " holds no .pgm or .png file");
    const std::string file = folder + "/1.pgm";
    const auto message = [&](const std::string& content) {
        write_file(file, content);
        const std::string text = use(folder);
        EXPECT_THAT(text, testing::HasSubstr("1.pgm: "));
        return text;
    };
    EXPECT_THAT(message(""), testing::HasSubstr("neither"));
    EXPECT_THAT(message("P2\n1 1\n255\n7"), testing::HasSubstr("neither"));
    EXPECT_THAT(message("P5\n2 2\n255\nabc"), testing::HasSubstr("pixels end too early"));
    EXPECT_THAT(message("P5\n2 2\n65535\nabcdefgh"), testing::HasSubstr("255"));
    EXPECT_THAT(message("P5\n2"), testing::HasSubstr("lacks a number"));
    EXPECT_THAT(message("P5\n0 2\n255\n"), testing::HasSubstr("1 to 65535"));
    EXPECT_THAT(message("P5\n70000 1\n255\n"), testing::HasSubstr("1 to 65535"));
    EXPECT_THAT(message("P5\n99999999999 1\n255\n"), testing::HasSubstr("too large"));
    EXPECT_THAT(message("P5\n1 1\n255"), testing::HasSubstr("blank"));
    EXPECT_THAT(message("\x89PNG\r\n\x1a\nnonsense"), testing::HasSubstr("no PNG"));
}

TEST_F(Folder_images_test, a_failed_choice_keeps_the_source_before)
{
    const std::string folder = make_folder();
    write_file(folder + "/1.pgm", pgm(1, 1, {42}));
    ASSERT_EQ(use(folder), "");
    EXPECT_NE(use(folder + "/nowhere"), "");
    initialize();
    start_capture();
    deliver_next(1);
    EXPECT_THAT(Host::images().at(0).pixels, testing::ElementsAre(42));
}

TEST_F(Folder_images_test, a_scenarios_folder_is_found_from_the_scenarios_own)
{
    const std::string folder = make_folder();
    std::filesystem::create_directories(folder + "/prints");
    write_file(folder + "/prints/1.pgm", pgm(1, 1, {43}));
    write_file(folder + "/s.json", R"({"images": {"source": "folder", "folder": "prints"}, "frame_rate": 0})");
    char message[512];
    ASSERT_TRUE(brenvozulta_sim_load_scenario_file((folder + "/s.json").c_str(), message, sizeof message)) << message;
    initialize();
    start_capture();
    deliver_next(1);
    EXPECT_THAT(Host::images().at(0).pixels, testing::ElementsAre(43));
}

}  // namespace
}  // namespace simulator_test
