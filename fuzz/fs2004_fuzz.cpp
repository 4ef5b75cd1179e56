// An FS2004 BGL file through the FS2004 decoders as a scan and a fetch would read it: the
// airports, ILS and name lists; the airports laid as two layers of themselves, so that
// every record's deletions meet the records before it; each airport turned into the
// program's record and through the database file; and the boundaries around a point where
// the seeds' boxes hold it and one far from them. Checks the shape of every list, that the
// work stays in proportion to the file, and the database round trip.
#include <cstddef>
#include <cstdint>

#include "fs2004/airport_convert.h"
#include "fs2004/boundaries.h"
#include "fs2004/layers.h"
#include "fuzz_support.h"
#include "scenery/airport_database.h"

namespace quilmark {

namespace {

int64_t Elements(const Fs2004_Airport_Rec& a) {
    return 1 + static_cast<int64_t>(a.runways.size() + a.coms.size() + a.taxi_points.size() +
                                    a.parkings.size() + a.taxi_paths.size() +
                                    a.deletion.runways.size() + a.deletion.frequencies.size());
}

void Check_Record(const Airport_Rec& a) {
    Fuzz_Check(Fuzz_Has_Spare_Slot(a.runways, a.runway_count), "runways keep one spare slot");
    Fuzz_Check(Fuzz_Has_Spare_Slot(a.ils, a.ils_count), "ILS keep one spare slot");
    Fuzz_Check(a.ils_count <= 2 * a.runway_count, "at most an ILS per runway end");
    Fuzz_Check(a.taxi_points.Slot_Count() == static_cast<size_t>(a.taxi_point_count) &&
                   a.parkings.Slot_Count() == static_cast<size_t>(a.parking_count) &&
                   a.taxi_paths.Slot_Count() == static_cast<size_t>(a.taxi_path_count),
               "the ground network's lists hold exactly their count");
    Fuzz_Check(a.taxi_point_count <= 32767 && a.parking_count <= 32767 &&
                   a.taxi_path_count <= 32767,
               "the ground network fits the count fields");
    Fuzz_Check(a.ident.size() <= 7 && a.name.size() <= 32767, "texts fit their fields");
}

void Decode_Airports(const std::vector<uint8_t>& bytes) {
    Bgl_Image image;
    Set_Bgl_Image(image, bytes);
    std::vector<Fs2004_Airport_Rec> airports;
    Fs2004_Ils_Table ils;
    Fs2004_Name_Table names;
    Decode_Fs2004_Airports(image, airports);
    Decode_Fs2004_Ils(image, ils);
    Decode_Fs2004_Names(image, names);

    int64_t elements = static_cast<int64_t>(ils.records.size() + names.size());
    for (const Fs2004_Airport_Rec& a : airports) {
        elements += Elements(a);
    }
    // Every element lies in at least 4 bytes that the walk budget was charged for.
    const auto budget = 2 * static_cast<int64_t>(bytes.size()) + 16384;
    Fuzz_Check(elements <= budget, "decoded elements in proportion to the file");

    const std::vector<Fs2004_Airport_Rec> world = Layer_Fs2004_Airports({airports, airports});
    Fuzz_Check(world.size() <= airports.size(), "one airport per ident");
    int64_t laid = 0;
    Dyn_Array<Airport_Rec> records;
    records.Resize_Keep(world.size());
    for (size_t i = 0; i < world.size(); ++i) {
        laid += Elements(world[i]);
        records[i] = Fs2004_Airport_Record(world[i], Fuzz_Grid(), ils, names);
        Check_Record(records[i]);
    }
    Fuzz_Check(laid <= 2 * elements, "layering adds nothing of its own");

    const std::vector<uint8_t> file = Encode_Airport_Database(records);
    Dyn_Array<Airport_Rec> back;
    Fuzz_Check(Decode_Airport_Database(file, static_cast<int32_t>(world.size()), back) ==
                   Database_Read_Result::Ok,
               "the database file of decoded airports reads back");
    Fuzz_Check(Encode_Airport_Database(back) == file, "the database file round-trips");
}

void Decode_Boundaries_Around(const std::vector<uint8_t>& bytes, double lat, double lon) {
    Bgl_Image image;
    Set_Bgl_Image(image, bytes);
    Dyn_Array<Airspace_Rec> airspaces;
    int32_t count = 0;
    Decode_Fs2004_Boundaries(image, lat, lon, airspaces, count);
    Fuzz_Check(Fuzz_Has_Spare_Slot(airspaces, count), "airspaces keep one spare slot");
    int64_t points = 0;
    for (int32_t i = 0; i < count; ++i) {
        const Airspace_Rec& a = airspaces[static_cast<size_t>(i)];
        Fuzz_Check(Fuzz_Has_Spare_Slot(a.points, a.point_count), "points keep one spare slot");
        points += a.point_count;
        (void)Fs2004_Class_Text(a.boundary_type);
    }
    const auto budget = static_cast<int64_t>(bytes.size()) + 8192;
    Fuzz_Check(count <= budget && points <= budget, "airspaces in proportion to the file");
}

} // namespace

} // namespace quilmark

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    using namespace quilmark;
    const std::vector<uint8_t> bytes(data, data + size);
    Decode_Airports(bytes);
    Decode_Boundaries_Around(bytes, 47.45, -122.31); // inside the seeds' boxes
    Decode_Boundaries_Around(bytes, -33.95, 151.18); // outside all of them
    return 0;
}
