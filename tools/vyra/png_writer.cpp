#include "png_writer.h"

#include <png.h>
#include <zlib.h>

#include <algorithm>
#include <cmath>
#include <csetjmp>
#include <exception>
#include <string>

#include "failure.h"

namespace vyra_tool {
namespace {

constexpr double metres_per_inch = 0.0254;

// Text that is ASCII goes into the plain kind of chunk, which every reader knows.
std::vector<png_text> text_chunks(const Image_texts& texts)
{
    std::vector<png_text> chunks;
    for (const auto& [keyword, text] : texts) {
        const bool ascii = std::all_of(text.begin(), text.end(), [](char c) { return c >= ' ' && c <= '~'; });
        png_text chunk{};
        chunk.compression = ascii ? PNG_TEXT_COMPRESSION_NONE : PNG_ITXT_COMPRESSION_NONE;
        chunk.key = const_cast<png_charp>(keyword.c_str());  // libpng writes to neither
        chunk.text = const_cast<png_charp>(text.c_str());
        chunks.push_back(chunk);
    }
    return chunks;
}

struct Sink {
    std::vector<std::uint8_t> bytes;
    std::string error;
};

void append(png_structp png, png_bytep data, std::size_t length)
{
    auto& sink = *static_cast<Sink*>(png_get_io_ptr(png));
    bool stored = false;
    try {
        sink.bytes.insert(sink.bytes.end(), data, data + length);
        stored = true;
    } catch (const std::exception&) {
        // must not unwind through libpng's C frames
    }
    if (!stored) {
        png_error(png, "out of memory");
    }
}

void flush(png_structp) {}

[[noreturn]] void fail(png_structp png, png_const_charp message)
{
    static_cast<Sink*>(png_get_error_ptr(png))->error = message;
    png_longjmp(png, 1);
}

void ignore(png_structp, png_const_charp) {}

// libpng leaves this frame by longjmp when it fails: nothing with a destructor may stand in it.
bool write(png_structp png, png_infop info, const std::uint8_t* pixels, Image_size size, png_uint_32 pixels_per_metre,
           const std::vector<png_text>& texts)
{
    if (setjmp(png_jmpbuf(png)) != 0) {
        return false;
    }
    // Ridges and sensor noise hold nothing worth a search: bare run lengths and Huffman codes take a tenth of the usual
    // time and make files of the same size, so that a capture keeps up with the scanner.
    png_set_compression_strategy(png, Z_RLE);
    png_set_filter(png, PNG_FILTER_TYPE_BASE, PNG_FILTER_NONE);
    png_set_IHDR(png, info, size.width, size.height, 8, PNG_COLOR_TYPE_GRAY, PNG_INTERLACE_NONE,
                 PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
    png_set_pHYs(png, info, pixels_per_metre, pixels_per_metre, PNG_RESOLUTION_METER);
    png_set_text(png, info, texts.data(), static_cast<int>(texts.size()));
    png_write_info(png, info);
    for (std::uint32_t row = 0; row < size.height; ++row) {
        png_write_row(png, pixels + std::size_t{row} * size.width);
    }
    png_write_end(png, info);
    return true;
}

}  // namespace

std::vector<std::uint8_t> encode_png(const std::uint8_t* pixels, Image_size size, double pixels_per_inch,
                                     const Image_texts& texts)
{
    Sink sink;
    sink.bytes.reserve(size.bytes());
    const std::vector<png_text> chunks = text_chunks(texts);
    png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, &sink, fail, ignore);
    png_infop info = png != nullptr ? png_create_info_struct(png) : nullptr;
    bool written = false;
    if (info != nullptr) {
        png_set_write_fn(png, &sink, append, flush);
        written = write(png, info, pixels, size,
                        static_cast<png_uint_32>(std::lround(pixels_per_inch / metres_per_inch)), chunks);
    }
    png_destroy_write_struct(&png, &info);
    if (!written) {
        throw Failure("cannot encode the image as PNG: " + (sink.error.empty() ? "out of memory" : sink.error),
                      "close other programs and try again");
    }
    return std::move(sink.bytes);
}

}  // namespace vyra_tool
