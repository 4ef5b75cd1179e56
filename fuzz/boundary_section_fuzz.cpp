// A BGL file's boundary section through Read_BGL_Sections, once with the current airport
// where the seeds' boxes hold it and once far from them. Checks the shape of the airspace
// list and of each point list, and that the work stays in proportion to the file.
#include <cstddef>
#include <cstdint>

#include "airspace/airport_fetch.h"
#include "bgl/sections.h"
#include "fuzz_support.h"
#include "state/form3_data.h"

namespace quilmark {

namespace {

void Walk_With_Airport_At(const std::vector<uint8_t>& bytes, double lat, double lon) {
    auto m = Fuzz_Module();
    auto form = std::make_unique<Form3_Data>();
    m->current_airport.lat = lat;
    m->current_airport.lon = lon;
    Set_Bgl_Image(form->bgl_image, bytes);
    Read_BGL_Sections(*form, *m);

    Fuzz_Check(Fuzz_Has_Spare_Slot(m->airspaces, m->airspace_count),
               "airspaces keep one spare slot");
    int64_t points = 0;
    for (int32_t i = 0; i < m->airspace_count; ++i) {
        Airspace_Rec& a = m->airspaces[static_cast<size_t>(i)];
        Fuzz_Check(Fuzz_Has_Spare_Slot(a.points, a.point_count), "points keep one spare slot");
        points += a.point_count;
        a.class_text = Airspace_Class(a);
    }
    const auto budget = static_cast<int64_t>(bytes.size()) + 8192;
    Fuzz_Check(m->airspace_count <= budget, "airspaces in proportion to the file");
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
