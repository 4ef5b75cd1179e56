#include "support/json_value.h"

#include <cstdlib>
#include <stdexcept>

namespace {

struct Parser {
    const std::string& s;
    size_t i = 0;

    [[noreturn]] void Fail(const char* what) const {
        throw std::runtime_error(std::string("JSON: ") + what + " at " + std::to_string(i));
    }
    void Skip() {
        while (i < s.size() && (s[i] == ' ' || s[i] == '\n' || s[i] == '\r' || s[i] == '\t')) {
            ++i;
        }
    }
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
        while (i < s.size() && s[i] != '"') {
            if (s[i] == '\\') {
                ++i;
                if (i >= s.size()) {
                    Fail("cut escape");
                }
                char e = s[i++];
                switch (e) {
                case 'n':
                    out += '\n';
                    break;
                case 't':
                    out += '\t';
                    break;
                case 'r':
                    out += '\r';
                    break;
                case 'u': {
                    unsigned cp = static_cast<unsigned>(std::stoul(s.substr(i, 4), nullptr, 16));
                    i += 4;
                    if (cp < 0x80) {
                        out += static_cast<char>(cp);
                    } else if (cp < 0x800) {
                        out += static_cast<char>(0xC0 | (cp >> 6));
                        out += static_cast<char>(0x80 | (cp & 0x3F));
                    } else {
                        out += static_cast<char>(0xE0 | (cp >> 12));
                        out += static_cast<char>(0x80 | ((cp >> 6) & 0x3F));
                        out += static_cast<char>(0x80 | (cp & 0x3F));
                    }
                    break;
                }
                default:
                    out += e;
                }
            } else {
                out += s[i++];
            }
        }
        if (i >= s.size()) {
            Fail("unterminated string");
        }
        ++i;
        return out;
    }
    Json_Value Value() {
        Skip();
        Json_Value v;
        if (i >= s.size()) {
            Fail("end of input");
        }
        char c = s[i];
        if (c == '{') {
            ++i;
            v.kind = Json_Value::Kind::Object;
            if (!Eat('}')) {
                do {
                    Skip();
                    std::string key = String();
                    Expect(':');
                    v.members[key] = Value();
                } while (Eat(','));
                Expect('}');
            }
        } else if (c == '[') {
            ++i;
            v.kind = Json_Value::Kind::Array;
            if (!Eat(']')) {
                do {
                    v.items.push_back(Value());
                } while (Eat(','));
                Expect(']');
            }
        } else if (c == '"') {
            v.kind = Json_Value::Kind::String;
            v.text = String();
        } else if (s.compare(i, 4, "null") == 0) {
            i += 4;
        } else if (s.compare(i, 4, "true") == 0) {
            i += 4;
            v.kind = Json_Value::Kind::Bool;
            v.boolean = true;
        } else if (s.compare(i, 5, "false") == 0) {
            i += 5;
            v.kind = Json_Value::Kind::Bool;
        } else {
            size_t start = i;
            while (i < s.size() && (std::isdigit(static_cast<unsigned char>(s[i])) || s[i] == '-' ||
                                    s[i] == '+' || s[i] == '.' || s[i] == 'e' || s[i] == 'E')) {
                ++i;
            }
            if (start == i) {
                Fail("unexpected character");
            }
            v.kind = Json_Value::Kind::Number;
            v.text = s.substr(start, i - start);
            v.number = std::strtod(v.text.c_str(), nullptr);
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
