// The configuration file "quilmark_config.cfg": which simulator the user has, where it
// lives, and how many airports the database file holds. Its presence tells the program
// that the settings wizard has run.
//
// Layout, little-endian, no padding: u16 title length, title bytes, u8 format_mark,
// u8 fs_version, u16 fs_path length, fs_path bytes, i32 airport_count; 10+n+m bytes.
// Texts are Windows-1252 bytes without terminator.
//
// fs_path is the simulator's folder as the user chose it. On Linux that is a native path
// ("/home/ann/.wine/drive_c/FS2002", as Windows-1252 text); the drive list and the path
// resolver take it from there.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "state/config_rec.h"
#include "state/module1.h"

namespace quilmark {

// The file's name. A bare name: every access finds it in the process's current directory
// as it is at that moment.
inline constexpr char Config_File_Name[] = "quilmark_config.cfg";
inline constexpr char Config_Title[] = "Quilmark v1.1";

enum class Config_Status {
    Ok,
    Missing,       // the file is not there (for the update: nothing was stored)
    Unreadable,    // it is there but could not be read
    Unwritable,    // the new contents could not be written; the old file is unchanged
    Text_Too_Long, // a text of more than 65535 bytes cannot be stored; nothing was written
};

// The file's bytes for a record. Texts longer than 65535 bytes are not representable;
// the caller checks Config_Fits first.
std::string Encode_Config(const Config_Rec& config);
bool Config_Fits(const Config_Rec& config);
// The record that bytes hold. Reading stops at the first field that the bytes do not
// hold completely; that field and all after it stay empty or zero.
Config_Rec Decode_Config(std::string_view bytes);

// Reads the file into config, and copies fs_version, fs_path and airport_count into their
// working variables. Module1 is left unchanged unless the result is ok.
Config_Status Read_Config_File(Module1& m, const std::string& name);

// The wizard's write when the user finishes it: title and format mark, version 1 if the
// user chose Flight Simulator 2002 (otherwise the version stays as it was), the path, and an
// airport count of 0. Sets config, fs_version and fs_path, and writes the whole file afresh.
Config_Status Write_First_Config(Module1& m, bool fs2002_chosen, const std::string& fs_path,
                                 const std::string& name = Config_File_Name);
// The same for the simulator the user chose: Fs_Version_2002 or Fs_Version_2004 (0 keeps
// the version as it was).
Config_Status Write_Chosen_Config(Module1& m, uint8_t chosen_version, const std::string& fs_path,
                                  const std::string& name = Config_File_Name);

// The scan's update after a database build: if the file still exists, its record is read
// from the start, given Module1's airport_count, and written back over the start of the
// file; bytes behind the record stay as they were. A missing file is skipped (missing).
Config_Status Update_Config_Airport_Count(Module1& m, const std::string& name = Config_File_Name);

} // namespace quilmark
