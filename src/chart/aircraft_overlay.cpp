#include "chart/aircraft_overlay.h"

#include <charconv>

#include "bgl/bgl_image.h"
#include "geo/geodesy.h"
#include "platform/rounding.h"
#include "state/module1.h"

namespace quilmark {

bool Read_Aircraft_Value(Fsuipc_Rec& link, size_t index, Module1& module, int32_t& raw,
                         Link_Result& result) {
    const Aircraft_Value_Rec& value = Aircraft_Values[index];
    uint8_t bytes[4] = {};
    if (!Link_Read(link, value.offset, value.size, bytes, result) || !Link_Process(link, result)) {
        return false;
    }
    // Little-endian, as the module hands values over.
    uint32_t word = bytes[0] | (bytes[1] << 8);
    if (value.size == 4) {
        word |= (static_cast<uint32_t>(bytes[2]) << 16) | (static_cast<uint32_t>(bytes[3]) << 24);
    }
    raw = static_cast<int32_t>(word);
    switch (index) {
    case 0:
        module.aircraft_lat = Decode_Latitude(raw);
        break;
    case 1:
        module.aircraft_lon = Decode_Longitude(raw);
        break;
    case 2:
        module.aircraft_heading = To_I16(Decode_Longitude(raw));
        break;
    default:
        module.altimeter_value =
            Altimeter_Value(static_cast<uint16_t>(word), module.altimeter_units);
        break;
    }
    return true;
}

bool Read_Aircraft(Fsuipc_Rec& link, Module1& module, Link_Result& result) {
    for (size_t i = 0; i < Aircraft_Values.size(); ++i) {
        int32_t raw = 0;
        if (!Read_Aircraft_Value(link, i, module, raw, result)) {
            return false;
        }
    }
    return true;
}

double Altimeter_Value(uint16_t raw, uint8_t altimeter_units) {
    if (altimeter_units == 1) {
        return Round_Decimals(raw / 16.0 / 33.86, 2);
    }
    return Round_Decimals(raw / 16.0, 0);
}

std::string Altimeter_Text(double altimeter_value) {
    char digits[64];
    auto result =
        std::to_chars(digits, digits + sizeof digits, altimeter_value, std::chars_format::fixed);
    return "Altimeter: " + std::string(digits, result.ptr);
}

namespace {

// How far ahead of the aircraft its heading line reaches on the ground.
constexpr int16_t Heading_Line_Ft = 500;

} // namespace

void Draw_Aircraft(Surface& surface, const Chart_View& view, const Module1& module) {
    if (!module.fsuipc_connected) {
        return;
    }
    Pixel_Rec p = Geo_To_Pixel(view, module.aircraft_lat, module.aircraft_lon);
    // A heading past 180 comes negative from the simulator; the sine and cosine of the
    // course take it as it is.
    Geo_Point_Rec tip = Destination_Feet(module.aircraft_lat, module.aircraft_lon,
                                         module.aircraft_heading, Heading_Line_Ft);
    Pixel_Rec p_tip = Geo_To_Pixel(view, tip.lat, tip.lon);
    int32_t r = Percent_To_Pixels(view, 0.8f);
    Set_Colors(surface, Chart_Green, Chart_Green, Fill_Style_Solid);
    Ellipse_About(surface, p.x, p.y, r);
    surface.MoveToEx(p.x, p.y);
    surface.LineTo(p_tip.x, p_tip.y);
    surface.TextOutA(p.x, p.y, "Your Plane");
}

} // namespace quilmark
