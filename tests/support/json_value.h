// A minimal JSON reader for checking the tool's output in tests.
#pragma once

#include <map>
#include <memory>
#include <string>
#include <vector>

namespace quilmark {

struct Json_Value {
    enum class Kind { Null, Number, String, Array, Object } kind = Kind::Null;
    double number = 0;
    std::string text; // the number's own text for numbers, the (UTF-8) string for strings
    std::vector<Json_Value> items;
    std::map<std::string, Json_Value> members;

    bool Is_Null() const { return kind == Kind::Null; }
    const Json_Value& operator[](const std::string& key) const; // throws if missing
    const Json_Value& operator[](size_t index) const;           // throws if out of range
    size_t Size() const { return kind == Kind::Array ? items.size() : members.size(); }
};

// Throws std::runtime_error on malformed input (trailing garbage included).
Json_Value Parse_Json(const std::string& text);

} // namespace quilmark
