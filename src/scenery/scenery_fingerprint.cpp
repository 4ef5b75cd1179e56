#include "scenery/scenery_fingerprint.h"

#include <algorithm>
#include <filesystem>

#include "fs2004/area_order.h"
#include "platform/native_paths.h"
#include "scenery/fs2004_scan.h"
#include "scenery/scenery_cfg.h"
#include "state/module1.h"

namespace quilmark {

namespace {

constexpr std::string_view Magic = "QMSCENE1";
// scenery.cfg is read whole up to the size its reader takes; a fingerprint file of a world
// with a million files stays far below the second limit.
constexpr uint64_t Max_Scenery_Cfg_Size = uint64_t{256} << 20;
constexpr uint64_t Max_Fingerprint_Size = uint64_t{64} << 20;

// FNV-1a, 64 bits: enough to tell an edited file from the one before.
uint64_t Hash_Bytes(std::string_view bytes, uint64_t hash = 14695981039346656037ULL) {
    for (const char c : bytes) {
        hash = (hash ^ static_cast<uint8_t>(c)) * 1099511628211ULL;
    }
    return hash;
}

File_Stamp_Rec Stamp_File(const std::string& native_path) {
    File_Stamp_Rec stamp{native_path, -1, 0};
    std::error_code error;
    const uintmax_t size = std::filesystem::file_size(native_path, error);
    if (error) {
        return stamp;
    }
    const auto time = std::filesystem::last_write_time(native_path, error);
    if (error) {
        return stamp;
    }
    stamp.size = static_cast<int64_t>(size);
    stamp.time = static_cast<int64_t>(time.time_since_epoch().count());
    return stamp;
}

// The fields of the file in order, for the encoder and the decoder alike.
template <class Coder, class Fingerprint> bool Fingerprint_Fields(Coder& c, Fingerprint& f) {
    c.Text(f.scenery_cfg_path);
    c.Int(f.scenery_cfg_size);
    c.Int(f.scenery_cfg_hash);
    c.Text(f.magdec.path);
    c.Int(f.magdec.size);
    c.Int(f.magdec.time);
    return c.List(f.bgl_files, [&c](auto& file) {
        c.Text(file.path);
        c.Int(file.size);
        c.Int(file.time);
    });
}

class Encoder {
  public:
    std::string bytes;
    template <class T> void Int(T v) {
        const auto u = static_cast<uint64_t>(v);
        for (size_t i = 0; i < sizeof(T); ++i) {
            bytes.push_back(static_cast<char>((u >> (8 * i)) & 0xFF));
        }
    }
    void Text(const std::string& text) {
        Int(static_cast<uint32_t>(text.size()));
        bytes += text;
    }
    template <class Items, class Each> bool List(const Items& list, Each each) {
        Int(static_cast<uint32_t>(list.size()));
        for (const auto& element : list) {
            each(element);
        }
        return true;
    }
};

// Every read stays inside the bytes; a read past them marks the whole file as damaged.
class Decoder {
  public:
    explicit Decoder(std::string_view bytes) : bytes_(bytes) {}
    bool ok = true;
    template <class T> void Int(T& v) {
        if (!Have(sizeof(T))) {
            return;
        }
        uint64_t u = 0;
        for (size_t i = 0; i < sizeof(T); ++i) {
            u |= uint64_t{static_cast<uint8_t>(bytes_[pos_ + i])} << (8 * i);
        }
        pos_ += sizeof(T);
        v = static_cast<T>(u);
    }
    void Text(std::string& text) {
        uint32_t length = 0;
        Int(length);
        if (Have(length)) {
            text.assign(bytes_.substr(pos_, length));
            pos_ += length;
        }
    }
    template <class Items, class Each> bool List(Items& list, Each each) {
        uint32_t count = 0;
        Int(count);
        // Each element takes at least 20 bytes: a count that the rest can't hold is damage,
        // found before anything is allocated for it.
        if (!ok || count > (bytes_.size() - pos_) / 20) {
            ok = false;
            return false;
        }
        list.resize(count);
        for (auto& element : list) {
            each(element);
        }
        return ok;
    }
    bool At_End() const { return pos_ == bytes_.size(); }

