#include "command_line.h"

namespace quilmark {

namespace {

const Option_Syntax* Find_Option(const Command_Syntax& syntax, const std::string& name) {
    for (const Option_Syntax& option : syntax.options) {
        if (name == option.name) {
            return &option;
        }
    }
    return nullptr;
}

std::string Misuse(const Command_Syntax& syntax, const std::string& problem) {
    return std::string(syntax.name) + ": " + problem + "; usage: " + Usage_Line(syntax);
}

} // namespace

std::string Usage_Line(const Command_Syntax& syntax) {
    std::string line = std::string("quilmark-tool ") + syntax.name;
    if (*syntax.usage != '\0') {
        line += ' ';
        line += syntax.usage;
    }
    return line;
}

std::string Parse_Command_Args(const Command_Syntax& syntax, const std::vector<std::string>& args,
                               Command_Args& parsed) {
    parsed = {};
    bool options_ended = false;
    for (size_t i = 0; i < args.size(); ++i) {
        const std::string& arg = args[i];
        if (options_ended || arg.size() < 2 || arg.compare(0, 2, "--") != 0) {
            parsed.words.push_back(arg);
            continue;
        }
        if (arg == "--") {
            options_ended = true;
            continue;
        }
        const Option_Syntax* option = Find_Option(syntax, arg);
        if (option == nullptr) {
            return Misuse(syntax, "unknown option " + arg);
        }
        std::string value;
        if (option->value != nullptr) {
            if (i + 1 >= args.size()) {
                return Misuse(syntax, arg + " needs " + option->value);
            }
            value = args[++i];
        }
        parsed.options.emplace_back(arg, std::move(value));
    }
    const size_t wanted = syntax.words.size();
    if (parsed.words.size() < wanted) {
        std::string missing;
        for (size_t w = parsed.words.size(); w < wanted; ++w) {
            missing += missing.empty() ? "" : " ";
            missing += syntax.words[w];
        }
        return Misuse(syntax, missing + " missing");
    }
    if (parsed.words.size() > wanted && !syntax.last_word_repeats) {
        return Misuse(syntax, "unexpected argument \"" + parsed.words[wanted] + "\"");
    }
    return {};
}

} // namespace quilmark
