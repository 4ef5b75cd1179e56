// A BGL file's boundary section through its walker, once with the airport
// where the seeds' boxes hold it and once far from them. Checks the shape of the airspace
// list and of each point list, and that the work stays in proportion to the file.
#include <cstddef>
#include <cstdint>

#include "airspace/airspace_class.h"
#include "airspace/boundary_walker.h"
#include "fuzz_support.h"

namespace quilmark {

namespace {

void Walk_With_Airport_At(const std::vector<uint8_t>& bytes, double lat, double lon) {
    Dyn_Array<Airspace_Rec> airspaces;
    int32_t airspace_count = 0;
    int64_t bytes_left = Max_Airspace_Bytes_Per_Fetch;
    Bgl_Image image;
    Set_Bgl_Image(image, bytes);
    Boundary_Walk_Rec walk{image, Fuzz_Grid(), {lat, lon}, airspaces, airspace_count, bytes_left};
    Read_Boundary_Section(walk);

    Fuzz_Check(Fuzz_Has_Spare_Slot(airspaces, airspace_count), "airspaces keep one spare slot");
    Fuzz_Check(bytes_left >= 0, "the airspace memory is never overdrawn");
    int64_t points = 0;
    for (int32_t i = 0; i < airspace_count; ++i) {
        Airspace_Rec& a = airspaces[static_cast<size_t>(i)];
        Fuzz_Check(Fuzz_Has_Spare_Slot(a.points, a.point_count), "points keep one spare slot");
        points += a.point_count;
        a.class_text = Airspace_Class(a);
    }
    const auto budget = static_cast<int64_t>(bytes.size()) + 8192;
    Fuzz_Check(airspace_count <= budget, "airspaces in proportion to the file");
    Fuzz_Check(points <= budget, "points in proportion to the file");
}

} // namespace

} // namespace quilmark

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    using namespace quilmark;
    const std::vector<uint8_t> bytes(data, data + size);
    Walk_With_Airport_At(bytes, 47.45, -122.31); // inside the seeds' boxes
    Walk_With_Airport_At(bytes, -33.95, 151.18); // outside all of them
    return 0;
}
