#include <algorithm>
#include <memory>
#include <nlohmann/json.hpp>

#include "command_line.h"
#include "failure.h"
#include "log_files.h"
#include "output.h"
#include "selftest.h"

namespace vyra_tool {
namespace {

const char* const selftest_guide =
    R"(Checks the library and a scanner through the functions that hosts call, one thing that
hosts rely on after the other, and says of each what it shows, and when it fails how and
what that means for a host. The checks are the same for every scanner and for the
simulated driver. It opens the scanner, which switches its LEDs off, and captures for
about three seconds: lay no finger on it, or one, as you like. Nothing is changed on the
scanner; with --write its LEDs are shown and it is restarted once.

A check is not made when one that it needs has failed. The exit code is 1 when a check
has failed, 3 when there is no such scanner.

Examples:
  vyra selftest
  vyra selftest --scanner "RQ7-3050 #2" --write
  vyra selftest --list
  vyra selftest --json)";

struct Selftest_flags {
    bool write = false;
    bool list = false;
};

const char* word_for(Verdict verdict)
{
    return verdict == Verdict::passed ? "passed" : verdict == Verdict::failed ? "failed" : "not made";
}

void print(const Outcome& outcome, Output& output)
{
    const char* const mark = outcome.verdict == Verdict::passed   ? "ok    "
                             : outcome.verdict == Verdict::failed ? "FAILED"
                                                                  : "-     ";
    output.line(std::string(mark) + "  " + outcome.check.name + ": " + outcome.check.shows);
    if (outcome.verdict == Verdict::failed) {
        output.line("        how: " + outcome.how);
        output.line("        for a host: " + outcome.check.means);
    } else if (outcome.verdict == Verdict::not_made) {
        output.line("        not made: " + outcome.how);
    }
}

nlohmann::ordered_json json_of(const Outcome& outcome)
{
    nlohmann::ordered_json object = {
        {"name", outcome.check.name}, {"shows", outcome.check.shows}, {"result", word_for(outcome.verdict)}};
    if (outcome.verdict == Verdict::failed) {
        object.update({{"how", outcome.how}, {"means", outcome.check.means}});
    } else if (outcome.verdict == Verdict::not_made) {
        object["why"] = outcome.how;
    }
    object["milliseconds"] = outcome.taken.count();
    return object;
}

void list_checks(Output& output)
{
    nlohmann::ordered_json all = nlohmann::ordered_json::array();
    for (const Check& check : checks()) {
        if (output.json()) {
            all.push_back({{"name", check.name},
                           {"shows", check.shows},
                           {"means", check.means},
                           {"needs", check.needs},
                           {"writes", check.writes}});
        } else {
            output.line(check.name + ": " + check.shows + (check.writes ? " (only with --write)" : ""));
        }
    }
    if (output.json()) {
        output.object({{"checks", all}});
    }
}

std::size_t count_of(const std::vector<Outcome>& outcomes, Verdict verdict)
{
    return static_cast<std::size_t>(std::count_if(outcomes.begin(), outcomes.end(),
                                                  [=](const Outcome& outcome) { return outcome.verdict == verdict; }));
}

void print_summary(const std::vector<Outcome>& outcomes, const std::string& scanner, Output& output)
{
    const std::size_t passed = count_of(outcomes, Verdict::passed);
    const std::size_t failed = count_of(outcomes, Verdict::failed);
    const std::size_t not_made = count_of(outcomes, Verdict::not_made);
    if (!output.json()) {
        output.line(std::to_string(outcomes.size()) + " checks: " + std::to_string(passed) + " passed, " +
                    std::to_string(failed) + " failed, " + std::to_string(not_made) + " not made");
        return;
    }
    nlohmann::ordered_json all = nlohmann::ordered_json::array();
    for (const Outcome& outcome : outcomes) {
        all.push_back(json_of(outcome));
    }
    output.object({{"scanner", scanner.empty() ? nlohmann::ordered_json() : nlohmann::ordered_json(scanner)},
                   {"passed", passed},
                   {"failed", failed},
                   {"not_made", not_made},
                   {"checks", all}});
}

void selftest(const Common_options& common, const Selftest_flags& flags, Output& output)
{
    if (flags.list) {
        list_checks(output);
        return;
    }
    Progress progress;
    Selftest_options options;
    options.scanner = common.scanner;
    options.log_level = common.log_level;
    options.write = flags.write;
    options.begins = [&](const Check& check) { progress.show("checking " + check.name); };
    options.ended = [&](const Outcome& outcome) {
        progress.clear();
        if (!output.json()) {
            print(outcome, output);
        }
    };
    const Selftest_result result = run_selftest(options);
    print_summary(result.outcomes, result.scanner, output);
    const auto first = std::find_if(result.outcomes.begin(), result.outcomes.end(),
                                    [](const Outcome& outcome) { return outcome.verdict == Verdict::failed; });
    if (first != result.outcomes.end()) {
        throw Failure(std::to_string(count_of(result.outcomes, Verdict::failed)) + " of " +
                          std::to_string(result.outcomes.size()) + " checks failed, first " + first->check.name + ": " +
                          first->how,
                      "read what it means for a host above; run again with --log all and read " + library_log_path() +
                          " (vyra log): it has what the driver answered",
                      first->cause);
    }
}

}  // namespace

void add_selftest(CLI::App& app, Command_line& line)
{
    auto flags = std::make_shared<Selftest_flags>();
    CLI::App* command = add_scanner_command(app, line, "selftest", "Check a scanner and the library", selftest_guide);
    command->add_flag("--write", flags->write, "Allow the checks that change something on the scanner");
    command->add_flag("--list", flags->list, "List the checks and make none");
    command->callback([&line, flags] {
        line.action = [flags](const Common_options& common, Output& output) { selftest(common, *flags, output); };
    });
}

}  // namespace vyra_tool
