// The shape of each quilmark-tool command's arguments, and the one check of a command line
// against it: a misused command is answered with one line that says what is wrong.
#pragma once

#include <string>
#include <utility>
#include <vector>

namespace quilmark {

struct Option_Syntax {
    const char* name;  // "--zoom"
    const char* value; // what follows it in the usage ("N"), or nullptr for a flag
};

struct Command_Syntax {
    const char* name;               // "chart"
    const char* usage;              // what follows the name in the usage
    std::vector<const char*> words; // the arguments that are not options, in order
    bool last_word_repeats = false; // FILE... : one or more
    std::vector<Option_Syntax> options;
};

struct Command_Args {
    std::vector<std::string> words;
    // Each option given, in the order given, with its value ("" for a flag).
    std::vector<std::pair<std::string, std::string>> options;
};

// Splits args (the words after the command's name) into words and options as syntax
// describes them. Returns "" or the reason the line does not fit, without the program's
// name and without a line end.
std::string Parse_Command_Args(const Command_Syntax& syntax, const std::vector<std::string>& args,
                               Command_Args& parsed);

// "quilmark-tool NAME USAGE", for the help and the answers to misuse.
std::string Usage_Line(const Command_Syntax& syntax);

} // namespace quilmark
