// The airport database file "all_fs_airports.dat": every airport of the world as decoded
// once, so that later starts read one file instead of every scenery file. No header and no
// count: the records one after another, the last being the empty spare slot of the list;
// the count lives in the configuration file.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "platform/dyn_array.h"
#include "platform/native_paths.h"
#include "state/airport_model.h"

namespace quilmark {

constexpr const char* Database_File_Name = "all_fs_airports.dat";

// The file's bytes for the slots of a list, every slot in index order.
std::vector<uint8_t> Encode_Airport_Database(const Dyn_Array<Airport_Rec>& airports);

// Writes every slot of the list to a temporary file beside the file at a native path; the
// caller puts it in place (Commit_Pending_File) once the count is stored. Nothing (and the
// old file untouched) on failure.
std::optional<Pending_File_Rec>
Write_Pending_Airport_Database(const std::string& native_path,
                               const Dyn_Array<Airport_Rec>& airports);

enum class Database_Read_Result {
    Ok,
    Cannot_Open,
    Damaged, // shorter than the count says, or records that do not decode
};

// The whole world's database takes about 22 MB; a file more than twenty times that size
// is not one this program wrote, and is taken for damage rather than read into memory.
constexpr uint64_t Max_Database_File_Size = 512ULL * 1024 * 1024;

// Reads airport_count + 1 records into a list of that many slots. Anything behind them is
// left unread. On failure the list is left released (a single empty slot). Only a regular
// file is read; one larger than Max_Database_File_Size is Damaged.
Database_Read_Result Decode_Airport_Database(const std::vector<uint8_t>& bytes,
                                             int32_t airport_count,
                                             Dyn_Array<Airport_Rec>& airports);
Database_Read_Result Read_Airport_Database(const std::string& native_path, int32_t airport_count,
                                           Dyn_Array<Airport_Rec>& airports);

} // namespace quilmark
