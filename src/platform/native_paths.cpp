#include "platform/native_paths.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <functional>
#include <random>

#include "platform/text1252.h"

namespace quilmark {

namespace fs = std::filesystem;

namespace {

bool Is_Separator(char c) {
    return c == '\\' || c == '/';
}

bool Is_Ascii_Letter(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

bool Entry_Exists(const fs::path& p) {
    std::error_code ec;
    return fs::exists(fs::symlink_status(p, ec));
}

// The native name of the entry of folder dir that the component names, if any.
std::optional<std::string> Find_Entry(const fs::path& dir, std::string_view component) {
    // A NUL byte would cut the name short at the system call.
    if (component.find('\0') != std::string_view::npos) {
        return std::nullopt;
    }
    std::string as_utf8 = Ansi_To_Utf8(component);
    if (Entry_Exists(dir / as_utf8)) {
        return as_utf8;
    }
    std::string raw(component);
    if (raw != as_utf8 && Entry_Exists(dir / raw)) {
        return raw;
    }
    std::optional<std::string> best;
    std::error_code ec;
    fs::directory_iterator it(dir.empty() ? fs::path(".") : dir, ec);
    for (; !ec && it != fs::directory_iterator(); it.increment(ec)) {
        std::string name = it->path().filename().string();
        if (Equal_No_Case(Utf8_To_Ansi(name), component) || Equal_No_Case(name, component)) {
            if (!best || name < *best) {
                best = std::move(name);
            }
        }
    }
    return best;
}

} // namespace

std::string Resolve_Native_Path(const Drive_List& drives, std::string_view program_path) {
    if (program_path.empty()) {
        return {};
    }
    fs::path current;
    std::string_view rest = program_path;
    if (rest.size() >= 2 && Is_Ascii_Letter(rest[0]) && rest[1] == ':') {
        const Drive_Rec* drive = Find_Drive(drives, rest.substr(0, 2));
        if (drive == nullptr || drive->native_root.empty()) {
            return {};
        }
        current = drive->native_root;
        rest.remove_prefix(2);
    } else if (Is_Separator(rest[0])) {
        current = "/";
    }
    bool relative = current.empty();

    // Components appended below the base, which ".." may take away again.
    size_t depth = 0;
    bool missing = false;
    size_t i = 0;
    while (i < rest.size()) {
        size_t j = i;
        while (j < rest.size() && !Is_Separator(rest[j])) {
            ++j;
        }
        std::string_view component = rest.substr(i, j - i);
        i = j + 1;
        if (component.empty() || component == ".") {
            continue;
        }
        if (component == "..") {
            if (depth > 0) {
                current = current.parent_path();
                --depth;
            } else if (relative) {
                current /= "..";
            }
            continue;
        }
        std::optional<std::string> name;
        if (!missing) {
            name = Find_Entry(current, component);
            missing = !name.has_value();
        }
        current /= name ? *name : Ansi_To_Utf8(component);
        ++depth;
    }
    if (current.empty()) {
        return ".";
    }
    return current.string();
}

bool Wildcard_Match(std::string_view pattern, std::string_view name) {
    if (pattern == "*.*") {
        return true;
    }
    size_t p = 0;
    size_t n = 0;
    size_t star = std::string_view::npos;
    size_t resume = 0;
    while (n < name.size()) {
        if (p < pattern.size() && pattern[p] == '*') {
            star = p++;
            resume = n;
        } else if (p < pattern.size() &&
                   (pattern[p] == '?' || Upper_1252_Char(pattern[p]) == Upper_1252_Char(name[n]))) {
            ++p;
            ++n;
        } else if (star != std::string_view::npos) {
            // Let the last star take one more character and try again from there.
            p = star + 1;
            n = ++resume;
        } else {
            return false;
        }
    }
    while (p < pattern.size() && pattern[p] == '*') {
        ++p;
    }
    return p == pattern.size();
}

std::vector<Listed_File_Rec> List_Folder_Files(const Drive_List& drives,
                                               std::string_view folder_path,
                                               std::string_view pattern) {
    std::vector<Listed_File_Rec> files;
    std::string folder = Resolve_Native_Path(drives, folder_path);
    if (folder.empty()) {
        return files;
    }
    std::error_code ec;
    fs::directory_iterator it(folder, ec);
    for (; !ec && it != fs::directory_iterator(); it.increment(ec)) {
        std::string native_name = it->path().filename().string();
        if (native_name.empty() || native_name[0] == '.') {
            continue;
        }
        std::error_code type_ec;
        if (!it->is_regular_file(type_ec)) {
            continue;
        }
        std::string name = Utf8_To_Ansi(native_name);
        if (Wildcard_Match(pattern, name)) {
            files.push_back({std::move(name), it->path().string()});
        }
    }
    std::sort(files.begin(), files.end(), [](const Listed_File_Rec& a, const Listed_File_Rec& b) {
        int order = Compare_No_Case(a.name, b.name);
        return order != 0 ? order < 0 : a.native_path < b.native_path;
    });
    return files;
}

bool Normal_File_Exists(const Drive_List& drives, std::string_view program_path) {
    std::string native = Resolve_Native_Path(drives, program_path);
    std::error_code ec;
    return !native.empty() && fs::is_regular_file(native, ec);
}

namespace {

template <class Buffer>
std::optional<Buffer> Read_Regular_File(const std::string& native_path, uint64_t max_size,
                                        size_t spare) {
    std::error_code ec;
    if (!fs::is_regular_file(native_path, ec)) {
        return std::nullopt;
    }
    std::ifstream in(native_path, std::ios::binary | std::ios::ate);
    if (!in) {
        return std::nullopt;
    }
    std::streamoff size = in.tellg();
    if (size < 0 || static_cast<uint64_t>(size) > max_size) {
        return std::nullopt;
    }
    Buffer bytes(static_cast<size_t>(size) + spare, 0);
    in.seekg(0);
    if (size > 0 && !in.read(reinterpret_cast<char*>(bytes.data()), size)) {
        return std::nullopt;
    }
    return bytes;
}

// A temporary file that a write of the target made: "." and the target's name, ".tmp-",
// and the digits of a random number.
bool Is_Temp_File_Of(std::string_view name, std::string_view target_name) {
    std::string prefix(".");
    prefix.append(target_name).append(".tmp-");
    if (name.size() <= prefix.size() || name.substr(0, prefix.size()) != prefix) {
        return false;
    }
    return std::all_of(name.begin() + static_cast<long>(prefix.size()), name.end(),
                       [](char c) { return c >= '0' && c <= '9'; });
}

// Removes what earlier writes of the target left when they were stopped part-way.
void Remove_Stale_Temp_Files(const fs::path& folder, const std::string& target_name) {
    std::error_code ec;
    fs::directory_iterator it(folder.empty() ? fs::path(".") : folder, ec);
    for (; !ec && it != fs::directory_iterator(); it.increment(ec)) {
        std::error_code type_ec;
        if (Is_Temp_File_Of(it->path().filename().string(), target_name) &&
            it->symlink_status(type_ec).type() == fs::file_type::regular) {
            std::error_code remove_ec;
            fs::remove(it->path(), remove_ec);
        }
    }
}

} // namespace

std::optional<std::string> Read_Whole_File(const std::string& native_path, uint64_t max_size) {
    return Read_Regular_File<std::string>(native_path, max_size, 0);
}

std::optional<std::vector<uint8_t>> Read_Whole_File_Bytes(const std::string& native_path,
                                                          uint64_t max_size, size_t spare) {
    return Read_Regular_File<std::vector<uint8_t>>(native_path, max_size, spare);
}

File_Part_Reader::~File_Part_Reader() {
    if (file_ != nullptr) {
        std::fclose(file_);
    }
}

bool File_Part_Reader::Open(const std::string& native_path, uint64_t max_size) {
    std::error_code ec;
    if (file_ != nullptr || !fs::is_regular_file(native_path, ec)) {
        return false;
    }
    file_ = std::fopen(native_path.c_str(), "rb");
    if (file_ == nullptr) {
        return false;
    }
    const uintmax_t size = fs::file_size(native_path, ec);
    if (ec || size > max_size) {
        return false;
    }
    size_ = size;
    buffer_.resize(1 << 20);
    return true;
}

bool File_Part_Reader::Take_Refilling(void* out, size_t n) {
    if (file_ == nullptr || n > Remaining()) {
        return false;
    }
    auto* to = static_cast<uint8_t*>(out);
    while (n > 0) {
        if (buffer_at_ == buffer_end_) {
            const size_t wanted =
                static_cast<size_t>(std::min<uint64_t>(buffer_.size(), Remaining()));
            buffer_end_ = std::fread(buffer_.data(), 1, wanted, file_);
            buffer_at_ = 0;
            if (buffer_end_ == 0) {
                read_failed_ = true; // the file ended before its length, or the read failed
                return false;
            }
        }
        const size_t part = std::min(n, buffer_end_ - buffer_at_);
        std::memcpy(to, buffer_.data() + buffer_at_, part);
        buffer_at_ += part;
        taken_ += part;
        to += part;
        n -= part;
    }
    return true;
}

std::optional<Pending_File_Rec>
Write_Pending_File_In_Parts(const std::string& native_path,
                            const std::function<bool(const Write_Part&)>& produce) {
    fs::path target(native_path);
    fs::path folder = target.parent_path();
    Remove_Stale_Temp_Files(folder, target.filename().string());
    std::random_device random;
    fs::path temp;
    std::FILE* out = nullptr;
    // A hidden name beside the target, created afresh so no other file is overwritten.
    for (int attempt = 0; attempt < 16 && out == nullptr; ++attempt) {
        std::string name = ".";
        name += target.filename().string();
        name += ".tmp-";
        name += std::to_string(random());
        temp = folder / name;
        out = std::fopen(temp.string().c_str(), "wbx");
    }
    if (out == nullptr) {
        return std::nullopt;
    }
    bool parts_written = true;
    bool produced = false;
    try {
        produced = produce([out, &parts_written](std::string_view part) {
            parts_written =
                parts_written && std::fwrite(part.data(), 1, part.size(), out) == part.size();
        });
    } catch (...) {
        std::fclose(out);
        Discard_Pending_File({temp.string(), native_path});
        throw;
    }
    bool written = produced && parts_written;
    written = std::fflush(out) == 0 && written;
    written = std::fclose(out) == 0 && written;
    Pending_File_Rec pending{temp.string(), native_path};
    if (!written) {
        Discard_Pending_File(pending);
        return std::nullopt;
    }
    return pending;
}

std::optional<Pending_File_Rec> Write_Pending_File(const std::string& native_path,
                                                   std::string_view bytes) {
    return Write_Pending_File_In_Parts(native_path, [bytes](const Write_Part& write) {
        write(bytes);
        return true;
    });
}

bool Commit_Pending_File(const Pending_File_Rec& file) {
    std::error_code ec;
    fs::rename(file.temp_path, file.target_path, ec);
    if (ec) {
        Discard_Pending_File(file);
        return false;
    }
    return true;
}

void Discard_Pending_File(const Pending_File_Rec& file) {
    std::error_code ec;
    fs::remove(file.temp_path, ec);
}

bool Write_File_Replacing(const std::string& native_path, std::string_view bytes) {
    std::optional<Pending_File_Rec> pending = Write_Pending_File(native_path, bytes);
    return pending && Commit_Pending_File(*pending);
}

} // namespace quilmark
