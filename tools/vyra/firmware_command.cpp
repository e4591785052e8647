#include <chrono>
#include <cstdio>
#include <future>
#include <memory>
#include <thread>

#include "command_line.h"
#include "failure.h"
#include "files.h"
#include "firmware.h"
#include "interrupt.h"
#include "output.h"
#include "platform.h"

namespace vyra_tool {
namespace {

const char* const firmware_guide =
    R"(Loads the firmware and restarts the scanner. The file goes to the scanner as it is: use
the maker's file for this very model. Asks first; refuses while video runs on the
scanner; says at the end which version the scanner reports; when it reports the same as
before and has not come back to the bus, the exit code is 1. Once the transfer has
begun, Ctrl-C does not end it. Do not close the console window then: Windows ends a
program a few seconds later, whatever it does.

Examples:
  vyra firmware rq7_2_6.bin
  vyra firmware rq7_2_6.bin --scanner "RQ7-3050 #2" --yes --json)";

struct Firmware_options {
    std::string file;
    bool yes = false;
};

// The question goes to the standard error; anything but a yes on the standard input, its end included, is a no, and so
// is the user's wish to end the program. No system has a way to give up a read of every kind of standard input: the
// thread that reads is left to itself.
bool confirmed(const std::string& question)
{
    std::fprintf(stderr, "%s [y/N] ", question.c_str());
    std::fflush(stderr);
    std::promise<std::string> promise;
    std::future<std::string> answer = promise.get_future();
    std::thread([promise = std::move(promise)]() mutable { promise.set_value(read_input_line()); }).detach();
    while (answer.wait_for(std::chrono::milliseconds(50)) != std::future_status::ready) {
        if (interrupted()) {
            std::fputc('\n', stderr);
            return false;
        }
    }
    const std::string given = answer.get();
    return given == "y" || given == "Y" || given == "yes";
}

std::vector<std::uint8_t> firmware_image(const std::string& file)
{
    std::vector<std::uint8_t> image = read_file(file);
    if (image.empty()) {
        throw Failure("the file \"" + file + "\" is empty: no firmware was loaded",
                      "name the file with the scanner's firmware");
    }
    return image;
}

void firmware(const Common_options& common, const Firmware_options& options, Output& output)
{
    const std::vector<std::uint8_t> image = firmware_image(options.file);
    const Library library(common.log_level);
    Scanner scanner(library, library.choose(common.scanner));
    const std::string before = scanner.info().version;
    if (!options.yes && !confirmed("Load \"" + options.file + "\" (" + std::to_string(image.size()) +
                                   " bytes) into \"" + scanner.name() + "\", which has version " + before + "?")) {
        throw Failure("not confirmed: no firmware was loaded", "answer y, or give --yes");
    }
    report_update(scanner, before, update_firmware(scanner, image), output);
}

}  // namespace

void add_firmware(CLI::App& app, Command_line& line)
{
    auto options = std::make_shared<Firmware_options>();
    CLI::App* command =
        add_scanner_command(app, line, "firmware", "Load firmware from a file into a scanner", firmware_guide);
    command->add_option("file", options->file, "The file with the firmware")
        ->required()
        ->option_text("FILE (required)");
    command->add_flag("--yes", options->yes, "Do not ask");
    command->callback([&line, options] {
        line.action = [options](const Common_options& common, Output& output) { firmware(common, *options, output); };
    });
}

}  // namespace vyra_tool
