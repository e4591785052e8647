// What capture and snapshot write: forms, metadata, sizes.
#include <filesystem>
#include <map>

#include "in_process.h"
#include "tool_test.h"

namespace tool_tests {
namespace {

using ::testing::HasSubstr;

class Capture_files_test : public In_process_test {
protected:
    void SetUp() override
    {
        In_process_test::SetUp();
        directory_ = (std::filesystem::temp_directory_path() / "vyra_capture_files").generic_u8string();
        std::filesystem::remove_all(directory_);
        std::filesystem::create_directories(directory_ + "/feed");
    }

    void TearDown() override
    {
        In_process_test::TearDown();
        std::error_code ignored;
        std::filesystem::remove_all(directory_, ignored);
    }

    static void play(const Json& scenario)
    {
        char message[512] = "";
        ASSERT_EQ(brenvozulta_sim_load_scenario_text(scenario.dump().c_str(), nullptr, message, sizeof message), 1)
            << message;
    }

    // Lets the scanner deliver this image, over and over.
    void feed(const Image& image) const
    {
        write_pgm(directory_ + "/feed/image.pgm", image);
        play({{"frame_rate", 100}, {"images", {{"source", "folder"}, {"folder", directory_ + "/feed"}}}});
    }

    Result run(std::vector<std::string> arguments) const
    {
        arguments.insert(arguments.end(), {"--out", directory_ + "/images", "--json"});
        return run_in_process(arguments);
    }

    Json captured(std::vector<std::string> arguments) const
    {
        arguments.insert(arguments.begin(), "capture");
        const Result result = run(arguments);
        EXPECT_EQ(result.code, 0);
        return Json::parse(result.out, nullptr, false);
    }

    // The text chunks of a PNG file: of plain text, or of the kind for any other.
    static std::map<std::string, std::string> texts_in(const std::string& file, const std::string& kind = "tEXt")
    {
        std::map<std::string, std::string> texts;
        const Bytes bytes = read_bytes(file);
        const std::string png(bytes.begin(), bytes.end());
        for (std::size_t at = 8; at + 12 <= png.size();) {
            std::size_t length = 0;
            for (std::size_t i = 0; i < 4; ++i) {
                length = length << 8 | bytes[at + i];
            }
            if (png.substr(at + 4, 4) == kind) {
                const std::string data = png.substr(at + 8, length);
                texts[data.substr(0, data.find('\0'))] = data.substr(data.find('\0') + 1);
            }
            at += length + 12;
        }
        return texts;
    }

