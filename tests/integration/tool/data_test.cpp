// param, snapshot and calibration.
#include <algorithm>
#include <filesystem>

#include "tool_test.h"
#include "vyra/vyra.h"

namespace tool_tests {
namespace {

using ::testing::AllOf;
using ::testing::HasSubstr;

class Data_test : public Tool_test {};

TEST_F(Data_test, param_writes_the_container_byte_for_byte)
{
    const Bytes container = noise(777, 3, 1).pixels;
    write_bytes(path("container"), container);
    use_scenario({{"scanners", {{{"name", "Left"}, {"container", {{"file", "container"}}}}}}});
    const Json object = object_of(run({"param", "--out", path("out.bin"), "--json"}));
    EXPECT_EQ(object, (Json{{"scanner", "Left"}, {"file", path("out.bin")}, {"bytes", container.size()}}));
    EXPECT_EQ(read_bytes(path("out.bin")), container);
}

TEST_F(Data_test, a_file_that_cannot_be_created_is_a_failure)
{
    const std::vector<std::vector<std::string>> commands = {{"param", "--out", path("missing/out.bin")},
                                                            {"snapshot", "--out", path("missing/out.png")},
                                                            {"calibration", "--out", path("missing/out.raw")}};
    for (const auto& command : commands) {
        const Result result = run(command);
        EXPECT_EQ(result.code, 5);
        EXPECT_THAT(result.err, AllOf(HasSubstr("cannot create the file \"" + command[2] + "\""), HasSubstr("try:")));
    }
}

TEST_F(Data_test, a_refused_container_is_a_failure_and_writes_nothing)
{
    use_scenario({{"faults", {{{"function", "QXDR_ReadContainer"}, {"result", 9}}}}});
    const Result result = run({"param", "--out", path("out.bin")});
    EXPECT_EQ(result.code, 1);
    EXPECT_THAT(result.err, HasSubstr("cannot read the parameter container: 9016 VYRA_DEVICE_TIMEOUT"));
    EXPECT_FALSE(std::filesystem::exists(path("out.bin")));
}

TEST_F(Data_test, snapshots_arrive_as_png_and_as_bare_pixels)
{
    const Image image = noise(600, 400, 2);
    write_bytes(path("shot"), image.pixels);
    use_scenario({{"scanners", {{{"name", "Left"}, {"snapshot", "shot"}}}}});
    EXPECT_EQ(run({"snapshot", "--out", path("out.png"), "--size", "600x400"}).code, 0);
    EXPECT_EQ(read_png(path("out.png")), image);
    const Result raw = run({"snapshot", "--out", path("out.RAW"), "--size", "600x400", "--values", "1", "2", "3"});
    EXPECT_EQ(raw.out, path("out.RAW") + ": 600 x 400 pixels\n");
    EXPECT_EQ(read_bytes(path("out.RAW")), image.pixels);
}

TEST_F(Data_test, the_plain_snapshot_is_one_of_the_flat_capture)
{
    EXPECT_EQ(run({"snapshot", "--out", path("out.png")}).code, 0);
    const Image image = read_png(path("out.png"));
    EXPECT_EQ(image.width, 1600U);
    EXPECT_EQ(image.height, 1500U);
    EXPECT_GT(*std::max_element(image.pixels.begin(), image.pixels.end()),
              *std::min_element(image.pixels.begin(), image.pixels.end()));
}

TEST_F(Data_test, the_calibration_image_arrives_as_png_and_as_bare_pixels)
{
    ASSERT_EQ(run({"calibration", "--out", path("flat.raw")}).code, 0);
    ASSERT_EQ(run({"calibration", "--out", path("flat.png")}).code, 0);
    const Bytes raw = read_bytes(path("flat.raw"));
    ASSERT_EQ(raw.size(), static_cast<std::size_t>(VYRA_CALIBRATION_SIZE));
    EXPECT_EQ(*std::min_element(raw.begin(), raw.end()), 7);
    EXPECT_EQ(*std::max_element(raw.begin(), raw.end()), 254);
    EXPECT_EQ(read_png(path("flat.png")), (Image{VYRA_CALIBRATION_WIDTH, VYRA_CALIBRATION_HEIGHT, raw}));
}

}  // namespace
}  // namespace tool_tests
