#include "image_file.h"

#include <png.h>

#include <cctype>
#include <cstring>
#include <iterator>
#include <stdexcept>

#include "settings.h"

namespace brenvozulta_simulator {
namespace {

constexpr std::uint32_t side_max = UINT16_MAX;

Image sized_image(std::uint64_t width, std::uint64_t height)
{
    if (width == 0 || height == 0 || width > side_max || height > side_max) {
        throw std::runtime_error("its sides are not from 1 to 65535 pixels");
    }
    if (width * height > config_pixels_max) {
        throw std::runtime_error("it has more than " + std::to_string(config_pixels_max) + " pixels");
    }
    return {{}, static_cast<std::uint16_t>(width), static_cast<std::uint16_t>(height)};
}

// The numbers of a PGM header, between which blanks and comments may stand.
class Pgm_header {
public:
    explicit Pgm_header(const std::vector<std::uint8_t>& content) : content_(content) {}

    std::uint32_t number()
    {
        skip_blanks();
        std::uint32_t value = 0;
        const std::size_t first = at_;
        while (std::isdigit(current()) != 0) {
            value = value * 10 + static_cast<std::uint32_t>(current() - '0');
            ++at_;
            if (value > 0xFFFFF) {
                throw std::runtime_error("its PGM header holds a number that is too large");
            }
        }
        if (at_ == first) {
            throw std::runtime_error("its PGM header lacks a number");
        }
        return value;
    }

    // The pixels begin after exactly one blank.
    std::size_t end()
    {
        if (std::isspace(current()) == 0) {
            throw std::runtime_error("its PGM header does not end in a blank");
        }
        return at_ + 1;
    }

private:
    int current() const { return at_ < content_.size() ? content_[at_] : 0; }
    void skip_blanks()
    {
        while (std::isspace(current()) != 0 || current() == '#') {
            if (current() == '#') {
                while (current() != '\n' && at_ < content_.size()) {
                    ++at_;
                }
            } else {
                ++at_;
            }
        }
    }

    const std::vector<std::uint8_t>& content_;
    std::size_t at_ = 2;
};

Image decode_pgm(const std::vector<std::uint8_t>& content)
{
    Pgm_header header(content);
    const std::uint32_t width = header.number();
    const std::uint32_t height = header.number();
    if (header.number() != 255) {
        throw std::runtime_error("it is a PGM with another largest value than 255");
    }
    Image image = sized_image(width, height);
    const std::size_t first = header.end();
    const std::size_t size = std::size_t{width} * height;
    if (content.size() < first + size) {
        throw std::runtime_error("its pixels end too early");
    }
    image.pixels.assign(content.begin() + static_cast<std::ptrdiff_t>(first),
                        content.begin() + static_cast<std::ptrdiff_t>(first + size));
    return image;
}

constexpr std::size_t png_signature_size = 8;
constexpr std::size_t png_chunk_frame = 12;  // length, type and checksum around a chunk's data

std::uint32_t big_endian(const std::uint8_t* bytes)
{
    return std::uint32_t{bytes[0]} << 24 | std::uint32_t{bytes[1]} << 16 | std::uint32_t{bytes[2]} << 8 | bytes[3];
}

// A PNG file as it is read here.
struct Png_content {
    std::vector<std::uint8_t> bytes;  // without its chunks about colour space: grey is taken as it is written
    std::uint64_t unpacked_size = 0;  // of the pixels that the header tells of
    std::uint64_t packed_size = 0;    // of those that are there
};

// The header's data: width, height, bits of a sample, kind of colour.
std::uint64_t unpacked_size(const std::uint8_t* header)
{
    constexpr std::uint64_t samples_of_kind[] = {1, 0, 3, 1, 2, 0, 4};
    const std::uint64_t samples = header[9] < std::size(samples_of_kind) ? samples_of_kind[header[9]] : 0;
    const std::uint64_t row = (std::uint64_t{big_endian(header)} * samples * header[8] + 7) / 8;
    return row * big_endian(header + 4);
}

Png_content png_content(const std::vector<std::uint8_t>& file)
{
    constexpr std::size_t header_size = 13;
    Png_content content;
    content.bytes.assign(file.begin(), file.begin() + png_signature_size);
    std::size_t at = png_signature_size;
    while (file.size() - at >= png_chunk_frame) {
        const std::size_t length = big_endian(&file[at]);
        if (length > file.size() - at - png_chunk_frame) {
            break;  // libpng says what is wrong
        }
        const std::string type(file.begin() + static_cast<std::ptrdiff_t>(at + 4),
                               file.begin() + static_cast<std::ptrdiff_t>(at + 8));
        if (type == "IHDR" && length == header_size) {
            content.unpacked_size = unpacked_size(&file[at + 8]);
        }
        content.packed_size += type == "IDAT" ? length : 0;
        const auto first = file.begin() + static_cast<std::ptrdiff_t>(at);
        at += length + png_chunk_frame;
        if (type != "gAMA" && type != "cHRM" && type != "sRGB" && type != "iCCP") {
            content.bytes.insert(content.bytes.end(), first, file.begin() + static_cast<std::ptrdiff_t>(at));
        }
    }
    content.bytes.insert(content.bytes.end(), file.begin() + static_cast<std::ptrdiff_t>(at), file.end());
    return content;
}

// libpng's own record of a file being read, freed on every way out.
struct Png_reader : png_image {
    Png_reader() : png_image() { version = PNG_IMAGE_VERSION; }
    Png_reader(const Png_reader&) = delete;
    Png_reader& operator=(const Png_reader&) = delete;
    ~Png_reader() { png_image_free(this); }
};

Image decode_png(const std::vector<std::uint8_t>& file)
{
    constexpr std::uint64_t best_packing = 1032;  // bytes that one packed byte can stand for
    const Png_content content = png_content(file);
    Png_reader png;
    if (png_image_begin_read_from_memory(&png, content.bytes.data(), content.bytes.size()) == 0) {
        throw std::runtime_error(std::string("it is no PNG that can be read: ") + png.message);
    }
    Image image = sized_image(png.width, png.height);
    if (content.unpacked_size / best_packing > content.packed_size) {
        throw std::runtime_error("its header tells of more pixels than the file can hold");
    }
    png.flags |= PNG_IMAGE_FLAG_16BIT_sRGB;
    png.format = PNG_FORMAT_GRAY;
    image.pixels.resize(PNG_IMAGE_SIZE(png));
    const png_color white{255, 255, 255};
    if (png_image_finish_read(&png, &white, image.pixels.data(), 0, nullptr) == 0) {
        throw std::runtime_error(std::string("it is no PNG that can be read: ") + png.message);
    }
    return image;
}

}  // namespace

Image decode_image(const std::vector<std::uint8_t>& content)
{
    if (content.size() >= 2 && content[0] == 'P' && content[1] == '5') {
        return decode_pgm(content);
    }
    constexpr std::uint8_t png_signature[] = {0x89, 'P', 'N', 'G'};
    if (content.size() >= png_signature_size && std::memcmp(content.data(), png_signature, sizeof png_signature) == 0) {
        return decode_png(content);
    }
    throw std::runtime_error("it is neither a binary PGM (P5) nor a PNG");
}

}  // namespace brenvozulta_simulator
