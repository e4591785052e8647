// JSON with places: a tree whose every value knows the line it stands on, so that messages about meaning name a line
// just as those about syntax do.
#pragma once

#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace brenvozulta_simulator {

struct Json_value {
    enum class Kind { null, boolean, integer, real, text, list, object };
    Kind kind = Kind::null;
    int line = 1;
    bool boolean = false;
    bool negative = false;           // of an integer
    unsigned long long integer = 0;  // its magnitude
    double real = 0;
    std::string text;
    std::vector<std::pair<std::string, Json_value>> members;  // of an object; of a list, without names
};

// "FILE:LINE: FIELD: what is wrong"; without the field where there is none.
class Scenario_error : public std::runtime_error {
public:
    Scenario_error(const std::string& file, int line, const std::string& field, const std::string& wrong);
};

// Throws Scenario_error for a text that is not JSON, or that names a field twice.
Json_value parse_json(const std::string& text, const std::string& file);

}  // namespace brenvozulta_simulator
