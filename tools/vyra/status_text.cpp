#include "status_text.h"

#include "log_files.h"
#include "vyra/status_text.h"

namespace vyra_tool {
namespace {

const char* name_of(VyraRetry retry)
{
    switch (retry) {
        case VYRA_RETRY_NEVER:
            return "never";
        case VYRA_RETRY_SOON:
            return "soon";
        case VYRA_RETRY_AFTER:
            return "after";
    }
    return "";
}

// What the tool itself offers, before or behind what a person does with any host.
std::string advice_of(int code, const std::string& person)
{
    switch (code) {
        case VYRA_INTERNAL:
            return person + "; run again with --log all and read " + library_log_path();
        case VYRA_DEVICE_UNAVAIL:
            return "check the cable and the name (vyra list), or " + person;
        case VYRA_VIDEO_TIMEOUT:
            return "allow more time with --timeout; " + person;
        case VYRA_BAD_PARAMETER:
            return person + " (--help explains each)";
        case VYRA_CAPTURE_CONFIG:
            return person + " (vyra info tells)";
        default:
            return person;
    }
}

}  // namespace

Status_text status_text(int code)
{
    const VyraStatusText& text = *VyraStatusTextOf(code);
    const bool driver_result = text.status > 0 && text.status < VYRA_INTERNAL;
    return {driver_result ? text.name + (" " + std::to_string(code)) : text.name, text.meaning,
            advice_of(code, text.person), name_of(static_cast<VyraRetry>(text.retry))};
}

std::string code_text(int code)
{
    const Status_text text = status_text(code);
    return std::to_string(code) + " " + text.name + " (" + text.meaning + ")";
}

}  // namespace vyra_tool
