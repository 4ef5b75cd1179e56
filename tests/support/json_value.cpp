#include "support/json_value.h"

#include <algorithm>
#include <cstdlib>
#include <stdexcept>
#include <string_view>

namespace quilmark {

namespace {

// Reads what quilmark-tool writes: no booleans, and \u escapes only for control bytes.
struct Parser {
    const std::string& s;
    size_t i = 0;

    [[noreturn]] void Fail(const char* what) const {
        throw std::runtime_error(std::string("JSON: ") + what + " at " + std::to_string(i));
    }
    void Skip() { i = std::min(s.size(), s.find_first_not_of(" \n\r\t", i)); }
    bool Eat(char c) {
        Skip();
        if (i < s.size() && s[i] == c) {
            ++i;
            return true;
        }
        return false;
    }
    void Expect(char c) {
        if (!Eat(c)) {
            Fail("unexpected character");
        }
    }
    std::string String() {
        Expect('"');
        std::string out;
        for (; i < s.size() && s[i] != '"'; ++i) {
            if (s[i] != '\\') {
                out += s[i];
            } else if (++i < s.size() && s[i] == 'u') {
                out += static_cast<char>(std::stoul(s.substr(i + 1, 4), nullptr, 16));
                i += 4;
            } else if (i < s.size()) {
                size_t k = std::string_view("nrt").find(s[i]);
                out += k == std::string_view::npos ? s[i] : "\n\r\t"[k];
            }
        }
        if (i >= s.size()) {
            Fail("unterminated string");
        }
        ++i;
        return out;
    }
    Json_Value Value() {
        Json_Value v;
        if (Eat('{')) {
            v.kind = Json_Value::Kind::Object;
            if (!Eat('}')) {
                do {
                    std::string key = String();
                    Expect(':');
                    v.members[key] = Value();
                } while (Eat(','));
                Expect('}');
            }
        } else if (Eat('[')) {
            v.kind = Json_Value::Kind::Array;
            if (!Eat(']')) {
                do {
                    v.items.push_back(Value());
                } while (Eat(','));
                Expect(']');
            }
        } else if (i < s.size() && s[i] == '"') {
            v.kind = Json_Value::Kind::String;
            v.text = String();
        } else if (s.compare(i, 4, "null") == 0) {
            i += 4;
        } else {
            size_t end = s.find_first_not_of("0123456789+-.eE", i);
            end = end == std::string::npos ? s.size() : end;
            if (end == i) {
                Fail("unexpected character");
            }
            v.kind = Json_Value::Kind::Number;
            v.text = s.substr(i, end - i);
            v.number = std::strtod(v.text.c_str(), nullptr);
            i = end;
        }
        return v;
    }
};

} // namespace

const Json_Value& Json_Value::operator[](const std::string& key) const {
    auto it = members.find(key);
    if (it == members.end()) {
        throw std::runtime_error("JSON: no member " + key);
    }
    return it->second;
}

const Json_Value& Json_Value::operator[](size_t index) const {
    if (index >= items.size()) {
        throw std::runtime_error("JSON: index out of range");
    }
    return items[index];
}

Json_Value Parse_Json(const std::string& text) {
    Parser p{text};
    Json_Value v = p.Value();
    p.Skip();
    if (p.i != text.size()) {
        p.Fail("trailing input");
    }
    return v;
}

} // namespace quilmark
