#include "scenery/fs2004_scan.h"

#include <algorithm>

#include "fs2004/airport_convert.h"
#include "fs2004/area_order.h"
#include "fs2004/bgl_file.h"
#include "fs2004/layers.h"
#include "platform/native_paths.h"
#include "state/chooser_form.h"
#include "state/form3_data.h"
#include "state/module1.h"

namespace quilmark {

namespace {

std::vector<size_t> Area_Order(const Module1& m) {
    return Fs2004_Area_Order(m.scenery_areas, m.scenery_area_count);
}

} // namespace

std::string Fs2004_Magdec_Path(const std::string& fs_path) {
    return fs_path + "\\Scenery\\Base\\Scenery\\magdec.bgl";
}

int32_t Count_Fs2004_Area_Files(const Module1& m, const Drive_List& drives) {
    int32_t total = 0;
    for (size_t i : Area_Order(m)) {
        total += static_cast<int32_t>(
            List_Folder_Files(drives, m.scenery_areas[i].Local, "*.bgl").size());
    }
    return total;
}

bool Read_Fs2004_File(Bgl_Image& image, Fs2004_Reading_Rec& reading) {
    if (!Is_Fs2004_File(image)) {
        return false;
    }
    if (reading.layers.empty()) {
        reading.layers.emplace_back();
    }
    Decode_Fs2004_Airports(image, reading.layers.back());
    Decode_Fs2004_Ils(image, reading.ils);
    Decode_Fs2004_Names(image, reading.names);
    return true;
}

void Append_Fs2004_Airports(Fs2004_Reading_Rec reading, const Magvar_Grid& grid,
                            Dyn_Array<Airport_Rec>& airports, int32_t& airport_count) {
    for (const Fs2004_Airport_Rec& airport : Layer_Fs2004_Airports(std::move(reading.layers))) {
        if (!airport.ident.empty()) {
            Append(airports, airport_count) =
                Fs2004_Airport_Record(airport, grid, reading.ils, reading.names);
        }
    }
}

void Scan_Fs2004_Areas(Module1& m, Form3_Data& form, Chooser_Form& ui) {
    Fs2004_Reading_Rec reading;
    for (size_t i : Area_Order(m)) {
        const Scenery_Area& area = m.scenery_areas[i];
        ui.Show_Status(area.Title);
        reading.layers.emplace_back(); // each area is one layer
        for (const Listed_File_Rec& file : List_Folder_Files(form.drives, area.Local, "*.bgl")) {
            if (Fs2004_File_May_Hold(
                    file.native_path,
                    {Fs2004_Section_Airports, Fs2004_Section_Navaids, Fs2004_Section_Names}) &&
                Load_Bgl_Image(form.bgl_image, file.native_path)) {
                Read_Fs2004_File(form.bgl_image, reading);
            }
            ui.Set_Progress_Value(ui.Progress_Value() + 1);
            ui.Redraw_Progress();
        }
    }
    Append_Fs2004_Airports(std::move(reading), m.magvar_grid, m.airports, m.airport_count);
}

} // namespace quilmark
