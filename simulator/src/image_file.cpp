#include "image_file.h"

#include <png.h>

#include <cctype>
#include <cstring>
#include <stdexcept>

namespace brenvozulta_simulator {
namespace {

constexpr std::uint32_t side_max = UINT16_MAX;

Image sized_image(std::uint64_t width, std::uint64_t height)
{
    if (width == 0 || height == 0 || width > side_max || height > side_max) {
        throw std::runtime_error("its sides are not from 1 to 65535 pixels");
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

// libpng's own record of a file being read, freed on every way out.
struct Png_reader : png_image {
    Png_reader() : png_image() { version = PNG_IMAGE_VERSION; }
    Png_reader(const Png_reader&) = delete;
    Png_reader& operator=(const Png_reader&) = delete;
    ~Png_reader() { png_image_free(this); }
};

Image decode_png(const std::vector<std::uint8_t>& content)
{
    Png_reader png;
    if (png_image_begin_read_from_memory(&png, content.data(), content.size()) == 0) {
        throw std::runtime_error(std::string("it is no PNG that can be read: ") + png.message);
    }
    Image image = sized_image(png.width, png.height);
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
    if (content.size() >= sizeof png_signature &&
        std::memcmp(content.data(), png_signature, sizeof png_signature) == 0) {
        return decode_png(content);
    }
    throw std::runtime_error("it is neither a binary PGM (P5) nor a PNG");
}

}  // namespace brenvozulta_simulator