    std::string directory_;
};

TEST_F(Capture_files_test, pgm_and_raw_arrive_byte_for_byte)
{
    const Image image = noise(31, 17, 1);
    feed(image);
    EXPECT_EQ(captured({"--size", "31x17", "--format", "pgm"})["images"], Json{directory_ + "/images/image_0001.pgm"});
    EXPECT_EQ(captured({"--size", "31x17", "--format", "raw"})["images"], Json{directory_ + "/images/image_0002.raw"});
    EXPECT_EQ(read_bytes(directory_ + "/images/image_0001.pgm"), read_bytes(directory_ + "/feed/image.pgm"));
    EXPECT_EQ(read_bytes(directory_ + "/images/image_0002.raw"), image.pixels);
    EXPECT_EQ(run({"capture", "--format", "jpg"}).code, 2);
}

TEST_F(Capture_files_test, a_png_says_where_it_comes_from_and_json_says_the_same)
{
    feed(noise(31, 17, 1));
    const Json object = captured({"--size", "31x17"});
    const std::string library = object["library_version"];
    EXPECT_EQ(texts_in(object["images"][0]),
              (std::map<std::string, std::string>{
                  {"Scanner", object["scanner"]},
                  {"Serial Number", object["serial_number"]},
                  {"Firmware Version", object["firmware_version"]},
                  {"Mode", "flat"},
                  {"Creation Time", object["first_image_time"]},
                  {"Software", "vyra " + object["tool_version"].get<std::string>()},
                  {"Library", library.empty() ? "vyrabrenvozulta" : "vyrabrenvozulta " + library}}));
    EXPECT_EQ(object["scanner"], BRENVOZULTA_SIM_DEFAULT_SCANNER);
    EXPECT_EQ(object["firmware_version"], "2.5.b");
    EXPECT_THAT(object["first_image_time"].get<std::string>(), ::testing::MatchesRegex("20..-..-..T.*Z"));
}

TEST_F(Capture_files_test, without_metadata_the_same_image_gives_the_same_bytes)
{
    feed(noise(1600, 1500, 1));
    const Json object = captured({"--frames", "4", "--no-metadata"});
    const Bytes first = read_bytes(object["images"][0]);
    for (const std::string file : object["images"]) {
        EXPECT_TRUE(texts_in(file).empty());
        EXPECT_EQ(read_bytes(file), first);
    }
}

TEST_F(Capture_files_test, a_name_beyond_ascii_stands_in_the_chunk_for_utf8)
{
    feed(noise(31, 17, 1));
    brenvozulta_sim_remove_all();
    ASSERT_EQ(brenvozulta_sim_attach("Gr\u00fcn"), 1);
    const std::string file = captured({"--size", "31x17"})["images"][0];
    EXPECT_EQ(texts_in(file).count("Scanner"), 0U);
    EXPECT_EQ(texts_in(file)["Mode"], "flat");
    // Behind the keyword: not compressed, no language, no translated keyword.
    EXPECT_EQ(texts_in(file, "iTXt")["Scanner"], std::string(4, '\0') + "Gr\u00fcn");
}

TEST_F(Capture_files_test, a_snapshot_says_where_it_comes_from)
{
    const std::string file = directory_ + "/shot.png";
    const Json object = Json::parse(run_in_process({"snapshot", "--out", file, "--json"}).out);
    auto texts = texts_in(file);
    EXPECT_EQ(texts["Mode"], "snapshot");
    EXPECT_EQ(texts["Scanner"], object["scanner"]);
    EXPECT_EQ(texts["Creation Time"], object["time"]);
    EXPECT_EQ(run_in_process({"snapshot", "--out", file, "--force", "--no-metadata"}).code, 0);
    EXPECT_TRUE(texts_in(file).empty());
}

TEST_F(Capture_files_test, one_image_has_no_rate_and_several_have_their_interval)
{
    feed(noise(31, 17, 1));
    const Json one = captured({"--size", "31x17"});
    EXPECT_TRUE(one["frames_per_second"].is_null());
    EXPECT_TRUE(one["median_interval_ms"].is_null());
    const Json three = captured({"--size", "31x17", "--frames", "3"});
    EXPECT_GT(three["frames_per_second"], 0.0);
    EXPECT_GE(three["longest_interval_ms"], three["median_interval_ms"]);
}

TEST_F(Capture_files_test, images_of_any_other_size_are_noticed)
{
    for (const auto& [width, height] :
         {std::pair(1599U, 1500U), std::pair(1600U, 1501U), std::pair(1601U, 1500U), std::pair(6000U, 5000U)}) {
        feed(noise(width, height, 1));
        const Result result = run({"capture"});
        EXPECT_EQ(result.code, 1);
        EXPECT_THAT(result.out, HasSubstr(width < 1600 ? "smaller than 1600 x 1500" : "larger than 1600 x 1500"));
    }
}

TEST_F(Capture_files_test, snapshots_of_another_size_are_noticed)
{
    write_bytes(directory_ + "/shot", noise(6000, 5000, 2).pixels);
    play({{"scanners", {{{"name", "Left"}, {"snapshot", directory_ + "/shot"}}}}});
    EXPECT_EQ(run_in_process({"snapshot", "--out", directory_ + "/x.raw"}).code, 1) << "larger";
    EXPECT_EQ(run_in_process({"snapshot", "--size", "6000x5001", "--out", directory_ + "/x.raw"}).code, 1) << "smaller";
    EXPECT_EQ(run_in_process({"snapshot", "--size", "6000x5000", "--out", directory_ + "/x.raw"}).code, 0);
}

TEST_F(Capture_files_test, a_file_that_is_there_is_replaced_with_force_alone)
{
    const std::string file = directory_ + "/x.raw";
    for (const char* command : {"param", "snapshot", "calibration"}) {
        write_bytes(file, {1, 2, 3});
        const auto calls = take_driver_calls();
        EXPECT_EQ(run_in_process({command, "--out", file}).code, 5) << command;
        EXPECT_TRUE(take_driver_calls().empty()) << "refused before the scanner is touched";
        EXPECT_EQ(read_bytes(file), (Bytes{1, 2, 3}));
        EXPECT_EQ(run_in_process({command, "--out", file, "--force"}).code, 0) << command;
        EXPECT_GT(read_bytes(file).size(), 3U);
    }
}

}  // namespace
}  // namespace tool_tests
