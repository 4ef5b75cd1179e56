#include "scenery/config_file.h"

#include <filesystem>
#include <optional>

#include "platform/native_paths.h"

namespace quilmark {

namespace {

constexpr size_t Max_Text_Length = 65535;
// Nothing the program writes comes near this; a larger file is not a configuration file.
constexpr uint64_t Max_Config_File_Size = 1ULL << 20;

void Put_U16(std::string& out, uint16_t v) {
    out.push_back(static_cast<char>(v & 0xFF));
    out.push_back(static_cast<char>(v >> 8));
}

void Put_Text(std::string& out, const std::string& text) {
    Put_U16(out, static_cast<uint16_t>(text.size()));
    out += text;
}

// Takes fields off the front of the bytes; a field that is not there whole fails and
// leaves the reader failed from then on.
struct Field_Reader {
    std::string_view rest;
    bool failed = false;

    std::optional<uint64_t> Unsigned(size_t size) {
        if (failed || rest.size() < size) {
            failed = true;
            return std::nullopt;
        }
        uint64_t v = 0;
        for (size_t i = 0; i < size; ++i) {
            v |= static_cast<uint64_t>(static_cast<uint8_t>(rest[i])) << (8 * i);
        }
        rest.remove_prefix(size);
        return v;
    }
    std::optional<std::string> Text() {
        std::optional<uint64_t> length = Unsigned(2);
        if (!length || rest.size() < *length) {
            failed = true;
            return std::nullopt;
        }
        std::string text(rest.substr(0, *length));
        rest.remove_prefix(*length);
        return text;
    }
};

std::optional<std::string> Read_Config_Bytes(const std::string& name, Config_Status& status) {
    std::error_code ec;
    if (!std::filesystem::exists(name, ec)) {
        status = Config_Status::Missing;
        return std::nullopt;
    }
    std::optional<std::string> bytes = Read_Whole_File(name, Max_Config_File_Size);
    status = bytes ? Config_Status::Ok : Config_Status::Unreadable;
    return bytes;
}

} // namespace

bool Config_Fits(const Config_Rec& config) {
    return config.title.size() <= Max_Text_Length && config.fs_path.size() <= Max_Text_Length;
}

std::string Encode_Config(const Config_Rec& config) {
    std::string out;
    Put_Text(out, config.title);
    out.push_back(static_cast<char>(config.format_mark));
    out.push_back(static_cast<char>(config.fs_version));
    Put_Text(out, config.fs_path);
    auto count = static_cast<uint32_t>(config.airport_count);
    for (int i = 0; i < 4; ++i) {
        out.push_back(static_cast<char>((count >> (8 * i)) & 0xFF));
    }
    return out;
}

Config_Rec Decode_Config(std::string_view bytes) {
    Config_Rec config;
    Field_Reader reader{bytes};
    if (auto title = reader.Text()) {
        config.title = std::move(*title);
    }
    if (auto mark = reader.Unsigned(1)) {
        config.format_mark = static_cast<uint8_t>(*mark);
    }
    if (auto version = reader.Unsigned(1)) {
        config.fs_version = static_cast<uint8_t>(*version);
    }
    if (auto path = reader.Text()) {
        config.fs_path = std::move(*path);
    }
    if (auto count = reader.Unsigned(4)) {
        config.airport_count = static_cast<int32_t>(static_cast<uint32_t>(*count));
    }
    return config;
}

Config_Status Read_Config_File(Module1& m, const std::string& name) {
    Config_Status status = Config_Status::Ok;
    std::optional<std::string> bytes = Read_Config_Bytes(name, status);
    if (!bytes) {
        return status;
    }
    m.config = Decode_Config(*bytes);
    m.fs_version = m.config.fs_version;
    m.fs_path = m.config.fs_path;
    m.airport_count = m.config.airport_count;
    return Config_Status::Ok;
}

Config_Status Write_First_Config(Module1& m, bool fs2002_chosen, const std::string& fs_path,
                                 const std::string& name) {
    return Write_Chosen_Config(m, fs2002_chosen ? Fs_Version_2002 : 0, fs_path, name);
}

Config_Status Write_Chosen_Config(Module1& m, uint8_t chosen_version, const std::string& fs_path,
                                  const std::string& name) {
    Config_Rec config = m.config;
    config.title = Config_Title;
    config.format_mark = 1;
    if (chosen_version != 0) {
        config.fs_version = chosen_version;
    }
    config.fs_path = fs_path;
    // A new configuration file has no database build behind it yet.
    config.airport_count = 0;
    if (!Config_Fits(config)) {
        return Config_Status::Text_Too_Long;
    }
    m.config = config;
    m.fs_version = config.fs_version;
    m.fs_path = fs_path;
    if (!Write_File_Replacing(name, Encode_Config(config))) {
        return Config_Status::Unwritable;
    }
    return Config_Status::Ok;
}

Config_Status Update_Config_Airport_Count(Module1& m, const std::string& name) {
    Config_Status status = Config_Status::Ok;
    std::optional<std::string> old_bytes = Read_Config_Bytes(name, status);
    if (!old_bytes) {
        return status;
    }
    m.config = Decode_Config(*old_bytes);
    m.config.airport_count = m.airport_count;
    // The record goes over the start of the file, as a write at position 0 would: a file
    // longer than its record keeps the bytes behind it.
    std::string bytes = Encode_Config(m.config);
    if (old_bytes->size() > bytes.size()) {
        bytes.append(*old_bytes, bytes.size());
    }
    if (!Write_File_Replacing(name, bytes)) {
        return Config_Status::Unwritable;
    }
    return Config_Status::Ok;
}

} // namespace quilmark
