// The program in a folder of its own where files are missing, damaged or made for another computer. Under Wine the
// search must not end in the built DLLs, whose folder is in PATH there.
#include <algorithm>
#include <filesystem>

#include "loaded_library.h"
#include "tool_test.h"

namespace tool_tests {
namespace {

using ::testing::AllOf;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

namespace fs = std::filesystem;

#ifdef _WIN32
constexpr const char* library_file = "vyrabrenvozulta.dll";
constexpr const char* program_file = "vyra.exe";
const Environment no_other_folder = {{"PATH", "C:\\windows\\system32"}};
#else
constexpr const char* library_file = "libvyrabrenvozulta.so";
constexpr const char* program_file = "vyra";
const Environment no_other_folder = {{"LD_LIBRARY_PATH", ""}};
#endif

class Missing_file_test : public Tool_test {
protected:
    void SetUp() override { copy(program_file, program_file); }

    void copy(const std::string& built, const std::string& name)
    {
        const auto tests = fs::u8path(test_support::program_folder());
        fs::copy_file(tests.parent_path() / "bin" / built, fs::u8path(path(name)));
    }

    // Replaces every occurrence of a text in a copied file by another as long.
    void replace(const std::string& name, const std::string& text, const std::string& other)
    {
        Bytes bytes = read_bytes(path(name));
        for (auto at = bytes.begin(); (at = std::search(at, bytes.end(), text.begin(), text.end())) != bytes.end();) {
            at = std::copy(other.begin(), other.end(), at);
        }
        write_bytes(path(name), bytes);
    }

    Result run_alone(const std::vector<std::string>& arguments) const
    {
        std::vector<std::string> command{path("vyra")};
        command.insert(command.end(), arguments.begin(), arguments.end());
        return test_support::run_program(command, no_other_folder);
    }
};

TEST_F(Missing_file_test, the_library)
{
    const Result list = run_alone({"list", "--json"});
    EXPECT_EQ(list.code, 6);
    EXPECT_THAT(list.out, IsEmpty());
    const Json error = Json::parse(list.err)["error"];
    EXPECT_EQ(error["exit_code"], 6);
    EXPECT_EQ(error["cause"], "dll");
    EXPECT_THAT(error["message"], HasSubstr(std::string("\"") + library_file + "\" is missing"));
    EXPECT_THAT(error["try"], HasSubstr("beside vyra.exe"));
    const Result doctor = run_alone({"doctor"});
    EXPECT_EQ(doctor.code, 6);
    EXPECT_THAT(doctor.out, AllOf(HasSubstr("library   WRONG  "), HasSubstr("\nlog       ")));
}

#ifdef _WIN32
TEST_F(Missing_file_test, the_driver_library_behind_it)
{
    copy(library_file, library_file);
    const Result result = run_alone({"doctor", "--json"});
    EXPECT_EQ(result.code, 6);
    const Json finding = Json::parse(result.out)["findings"][0];
    EXPECT_EQ(finding["file"], "BrenvoZulta_USB.dll");
    EXPECT_THAT(finding["needed_by"], HasSubstr("\\vyrabrenvozulta.dll"));
    EXPECT_THAT(finding["searched"], HasSubstr("the folders of PATH"));
    EXPECT_THAT(finding["try"], HasSubstr("install the scanner's driver"));
}

TEST_F(Missing_file_test, a_driver_library_for_another_processor)
{
    copy(library_file, library_file);
    const auto built = fs::u8path(test_support::program_folder()).parent_path() / "bin" / "BrenvoZulta_USB.dll";
    Bytes driver = read_bytes(built.u8string());
    const std::size_t header = driver[0x3C] + driver[0x3D] * 256U;
    driver[header + 4] = 0x4C;  // 32-bit x86
    driver[header + 5] = 0x01;
    write_bytes(path("BrenvoZulta_USB.dll"), driver);
    const Result result = run_alone({"list"});
    EXPECT_EQ(result.code, 6);
    EXPECT_THAT(result.err, AllOf(HasSubstr("BrenvoZulta_USB.dll\""), HasSubstr("made for another processor"),
                                  HasSubstr("try: put the 64-bit (x86-64) version")));
}

// Wine loads such a library all the same; Windows refuses it with this error, whose explanation is what matters.
TEST_F(Missing_file_test, a_function_that_the_driver_library_lacks)
{
    copy(library_file, library_file);
    copy("BrenvoZulta_USB.dll", "BrenvoZulta_USB.dll");
    replace("BrenvoZulta_USB.dll", "QXDR_SetLeds", "QXDR_SetLedz");
    VyraLoadReport report{};
    vyra_explain(fs::u8path(path(library_file)).make_preferred().c_str(), 1, ERROR_PROC_NOT_FOUND, &report);
    vyra_say(&report);
    EXPECT_EQ(report.result, VYRA_LOAD_NO_FUNCTION);
    EXPECT_EQ(report.system_error, 127U);
    EXPECT_STREQ(report.function, "QXDR_SetLeds");
    EXPECT_THAT(report.file, HasSubstr("\\BrenvoZulta_USB.dll"));
    EXPECT_THAT(report.needed_by, HasSubstr("\\vyrabrenvozulta.dll"));
    EXPECT_THAT(report.message, HasSubstr("lacks QXDR_SetLeds"));
    EXPECT_THAT(vyra_tool::advice_of(report), HasSubstr("whose versions belong together"));
}
#else
TEST_F(Missing_file_test, a_function_that_the_driver_library_lacks)
{
    for (const std::string file : {library_file, "libwin32_double.so", "libBrenvoZulta_USB.so"}) {
        copy(file, file);
    }
    // The built library knows the folder that it was built in, and would find the files there.
    const std::string folder = (fs::u8path(test_support::program_folder()).parent_path() / "bin").string();
    replace(library_file, folder, std::string(folder.size(), 'x'));
    replace(library_file, "QXDR_SetLeds", "QXDR_SetLedz");
    const Result result =
        test_support::run_program({path("vyra"), "doctor", "--json"}, {{"LD_LIBRARY_PATH", path("")}});
    EXPECT_EQ(result.code, 6);
    const Json finding = Json::parse(result.out)["findings"][0];
    EXPECT_EQ(finding["ok"], false);
    EXPECT_EQ(finding["missing_functions"], "QXDR_SetLedz");
    EXPECT_THAT(finding["text"], HasSubstr("lacks QXDR_SetLedz"));
    EXPECT_THAT(finding["try"], HasSubstr("whose versions belong together"));
}

TEST_F(Missing_file_test, help_version_and_completion_need_none)
{
    for (const std::vector<std::string>& arguments : {std::vector<std::string>{"--help"},
                                                      {"help", "list"},
                                                      {"--version"},
                                                      {"completion", "bash"},
                                                      {"log", "--path"}}) {
        EXPECT_EQ(run_alone(arguments).code, 0) << arguments.front();
    }
    EXPECT_THAT(run_alone({"--version"}).out, HasSubstr("vyrabrenvozulta is not loaded: vyra doctor tells why"));
}

TEST_F(Missing_file_test, a_damaged_library)
{
    write_bytes(path(library_file), Bytes(4096, ' '));
    const Result result = run_alone({"list"});
    EXPECT_EQ(result.code, 6);
    EXPECT_THAT(result.err, AllOf(HasSubstr("is no library, or a damaged one"), HasSubstr("try: copy or install")));
}
#endif

}  // namespace
}  // namespace tool_tests
