// The identifiers of a device path, beside the expression alone.
#include <regex>
#include <string>

#include "device_paths.h"
#include "figure.h"
#include "notify/device_path.h"
#include "turn.h"

namespace {

Figure path_figure(const char* name, double goal, const std::string& path)
{
    const Side expression = {"std::regex_search", [&path] {
                                 const std::regex pattern(device_path_expression);
                                 return nanoseconds_each([&] {
                                     std::smatch match;
                                     bool found = std::regex_search(path, match, pattern);
                                     keep(found);
                                 });
                             }};
    return {name,
            "ns",
            goal,
            {"",
             [&path] {
                 return nanoseconds_each([&] {
                     auto found = kvs::brenvozulta::find_usb_identifiers(path);
                     keep(found);
                 });
             }},
            expression.name,
            {expression}};
}

}  // namespace

std::vector<Figure> path_figures()
{
    return {path_figure(figure_name::path_match, 1.0, matching_path),
            path_figure(figure_name::path_no_match, 0.1, other_path)};
}
