// Wide text to bytes as in the runtime's "C" locale: a character up to 255 is the byte of that value, others do not
// fit.
#include <cerrno>

#include "entry_point.h"
#include "windows.h"

namespace {

win32_double::Entry_point wcstombs_call{"wcstombs_s"};

errno_t refuse(char* destination, errno_t error)
{
    if (destination != nullptr) {
        destination[0] = '\0';
    }
    return errno = error;
}

}  // namespace

errno_t wcstombs_s(size_t* converted, char* destination, size_t size, const wchar_t* source, size_t count)
{
    if (const auto error = wcstombs_call.enter()) {
        return refuse(destination, static_cast<errno_t>(*error));
    }
    if ((destination == nullptr) != (size == 0)) {
        return refuse(nullptr, EINVAL);
    }
    if (converted != nullptr) {
        *converted = 0;
    }
    if (source == nullptr) {
        return refuse(destination, EINVAL);
    }
    if (destination == nullptr) {
        count = _TRUNCATE;  // only the size is asked for
    }
    size_t length = 0;
    errno_t result = 0;
    for (; length < count && source[length] != L'\0'; ++length) {
        if (static_cast<uint32_t>(source[length]) > 0xFF) {
            return refuse(destination, EILSEQ);
        }
        if (destination == nullptr) {
            continue;
        }
        if (length + 1 >= size) {
            if (count != _TRUNCATE) {
                return refuse(destination, ERANGE);
            }
            result = STRUNCATE;
            break;
        }
        destination[length] = static_cast<char>(source[length]);
    }
    if (destination != nullptr) {
        destination[length] = '\0';
    }
    if (converted != nullptr) {
        *converted = length + 1;
    }
    return result;
}