  private:
    bool Have(size_t n) {
        ok = ok && n <= bytes_.size() - pos_;
        return ok;
    }
    std::string_view bytes_;
    size_t pos_ = 0;
};

} // namespace

Scenery_Fingerprint_Rec Take_Scenery_Fingerprint(const Module1& m, const Drive_List& drives) {
    Scenery_Fingerprint_Rec f;
    f.scenery_cfg_path = Resolve_Native_Path(drives, m.fs_path + "\\scenery.cfg");
    if (std::optional<std::string> cfg =
            Read_Whole_File(f.scenery_cfg_path, Max_Scenery_Cfg_Size)) {
        f.scenery_cfg_size = static_cast<int64_t>(cfg->size());
        f.scenery_cfg_hash = Hash_Bytes(*cfg);
    }
    // An FS2004 world keeps magdec.bgl deeper, and its airports lie in every active area.
    const bool fs2004 = m.fs_version == Fs_Version_2004;
    f.magdec = Stamp_File(Resolve_Native_Path(
        drives, fs2004 ? Fs2004_Magdec_Path(m.fs_path) : m.fs_path + "\\scenery\\magdec.bgl"));
    std::vector<size_t> areas;
    if (fs2004) {
        areas = Fs2004_Area_Order(m.scenery_areas, m.scenery_area_count);
    } else {
        for (int16_t i = 0; i < m.scenery_area_count; ++i) {
            if (Is_Airport_Area(m.scenery_areas[static_cast<size_t>(i)])) {
                areas.push_back(static_cast<size_t>(i));
            }
        }
    }
    std::string last_folder;
    for (const size_t i : areas) {
        const Scenery_Area& area = m.scenery_areas[i];
        if (area.Local == last_folder) {
            continue;
        }
        last_folder = area.Local;
        for (const Listed_File_Rec& file : List_Folder_Files(drives, area.Local, "*.bgl")) {
            f.bgl_files.push_back(Stamp_File(file.native_path));
        }
    }
    // A folder named by several areas counts once.
    std::sort(f.bgl_files.begin(), f.bgl_files.end(),
              [](const File_Stamp_Rec& a, const File_Stamp_Rec& b) { return a.path < b.path; });
    f.bgl_files.erase(std::unique(f.bgl_files.begin(), f.bgl_files.end(),
                                  [](const File_Stamp_Rec& a, const File_Stamp_Rec& b) {
                                      return a.path == b.path;
                                  }),
                      f.bgl_files.end());
    return f;
}

Scenery_Changes_Rec Compare_Scenery_Fingerprints(const Scenery_Fingerprint_Rec& before,
                                                 const Scenery_Fingerprint_Rec& now) {
    Scenery_Changes_Rec changes;
    changes.scenery_cfg = before.scenery_cfg_path != now.scenery_cfg_path ||
                          before.scenery_cfg_size != now.scenery_cfg_size ||
                          before.scenery_cfg_hash != now.scenery_cfg_hash;
    changes.magdec = !(before.magdec == now.magdec);
    // Both lists are in path order: one merge walk.
    size_t b = 0;
    size_t n = 0;
    while (b < before.bgl_files.size() || n < now.bgl_files.size()) {
        if (n == now.bgl_files.size() ||
            (b < before.bgl_files.size() && before.bgl_files[b].path < now.bgl_files[n].path)) {
            changes.removed.push_back(before.bgl_files[b++].path);
        } else if (b == before.bgl_files.size() ||
                   now.bgl_files[n].path < before.bgl_files[b].path) {
            changes.added.push_back(now.bgl_files[n++].path);
        } else {
            if (!(before.bgl_files[b] == now.bgl_files[n])) {
                changes.changed.push_back(now.bgl_files[n].path);
            }
            ++b;
            ++n;
        }
    }
    return changes;
}

std::string Scenery_Changed_Text(const Scenery_Changes_Rec& changes) {
    std::vector<std::string> parts;
    if (changes.scenery_cfg) {
        parts.push_back("scenery.cfg changed");
    }
    if (changes.magdec) {
        parts.push_back("magdec.bgl changed");
    }
    // The first count names the files: "3 files added, 1 changed, 1 removed".
    bool files_named = false;
    for (const auto& [list, verb] :
         {std::pair{&changes.added, "added"}, std::pair{&changes.changed, "changed"},
          std::pair{&changes.removed, "removed"}}) {
        if (list->empty()) {
            continue;
        }
        const char* noun = files_named ? "" : list->size() == 1 ? " file" : " files";
        files_named = true;
        parts.push_back(std::to_string(list->size()) + noun + " " + verb);
    }
    std::string text = "The scenery has changed since the airport list was made: ";
    for (size_t i = 0; i < parts.size(); ++i) {
        text += (i == 0 ? "" : ", ") + parts[i];
    }
    return text + ". The list will be made again.";
}

std::string Encode_Scenery_Fingerprint(const Scenery_Fingerprint_Rec& fingerprint) {
    Encoder encoder;
    encoder.bytes = Magic;
    Fingerprint_Fields(encoder, fingerprint);
    encoder.Int(Hash_Bytes(encoder.bytes));
    return encoder.bytes;
}

std::optional<Scenery_Fingerprint_Rec> Decode_Scenery_Fingerprint(std::string_view bytes) {
    if (bytes.size() < Magic.size() + 8 || bytes.substr(0, Magic.size()) != Magic) {
        return std::nullopt;
    }
    const std::string_view body = bytes.substr(0, bytes.size() - 8);
    Decoder hash_decoder(bytes.substr(body.size()));
    uint64_t hash = 0;
    hash_decoder.Int(hash);
    if (hash != Hash_Bytes(body)) {
        return std::nullopt;
    }
    Scenery_Fingerprint_Rec fingerprint;
    Decoder decoder(body.substr(Magic.size()));
    if (!Fingerprint_Fields(decoder, fingerprint) || !decoder.ok || !decoder.At_End()) {
        return std::nullopt;
    }
    return fingerprint;
}

Scenery_Check_Rec Check_Scenery_Fingerprint(const Module1& m, const Drive_List& drives) {
    Scenery_Check_Rec check;
    check.now = Take_Scenery_Fingerprint(m, drives);
    std::optional<std::string> bytes = Read_Whole_File(Fingerprint_File_Name, Max_Fingerprint_Size);
    std::optional<Scenery_Fingerprint_Rec> stored =
        bytes ? Decode_Scenery_Fingerprint(*bytes) : std::nullopt;
    if (!stored) {
        check.result = Scenery_Check::No_Fingerprint;
        return check;
    }
    check.changes = Compare_Scenery_Fingerprints(*stored, check.now);
    check.result = check.changes.Any() ? Scenery_Check::Changed : Scenery_Check::Same;
    return check;
}

void Store_Scenery_Fingerprint(const Scenery_Fingerprint_Rec& fingerprint) {
    if (!Write_File_Replacing(Fingerprint_File_Name, Encode_Scenery_Fingerprint(fingerprint))) {
        Remove_Scenery_Fingerprint();
    }
}

void Remove_Scenery_Fingerprint() {
    std::error_code error;
    if (std::filesystem::is_regular_file(Fingerprint_File_Name, error)) {
        std::filesystem::remove(Fingerprint_File_Name, error);
    }
}

} // namespace quilmark
