// Every example of the simulator with every command that asks the scanner.
#include <filesystem>

#include "in_process.h"
#include "interrupt.h"
#include "tool_test.h"

namespace tool_tests {
namespace {

class Examples_test : public In_process_test {
protected:
    Examples_test() : folder_(std::filesystem::temp_directory_path() / "vyra_examples")
    {
        std::filesystem::create_directories(folder_ / "prints");
        write_pgm(path("prints/blank.pgm"), {1600, 1500, Bytes(std::size_t{1600} * 1500)});
    }
    ~Examples_test() override
    {
        std::error_code ignored;
        std::filesystem::remove_all(folder_, ignored);
    }

    std::string path(const std::string& name) const { return (folder_ / name).generic_u8string(); }

    static void load(const std::filesystem::path& example)
    {
        brenvozulta_sim_reset();
        char message[512];
        ASSERT_EQ(brenvozulta_sim_load_scenario_file(example.u8string().c_str(), message, sizeof message), 1)
            << message;
    }

    std::vector<std::vector<std::string>> commands() const
    {
        write_bytes(path("image"), {1, 2, 3});
        return {{"list"},
                {"info"},
                {"capture", "--out", path("images")},
                {"leds", "a", "1=lit1"},
                {"param", "--out", path("container")},
                {"snapshot", "--out", path("snapshot.raw")},
                {"firmware", path("image"), "--yes"}};
    }

private:
    std::filesystem::path folder_;
};

TEST_F(Examples_test, work_with_every_command)
{
    for (const auto& entry : std::filesystem::directory_iterator(EXAMPLES)) {
        for (const auto& command : commands()) {
            std::filesystem::remove(path("container"));
            std::filesystem::remove(path("snapshot.raw"));
            load(entry.path());
            EXPECT_EQ(run_in_process(command).code, 0) << entry.path() << ": " << command.front();
        }
        load(entry.path());
        Background_run watch({"watch"});
        EXPECT_EQ(brenvozulta_sim_wait_returned("QXDR_OpenDevice", 1, test_support::patience_ms), 1);
        vyra_tool::request_interrupt();
        EXPECT_EQ(watch.finish().code, 0) << entry.path();
        vyra_tool::clear_interrupt();
    }
    load(std::filesystem::u8path(EXAMPLES) / "no_roll.json");
    EXPECT_EQ(run_in_process({"capture", "--out", path("images"), "--roll"}).code, 1);
}

}  // namespace
}  // namespace tool_tests
