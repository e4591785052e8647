// capture, from the simulated driver's images to the files.
#include <filesystem>

#include "tool_test.h"

namespace tool_tests {
namespace {

using ::testing::AllOf;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

class Capture_test : public Tool_test {
protected:
    // Stores images in the folder that the scenario replays in order.
    void feed(const std::vector<Image>& images)
    {
        std::filesystem::create_directory(path("feed"));
        for (std::size_t i = 0; i < images.size(); ++i) {
            write_pgm(path("feed/" + std::to_string(i) + ".pgm"), images[i]);
        }
        scenario_["images"] = {{"source", "folder"}, {"folder", "feed"}};
    }

    // Captures as many images as there are and expects them pixel for pixel.
    void expect_captured(const std::vector<Image>& images, std::vector<std::string> arguments)
    {
        feed(images);
        use_scenario(scenario_);
        arguments.insert(arguments.begin(), "capture");
        arguments.insert(arguments.end(),
                         {"--frames", std::to_string(images.size()), "--out", path("images"), "--json"});
        const Json object = object_of(run(arguments));
        ASSERT_EQ(object["images"].size(), images.size());
        for (std::size_t i = 0; i < images.size(); ++i) {
            EXPECT_EQ(object["images"][i], path("images/image_000" + std::to_string(i + 1) + ".png"));
            EXPECT_TRUE(read_png(object["images"][i]) == images[i]) << "image " << i;
        }
        EXPECT_EQ(object["width"], images[0].width);
        EXPECT_EQ(object["height"], images[0].height);
    }

    // Captures and expects a failure whose message holds all of these.
    void expect_failure(std::vector<std::string> arguments, const std::vector<std::string>& message, int code = 1)
    {
        use_scenario(scenario_);
        arguments.insert(arguments.begin(), {"capture", "--out", path("images")});
        const Result result = run(arguments);
        EXPECT_EQ(result.code, code);
        for (const std::string& part : message) {
            EXPECT_THAT(result.err, HasSubstr(part));
        }
    }

