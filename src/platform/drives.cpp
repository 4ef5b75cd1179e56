#include "platform/drives.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <map>
#include <set>
#include <sstream>

#include "platform/text1252.h"

namespace quilmark {

namespace fs = std::filesystem;

namespace {

bool Is_Ascii_Letter(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

char Lower_Ascii(char c) {
    return (c >= 'A' && c <= 'Z') ? static_cast<char>(c + 32) : c;
}

bool Starts_With_Any(std::string_view text, std::initializer_list<std::string_view> heads) {
    for (std::string_view head : heads) {
        if (text.starts_with(head)) {
            return true;
        }
    }
    return false;
}

std::string First_Line_Of_File(const fs::path& file, size_t max_size) {
    std::ifstream in(file, std::ios::binary);
    std::string line;
    if (in) {
        std::getline(in, line);
    }
    if (line.size() > max_size) {
        line.resize(max_size);
    }
    while (!line.empty() && (line.back() == '\r' || line.back() == '\n')) {
        line.pop_back();
    }
    return line;
}

// Drive types that the prefix's registry sets in the key Software\Wine\Drives, by letter:
// lines such as "d:"="cdrom" in system.reg.
std::map<char, int16_t> Registry_Drive_Types(const fs::path& prefix) {
    std::map<char, int16_t> types;
    std::ifstream in(prefix / "system.reg", std::ios::binary);
    std::string line;
    bool in_key = false;
    while (in && std::getline(in, line)) {
        if (!line.empty() && line.back() == '\r') {
            line.pop_back();
        }
        if (line.starts_with("[")) {
            in_key = Lower_1252(line).starts_with("[software\\\\wine\\\\drives]");
            continue;
        }
        if (!in_key || line.size() < 8 || line[0] != '"' || !Is_Ascii_Letter(line[1]) ||
            line.compare(2, 4, ":\"=\"") != 0) {
            continue;
        }
        size_t close = line.find('"', 6);
        if (close == std::string::npos) {
            continue;
        }
        std::string type = Lower_1252(line.substr(6, close - 6));
        static const std::map<std::string, int16_t> names = {{"hd", Drive_Type_Fixed},
                                                             {"cdrom", Drive_Type_Cd_Rom},
                                                             {"network", Drive_Type_Network},
                                                             {"floppy", Drive_Type_Removable},
                                                             {"ramdisk", Drive_Type_Ram_Disk}};
        auto found = names.find(type);
        if (found != names.end()) {
            types[Lower_Ascii(line[1])] = found->second;
        }
    }
    return types;
}

// The type a "d::" device link says, from the device's name: optical drives and loop
// devices (a mounted disc image) are CD-ROMs, floppies removable, disks say nothing.
int16_t Device_Drive_Type(const fs::path& device) {
    std::string name = Lower_1252(device.filename().string());
    if (Starts_With_Any(name, {"sd", "hd", "vd", "xvd", "nvme", "mmcblk", "md", "dm-"})) {
        return Drive_Type_Unknown;
    }
    if (Starts_With_Any(name, {"fd", "floppy"})) {
        return Drive_Type_Removable;
    }
    return Drive_Type_Cd_Rom;
}

// Decodes the octal escapes (\040 for a blank) of a mount table field.
std::string Unescape_Mount_Field(std::string_view field) {
    std::string out;
    for (size_t i = 0; i < field.size(); ++i) {
        if (field[i] == '\\' && i + 3 < field.size() &&
            field.substr(i + 1, 3).find_first_not_of("01234567") == std::string_view::npos) {
            out.push_back(static_cast<char>((field[i + 1] - '0') * 64 + (field[i + 2] - '0') * 8 +
                                            (field[i + 3] - '0')));
            i += 3;
        } else {
            out.push_back(field[i]);
        }
    }
    return out;
}

// Mount points of disc file systems, from the system's mount table where it has one.
std::vector<std::string> Disc_Mount_Points() {
    std::vector<std::string> points;
    std::ifstream in("/proc/self/mounts");
    std::string line;
    while (in && std::getline(in, line)) {
        std::istringstream fields(line);
        std::string device, mount_point, type;
        if (fields >> device >> mount_point >> type && (type == "iso9660" || type == "udf")) {
            points.push_back(Unescape_Mount_Field(mount_point));
        }
    }
    return points;
}

// A folder that a CD or DVD is usually mounted on: /media/cdrom0, /mnt/dvd and the like.
bool Looks_Like_Disc_Mount(const fs::path& root, const std::vector<std::string>& disc_mounts) {
    std::error_code ec;
    fs::path canonical = fs::weakly_canonical(root, ec);
    for (const std::string& point : disc_mounts) {
        if (!ec && canonical == fs::path(point)) {
            return true;
        }
    }
    std::string name = Lower_1252(root.lexically_normal().filename().string());
    if (name.empty()) {
        name = Lower_1252(root.lexically_normal().parent_path().filename().string());
    }
    return Starts_With_Any(name, {"cdrom", "cd-rom", "cdrw", "dvd"});
}

} // namespace

std::string Find_Wine_Prefix(const std::string& native_folder) {
    std::error_code ec;
    std::vector<fs::path> starts;
    fs::path absolute = fs::absolute(native_folder, ec);
    if (!ec) {
        starts.push_back(absolute.lexically_normal());
    }
    fs::path canonical = fs::weakly_canonical(native_folder, ec);
    if (!ec) {
        starts.push_back(canonical);
    }
    for (fs::path p : starts) {
        for (;;) {
            if (fs::is_directory(p / "dosdevices", ec)) {
                return p.string();
            }
            fs::path parent = p.parent_path();
            if (parent == p || parent.empty()) {
                break;
            }
            p = parent;
        }
    }
    return {};
}

Drive_List Wine_Drive_List(const std::string& prefix) {
    Drive_List list;
    list.wine_prefix = prefix;
    fs::path dosdevices = fs::path(prefix) / "dosdevices";
    std::map<char, fs::path> roots;
    std::map<char, int16_t> device_types;
    std::error_code ec;
    fs::directory_iterator it(dosdevices, ec);
    for (; !ec && it != fs::directory_iterator(); it.increment(ec)) {
        std::string name = it->path().filename().string();
        if (name.size() < 2 || !Is_Ascii_Letter(name[0]) || name[1] != ':') {
            continue;
        }
        std::error_code link_ec;
        fs::path target = fs::read_symlink(it->path(), link_ec);
        if (link_ec) {
            target = it->path(); // a real folder standing in for the drive
        }
        char letter = Lower_Ascii(name[0]);
        if (name.size() == 2) {
            roots[letter] = target.is_absolute() ? target.lexically_normal()
                                                 : (dosdevices / target).lexically_normal();
        } else if (name == std::string{name[0], ':', ':'}) {
            device_types[letter] = Device_Drive_Type(target);
        }
    }
    std::map<char, int16_t> registry_types = Registry_Drive_Types(prefix);
    std::vector<std::string> disc_mounts = Disc_Mount_Points();
    for (const auto& [letter, root] : roots) {
        Drive_Rec drive;
        drive.path = {Upper_1252_Char(letter), ':'};
        drive.native_root = root.string();
        std::error_code dir_ec;
        drive.ready = fs::is_directory(root, dir_ec);
        if (auto r = registry_types.find(letter); r != registry_types.end()) {
            drive.drive_type = r->second;
        } else if (auto d = device_types.find(letter);
                   d != device_types.end() && d->second != Drive_Type_Unknown) {
            drive.drive_type = d->second;
        } else if (Looks_Like_Disc_Mount(root, disc_mounts)) {
            drive.drive_type = Drive_Type_Cd_Rom;
        } else {
            drive.drive_type = Drive_Type_Fixed;
        }
        if (drive.ready) {
            drive.volume_label = Utf8_To_Ansi(First_Line_Of_File(root / ".windows-label", 256));
        }
        list.drives.push_back(std::move(drive));
    }
    return list;
}

Drive_List Plain_Drive_List() {
    Drive_List list;
    list.drives.push_back({"C:", Drive_Type_Fixed, "", "/", true});
    return list;
}

Drive_List Drive_List_For_Folder(const std::string& native_folder) {
    std::string prefix = Find_Wine_Prefix(native_folder);
    return prefix.empty() ? Plain_Drive_List() : Wine_Drive_List(prefix);
}

const Drive_Rec* Find_Drive(const Drive_List& list, std::string_view letter_path) {
    for (const Drive_Rec& drive : list.drives) {
        if (Equal_No_Case(drive.path, letter_path)) {
            return &drive;
        }
    }
    return nullptr;
}

namespace {

// A place in the home folder that holds prefixes: the folders in `folder` whose names begin
// with `name_start`, each with `inside` appended.
struct Prefix_Place {
    const char* folder;
    const char* name_start;
    const char* inside;
};

constexpr Prefix_Place Prefix_Places[] = {
    {"", ".wine", ""},
    {".local/share/wineprefixes", "", ""},
    {"Games", "", ""},
    {".local/share/bottles/bottles", "", ""},
    {".var/app/com.usebottles.bottles/data/bottles/bottles", "", ""},
    {".PlayOnLinux/wineprefix", "", ""},
    {".cxoffice", "", ""},
    {".local/share/Steam/steamapps/compatdata", "", "pfx"},
    {".steam/steam/steamapps/compatdata", "", "pfx"},
    {".steam/root/steamapps/compatdata", "", "pfx"},
    {".var/app/com.valvesoftware.Steam/.local/share/Steam/steamapps/compatdata", "", "pfx"},
};

constexpr size_t Max_Home_Prefixes = 300;

// The native folder of a prefix's drive C:, or empty if it has none.
std::string Prefix_C_Root(const fs::path& prefix) {
    std::error_code ec;
    if (fs::is_directory(prefix / "dosdevices", ec)) {
        const Drive_List list = Wine_Drive_List(prefix.string());
        const Drive_Rec* c = Find_Drive(list, "C:");
        if (c != nullptr && c->ready) {
            return c->native_root;
        }
    }
    return fs::is_directory(prefix / "drive_c", ec) ? (prefix / "drive_c").string() : "";
}

} // namespace

std::vector<Wine_Prefix_Rec> Find_Home_Wine_Prefixes(const std::string& home) {
    std::vector<Wine_Prefix_Rec> prefixes;
    std::set<fs::path> seen;
    for (const Prefix_Place& place : Prefix_Places) {
        std::vector<fs::path> candidates;
        std::error_code ec;
        fs::directory_iterator it(fs::path(home) / place.folder, ec);
        for (; !ec && it != fs::directory_iterator(); it.increment(ec)) {
            if (it->path().filename().string().starts_with(place.name_start) &&
                candidates.size() < Max_Home_Prefixes) {
                candidates.push_back(*place.inside != 0 ? it->path() / place.inside : it->path());
            }
        }
        std::sort(candidates.begin(), candidates.end());
        for (const fs::path& candidate : candidates) {
            std::error_code canonical_ec;
            const fs::path same = fs::weakly_canonical(candidate, canonical_ec);
            if (prefixes.size() >= Max_Home_Prefixes || canonical_ec || seen.contains(same)) {
                continue;
            }
            std::string c_root = Prefix_C_Root(candidate);
            if (!c_root.empty()) {
                seen.insert(same);
                prefixes.push_back({candidate.string(), std::move(c_root)});
            }
        }
    }
    return prefixes;
}

} // namespace quilmark
