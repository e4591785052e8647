#include "json_tree.h"

#include <cstddef>
#include <iterator>
#include <nlohmann/json.hpp>

#include "utf8.h"

namespace brenvozulta_simulator {
namespace {

constexpr std::size_t deepest = 32;  // a scenario needs 4; the tree is taken down recursively

// Feeds the parser and counts the lines. The parser may have read one character beyond the value that it reports; that
// character is a line's last one at most, so the line that it stands on is still the value's.
class Line_counter {
public:
    using iterator_category = std::input_iterator_tag;
    using value_type = char;
    using difference_type = std::ptrdiff_t;
    using pointer = const char*;
    using reference = const char&;

    Line_counter(const char* at, int* line) : at_(at), line_(line) {}
    reference operator*() const { return *at_; }
    Line_counter& operator++()
    {
        if (pending_newline_) {
            ++*line_;
        }
        pending_newline_ = *at_ == '\n';
        ++at_;
        return *this;
    }
    Line_counter operator++(int)
    {
        Line_counter before = *this;
        ++*this;
        return before;
    }
    bool operator==(const Line_counter& other) const { return at_ == other.at_; }
    bool operator!=(const Line_counter& other) const { return at_ != other.at_; }

private:
    const char* at_;
    int* line_;
    bool pending_newline_ = false;
};

class Tree_builder {
public:
    using Json = nlohmann::json;

    Tree_builder(std::string file, const int* line) : file_(std::move(file)), line_(line) {}
    Json_value take() { return std::move(root_); }

    bool null()
    {
        add(Json_value::Kind::null);
        return true;
    }
    bool boolean(bool value)
    {
        add(Json_value::Kind::boolean).boolean = value;
        return true;
    }
    bool number_integer(Json::number_integer_t value)
    {
        Json_value& added = add(Json_value::Kind::integer);
        added.negative = value < 0;
        added.integer =
            value < 0 ? 0ULL - static_cast<unsigned long long>(value) : static_cast<unsigned long long>(value);
        return true;
    }
    bool number_unsigned(Json::number_unsigned_t value)
    {
        add(Json_value::Kind::integer).integer = value;
        return true;
    }
    bool number_float(Json::number_float_t value, const std::string&)
    {
        add(Json_value::Kind::real).real = value;
        return true;
    }
    bool string(std::string& value)
    {
        add(Json_value::Kind::text).text = value;
        return true;
    }
    bool binary(Json::binary_t&) { return false; }
    bool start_object(std::size_t) { return open(Json_value::Kind::object); }
    bool key(std::string& value)
    {
        for (const auto& member : open_.back()->members) {
            if (member.first == value) {
                throw Scenario_error(file_, *line_, value, "is there twice");
            }
        }
        open_.back()->members.emplace_back(value, Json_value{});
        return true;
    }
    bool end_object() { return close(); }
    bool start_array(std::size_t) { return open(Json_value::Kind::list); }
    bool end_array() { return close(); }
    bool parse_error(std::size_t, const std::string&, const Json::exception& error)
    {
        // The library's own text begins with its name for the error and the place, up to the second colon.
        std::string wrong = error.what();
        for (const char* end : {"column ", ": "}) {
            const std::size_t found = wrong.find(end);
            wrong.erase(0, found == std::string::npos ? 0 : found + std::char_traits<char>::length(end));
        }
        throw Scenario_error(file_, *line_, "", wrong);
    }

private:
    Json_value& add(Json_value::Kind kind)
    {
        Json_value* value = &root_;
        if (!open_.empty()) {
            Json_value& parent = *open_.back();
            if (parent.kind == Json_value::Kind::list) {
                parent.members.emplace_back();
            }
            value = &parent.members.back().second;
        }
        value->kind = kind;
        value->line = *line_;
        return *value;
    }
    // A parent's members do not move while one of them is open: only the last one ever is.
    bool open(Json_value::Kind kind)
    {
        if (open_.size() == deepest) {
            throw Scenario_error(file_, *line_, "", "is nested too deeply");
        }
        open_.push_back(&add(kind));
        return true;
    }
    bool close()
    {
        open_.pop_back();
        return true;
    }

    const std::string file_;
    const int* const line_;
    Json_value root_;
    std::vector<Json_value*> open_;
};

std::string located(const std::string& file, int line, const std::string& field, const std::string& wrong)
{
    return file + ":" + std::to_string(line) + ": " + (field.empty() ? "" : field + ": ") + wrong;
}

}  // namespace

Scenario_error::Scenario_error(const std::string& file, int line, const std::string& field, const std::string& wrong)
    : std::runtime_error(utf8_text(located(file, line, field, wrong)))
{
}

Json_value parse_json(const std::string& text, const std::string& file)
{
    if (text.find_first_not_of(" \t\r\n") == std::string::npos) {
        throw Scenario_error(file, 1, "", "is empty");
    }
    int line = 1;
    Tree_builder builder(file, &line);
    nlohmann::json::sax_parse(Line_counter(text.data(), &line), Line_counter(text.data() + text.size(), &line),
                              &builder);
    return builder.take();
}

}  // namespace brenvozulta_simulator