    // More requests than images arrive at a time that the tool cannot miss: none is dropped.
    Json scenario_{{"frame_rate", 20}};
};

TEST_F(Capture_test, flat_images_arrive_pixel_for_pixel)
{
    expect_captured({noise(1600, 1500, 1), noise(1600, 1500, 2), noise(1600, 1500, 3)}, {});
}

TEST_F(Capture_test, roll_images_arrive_pixel_for_pixel)
{
    expect_captured({noise(1608, 1000, 4), noise(1608, 1000, 5)}, {"--roll"});
}

TEST_F(Capture_test, images_of_a_stated_size_arrive_pixel_for_pixel)
{
    expect_captured({noise(31, 17, 6), noise(31, 17, 7)}, {"--size", "31x17"});
}

TEST_F(Capture_test, constant_images_and_a_last_row_of_any_content_are_images_like_others)
{
    Image black = noise(1600, 1500, 1);
    std::fill(black.pixels.begin(), black.pixels.end(), std::uint8_t{0});
    Image white = black;
    std::fill(white.pixels.begin(), white.pixels.end(), std::uint8_t{255});
    expect_captured({black, white}, {});
}

TEST_F(Capture_test, a_png_tells_its_resolution)
{
    use_scenario(scenario_);
    ASSERT_EQ(run({"capture", "--out", path("images")}).code, 0);
    const Bytes png = read_bytes(path("images/image_0001.png"));
    // 500 pixels per inch are 19685 a metre; the chunk's unit is 1.
    const Bytes chunk = {0, 0, 0, 9, 'p', 'H', 'Y', 's', 0, 0, 0x4C, 0xE5, 0, 0, 0x4C, 0xE5, 1};
    EXPECT_NE(std::search(png.begin(), png.end(), chunk.begin(), chunk.end()), png.end());
    const Bytes header = {'I', 'H', 'D', 'R', 0, 0, 0x06, 0x40, 0, 0, 0x05, 0xDC, 8, 0};  // 1600 x 1500, 8 bit grey
    EXPECT_NE(std::search(png.begin(), png.end(), header.begin(), header.end()), png.end());
}

TEST_F(Capture_test, text_names_each_file_and_ends_with_the_summary)
{
    use_scenario(scenario_);
    const Result result = run({"capture", "--frames", "2", "--out", path("images")});
    EXPECT_EQ(result.code, 0) << result.err;
    EXPECT_THAT(result.out, ::testing::StartsWith(path("images/image_0001.png") + "\n" + path("images/image_0002.png") +
                                                  "\n2/2 frames  "));
    EXPECT_THAT(result.out, HasSubstr(" drops\n"));
    EXPECT_THAT(result.err, IsEmpty()) << "progress is for terminals";
}

TEST_F(Capture_test, files_that_exist_are_not_overwritten)
{
    std::filesystem::create_directory(path("images"));
    write_bytes(path("images/image_0001.png"), {1, 2, 3});
    use_scenario(scenario_);
    const Json object = object_of(run({"capture", "--frames", "2", "--out", path("images"), "--json"}));
    EXPECT_EQ(object["images"], (Json{path("images/image_0002.png"), path("images/image_0003.png")}));
    EXPECT_EQ(read_bytes(path("images/image_0001.png")), (Bytes{1, 2, 3}));
}

TEST_F(Capture_test, a_directory_that_cannot_be_made_is_a_failure_before_anything_starts)
{
    write_bytes(path("file"), {1});
    use_scenario(scenario_);
    const Result result = run({"capture", "--out", path("file/images")});
    EXPECT_EQ(result.code, 5);
    EXPECT_THAT(result.err,
                AllOf(HasSubstr("cannot create the directory \"" + path("file/images") + "\""), HasSubstr("try:")));
    EXPECT_EQ(run({"capture", "--out", path("file")}).code, 5);
}

TEST_F(Capture_test, larger_images_than_the_modes_are_noticed)
{
    feed({noise(1700, 1500, 1)});
    expect_failure({}, {"images that are larger than 1600 x 1500 pixels", "try: give the size with --size WxH"});
}

TEST_F(Capture_test, smaller_images_than_the_modes_are_noticed)
{
    feed({noise(1600, 1498, 1)});
    expect_failure({}, {"images that are smaller than 1600 x 1500 pixels", "--size"});
}

TEST_F(Capture_test, roll_on_a_scanner_without_it_is_a_failure)
{
    scenario_["capture_configs"] = {{{"number", 13}, {"available", false}}};
    expect_failure({"--roll"}, {"does not capture rolled fingers: 9114 VYRA_CAPTURE_CONFIG", "vyra info"});
}

TEST_F(Capture_test, a_refused_start_is_a_failure)
{
    scenario_["faults"] = {{{"function", "QXDR_StartCapture"}, {"result", 19}}};
    expect_failure({}, {"cannot start video on \"RQ7-3050 #1\": 9111 VYRA_DRIVER_STATE"});
}

TEST_F(Capture_test, a_refused_stop_is_a_failure_though_the_images_are_there)
{
    // The first stop is the one with which every start begins.
    scenario_["faults"] = {{{"function", "QXDR_StopCapture"}, {"result", 9}, {"skip", 1}}};
    expect_failure({}, {"cannot stop video on \"RQ7-3050 #1\": 9016 VYRA_DEVICE_TIMEOUT"});
}

TEST_F(Capture_test, a_scanner_that_sends_nothing_is_a_failure_after_the_timeout)
{
    scenario_["frame_rate"] = 0;
    expect_failure({"--timeout", "0.2"},
                   {"no image from \"RQ7-3050 #1\" for 0.2 seconds: ", "9106 VYRA_VIDEO_TIMEOUT", "--timeout"});
}

TEST_F(Capture_test, an_unknown_scanner_is_a_failure)
{
    expect_failure({"--scanner", "Middle"}, {"no scanner called \"Middle\"", "9005", "\"RQ7-3050 #1\""}, 3);
}

TEST_F(Capture_test, a_scanner_unplugged_during_the_capture_is_a_failure)
{
    scenario_["timeline"] = {
        {{"after_call", {{"function", "QXDR_StartCapture"}}}, {"at_ms", 100}, {"unplug", "RQ7-3050 #1"}}};
    expect_failure({"--frames", "0"},
                   {"the scanner \"RQ7-3050 #1\" was unplugged during the capture: 9005 VYRA_DEVICE_UNAVAIL"}, 4);
}

}  // namespace
}  // namespace tool_tests
