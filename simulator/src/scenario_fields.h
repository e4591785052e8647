// Reading the fields of a scenario's objects, with a message for everything that is not as it should be.
#pragma once

#include <cstdint>
#include <set>
#include <string>
#include <vector>

#include "json_tree.h"

namespace brenvozulta_simulator {

constexpr std::int64_t max_milliseconds = 86400000;
constexpr std::int64_t max_count = 1000000000;

// One object of a scenario and the way to it, "scanners[1]". Each getter stores nothing when the field is not there.
class Fields {
public:
    Fields(const std::string& file, const std::string& path, const Json_value& object);

    bool text(const char* name, std::string& value, std::size_t shortest, std::size_t longest);
    bool boolean(const char* name, bool& value);
    bool real(const char* name, double& value, double lowest, double highest);
    bool integer(const char* name, std::int64_t& value, std::int64_t lowest, std::int64_t highest);
    template <class Integer>
    bool integer(const char* name, Integer& value, std::int64_t lowest, std::int64_t highest)
    {
        std::int64_t wide = 0;
        const bool there = integer(name, wide, lowest, highest);
        value = there ? static_cast<Integer>(wide) : value;
        return there;
    }
    // One of the texts, as its place among them.
    bool choice(const char* name, std::size_t& value, const std::vector<std::string>& choices);
    // An integer, or a word that has a meaning.
    bool integer_or(const char* name, std::int64_t& value, std::int64_t lowest, std::int64_t highest, const char* word,
                    std::int64_t meaning);
    // The name of a driver function, which has to be there; returns its place.
    std::size_t function(const char* name, std::string& value);
    // A field of any kind, to be looked at by the caller; null when it is not there.
    const Json_value* any(const char* name);
    // Calls read(fields) for the object in a field, or for every object of the list in it.
    template <class Read>
    void object(const char* name, Read read)
    {
        if (const Json_value* value = any(name)) {
            Fields fields(file_, path_of(name), *value);
            read(fields);
            fields.end();
        }
    }
    template <class Read>
    bool list(const char* name, Read read)
    {
        const Json_value* value = any(name);
        if (value == nullptr) {
            return false;
        }
        if (value->kind != Json_value::Kind::list) {
            wrong(name, "is not a list");
        }
        for (std::size_t i = 0; i < value->members.size(); ++i) {
            Fields fields(file_, path_of(name) + "[" + std::to_string(i) + "]", value->members[i].second);
            read(fields);
            fields.end();
        }
        return true;
    }

    // Refuses the fields that nothing has asked for.
    void end() const;
    [[noreturn]] void wrong(const char* name, const std::string& message) const;
    // The same about the object itself.
    [[noreturn]] void wrong(const std::string& message) const;

private:
    std::string path_of(const std::string& name) const { return path_.empty() ? name : path_ + "." + name; }

    const std::string file_;
    const std::string path_;
    const Json_value& object_;
    std::set<std::string> known_;
};

}  // namespace brenvozulta_simulator
