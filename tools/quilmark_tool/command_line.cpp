#include "command_line.h"

namespace {

const Option_Spec* Find_Option(const Command_Spec& spec, const std::string& name) {
    for (const Option_Spec& option : spec.options) {
        if (name == option.name) {
            return &option;
        }
    }
    return nullptr;
}

std::string Misuse(const Command_Spec& spec, const std::string& problem) {
    return std::string(spec.name) + ": " + problem + "; usage: " + Usage_Line(spec);
}

} // namespace

std::string Usage_Line(const Command_Spec& spec) {
    std::string line = std::string("quilmark-tool ") + spec.name;
    if (*spec.usage != '\0') {
        line += ' ';
        line += spec.usage;
    }
    return line;
}

std::string Parse_Command_Args(const Command_Spec& spec, const std::vector<std::string>& args,
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
        const Option_Spec* option = Find_Option(spec, arg);
        if (option == nullptr) {
            return Misuse(spec, "unknown option " + arg);
        }
        std::string value;
        if (option->value != nullptr) {
            if (i + 1 >= args.size()) {
                return Misuse(spec, arg + " needs " + option->value);
            }
            value = args[++i];
        }
        parsed.options.emplace_back(arg, std::move(value));
    }
    const size_t wanted = spec.words.size();
    if (parsed.words.size() < wanted) {
        std::string missing;
        for (size_t w = parsed.words.size(); w < wanted; ++w) {
            missing += missing.empty() ? "" : " ";
            missing += spec.words[w];
        }
        return Misuse(spec, missing + " missing");
    }
    if (parsed.words.size() > wanted && !spec.last_word_repeats) {
        return Misuse(spec, "unexpected argument \"" + parsed.words[wanted] + "\"");
    }
    return {};
}
