// RE2 with the same expression, its groups taken.
#include <re2/re2.h>

#include "../device_paths.h"
#include "../figure.h"
#include "../turn.h"

namespace {

Side search(const std::string& path)
{
    return {"RE2", [&path] {
                const RE2 pattern(device_path_expression);
                return nanoseconds_each([&] {
                    re2::StringPiece vendor;
                    re2::StringPiece product;
                    bool found = RE2::PartialMatch(path, pattern, &vendor, &product);
                    keep(found);
                });
            }};
}

const Peer match(figure_name::path_match, search(matching_path));
const Peer no_match(figure_name::path_no_match, search(other_path));

}  // namespace
