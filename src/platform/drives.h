// The machine's drives as the program sees them: a letter path ("C:"), a type, a volume
// label, and the native directory that stands for the drive's root.
//
// On Linux the simulator usually lives in a Wine prefix, and the prefix's dosdevices folder
// says which letters exist and where they point. A simulator folder outside any prefix gets
// a single fixed drive "C:" rooted at "/", so that native absolute paths and relative
// scenery paths keep working and Windows paths of a copied scenery.cfg at least resolve.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace quilmark {

// Drive types as Windows numbers them; the scenery folders use only fixed and CD-ROM drives.
constexpr int16_t Drive_Type_Unknown = 0;
constexpr int16_t Drive_Type_Removable = 1;
constexpr int16_t Drive_Type_Fixed = 2;
constexpr int16_t Drive_Type_Network = 3;
constexpr int16_t Drive_Type_Cd_Rom = 4;
constexpr int16_t Drive_Type_Ram_Disk = 5;

struct Drive_Rec {
    std::string path; // letter and colon, upper case: "C:"
    int16_t drive_type = Drive_Type_Unknown;
    std::string volume_label; // Windows-1252; empty if the drive has none
    std::string native_root;  // absolute native directory (UTF-8) for the drive's root
    // The root is there to be read. A CD-ROM drive without a medium (a dangling link) is
    // not ready, and has no label to match.
    bool ready = false;
    bool operator==(const Drive_Rec&) const = default;
};

struct Drive_List {
    std::vector<Drive_Rec> drives; // in letter order
    std::string wine_prefix;       // native folder of the prefix; empty outside one
};

// The Wine prefix that holds a native folder: the nearest folder above it (or the folder
// itself) that has a "dosdevices" subfolder. Empty if there is none.
std::string Find_Wine_Prefix(const std::string& native_folder);

// The drives of a Wine prefix, read from its dosdevices links: "c:" -> "../drive_c" and
// the like. A drive's type comes from the prefix's registry (the Wine drive types) where
// it says so; otherwise a drive with a "d::" device link to an optical device, or whose
// folder looks like a CD or DVD mount, is a CD-ROM, and every other drive is fixed. The
// label is the first line of the ".windows-label" file in the drive's root.
Drive_List Wine_Drive_List(const std::string& prefix);

// The list for a folder outside any prefix: one fixed drive "C:" rooted at "/".
Drive_List Plain_Drive_List();

// The list for the simulator folder (a native path, UTF-8): the drives of its Wine prefix
// if it lies in one, else the plain list.
Drive_List Drive_List_For_Folder(const std::string& native_folder);

// A Wine prefix and the native folder of its drive C:.
struct Wine_Prefix_Rec {
    std::string prefix; // native folder (UTF-8)
    std::string c_root;
    bool operator==(const Wine_Prefix_Rec&) const = default;
};

// The Wine prefixes in the places of a home folder where Wine and the game launchers keep
// them: ~/.wine and its siblings (~/.wine-fs2002, ~/.wine32), winetricks' prefixes,
// Lutris' game folders, Bottles' bottles (also as a Flatpak), PlayOnLinux's prefixes,
// CrossOver's bottles, and the prefixes that Steam's Proton makes for each game. A folder
// counts as a prefix if it has a drive C: (its "dosdevices/c:" or its "drive_c"). Each
// prefix comes once, however many links lead to it, in the order of the places and by name
// within a place; the list stops at a few hundred.
std::vector<Wine_Prefix_Rec> Find_Home_Wine_Prefixes(const std::string& home);

// The drive whose letter path is the first two characters of text ("c:" or "C:"), or
// nullptr.
const Drive_Rec* Find_Drive(const Drive_List& list, std::string_view letter_path);

} // namespace quilmark
