#include "json_out.h"

#include <charconv>
#include <cmath>
#include <cstdio>

#include "platform/text1252.h"

namespace quilmark {

void Json_Out::Before_Value() {
    if (after_key_) {
        after_key_ = false;
        return;
    }
    if (!first_.empty()) {
        if (!first_.back()) {
            text_ += ", ";
        }
        first_.back() = false;
    }
}

void Json_Out::Begin_Object() {
    Before_Value();
    text_ += '{';
    first_.push_back(true);
}

void Json_Out::End_Object() {
    text_ += '}';
    first_.pop_back();
}

void Json_Out::Begin_Array() {
    Before_Value();
    text_ += '[';
    first_.push_back(true);
}

void Json_Out::End_Array() {
    text_ += ']';
    first_.pop_back();
}

void Json_Out::Key(std::string_view key) {
    Before_Value();
    Write_String(key);
    text_ += ": ";
    after_key_ = true;
}

void Json_Out::Int(int64_t value) {
    Before_Value();
    text_ += std::to_string(value);
}

void Json_Out::Number(double value) {
    Before_Value();
    if (!std::isfinite(value)) {
        text_ += "null";
        return;
    }
    char buffer[64];
    auto result = std::to_chars(buffer, buffer + sizeof buffer, value);
    text_.append(buffer, result.ptr);
}

void Json_Out::Ansi_Text(std::string_view ansi) {
    Utf8_Text(Ansi_To_Utf8(ansi));
}

void Json_Out::Utf8_Text(std::string_view utf8) {
    Before_Value();
    Write_String(utf8);
}

void Json_Out::Write_String(std::string_view utf8) {
    text_ += '"';
    for (char c : utf8) {
        auto b = static_cast<unsigned char>(c);
        switch (c) {
        case '"':
            text_ += "\\\"";
            break;
        case '\\':
            text_ += "\\\\";
            break;
        case '\n':
            text_ += "\\n";
            break;
        case '\r':
            text_ += "\\r";
            break;
        case '\t':
            text_ += "\\t";
            break;
        default:
            if (b < 0x20) {
                char escaped[8];
                std::snprintf(escaped, sizeof escaped, "\\u%04x", b);
                text_ += escaped;
            } else {
                text_ += c;
            }
        }
    }
    text_ += '"';
}

void Json_Out::Null() {
    Before_Value();
    text_ += "null";
}

void Json_Out::Bool(bool value) {
    Before_Value();
    text_ += value ? "true" : "false";
}

void Json_Out::Line_Break() {
    text_ += '\n';
}

} // namespace quilmark
