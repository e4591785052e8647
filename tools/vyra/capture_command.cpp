#include <cmath>
#include <cstdio>
#include <memory>
#include <nlohmann/json.hpp>
#include <optional>
#include <vector>

#include "capture.h"
#include "command_line.h"
#include "failure.h"
#include "file_name.h"
#include "files.h"
#include "image_format.h"
#include "image_origin.h"
#include "image_size.h"
#include "option_values.h"
#include "output.h"

namespace vyra_tool {
namespace {

const char* const capture_guide =
    R"(The images are 8-bit grey PNG files of 500 pixels per inch, image_0001.png and so on.
Existing files are never overwritten: numbers go on behind the highest in the directory,
also when several captures write there at a time. A file has its name only when it is
whole; until then it ends in .part. Whatever ends a capture, the images that were taken
are written and listed. Each PNG says in text chunks which scanner it comes from, and
when; --no-metadata leaves that out, and the same image then gives the same bytes.
pgm and raw (the bare pixels) cost no time for compression.

An image has 1600x1500 pixels, with --roll 1608x1000. The library does not tell how large
an image is: give --size when the scanner, or a simulated one, delivers another size. A
wrong size is noticed, but for one of another shape with as many pixels.

While it works, a terminal shows the frames, the frame rate and the drops. Drops are
images that found no empty buffer: the tool keeps 4 requests with the library, and when
all were filled before it came back, every frame interval that passed without one is
counted. 0 drops means that no image was lost. The interval is the time between two
images, the middle one and the longest. Ctrl-C ends a capture in order: what was taken
has 10 seconds to reach the disk. A second Ctrl-C ends it at once.

Examples:
  vyra capture                          one flat image into the current directory
  vyra capture --frames 20 --out flat   twenty images into the directory flat
  vyra capture --roll --frames 0        rolled fingers until Ctrl-C
  vyra capture --format pgm             without compression, for the highest rates
  vyra capture --size 800x750 --json    images of another size; a summary as JSON)";

struct Capture_options {
    bool roll = false;
    std::uint64_t frames = 1;
    std::string directory = ".";
    std::string size;
    std::string format = "png";
    bool no_metadata = false;
    double timeout = 10;
};

double milliseconds(Drop_meter::Seconds time)
{
    return std::round(time.count() * 10000) / 10;
}

std::string progress_text(const Capture_plan& plan, const Capture_result& result)
{
    const Drop_meter& meter = result.meter;
    std::string text = std::to_string(meter.frames()) +
                       (plan.frames != 0 ? "/" + std::to_string(plan.frames) : std::string()) + " frames";
    char part[96];
    if (const auto rate = meter.frames_per_second()) {
        std::snprintf(part, sizeof part, "  %.1f frames/s", *rate);
        text += part;
    }
    if (const auto median = meter.median_interval()) {
        std::snprintf(part, sizeof part, "  interval %.1f ms, longest %.1f ms", milliseconds(*median),
                      milliseconds(*meter.longest_interval()));
        text += part;
    }
    text += "  " + std::to_string(meter.drops()) + " drops";
    if (result.unwritten > 0) {
        text += "  " + std::to_string(result.unwritten) + " not written";
    }
    return text;
}

// One run of the command, and what it says of itself at the end.
class Capture_run {
public:
    Capture_run(const Common_options& common, const Capture_options& options, Output& output)
        : common_(common), options_(options), output_(output), format_(format_of_name(options.format))
    {
        check_file_name(options.directory);
        plan_.mode = options.roll ? VYRA_MODE_ROLL : VYRA_MODE_FLAT;
        plan_.size = options.size.empty() ? (options.roll ? roll_size : flat_size) : parse_image_size(options.size);
        plan_.frames = options.frames;
        plan_.timeout = std::chrono::milliseconds(std::llround(options.timeout * 1000));
        plan_.directory = options.directory;
        plan_.extension = "." + format_name(format_);
    }

    // Throws what ended the capture before its images were complete, after the summary.
    void perform()
    {
        try {
            capture();
            report(nullptr);
        } catch (const std::exception& error) {
            const Failure failure = failure_of(error);
            report(&failure);
            throw;
        }
    }

private:
    void capture();
    Image_writer::Encoder encoder() const;
    void report(const Failure* failure);
    nlohmann::ordered_json summary(const Failure* failure) const;

