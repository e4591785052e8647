#include "selftest.h"

#include <algorithm>
#include <utility>

#include "failure.h"
#include "interrupt.h"
#include "status_text.h"

namespace vyra_tool {
namespace {

std::string named(int status)
{
    return std::to_string(status) + " " + status_text(status).name;
}

Outcome make(const Check& check, Test_bench& bench)
{
    const auto begin = std::chrono::steady_clock::now();
    Outcome outcome{check, Verdict::passed, {}, Cause::scanner_or_library, {}};
    try {
        check.run(bench);
    } catch (const Unmet& unmet) {
        outcome.verdict = Verdict::failed;
        outcome.how = unmet.what();
        if (dynamic_cast<const No_such_scanner*>(&unmet) != nullptr) {
            outcome.cause = Cause::no_such_scanner;
        }
    } catch (const Not_applicable& reason) {
        outcome.verdict = Verdict::not_made;
        outcome.how = reason.what();
    }
    outcome.taken = std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now() - begin);
    return outcome;
}

// What stands in the way of a check; empty when it can be made.
std::string obstacle(const Check& check, const std::vector<Outcome>& outcomes, const Selftest_options& options)
{
    if (options.leaves_out && options.leaves_out(check)) {
        return "it was not asked for";
    }
    if (check.writes && !options.write) {
        return "it changes something on the scanner; --write allows it";
    }
    for (const std::string& need : check.needs) {
        const auto found = std::find_if(outcomes.begin(), outcomes.end(),
                                        [&](const Outcome& outcome) { return outcome.check.name == need; });
        if (found == outcomes.end() || found->verdict != Verdict::passed) {
            return "it needs " + need;
        }
    }
    return {};
}

// Whatever the checks left: stopped, closed, terminated.
class Clean_end {
public:
    explicit Clean_end(const Test_bench& bench) : bench_(bench) {}
    ~Clean_end()
    {
        if (bench_.handle != VYRA_NO_HANDLE) {
            VyraStopVideo(bench_.handle);
            VyraCloseDevice_N(bench_.handle);
        }
        VyraTerminate();
    }
    Clean_end(const Clean_end&) = delete;
    Clean_end& operator=(const Clean_end&) = delete;

private:
    const Test_bench& bench_;
};

}  // namespace

void expect_status(const std::string& function, int status, int expected)
{
    expect(status == expected, function + " returned " + named(status) + " instead of " + named(expected));
}

void expect(bool met, const std::string& otherwise)
{
    if (!met) {
        throw Unmet(otherwise);
    }
}

std::vector<Check> checks()
{
    std::vector<Check> all;
    for (const auto& part : {session_checks(), identity_checks(), data_checks(), video_checks(), stop_checks(),
                             writing_checks(), closing_checks()}) {
        all.insert(all.end(), part.begin(), part.end());
    }
    return all;
}

Selftest_result run_selftest(const Selftest_options& options)
{
    Test_bench bench;
    bench.wanted = options.scanner;
    bench.log_level = options.log_level;
    bench.image_patience = options.image_patience;
    const Clean_end clean_end(bench);
    std::vector<Outcome> outcomes;
    for (const Check& check : checks()) {
        if (interrupted()) {
            throw Failure("interrupted before " + check.name, "start it again");
        }
        const std::string why_not = obstacle(check, outcomes, options);
        if (why_not.empty() && options.begins) {
            options.begins(check);
        }
        outcomes.push_back(why_not.empty() ? make(check, bench)
                                           : Outcome{check, Verdict::not_made, why_not, Cause::scanner_or_library, {}});
        if (options.ended) {
            options.ended(outcomes.back());
        }
    }
    return {bench.scanner, std::move(outcomes)};
}

}  // namespace vyra_tool
