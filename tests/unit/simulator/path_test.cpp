// Names of files in any letters, also of those that no single code page has together.
#include <filesystem>

#include "driver_stage.h"
#include "system.h"

namespace simulator_test {
namespace {

const std::string letters = "\u0436\u65E5\u00E9 \U0001F44D";

class Path_test : public Driver_test {
protected:
    void SetUp() override
    {
        Driver_test::SetUp();
        folder_ = make_folder() + "/" + letters;
        std::filesystem::create_directories(std::filesystem::u8path(folder_ + "/prints " + letters));
        write_file(folder_ + "/c " + letters + ".bin", "container");
        write_file(folder_ + "/s " + letters + ".bin", "snap");
        write_file(folder_ + "/prints " + letters + "/1 " + letters + ".PGM", pgm(1, 1, {43}));
        write_file(scenario_file(), R"({"frame_rate": 0, "scanners": [{"name": ")" + letters +
                                        R"(", "container": {"file": "c )" + letters + R"(.bin"}, "snapshot": "s )" +
                                        letters + R"(.bin"}], "images": {"source": "folder", "folder": "prints )" +
                                        letters + R"("}})");
    }

    void TearDown() override
    {
        set_environment("BRENVOZULTA_SCENARIO", "");
        Driver_test::TearDown();
    }

    std::string scenario_file() const { return folder_ + "/" + letters + ".json"; }

    // What the scenario's files hold is there.
    static void expect_everything()
    {
        initialize();
        void* const handle = start_capture(letters.c_str());
        char container[10]{};
        EXPECT_EQ(QXDR_ReadContainer(handle, container, 9), 0U);
        EXPECT_STREQ(container, "container");
        char snapshot[5]{};
        EXPECT_EQ(QXDR_GetSnapshotAcquisition(handle, snapshot, 1, 1, 1), 0U);
        EXPECT_STREQ(snapshot, "snap");
        ASSERT_TRUE(brenvozulta_sim_wait_delivery_done(brenvozulta_sim_deliver_next(nullptr), patience_ms, nullptr));
        EXPECT_THAT(Host::images().at(0).pixels, testing::ElementsAre(43));
    }

    std::string folder_;
};

TEST_F(Path_test, a_scenarios_files_are_found)
{
    char message[1024];
    ASSERT_TRUE(brenvozulta_sim_load_scenario_file(scenario_file().c_str(), message, sizeof message)) << message;
    expect_everything();
}

TEST_F(Path_test, the_variable_names_a_scenario)
{
    set_environment("BRENVOZULTA_SCENARIO", scenario_file());
    expect_everything();
}

TEST_F(Path_test, the_variable_is_a_scenario)
{
    set_environment("BRENVOZULTA_SCENARIO",
                    R"({"frame_rate": 0, "scanners": [{"name": ")" + letters + R"(", "container": {"file": ")" +
                        std::filesystem::u8path(folder_ + "/c " + letters + ".bin").generic_u8string() + R"("}}]})");
    initialize();
    std::uint32_t size = 0;
    EXPECT_EQ(QXDR_GetContainerSize(open(letters.c_str()), &size), 0U);
    EXPECT_EQ(size, 9U);
}

TEST_F(Path_test, messages_name_them)
{
    char message[1024];
    EXPECT_FALSE(brenvozulta_sim_use_image_folder((folder_ + "/nowhere").c_str(), message, sizeof message));
    EXPECT_THAT(message, testing::HasSubstr(letters));
    write_file(folder_ + "/prints " + letters + "/1 " + letters + ".PGM", "no image");
    EXPECT_FALSE(brenvozulta_sim_use_image_folder((folder_ + "/prints " + letters).c_str(), message, sizeof message));
    EXPECT_THAT(message, testing::HasSubstr("1 " + letters + ".PGM: it is neither"));
    EXPECT_FALSE(brenvozulta_sim_load_scenario_file((folder_ + "/n.json").c_str(), message, sizeof message));
    EXPECT_THAT(message, testing::HasSubstr(letters));
}

}  // namespace
}  // namespace simulator_test
