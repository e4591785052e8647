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
    for (; *at >= '0' && *at <= '9'; ++at) {
        number = std::min<size_t>(number * 10 + static_cast<size_t>(*at - '0'), 100'000);
    }
    return number;
}

bool skip(const char*& at, const char* text)
{
    const size_t length = std::strlen(text);
    if (std::strncmp(at, text, length) != 0) {
        return false;
    }
    at += length;
    return true;
}

Length parse_length(const char*& at)
{
    if (skip(at, "l")) {
        return Length::full;
    }
    if (skip(at, "h")) {
        return Length::half;
    }
    if (skip(at, "w")) {
        return Length::wide;
    }
    if (skip(at, "I64")) {
        return Length::native64;
    }
    if (skip(at, "I32")) {
        return Length::plain;
    }
    if (skip(at, "I")) {
        return Length::native;
    }
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
    if (skip(at, ".")) {
        result.precision = parse_number(at);
    }
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

    // A short argument is passed as an int and printed as one.
    int64_t signed_value(Length length) { return is_long(length) ? va_arg(list_, int64_t) : va_arg(list_, int); }
    uint64_t unsigned_value(Length length)
    {
        return is_long(length) ? va_arg(list_, uint64_t) : va_arg(list_, unsigned);
    }
    template <class Pointer>
    Pointer pointer()
    {
        return va_arg(list_, Pointer);
    }

private:
    static bool is_long(Length length) { return length == Length::native || length == Length::native64; }

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
    if (text == nullptr) {
        return std::string("(null)", std::min<size_t>(6, limit));
    }
    std::string narrow;
    for (size_t i = 0; i < limit && text[i] != L'\0'; ++i) {
        narrow += static_cast<uint32_t>(text[i]) <= 0xFF ? static_cast<char>(text[i]) : '?';
    }
    return narrow;
}

// The precision, and the width that is filled with zeros, count the sign.
std::string padded_digits(std::string number, bool negative, const Conversion& conversion)
{
    const size_t zero_width = conversion.zeros && !conversion.left ? conversion.width : 0;
    const size_t least = std::max(conversion.precision, zero_width);
    const size_t length = number.size() + (negative ? 1 : 0);
    if (length < least) {
        number.insert(0, least - length, '0');
    }
    return negative ? "-" + number : number;
}

struct Field {
    std::string text;
    std::string prefix;  // 0x, which the width does not count
};

std::string signed_text(const Conversion& conversion, Arguments& arguments)
{
    const int64_t value = arguments.signed_value(conversion.length);
    const uint64_t size = value < 0 ? 0 - static_cast<uint64_t>(value) : static_cast<uint64_t>(value);
    return padded_digits(digits(size, 10, false), value < 0, conversion);
}

std::string unsigned_text(const Conversion& conversion, Arguments& arguments, unsigned base)
{
    const uint64_t value = arguments.unsigned_value(conversion.length);
    return padded_digits(digits(value, base, conversion.type == 'X'), false, conversion);
}

bool is_wide_text(const Conversion& conversion)
{
    if (conversion.length == Length::wide) {
        return conversion.type == 's';
    }
    return conversion.type == 's' ? conversion.length == Length::full : conversion.length != Length::half;
}

// Takes the conversion's argument. False for an unknown conversion, which takes none.
bool expand(const Conversion& conversion, Arguments& arguments, Field& field)
{
    switch (conversion.type) {
        case 'c':
        case 'C':
            field.text = std::string(1, static_cast<char>(arguments.signed_value(Length::plain)));
            return true;
        case 's':
        case 'S':
            field.text = text_argument(arguments, conversion, is_wide_text(conversion));
            return true;
        case 'd':
        case 'i':
            field.text = signed_text(conversion, arguments);
            return true;
        case 'u':
            field.text = unsigned_text(conversion, arguments, 10);
            return true;
        case 'x':
        case 'X':
            if (conversion.prefix) {
                field.prefix = conversion.type == 'X' ? "0X" : "0x";
            }
            field.text = unsigned_text(conversion, arguments, 16);
            return true;
        default:
            return false;
    }
}

// A pointer is printed as all its digits, in capitals.
Conversion with_pointers_as_numbers(Conversion conversion)
{
    if (conversion.type != 'p') {
        return conversion;
    }
    conversion.type = 'X';
    conversion.zeros = true;
    conversion.width = 2 * sizeof(void*);
    conversion.length = Length::native;
    return conversion;
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
        const Conversion conversion = with_pointers_as_numbers(parse(at));
        Field field;
        const bool known = expand(conversion, arguments, field);
        const size_t blanks = conversion.width - std::min(conversion.width, field.text.size());
        if (!conversion.left) {
            text.append(blanks, ' ');
        }
        // An unknown conversion loses its percent sign and modifiers; its letter is ordinary text.
        if (!known) {
            continue;
        }
        ++at;
        text += field.prefix + field.text;
        if (conversion.left) {
            text.append(blanks, ' ');
        }
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
    // A text that was cut counts its terminator.
    return static_cast<int>(std::min(text.size(), longest_text + 1));
}

}  // namespace

int wvsprintfA(LPSTR text, LPCSTR format, va_list arguments)
{
    return wvsprintf_call.refused() ? 0 : format_into(text, format, arguments);
}
