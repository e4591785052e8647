#include "loaded_library.h"

#include <string>

#include "failure.h"

namespace vyra_tool {
namespace {

std::string missing_file_advice(const VyraLoadReport& report)
{
    const std::string file = report.file;
    if (report.needed_by[0] == '\0') {
        return "put vyrabrenvozulta.dll beside vyra.exe, or its folder into PATH";
    }
    if (file.find("BrenvoZulta_USB") != std::string::npos) {
        return std::string("install the scanner's driver, or put its BrenvoZulta_USB.dll beside \"") +
               report.needed_by + "\"; without a scanner the simulated one does";
    }
    return "install the scanner's driver again: \"" + file + "\" is a part of it";
}

}  // namespace

std::string advice_of(const VyraLoadReport& report)
{
    switch (report.result) {
        case VYRA_LOADED:
            return {};
        case VYRA_LOAD_NO_FILE:
            return missing_file_advice(report);
        case VYRA_LOAD_NO_FUNCTION:
            return "install a library and a driver whose versions belong together";
        case VYRA_LOAD_OTHER_PROCESSOR:
            return "put the 64-bit (x86-64) version of the file in its place";
        case VYRA_LOAD_DAMAGED:
            return "copy or install the file again";
        default:
            return "see whether the file may be read and run, and whether a virus scanner holds it back";
    }
}

const Loaded_library& loaded_library()
{
    static const Loaded_library only = [] {
        Loaded_library library{};
        VyraLoad(nullptr, &library.functions, &library.report);
        return library;
    }();
    return only;
}

void load_library()
{
    if (const VyraLoadReport& report = loaded_library().report; report.result != VYRA_LOADED) {
        throw Failure(report.message, advice_of(report), Cause::dll);
    }
}

}  // namespace vyra_tool
