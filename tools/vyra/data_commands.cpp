// param, snapshot and calibration: the data that belongs to a scanner, into files.
#include <algorithm>
#include <memory>
#include <nlohmann/json.hpp>
#include <vector>

#include "command_line.h"
#include "failure.h"
#include "files.h"
#include "image_size.h"
#include "option_values.h"
#include "output.h"
#include "session.h"

namespace vyra_tool {
namespace {

const char* const param_guide =
    R"(The container is written byte for byte. What the bytes mean is the business of the
scanner's maker.

Examples:
  vyra param --out container.bin)";

const char* const snapshot_guide =
    R"(Takes one image outside of video and writes it as PNG (.png) or as its bare pixels
(.raw, .bin). The library passes three values to the driver without knowing what they
mean, and does not learn how large the image is. A simulated scanner takes them as the
width, the height and the capture configuration (0: the usual one).

Examples:
  vyra snapshot --out snapshot.png
  vyra snapshot --out snapshot.raw --values 1600 1500 1)";

const char* const calibration_guide =
    R"(Writes the flat-field calibration image of the scanner model, 3216x2004 pixels, as PNG
(.png) or as its bare pixels (.raw, .bin). The library carries the image, but gives it
out for an attached scanner only.

Examples:
  vyra calibration --out flat_field.png
  vyra calibration --out flat_field.raw)";

constexpr Image_size calibration_size{VYRA_CALIBRATION_WIDTH, VYRA_CALIBRATION_HEIGHT};
// The calibration image shows the sensor's own pixels, two for each pixel of a captured image in both directions.
constexpr double calibration_pixels_per_inch = 1000;
constexpr double snapshot_pixels_per_inch = 500;
// The driver writes as much as it likes: room for more than the sensor delivers.
constexpr std::size_t snapshot_room = std::size_t{16} * 1024 * 1024;

struct Snapshot_options {
    std::string file;
    std::string size = "1600x1500";
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

void report_image(const Scanner& scanner, const std::string& file, Image_size size, Output& output)
{
    if (output.json()) {
        output.object({{"scanner", scanner.name()}, {"file", file}, {"width", size.width}, {"height", size.height}});
    } else {
        output.line(file + ": " + std::to_string(size.width) + " x " + std::to_string(size.height) + " pixels");
    }
}

void param(const Common_options& common, const std::string& file, Output& output)
{
    const Library library(common.log_level);
    const Scanner scanner(library, library.choose(common.scanner));
    std::uint32_t size = 0;
    check(VyraBrenvoZultaGetGlobalParamSize(scanner.handle(), &size), "read the size of the parameter container");
    std::vector<std::uint8_t> container(size);
    check(VyraBrenvoZultaReadGlobalParam(scanner.handle(), container.data(), size), "read the parameter container");
    write_file(file, container);
    report(scanner, file, container.size(), output);
}

void snapshot(const Common_options& common, const Snapshot_options& options, Output& output)
{
    const Image_size size = parse_image_size(options.size);
    image_format(options.file);
    const std::vector<std::uint32_t> values =
        options.values.empty() ? std::vector<std::uint32_t>{size.width, size.height, 0} : options.values;
    const Library library(common.log_level);
    const Scanner scanner(library, library.choose(common.scanner));
    std::vector<std::uint8_t> pixels(std::max(snapshot_room, size.bytes()));
    check(VyraBrenvoZultaGetSnapshotAcquisition(scanner.handle(), pixels.data(), values[0], values[1], values[2]),
          "take a snapshot");
    pixels.resize(size.bytes());
    write_image(options.file, pixels, size, snapshot_pixels_per_inch);
    report_image(scanner, options.file, size, output);
}

void calibration(const Common_options& common, const std::string& file, Output& output)
{
    image_format(file);
    const Library library(common.log_level);
    const Scanner scanner(library, library.choose(common.scanner));
    std::vector<std::uint8_t> pixels(VYRA_CALIBRATION_SIZE);
    check(VyraBrenvoZultaReadUniformityBuffers(scanner.handle(), pixels.data(), VYRA_CALIBRATION_SIZE),
          "read the calibration image");
    write_image(file, pixels, calibration_size, calibration_pixels_per_inch);
    report_image(scanner, file, calibration_size, output);
}

}  // namespace

void add_param(CLI::App& app, Command_line& line)
{
    auto file = std::make_shared<std::string>();
    CLI::App* command =
        add_scanner_command(app, line, "param", "Read the parameter container into a file", param_guide);
    command->add_option("--out", *file, "The file to write")->required()->option_text("FILE (required)");
    command->callback([&line, file] {
        line.action = [file](const Common_options& common, Output& output) { param(common, *file, output); };
    });
}

void add_snapshot(CLI::App& app, Command_line& line)
{
    auto options = std::make_shared<Snapshot_options>();
    CLI::App* command =
        add_scanner_command(app, line, "snapshot", "Take a snapshot into an image file", snapshot_guide);
    command->add_option("--out", options->file, "The file to write")->required()->option_text("FILE (required)");
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
    auto file = std::make_shared<std::string>();
    CLI::App* command =
        add_scanner_command(app, line, "calibration", "Write the calibration image into a file", calibration_guide);
    command->add_option("--out", *file, "The file to write")->required()->option_text("FILE (required)");
    command->callback([&line, file] {
        line.action = [file](const Common_options& common, Output& output) { calibration(common, *file, output); };
    });
}

}  // namespace vyra_tool
