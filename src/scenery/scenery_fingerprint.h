// The fingerprint of the scenery that the airport database was built from: scenery.cfg's
// bytes, magdec.bgl's size and time, and the name, size and time of every BGL file in the
// folders of the airport areas. It lies beside the database in a small file of its own, so
// that a later start notices added, removed or replaced scenery with folder listings and
// stats alone, and builds the airport list again.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/drives.h"

namespace quilmark {

struct Module1;

constexpr const char* Fingerprint_File_Name = "all_fs_airports.fingerprint";

// A file as a listing and a stat see it: its native path, its size in bytes (-1 if it is not
// there) and its modification time in the file clock's ticks.
struct File_Stamp_Rec {
    std::string path;
    int64_t size = -1;
    int64_t time = 0;
    bool operator==(const File_Stamp_Rec&) const = default;
};

struct Scenery_Fingerprint_Rec {
    // scenery.cfg by its path, its size and a 64-bit hash of its bytes: an edit counts, a
    // touch that leaves the bytes alone does not.
    std::string scenery_cfg_path;
    int64_t scenery_cfg_size = -1;
    uint64_t scenery_cfg_hash = 0;
    File_Stamp_Rec magdec;
    // The "*.bgl" files of every folder of an airport area, each once, ordered by path.
    std::vector<File_Stamp_Rec> bgl_files;
    bool operator==(const Scenery_Fingerprint_Rec&) const = default;
};

// The fingerprint of the scenery as it is now, from the areas that the scan has read and
// located. scenery.cfg is the only file read; the rest is listings and stats.
Scenery_Fingerprint_Rec Take_Scenery_Fingerprint(const Module1& m, const Drive_List& drives);

// What differs between two fingerprints; the files by native path, each list in path order.
struct Scenery_Changes_Rec {
    bool scenery_cfg = false;
    bool magdec = false;
    std::vector<std::string> added;
    std::vector<std::string> changed;
    std::vector<std::string> removed;
    bool Any() const {
        return scenery_cfg || magdec || !added.empty() || !changed.empty() || !removed.empty();
    }
};

Scenery_Changes_Rec Compare_Scenery_Fingerprints(const Scenery_Fingerprint_Rec& before,
                                                 const Scenery_Fingerprint_Rec& now);

// The notice before the list is made again, one sentence on what changed.
std::string Scenery_Changed_Text(const Scenery_Changes_Rec& changes);

// The file: a magic, the fields, and a hash of all that, so that a damaged, cut or foreign
// file reads as no fingerprint at all.
std::string Encode_Scenery_Fingerprint(const Scenery_Fingerprint_Rec& fingerprint);
std::optional<Scenery_Fingerprint_Rec> Decode_Scenery_Fingerprint(std::string_view bytes);

enum class Scenery_Check { Same, Changed, No_Fingerprint };

struct Scenery_Check_Rec {
    Scenery_Check result = Scenery_Check::No_Fingerprint;
    Scenery_Fingerprint_Rec now;
    Scenery_Changes_Rec changes;
};

// The scenery now against the fingerprint file of the current directory.
Scenery_Check_Rec Check_Scenery_Fingerprint(const Module1& m, const Drive_List& drives);

// Stores the fingerprint in the current directory through write-then-rename. If that fails
// the old file goes, so that it can't describe a database it was not made for.
void Store_Scenery_Fingerprint(const Scenery_Fingerprint_Rec& fingerprint);
// Removes the file: a fingerprint without its database describes nothing.
void Remove_Scenery_Fingerprint();

} // namespace quilmark
