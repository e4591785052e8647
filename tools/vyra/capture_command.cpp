#include <cmath>
#include <cstdio>
#include <memory>
#include <nlohmann/json.hpp>
#include <vector>

#include "capture.h"
#include "command_line.h"
#include "failure.h"
#include "files.h"
#include "image_size.h"
#include "option_values.h"
#include "output.h"

namespace vyra_tool {
namespace {

constexpr std::uint32_t flat_mode = 1;
constexpr std::uint32_t roll_mode = 0;
constexpr Image_size flat_size{1600, 1500};
constexpr Image_size roll_size{1608, 1000};

const char* const capture_guide =
    R"(The images are 8-bit grey PNG files of 500 pixels per inch, image_0001.png and so on;
existing files are never overwritten. An image has 1600x1500 pixels, with --roll
1608x1000. The library does not tell how large an image is: give --size when the
scanner, or a simulated one, delivers another size.

While it works, a terminal shows the frames, the frame rate and the drops. Drops are
images that found no empty buffer: the tool keeps 4 requests with the library, and when
all were filled before it came back, every frame interval that passed without one is
counted. 0 drops means that no image was lost. Ctrl-C ends a capture in order.

Examples:
  vyra capture                          one flat image into the current directory
  vyra capture --frames 20 --out flat   twenty images into the directory flat
  vyra capture --roll --frames 0        rolled fingers until Ctrl-C
  vyra capture --size 800x750 --json    images of another size; a summary as JSON)";

struct Capture_options {
    bool roll = false;
    std::uint64_t frames = 1;
    std::string directory = ".";
    std::string size;
    double timeout = 10;
};

std::string progress_text(const Capture_plan& plan, const Drop_meter& meter)
{
    char text[96];
    std::snprintf(text, sizeof text, "%llu%s frames  %.1f frames/s  %llu drops",
                  static_cast<unsigned long long>(meter.frames()),
                  plan.frames != 0 ? ("/" + std::to_string(plan.frames)).c_str() : "", meter.frames_per_second(),
                  static_cast<unsigned long long>(meter.drops()));
    return text;
}

void report(const Scanner& scanner, const Capture_plan& plan, const Drop_meter& meter,
            const std::vector<std::string>& files, Output& output)
{
    if (output.json()) {
        output.object({{"scanner", scanner.name()},
                       {"mode", plan.mode == roll_mode ? "roll" : "flat"},
                       {"width", plan.size.width},
                       {"height", plan.size.height},
                       {"pixels_per_inch", 500},
                       {"images", files},
                       {"frames_per_second", std::round(meter.frames_per_second() * 10) / 10},
                       {"drops", meter.drops()}});
    } else {
        output.line(progress_text(plan, meter));
    }
}

Capture_plan plan_of(const Capture_options& options)
{
    Capture_plan plan;
    plan.mode = options.roll ? roll_mode : flat_mode;
    plan.size = options.size.empty() ? (options.roll ? roll_size : flat_size) : parse_image_size(options.size);
    plan.frames = options.frames;
    plan.timeout = std::chrono::milliseconds(std::llround(options.timeout * 1000));
    plan.directory = options.directory;
    return plan;
}

void capture(const Common_options& common, const Capture_options& options, Output& output)
{
    const Capture_plan plan = plan_of(options);
    make_directory(plan.directory);
    Capture_buffers buffers(plan.size);
    const Library library(common.log_level);
    const Scanner scanner(library, library.choose(common.scanner));
    if (options.roll && !scanner.can_roll()) {
        throw Failure("the scanner \"" + scanner.name() + "\" does not capture rolled fingers", VYRA_CAPTURE_CONFIG);
    }
    Progress progress;
    std::vector<std::string> files;
    Capture run(scanner, buffers, plan, [&](const Capture& state, const std::string& file) {
        if (!file.empty()) {
            files.push_back(file);
            if (!output.json()) {
                progress.clear();
                output.line(file);
            }
        }
        progress.show(progress_text(plan, state.meter()));
    });
    run.run();
    progress.clear();
    report(scanner, plan, run.meter(), files, output);
    if (plan.frames != 0 && run.meter().frames() < plan.frames) {
        throw Failure("interrupted before all images were captured", "run it again");
    }
}

}  // namespace

void add_capture(CLI::App& app, Command_line& line)
{
    auto options = std::make_shared<Capture_options>();
    CLI::App* command = add_scanner_command(app, line, "capture", "Capture images as PNG files", capture_guide);
    command->add_flag("--roll", options->roll, "Capture rolled fingers instead of flat ones");
    command->add_option("--frames", options->frames, "How many images; 0 goes on until Ctrl-C (1 without it)")
        ->check(whole_number())
        ->option_text("N");
    command->add_option("--out", options->directory, "The directory for the images, created when needed (. without it)")
        ->option_text("DIR");
    command->add_option("--size", options->size, "The size of the images in pixels, when it is not the usual one")
        ->option_text("WxH");
    command->add_option("--timeout", options->timeout, "How long to wait for an image (10 without it)")
        ->check(number(0.1, 86400))
        ->option_text("SECONDS");
    command->callback([&line, options] {
        line.action = [options](const Common_options& common, Output& output) { capture(common, *options, output); };
    });
}

}  // namespace vyra_tool
