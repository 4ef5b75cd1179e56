// The airport database file with any count: the input's first four bytes are the count
// the configuration file would give, the rest the file. A file that reads gives exactly
// count + 1 records, whose counts fit their lists, and the records encode back to the
// bytes they were read from; a file that does not read leaves the list released.
#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "fuzz_support.h"
#include "scenery/airport_database.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    using namespace quilmark;
    const int32_t count = Fuzz_Leading_I32(data, size);
    const std::vector<uint8_t> file(data + (size < 4 ? size : 4), data + size);
    Dyn_Array<Airport_Rec> airports;
    const Database_Read_Result result = Decode_Airport_Database(file, count, airports);
    if (result != Database_Read_Result::Ok) {
        Fuzz_Check(result == Database_Read_Result::Damaged, "bytes in memory are opened");
        Fuzz_Check(airports.allocated && airports.Slot_Count() == 1, "a damaged file releases");
        return 0;
    }
    Fuzz_Check(count >= 0 && airports.Slot_Count() == static_cast<size_t>(count) + 1,
               "count + 1 records");
    for (const Airport_Rec& a : airports.items) {
        Fuzz_Check(a.runway_count >= 0 &&
                       static_cast<size_t>(a.runway_count) <= a.runways.Slot_Count() &&
                       a.ils_count >= 0 && static_cast<size_t>(a.ils_count) <= a.ils.Slot_Count() &&
                       a.taxi_point_count >= 0 &&
                       static_cast<size_t>(a.taxi_point_count) <= a.taxi_points.Slot_Count() &&
                       a.parking_count >= 0 &&
                       static_cast<size_t>(a.parking_count) <= a.parkings.Slot_Count() &&
                       a.taxi_path_count >= 0 &&
                       static_cast<size_t>(a.taxi_path_count) <= a.taxi_paths.Slot_Count(),
                   "every count fits its list");
    }
    const std::vector<uint8_t> encoded = Encode_Airport_Database(airports);
    Fuzz_Check(encoded.size() <= file.size() &&
                   std::equal(encoded.begin(), encoded.end(), file.begin()),
               "the records are the bytes they were read from");
    return 0;
}
