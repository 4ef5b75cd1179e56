// A small JSON writer for the tool's output: objects and arrays with commas placed by the
// writer, numbers in the shortest text that reads back to the same double, texts held in
// Windows-1252 written as UTF-8.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace quilmark {

class Json_Out {
  public:
    void Begin_Object();
    void End_Object();
    void Begin_Array();
    void End_Array();
    void Key(std::string_view key);
    void Int(int64_t value);
    void Number(double value); // null if not finite
    void Ansi_Text(std::string_view ansi);
    void Utf8_Text(std::string_view utf8);
    void Null();
    void Bool(bool value);
    // A line break between elements of the top-level lists keeps large output readable.
    void Line_Break();
    const std::string& Text() const { return text_; }

  private:
    void Before_Value();
    void Write_String(std::string_view utf8);
    std::string text_;
    std::vector<bool> first_; // one per open container: nothing written in it yet
    bool after_key_ = false;
};

} // namespace quilmark