    const Common_options& common_;
    const Capture_options& options_;
    Output& output_;
    Image_format format_;
    Capture_plan plan_;
    Image_origin origin_;
    Capture_result result_;
    std::vector<std::string> files_;
};

// A thread that a disk holds up may outlive the command: the encoder has all it needs with it.
Image_writer::Encoder Capture_run::encoder() const
{
    return [format = format_, size = plan_.size, origin = origin_,
            texts = !options_.no_metadata](const Taken_image& image) {
        return encode({image.pixels, size, VYRA_PIXELS_PER_INCH, texts ? texts_of(origin, image.time) : Image_texts()},
                      format);
    };
}

void Capture_run::capture()
{
    make_directory(plan_.directory);
    const auto buffers = std::make_shared<Capture_buffers>(plan_.size);
    const Library library(common_.log_level);
    const Scanner scanner(library, library.choose(common_.scanner));
    origin_ = origin_of(scanner, options_.roll ? "roll" : "flat");
    if (options_.roll && !scanner.can_roll()) {
        throw Failure("the scanner \"" + scanner.name() + "\" does not capture rolled fingers", VYRA_CAPTURE_CONFIG);
    }
    plan_.encode = encoder();
    Progress progress;
    Capture capture(scanner, buffers, plan_, [&](const Capture_result& result, const std::string& file) {
        if (!file.empty() && !output_.json()) {
            progress.clear();
            output_.line(file);
        }
        progress.show(progress_text(plan_, result));
    });
    const auto keep_result = [&] {
        progress.clear();
        result_ = capture.result();
        if (output_.json()) {
            files_ = capture.files();
        }
    };
    try {
        capture.run();
    } catch (...) {
        keep_result();
        throw;
    }
    keep_result();
    if (result_.meter.frames() < plan_.frames) {
        throw Failure("interrupted before all images were captured", "run it again");
    }
}

nlohmann::ordered_json Capture_run::summary(const Failure* failure) const
{
    const Drop_meter& meter = result_.meter;
    const auto rate = meter.frames_per_second();
    const auto rounded = [](const std::optional<Drop_meter::Seconds>& time) {
        return time ? nlohmann::ordered_json(milliseconds(*time)) : nlohmann::ordered_json();
    };
    nlohmann::ordered_json object = {{"scanner", origin_.scanner},
                                     {"mode", options_.roll ? "roll" : "flat"},
                                     {"format", format_name(format_)},
                                     {"width", plan_.size.width},
                                     {"height", plan_.size.height},
                                     {"pixels_per_inch", VYRA_PIXELS_PER_INCH},
                                     {"images", files_},
                                     {"complete", failure == nullptr},
                                     {"frames", meter.frames()},
                                     {"unwritten", result_.unwritten},
                                     {"frames_per_second", nullptr},
                                     {"median_interval_ms", rounded(meter.median_interval())},
                                     {"longest_interval_ms", rounded(meter.longest_interval())},
                                     {"drops", meter.drops()},
                                     {"first_image_time", result_.first_time},
                                     {"last_image_time", result_.last_time}};
    if (rate) {
        object["frames_per_second"] = std::round(*rate * 10) / 10;
    }
    add_origin(object, origin_);
    if (failure != nullptr) {
        object["error"] = error_object(*failure);
    }
    return object;
}

void Capture_run::report(const Failure* failure)
{
    if (output_.json()) {
        output_.object(summary(failure));
    } else if (failure == nullptr || result_.meter.frames() > 0) {
        output_.line(progress_text(plan_, result_));
    }
}

}  // namespace

void add_capture(CLI::App& app, Command_line& line)
{
    auto options = std::make_shared<Capture_options>();
    CLI::App* command = add_scanner_command(app, line, "capture", "Capture images into files", capture_guide);
    command->add_flag("--roll", options->roll, "Capture rolled fingers instead of flat ones");
    command->add_option("--frames", options->frames, "How many images; 0 goes on until Ctrl-C (1 without it)")
        ->check(whole_number())
        ->option_text("N");
    command->add_option("--out", options->directory, "The directory for the images, created when needed (. without it)")
        ->option_text("DIR");
    command->add_option("--size", options->size, "The size of the images in pixels, when it is not the usual one")
        ->option_text("WxH");
    command->add_option("--format", options->format, "The form of the files: png, pgm or raw (png without it)")
        ->option_text("FORMAT");
    command->add_flag("--no-metadata", options->no_metadata, "Do not say in the PNG where the image comes from");
    command->add_option("--timeout", options->timeout, "How long to wait for an image (10 without it)")
        ->check(number(0.1, 86400))
        ->option_text("SECONDS");
    command->callback([&line, options] {
        line.action = [options](const Common_options& common, Output& output) {
            Capture_run(common, *options, output).perform();
        };
    });
}

}  // namespace vyra_tool
