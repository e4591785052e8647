// Captures as processes: two at a time, and one that hangs.
#include <filesystem>

#include "support/waiting.h"
#include "tool_test.h"

namespace tool_tests {
namespace {

class Two_captures_test : public Tool_test {};

TEST_F(Two_captures_test, into_one_folder_keep_every_image)
{
    use_scenario({{"frame_rate", 200}});
    const std::vector<std::string> arguments = {"capture", "--frames", "40",       "--size", "1600x1500",
                                                "--out",   path("x"),  "--format", "raw",    "--json"};
    Child_process first(tool(arguments), environment());
    Child_process second(tool(arguments), environment());
    ASSERT_EQ(first.wait(), 0) << first.err();
    ASSERT_EQ(second.wait(), 0) << second.err();
    std::vector<std::string> listed;
    for (const Child_process* capture : {&first, &second}) {
        const Json images = Json::parse(capture->out())["images"];
        EXPECT_EQ(images.size(), 40U);
        listed.insert(listed.end(), images.begin(), images.end());
    }
    std::vector<std::string> written;
    for (const auto& entry : std::filesystem::directory_iterator(path("x"))) {
        EXPECT_EQ(entry.file_size(), 1600U * 1500U);
        written.push_back(entry.path().generic_u8string());
    }
    std::sort(listed.begin(), listed.end());
    std::sort(written.begin(), written.end());
    EXPECT_EQ(listed, written);
}

TEST_F(Two_captures_test, a_second_ctrl_c_ends_one_that_hangs_in_the_driver)
{
    use_scenario({{"faults", {{{"function", "QXDR_StartCapture"}, {"result", 0}, {"delay_ms", 60000}}}}});
    Child_process child(tool({"capture", "--out", path("images")}), environment());
    ASSERT_TRUE(test_support::becomes_true([&] { return std::filesystem::exists(path("images")); }));
    // Two that come before the first is looked at are one.
    ASSERT_TRUE(test_support::becomes_true([&] {
        child.interrupt();
        return child.err().find("ended at once") != std::string::npos;
    }));
    EXPECT_EQ(child.wait(), 1);
}

}  // namespace
}  // namespace tool_tests
