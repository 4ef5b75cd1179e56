// A BGL file's airport section as the database build reads it (no database file) and as a
// later scan reads it (database present). Checks that the lists keep the shape
// the chart and the database file rely on, that the work stays in proportion to the file,
// that the decoded airports survive the database file unchanged, and that with the
// database present nothing is added.
#include <cstddef>
#include <cstdint>

#include "bgl/airport_walker.h"
#include "fuzz_support.h"
#include "scenery/airport_database.h"

namespace quilmark {

namespace {

int64_t Check_Airport(const Airport_Rec& a) {
    Fuzz_Check(Fuzz_Has_Spare_Slot(a.runways, a.runway_count), "runways keep one spare slot");
    Fuzz_Check(Fuzz_Has_Spare_Slot(a.ils, a.ils_count), "ILS keep one spare slot");
    Fuzz_Check(a.taxi_points.Slot_Count() == static_cast<size_t>(a.taxi_point_count),
               "taxi points hold exactly their count");
    Fuzz_Check(a.parkings.Slot_Count() == static_cast<size_t>(a.parking_count),
               "parking spots hold exactly their count");
    Fuzz_Check(a.taxi_paths.Slot_Count() == static_cast<size_t>(a.taxi_path_count),
               "taxi paths hold exactly their count");
    Fuzz_Check(a.ident.size() <= 32767 && a.name.size() <= 32767, "texts fit their fields");
    (void)Airport_List_Text(a);
    return int64_t{a.runway_count} + a.ils_count + a.taxi_point_count + a.parking_count +
           a.taxi_path_count;
}

// The list the walk appends to, as the scan leaves it before the build.
struct Airport_List_Rec {
    Dyn_Array<Airport_Rec> airports;
    int32_t airport_count = 0;
};

std::unique_ptr<Airport_List_Rec> Decode(const std::vector<uint8_t>& bytes, bool add_airports) {
    auto list = std::make_unique<Airport_List_Rec>();
    if (add_airports) {
        list->airports.Release();
    }
    Bgl_Image image;
    Set_Bgl_Image(image, bytes);
    Read_Airport_Section(image, Fuzz_Grid(), add_airports, list->airports, list->airport_count);
    return list;
}

void Decode_Without_Database(const std::vector<uint8_t>& bytes) {
    auto m = Decode(bytes, true);

    Fuzz_Check(m->airport_count >= 0, "airport count not negative");
    Fuzz_Check(m->airports.Slot_Count() == static_cast<size_t>(m->airport_count) + 1,
               "airports keep one spare slot");
    int64_t elements = 0;
    for (int32_t i = 0; i < m->airport_count; ++i) {
        elements += Check_Airport(m->airports[static_cast<size_t>(i)]);
    }
    // Every airport and every element costs the walk at least 8 bytes of its budget.
    const auto budget = static_cast<int64_t>(bytes.size()) + 8192;
    Fuzz_Check(m->airport_count <= budget, "airports in proportion to the file");
    Fuzz_Check(elements <= budget, "elements in proportion to the file");

    // What the build writes, the later scan reads back the same.
    std::vector<uint8_t> file = Encode_Airport_Database(m->airports);
    Dyn_Array<Airport_Rec> back;
    Fuzz_Check(Decode_Airport_Database(file, m->airport_count, back) == Database_Read_Result::Ok,
               "the database file of decoded airports reads back");
    Fuzz_Check(Encode_Airport_Database(back) == file, "the database file round-trips");
}

void Decode_With_Database(const std::vector<uint8_t>& bytes) {
    auto m = Decode(bytes, false);
    Fuzz_Check(m->airport_count == 0 && !m->airports.allocated,
               "with the database present no airport is added");
}

} // namespace

} // namespace quilmark

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    using namespace quilmark;
    const std::vector<uint8_t> bytes(data, data + size);
    Decode_Without_Database(bytes);
    Decode_With_Database(bytes);
    return 0;
}
