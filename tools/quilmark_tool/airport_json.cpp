#include "airport_json.h"

namespace quilmark {

namespace {

// The filled entries 0 to count - 1 of a list (never more than it holds).
template <class T, class Write_Element>
void Write_List(Json_Out& json, const Dyn_Array<T>& list, int32_t count, bool null_if_unallocated,
                Write_Element write) {
    if (null_if_unallocated && !list.allocated) {
        json.Null();
        return;
    }
    json.Begin_Array();
    for (size_t i = 0; i < list.Slot_Count() && static_cast<int64_t>(i) < count; ++i) {
        json.Begin_Object();
        write(list[i]);
        json.End_Object();
    }
    json.End_Array();
}

} // namespace

void Write_Airport_Json(Json_Out& json, const Airport_Rec& a) {
    json.Begin_Object();
    json.Key("ident");
    json.Ansi_Text(a.ident);
    json.Key("name");
    json.Ansi_Text(a.name);
    json.Key("lat");
    json.Number(a.lat);
    json.Key("lon");
    json.Number(a.lon);
    const std::pair<const char*, const std::string*> freqs[] = {
        {"clearance_freq", &a.clearance_freq},
        {"ground_freq", &a.ground_freq},
        {"tower_freq", &a.tower_freq},
        {"departure_freq", &a.departure_freq},
        {"approach_freq", &a.approach_freq},
        {"center_freq", &a.center_freq},
        {"atis_freq", &a.atis_freq}};
    for (const auto& [key, value] : freqs) {
        json.Key(key);
        json.Ansi_Text(*value);
    }
    json.Key("runway_count");
    json.Int(a.runway_count);
    json.Key("runways");
    Write_List(json, a.runways, a.runway_count, false, [&](const Runway_Rec& r) {
        json.Key("end1_name");
        json.Ansi_Text(r.end1_name);
        json.Key("end2_name");
        json.Ansi_Text(r.end2_name);
        json.Key("end1_lat");
        json.Number(r.end1_lat);
        json.Key("end1_lon");
        json.Number(r.end1_lon);
        json.Key("end2_lat");
        json.Number(r.end2_lat);
        json.Key("end2_lon");
        json.Number(r.end2_lon);
        json.Key("altitude_ft");
        json.Int(r.altitude_ft);
        json.Key("end1_heading");
        json.Int(r.end1_heading);
        json.Key("end2_heading");
        json.Int(r.end2_heading);
        json.Key("length_raw");
        json.Int(r.length_raw);
        json.Key("width_raw");
        json.Int(r.width_raw);
    });
    json.Key("ils_count");
    json.Int(a.ils_count);
    json.Key("ils");
    Write_List(json, a.ils, a.ils_count, false, [&](const ILS_Rec& i) {
        json.Key("ils_name");
        json.Ansi_Text(i.ils_name);
        json.Key("lat");
        json.Number(i.lat);
        json.Key("lon");
        json.Number(i.lon);
        json.Key("mag_heading");
        json.Int(i.mag_heading);
        json.Key("frequency");
        json.Ansi_Text(i.frequency);
    });
    json.Key("taxi_point_count");
    json.Int(a.taxi_point_count);
    json.Key("taxi_points");
    Write_List(json, a.taxi_points, a.taxi_point_count, true, [&](const Taxi_Point_Rec& p) {
        json.Key("point_kind");
        json.Int(p.point_kind);
        json.Key("lat");
        json.Number(p.lat);
        json.Key("lon");
        json.Number(p.lon);
    });
    json.Key("parking_count");
    json.Int(a.parking_count);
    json.Key("parkings");
    Write_List(json, a.parkings, a.parking_count, true, [&](const Parking_Rec& p) {
        json.Key("spot_name");
        json.Ansi_Text(p.spot_name);
        json.Key("lat");
        json.Number(p.lat);
        json.Key("lon");
        json.Number(p.lon);
        json.Key("radius_ft");
        json.Int(p.radius_ft);
    });
    json.Key("taxi_path_count");
    json.Int(a.taxi_path_count);
    json.Key("taxi_paths");
    Write_List(json, a.taxi_paths, a.taxi_path_count, true, [&](const Taxi_Path_Rec& p) {
        json.Key("path_kind");
        json.Int(p.path_kind);
        json.Key("start_point");
        json.Int(p.start_point);
        json.Key("end_point");
        json.Int(p.end_point);
        json.Key("path_label");
        json.Ansi_Text(p.path_label);
    });
    json.End_Object();
}

} // namespace quilmark
