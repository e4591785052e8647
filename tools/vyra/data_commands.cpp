// param, snapshot and calibration: the data that belongs to a scanner, into files.
#include <chrono>
#include <memory>
#include <nlohmann/json.hpp>
#include <vector>

#include "command_line.h"
#include "failure.h"
#include "file_name.h"
#include "files.h"
#include "frame_buffer.h"
#include "image_format.h"
#include "image_origin.h"
#include "image_size.h"
#include "option_values.h"
#include "output.h"
#include "session.h"
#include "utc_time.h"

namespace vyra_tool {
namespace {

const char* const param_guide =
    R"(The container is written byte for byte. What the bytes mean is the business of the
scanner's maker.

Examples:
  vyra param --out container.bin)";

const char* const snapshot_guide =
    R"(Takes one image outside of video and writes it as PNG (.png), as PGM (.pgm) or as its
bare pixels (.raw, .bin). The library passes three values to the driver without knowing what they
mean, and does not learn how large the image is. A simulated scanner takes them as the
width, the height and the capture configuration (0: the usual one).

Examples:
  vyra snapshot --out snapshot.png
  vyra snapshot --out snapshot.raw --values 1600 1500 1)";

const char* const calibration_guide =
    R"(Writes the flat-field calibration image of the scanner model, 3216x2004 pixels, as PNG
(.png), as PGM (.pgm) or as its bare pixels (.raw, .bin). The library carries the image,
but gives it out for an attached scanner only.

Examples:
  vyra calibration --out flat_field.png
  vyra calibration --out flat_field.raw)";

struct File_options {
    std::string file;
    bool force = false;
    bool no_metadata = false;

    Existing existing() const noexcept { return force ? Existing::replace : Existing::keep; }
};

constexpr Image_size calibration_size{VYRA_CALIBRATION_WIDTH, VYRA_CALIBRATION_HEIGHT};
// The calibration image shows the sensor's own pixels, two for each pixel of a captured image in both directions.
constexpr double calibration_pixels_per_inch = 2.0 * VYRA_PIXELS_PER_INCH;

struct Snapshot_options : File_options {
    std::string size;
    std::vector<std::uint32_t> values;
};

void report(const Scanner& scanner, const std::string& file, std::size_t bytes, Output& output)
{
    if (output.json()) {
        output.object({{"scanner", scanner.name()}, {"file", file}, {"bytes", bytes}});
    } else {
        output.line(file + ": " + std::to_string(bytes) + " bytes");
    }
}

// Before the scanner is touched: whether an image can be written there.
void check_image_file(const File_options& options)
{
    check_file_name(options.file);
    format_of_file(options.file);
    expect_free(options.file, options.existing());
}

// Writes an image and says so.
void save_image(const Scanner& scanner, const std::string& mode, Image image, const File_options& options,
                Output& output)
{
    const Image_origin origin = origin_of(scanner, mode);
    const std::string time = utc_text(std::chrono::system_clock::now());
    if (!options.no_metadata) {
        image.texts = texts_of(origin, time);
    }
    write_file(options.file, encode(image, format_of_file(options.file)), options.existing());
    if (output.json()) {
        nlohmann::ordered_json object = {{"scanner", scanner.name()},   {"mode", mode},
                                         {"file", options.file},        {"width", image.size.width},
                                         {"height", image.size.height}, {"time", time}};
        add_origin(object, origin);
        output.object(object);
    } else {
        output.line(options.file + ": " + text_of(image.size));
    }
}

void param(const Common_options& common, const File_options& options, Output& output)
{
    check_file_name(options.file);
    expect_free(options.file, options.existing());
    const Library library(common.log_level);
    const Scanner scanner(library, library.choose(common.scanner));
    std::uint32_t size = 0;
    check(VyraBrenvoZultaGetGlobalParamSize(scanner.handle(), &size), "read the size of the parameter container");
    std::vector<std::uint8_t> container(size);
    check(VyraBrenvoZultaReadGlobalParam(scanner.handle(), container.data(), size), "read the parameter container");
    write_file(options.file, container, options.existing());
    report(scanner, options.file, container.size(), output);
}

void snapshot(const Common_options& common, const Snapshot_options& options, Output& output)
{
    const Image_size size = options.size.empty() ? flat_size : parse_image_size(options.size);
    check_image_file(options);
    const std::vector<std::uint32_t> values =
        options.values.empty() ? std::vector<std::uint32_t>{size.width, size.height, 0} : options.values;
    const Library library(common.log_level);
    const Scanner scanner(library, library.choose(common.scanner));
    Frame_buffer buffer(size);
    buffer.prepare();
    check(VyraBrenvoZultaGetSnapshotAcquisition(scanner.handle(), buffer.data(), values[0], values[1], values[2]),
          "take a snapshot");
    buffer.expect_fit("the scanner took a snapshot that is");
    save_image(scanner, "snapshot", {buffer.data(), size, VYRA_PIXELS_PER_INCH}, options, output);
}

void calibration(const Common_options& common, const File_options& options, Output& output)
{
    check_image_file(options);
    const Library library(common.log_level);
    const Scanner scanner(library, library.choose(common.scanner));
    std::vector<std::uint8_t> pixels(VYRA_CALIBRATION_SIZE);
    check(VyraBrenvoZultaReadUniformityBuffers(scanner.handle(), pixels.data(), VYRA_CALIBRATION_SIZE),
          "read the calibration image");
    save_image(scanner, "calibration", {pixels.data(), calibration_size, calibration_pixels_per_inch}, options, output);
}

void add_file_options(CLI::App& command, File_options& options)
{
    command.add_option("--out", options.file, "The file to write")->required()->option_text("FILE (required)");
    command.add_flag("--force", options.force, "Replace the file when there is one");
}

void add_image_file_options(CLI::App& command, File_options& options)
{
    add_file_options(command, options);
    command.add_flag("--no-metadata", options.no_metadata, "Do not say in a PNG where the image comes from");
}

}  // namespace

void add_param(CLI::App& app, Command_line& line)
{
    auto options = std::make_shared<File_options>();
    CLI::App* command =
        add_scanner_command(app, line, "param", "Read the parameter container into a file", param_guide);
    add_file_options(*command, *options);
    command->callback([&line, options] {
        line.action = [options](const Common_options& common, Output& output) { param(common, *options, output); };
    });
}

void add_snapshot(CLI::App& app, Command_line& line)
{
    auto options = std::make_shared<Snapshot_options>();
    CLI::App* command =
        add_scanner_command(app, line, "snapshot", "Take a snapshot into an image file", snapshot_guide);
    add_image_file_options(*command, *options);
    command->add_option("--size", options->size, "The size of the image in pixels (1600x1500 without it)")
        ->option_text("WxH");
    command
        ->add_option("--values", options->values, "The driver's three values (without it, the width, the height and 0)")
        ->expected(3)
        ->check(whole_number(0, 0xFFFFFFFF))
        ->option_text("A B C");
    command->callback([&line, options] {
        line.action = [options](const Common_options& common, Output& output) { snapshot(common, *options, output); };
    });
}

void add_calibration(CLI::App& app, Command_line& line)
{
    auto options = std::make_shared<File_options>();
    CLI::App* command =
        add_scanner_command(app, line, "calibration", "Write the calibration image into a file", calibration_guide);
    add_image_file_options(*command, *options);
    command->callback([&line, options] {
        line.action = [options](const Common_options& common, Output& output) {
            calibration(common, *options, output);
        };
    });
}

}  // namespace vyra_tool
