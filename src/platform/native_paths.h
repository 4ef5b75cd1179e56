// From the program's paths to the native file system.
//
// The program forms its paths the Windows way: "\" separators, drive letters, and much of
// the text in lower case ("d:\scenery\world\scenery"). Those texts are Windows-1252 bytes.
// A case-sensitive file system needs every component matched without regard to case, and
// drive letters mapped through the drive list. Native paths handed back are UTF-8.
#pragma once

#include <cstdint>
#include <cstdio>
#include <cstring>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/drives.h"

namespace quilmark {

// The native path for a program path. Accepted forms:
//   "C:\dir\file", "c:dir\file"  a drive letter, mapped through the list;
//   "\dir\file", "/dir/file"     the native root "/" (so native absolute paths pass);
//   "dir\file"                   relative to the current directory.
// Both separators count, empty and "." components are dropped, ".." goes up one level.
// Each component is looked up in its native folder: the name as given (as UTF-8, then as
// raw bytes) if it exists, else the entry equal to it without regard to Windows-1252 case
// (the lowest by bytes if several are). From the first component that has no match on,
// the rest is appended as given, so the result names a path that does not exist.
// Empty if the path is empty or names a drive letter that the list lacks.
std::string Resolve_Native_Path(const Drive_List& drives, std::string_view program_path);

// "*" matches any run of characters, "?" exactly one; everything else matches itself
// without regard to Windows-1252 case. "*.*" matches every name, dotted or not.
bool Wildcard_Match(std::string_view pattern, std::string_view name);

struct Listed_File_Rec {
    std::string name;        // Windows-1252, as the program would see it
    std::string native_path; // the file's native path, for opening it
    bool operator==(const Listed_File_Rec&) const = default;
};

// The normal files of a folder whose names match the pattern, in the order Windows gives
// on its own disks: ascending by Compare_No_Case of the names, then by native bytes.
// Normal files are regular files or links to them; folders, dangling links, devices and
// names that begin with "." (hidden files under Wine) are left out. A missing folder gives
// an empty list.
std::vector<Listed_File_Rec>
List_Folder_Files(const Drive_List& drives, std::string_view folder_path, std::string_view pattern);

// A regular file (or a link to one) exists at the program path.
bool Normal_File_Exists(const Drive_List& drives, std::string_view program_path);

// The whole of a regular file (or a link to one) at a native path, or nothing if the path
// names anything else, cannot be opened or read, or is larger than max_size bytes. A
// folder, a named pipe or a device is never opened: reading one could wait for ever or
// never end. This is the program's one whole-file read; every caller gives the size past
// which a file can't be one it reads.
std::optional<std::string> Read_Whole_File(const std::string& native_path, uint64_t max_size);
// The same as bytes, with spare zero bytes behind the file's own.
std::optional<std::vector<uint8_t>> Read_Whole_File_Bytes(const std::string& native_path,
                                                          uint64_t max_size, size_t spare = 0);

// A regular file read once from its beginning through a buffer of its own, for a reader
// that walks a large file in order and need not hold it whole. The same bounds as the
// whole-file read: only a regular file, at most max_size bytes as it measures at opening.
class File_Part_Reader {
  public:
    File_Part_Reader() = default;
    ~File_Part_Reader();
    File_Part_Reader(const File_Part_Reader&) = delete;
    File_Part_Reader& operator=(const File_Part_Reader&) = delete;

    // False if the file is not a regular one, can't be opened, or is larger than max_size.
    bool Open(const std::string& native_path, uint64_t max_size);
    // The file's length at opening, and what of it has not been taken yet.
    uint64_t Size() const { return size_; }
    uint64_t Remaining() const { return size_ - taken_; }
    // The next n bytes. False if fewer remain (nothing is taken then), or if a read
    // fails (Read_Failed then tells).
    bool Take(void* out, size_t n) {
        if (n <= buffer_end_ - buffer_at_) {
            std::memcpy(out, buffer_.data() + buffer_at_, n);
            buffer_at_ += n;
            taken_ += n;
            return true;
        }
        return Take_Refilling(out, n);
    }
    bool Read_Failed() const { return read_failed_; }

  private:
    bool Take_Refilling(void* out, size_t n);

    std::FILE* file_ = nullptr;
    uint64_t size_ = 0;
    uint64_t taken_ = 0;
    std::vector<uint8_t> buffer_;
    size_t buffer_at_ = 0;
    size_t buffer_end_ = 0;
    bool read_failed_ = false;
};

// A file written in full under a hidden temporary name beside its target, and not yet in
// its place.
struct Pending_File_Rec {
    std::string temp_path;
    std::string target_path;
};

// Writes the bytes to a new hidden temporary file beside the target. Temporary files that
// earlier writes of the same target left behind when they were stopped (".NAME.tmp-"
// and digits) are removed first. Nothing if the write fails; nothing is then left behind.
std::optional<Pending_File_Rec> Write_Pending_File(const std::string& native_path,
                                                   std::string_view bytes);
// The same for a file written part after part, so that its whole never needs to be in
// memory: produce hands each part in order to the function it is given, and returns false
// to give the file up. Whatever produce throws leaves nothing behind and is thrown on.
using Write_Part = std::function<void(std::string_view)>;
std::optional<Pending_File_Rec>
Write_Pending_File_In_Parts(const std::string& native_path,
                            const std::function<bool(const Write_Part&)>& produce);
// Renames the temporary file over its target. False if that fails: the temporary file is
// then removed, and the target left as it was.
bool Commit_Pending_File(const Pending_File_Rec& file);
// Removes the temporary file; the target stays as it was.
void Discard_Pending_File(const Pending_File_Rec& file);

// Replaces the file at a native path by the bytes, through a pending file, so a crash never
// leaves a half-written file. False if anything fails; the target is then left as it was.
bool Write_File_Replacing(const std::string& native_path, std::string_view bytes);

} // namespace quilmark
