// From the start of a process to its first image.
#include <chrono>
#include <cstdio>
#include <memory>
#include <stdexcept>
#include <string>

#include "figure.h"

namespace {

// Milliseconds by the clock.
double first_image_of(const std::string& by)
{
    using clock = std::chrono::steady_clock;
    const auto begin = clock::now();
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> output(
        popen(("exec '" FIRST_IMAGE_PROGRAM "' " + by).c_str(), "r"), pclose);
    long long moment = 0;
    if (!output || std::fscanf(output.get(), "%lld", &moment) != 1) {
        throw std::runtime_error("no first image of the " + by);
    }
    return std::chrono::duration<double, std::milli>(clock::duration(moment) - begin.time_since_epoch()).count();
}

}  // namespace

std::vector<Figure> start_figures()
{
    return {{"process start to first image, the library's part",
             "ms",
             5,
             {"", [] { return first_image_of("library") - first_image_of("driver"); }},
             "",
             {{"the driver's and the loader's", [] { return first_image_of("driver"); }}}}};
}
