#include "status_text.h"

#include <algorithm>
#include <iterator>

#include "vyra/status.h"

namespace vyra_tool {
namespace {

struct Entry {
    int code;
    const char* name;
    const char* meaning;
    const char* advice;
};

constexpr int first_library_code = 9000;

constexpr Entry entries[] = {
    {VYRA_OK, "VYRA_OK", "success", "nothing"},
    {VYRA_INTERNAL, "VYRA_INTERNAL", "the library or the scanner's driver failed, or no scanner was found",
     "check that a scanner is attached and that no other program uses it; run again with --log all and read the "
     "library's log"},
    {VYRA_OUT_OF_RESOURCE, "VYRA_OUT_OF_RESOURCE", "the library could not get the memory it needs",
     "close other programs and try again"},
    {VYRA_DEVICE_UNAVAIL, "VYRA_DEVICE_UNAVAIL", "the scanner is not there, or not there any more",
     "check the cable and the name (vyra list), or plug the scanner in again"},
    {VYRA_DEVICE_TIMEOUT, "VYRA_DEVICE_TIMEOUT", "the scanner did not answer in time",
     "try again; if it stays, plug the scanner out and in"},
    {VYRA_NOT_IMPLEMENTED, "VYRA_NOT_IMPLEMENTED", "the library does not offer this function",
     "use a newer version of the library"},
    {VYRA_DRIVER_REFUSED, "VYRA_DRIVER_REFUSED", "the scanner's driver refused the request",
     "close every other program that uses the scanner and try again"},
    {VYRA_NOT_INITIALIZED, "VYRA_NOT_INITIALIZED", "the library or the scanner's driver is not initialized",
     "try again; if it stays, reinstall the scanner's driver"},
    {VYRA_BUF_TOO_SMALL, "VYRA_BUF_TOO_SMALL", "the library was given no room for its answer",
     "report it as a fault of this tool"},
    {VYRA_TOO_MANY_FRAMES, "VYRA_TOO_MANY_FRAMES", "all places for images to come are taken",
     "report it as a fault of this tool"},
    {VYRA_VIDEO_STOPPED, "VYRA_VIDEO_STOPPED", "video does not run", "start the capture again"},
    {VYRA_VIDEO_TIMEOUT, "VYRA_VIDEO_TIMEOUT", "the scanner sent no image in time",
     "allow more time with --timeout; if it stays, plug the scanner out and in"},
    {VYRA_BAD_SCANNER_IDX, "VYRA_BAD_SCANNER_IDX", "no open scanner answers to this handle, or eight are open already",
     "try again; if it stays, plug the scanner out and in"},
    {VYRA_BAD_PARAMETER, "VYRA_BAD_PARAMETER", "the library or the scanner refused a value",
     "check the values on the command line (--help explains each)"},
    {VYRA_SCN_UNAVAILABLE, "VYRA_SCN_UNAVAILABLE", "the scanner is in use or closed, or the computer sleeps",
     "close every other program that uses the scanner, wake the computer, and try again"},
    {VYRA_DRIVER_STATE, "VYRA_DRIVER_STATE", "the scanner's driver is in the wrong state for this",
     "wait a moment and try again; if it stays, plug the scanner out and in"},
    {VYRA_CAPTURE_CONFIG, "VYRA_CAPTURE_CONFIG", "the scanner does not have this way of capturing",
     "capture without --roll; vyra info tells what the scanner can do"},
};

}  // namespace

Status_text status_text(int code)
{
    const auto* entry =
        std::find_if(std::begin(entries), std::end(entries), [code](const Entry& each) { return each.code == code; });
    if (entry != std::end(entries)) {
        return {entry->name, entry->meaning, entry->advice};
    }
    if (code > 0 && code < first_library_code) {
        return {"driver result " + std::to_string(code), "the scanner's driver refused the request",
                "plug the scanner out and in and try again"};
    }
    return {"unknown status", "a code that this version of the tool does not know", "use a newer version of the tool"};
}

}  // namespace vyra_tool
