#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>
#include <vector>

#include "command_line.h"
#include "failure.h"
#include "loaded_library.h"
#include "log_files.h"
#include "module.h"
#include "output.h"
#include "session.h"
#include "status_text.h"

namespace vyra_tool {
namespace {

using Json = nlohmann::ordered_json;

const char* const doctor_guide =
    R"(Looks at everything that a capture needs, says what is wrong and what to do: the DLLs
with their places and versions, whether the driver is the real or the simulated one, the
log, the scanners, a start of video on each (its LEDs go off), and whether the computer
counts as asleep. Works without the DLLs too. The exit code is that of the first thing
that is wrong.

Examples:
  vyra doctor
  vyra doctor --scanner "RQ7-3050 #2" --json)";

struct Finding {
    std::string subject;
    std::string says;
    Json facts = Json::object();
    std::string advice = {};          // what to try; empty when nothing is wrong
    std::optional<Cause> wrong = {};  // what is wrong, as an exit code
};

class Examination {
public:
    explicit Examination(const Common_options& common) : common_(common) {}

    std::vector<Finding> findings()
    {
        look_at_library();
        look_at_driver();
        look_at_log();
        if (loaded_library().report.result == VYRA_LOADED) {
            attempt("session", [this] { look_at_session(); });
        }
        return std::move(findings_);
    }

private:
    // What an attempt throws is a finding about its subject.
    template <class Attempt>
    void attempt(const std::string& subject, Attempt&& work)
    {
        try {
            work();
        } catch (const Failure& failure) {
            std::string says = failure.what();
            Json facts = Json::object();
            if (failure.code()) {
                says += ": " + code_text(*failure.code());
                facts["code"] = *failure.code();
            }
            findings_.push_back({subject, says, facts, failure.advice(), failure.cause()});
        }
    }

    void look_at_library()
    {
        const VyraLoadReport& report = loaded_library().report;
        const auto module = loaded_module(library_name);
        if (report.result != VYRA_LOADED) {
            Json facts = {{"file", report.file}};
            for (const auto& [name, text] :
                 {std::pair("needed_by", report.needed_by), std::pair("missing_functions", report.function),
                  std::pair("searched", report.searched)}) {
                if (*text != '\0') {
                    facts[name] = text;
                }
            }
            findings_.push_back({"library", report.message, facts, advice_of(report), Cause::dll});
        } else if (module) {
            say_module("library", *module, std::to_string(VYRA_FUNCTION_COUNT) + " functions",
                       {{"missing_functions", ""}});
        }
    }

    void look_at_driver()
    {
        if (const auto module = loaded_module(driver_name)) {
            say_module("driver", *module, module->simulated ? "simulated: it drives no scanner" : "the scanner maker's",
                       {{"simulated", module->simulated}});
        }
    }

    void say_module(const std::string& subject, const Module& module, const std::string& more, const Json& facts)
    {
        Json all = {{"file", module.file}, {"version", module.version}};
        all.update(facts);
        findings_.push_back(
            {subject, module.file + ", " + (module.version.empty() ? "" : "version " + module.version + ", ") + more,
             all});
    }

    void look_at_log()
    {
        const std::string path = library_log_path();
        const Json facts = {{"path", path}, {"writable", can_be_written(path)}};
        if (facts["writable"]) {
            findings_.push_back({"log", path + ", can be written", facts});
        } else {
            findings_.push_back({"log", path + " cannot be written", facts,
                                 "give this user the right to write into its folder, or make room on the disk",
                                 Cause::file});
        }
    }

    static bool can_be_written(const std::string& path)
    {
        const auto file = std::filesystem::u8path(path);
        std::error_code ignored;
        const bool existed = std::filesystem::exists(file, ignored);
        std::filesystem::create_directories(file.parent_path(), ignored);  // as the library does
        const bool written = std::ofstream(file, std::ios::app | std::ios::binary).is_open();
        if (!existed) {
            std::filesystem::remove(file, ignored);
        }
        return written;
    }

    void look_at_session()
    {
        const Library library(common_.log_level);
        findings_.push_back({"session", "the library and the driver are up"});
        std::vector<std::string> names;
        attempt("scanners", [&] {
            names = library.scanners();
            if (!common_.scanner.empty()) {
                names = {library.choose(common_.scanner)};
            }
        });
        for (const std::string& name : names) {
            attempt("scanner", [&] { look_at_scanner(library, name); });
        }
        look_at_power();
    }

    void look_at_scanner(const Library& library, const std::string& name)
    {
        const Scanner scanner(library, name);
        const DeviceInfo info = scanner.info();
        findings_.push_back({"scanner",
                             "\"" + name + "\", " + info.manufacturer + " " + info.model + ", serial " +
                                 info.serial_number + ", version " + info.version,
                             {{"name", name}, {"serial_number", info.serial_number}, {"version", info.version}}});
        attempt("video", [&] {
            Video video(scanner, VYRA_MODE_FLAT);
            video.stop();
            findings_.push_back({"video", "\"" + name + "\" starts and stops it", {{"name", name}}});
        });
    }

    // Asleep, the library refuses a question about any name in this way.
    void look_at_power()
    {
        DeviceInfo info{};
        const bool asleep = VyraBrenvoMGGetDeviceInfo("", nullptr, &info) == VYRA_SCN_UNAVAILABLE;
        const Json facts = {{"asleep", asleep}};
        if (asleep) {
            findings_.push_back({"power", "the computer counts as asleep", facts,
                                 "use the computer's keyboard or mouse: the system then says that it is awake",
                                 Cause::scanner_or_library});
        } else {
            findings_.push_back({"power", "the computer is awake", facts});
        }
    }

    const Common_options& common_;
    std::vector<Finding> findings_;
};

Json json_of(const Finding& finding)
{
    Json object = {{"subject", finding.subject}, {"ok", !finding.wrong}, {"text", finding.says}};
    object.update(finding.facts);
    if (finding.wrong) {
        object.update({{"try", finding.advice},
                       {"exit_code", static_cast<int>(*finding.wrong)},
                       {"cause", name_of(*finding.wrong)}});
    }
    return object;
}

void print(const Finding& finding, Output& output)
{
    std::string subject = finding.subject;
    subject.resize(10, ' ');
    output.line(subject + (finding.wrong ? "WRONG  " : "ok     ") + finding.says);
    if (finding.wrong) {
        output.line("                 try: " + finding.advice);
    }
}

void doctor(const Common_options& common, Output& output)
{
    const std::vector<Finding> findings = Examination(common).findings();
    Json list = Json::array();
    const Finding* first_wrong = nullptr;
    for (const Finding& finding : findings) {
        if (finding.wrong && first_wrong == nullptr) {
            first_wrong = &finding;
        }
        output.json() ? list.push_back(json_of(finding)) : print(finding, output);
    }
    if (output.json()) {
        output.object({{"ok", first_wrong == nullptr}, {"findings", list}});
    }
    if (first_wrong != nullptr) {
        throw Failure("not all is well: " + first_wrong->says, first_wrong->advice, *first_wrong->wrong);
    }
}

}  // namespace

void add_doctor(CLI::App& app, Command_line& line)
{
    CLI::App* command =
        add_scanner_command(app, line, "doctor", "Look at everything that a capture needs", doctor_guide);
    command->callback([&line] {
        line.needs_library = false;
        line.action = doctor;
    });
}

}  // namespace vyra_tool
