// wvsprintfA: the system's own formatting, not the C runtime's. At most 1023 characters are written; there is no
// floating point, no '+' or blank flag, and '*' is unknown; an unknown conversion stands as it is written.
#include <algorithm>
#include <cstdarg>
#include <cstring>
#include <string>

#include "entry_point.h"
#include "windows.h"

namespace {

win32_double::Entry_point wvsprintf_call{"wvsprintfA"};
win32_double::Entry_point wsprintf_call{"wsprintfA"};

constexpr size_t longest_text = 1023;

enum class Length { plain, half, full, wide, native, native64 };

struct Conversion {
    bool left = false;
    bool prefix = false;
    bool zeros = false;
    size_t width = 0;
    size_t precision = 0;
    Length length = Length::plain;
    char type = '\0';
};

size_t parse_number(const char*& at)
{
    size_t number = 0;
    for (; *at >= '0' && *at <= '9'; ++at)
        number = std::min<size_t>(number * 10 + static_cast<size_t>(*at - '0'), 100'000);
    return number;
}

bool skip(const char*& at, const char* text)
{
    const size_t length = std::strlen(text);
    if (std::strncmp(at, text, length) != 0)
        return false;
    at += length;
    return true;
}

Length parse_length(const char*& at)
{
    if (skip(at, "l"))
        return Length::full;
    if (skip(at, "h"))
        return Length::half;
    if (skip(at, "w"))
        return Length::wide;
    if (skip(at, "I64"))
        return Length::native64;
    if (skip(at, "I32"))
        return Length::plain;
    if (skip(at, "I"))
        return Length::native;
    return Length::plain;
}

// `at` stands behind the percent sign and ends on the type.
Conversion parse(const char*& at)
{
    Conversion result;
    result.left = skip(at, "-");
    result.prefix = skip(at, "#");
    result.zeros = skip(at, "0");
    result.width = parse_number(at);
    if (skip(at, "."))
        result.precision = parse_number(at);
    result.length = parse_length(at);
    result.type = *at;
    return result;
}

std::string digits(uint64_t value, unsigned base, bool capitals)
{
    const char* const alphabet = capitals ? "0123456789ABCDEF" : "0123456789abcdef";
    std::string reversed;
    do {
        reversed += alphabet[value % base];
        value /= base;
    } while (value != 0);
    return {reversed.rbegin(), reversed.rend()};
}

// The argument list as an object, so that it can be handed on by reference.
class Arguments {
public:
    explicit Arguments(va_list list) { va_copy(list_, list); }
    ~Arguments() { va_end(list_); }
    Arguments(const Arguments&) = delete;
    Arguments& operator=(const Arguments&) = delete;

    int64_t signed_value(Length length)
    {
        if (length == Length::native || length == Length::native64)
            return va_arg(list_, int64_t);
        const int value = va_arg(list_, int);
        return length == Length::half ? static_cast<int16_t>(value) : value;
    }
    uint64_t unsigned_value(Length length)
    {
        if (length == Length::native || length == Length::native64)
            return va_arg(list_, uint64_t);
        const unsigned value = va_arg(list_, unsigned);
        return length == Length::half ? static_cast<uint16_t>(value) : value;
    }
    template <typename Pointer>
    Pointer pointer()
    {
        return va_arg(list_, Pointer);
    }

private:
    va_list list_;
};

std::string text_argument(Arguments& arguments, const Conversion& conversion, bool wide)
{
    const size_t limit = conversion.precision == 0 ? longest_text : conversion.precision;
    if (!wide) {
        const char* const text = arguments.pointer<const char*>();
        return text == nullptr ? std::string("(null)", std::min<size_t>(6, limit))
                               : std::string(text, strnlen(text, limit));
    }
    const wchar_t* const text = arguments.pointer<const wchar_t*>();
    if (text == nullptr)
        return std::string("(null)", std::min<size_t>(6, limit));
    std::string narrow;
    for (size_t i = 0; i < limit && text[i] != L'\0'; ++i) {
        narrow += static_cast<uint32_t>(text[i]) <= 0xFF ? static_cast<char>(text[i]) : '?';
    }
    return narrow;
}

std::string padded_number(std::string number, bool negative, const std::string& prefix, const Conversion& conversion)
{
    size_t least = conversion.precision;
    if (conversion.zeros && !conversion.left) {
        const size_t marks = prefix.size() + (negative ? 1 : 0);
        least = std::max(least, conversion.width > marks ? conversion.width - marks : 0);
    }
    if (number.size() < least)
        number.insert(0, least - number.size(), '0');
    return (negative ? "-" : "") + prefix + number;
}

bool expand(Conversion conversion, Arguments& arguments, std::string& result)
{
    switch (conversion.type) {
        case 'c':
        case 'C':
            result = std::string(1, static_cast<char>(arguments.signed_value(Length::plain)));
            return true;
        case 's':
            result = text_argument(arguments, conversion,
                                   conversion.length == Length::full || conversion.length == Length::wide);
            return true;
        case 'S':
            result = text_argument(arguments, conversion,
                                   conversion.length != Length::half && conversion.length != Length::wide);
            return true;
        case 'd':
        case 'i': {
            const int64_t value = arguments.signed_value(conversion.length);
            const uint64_t size = value < 0 ? 0 - static_cast<uint64_t>(value) : static_cast<uint64_t>(value);
            result = padded_number(digits(size, 10, false), value < 0, "", conversion);
            return true;
        }
        case 'u':
            result =
                padded_number(digits(arguments.unsigned_value(conversion.length), 10, false), false, "", conversion);
            return true;
        case 'p':
            conversion.width = 2 * sizeof(void*);
            conversion.zeros = true;
            conversion.length = Length::native;
            conversion.type = 'X';
            [[fallthrough]];
        case 'x':
        case 'X': {
            const bool capitals = conversion.type == 'X';
            const std::string prefix = !conversion.prefix ? "" : capitals ? "0X" : "0x";
            result = padded_number(digits(arguments.unsigned_value(conversion.length), 16, capitals), false, prefix,
                                   conversion);
            return true;
        }
        default:
            return false;
    }
}

std::string format_text(const char* at, Arguments& arguments)
{
    std::string text;
    while (*at != '\0' && text.size() <= longest_text) {
        if (*at != '%') {
            text += *at++;
            continue;
        }
        if (*++at == '%') {
            text += *at++;
            continue;
        }
        const Conversion conversion = parse(at);
        std::string field;
        // An unknown conversion loses its percent sign and modifiers; its letter is ordinary text.
        if (!expand(conversion, arguments, field))
            continue;
        ++at;
        const size_t blanks = conversion.width > field.size() ? conversion.width - field.size() : 0;
        field.insert(conversion.left ? field.size() : 0, blanks, ' ');
        text += field;
    }
    return text;
}

int format_into(LPSTR buffer, LPCSTR format, va_list list)
{
    Arguments arguments(list);
    const std::string text = format_text(format, arguments);
    const size_t length = std::min(text.size(), longest_text);
    std::memcpy(buffer, text.data(), length);
    buffer[length] = '\0';
    return static_cast<int>(length);
}

}  // namespace

int wvsprintfA(LPSTR text, LPCSTR format, va_list arguments)
{
    return wvsprintf_call.refused() ? 0 : format_into(text, format, arguments);
}

int wsprintfA(LPSTR text, LPCSTR format, ...)
{
    if (wsprintf_call.refused())
        return 0;
    va_list arguments;
    va_start(arguments, format);
    const int length = format_into(text, format, arguments);
    va_end(arguments);
    return length;
}
