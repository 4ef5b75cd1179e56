#include "airspace/fs2004_fetch.h"

#include <algorithm>
#include <vector>

#include "airspace/airspace_class.h"
#include "fs2004/area_order.h"
#include "fs2004/bgl_file.h"
#include "fs2004/boundaries.h"
#include "platform/native_paths.h"
#include "state/chooser_form.h"
#include "state/form3_data.h"
#include "state/module1.h"

namespace quilmark {

void Read_Fs2004_Airspace(Module1& m, Form3_Data& form, Chooser_Form& ui) {
    std::vector<Listed_File_Rec> files;
    for (size_t i : Fs2004_Area_Order(m.scenery_areas, m.scenery_area_count)) {
        for (Listed_File_Rec& file :
             List_Folder_Files(form.drives, m.scenery_areas[i].Local, "*.bgl")) {
            files.push_back(std::move(file));
        }
    }
    ui.Set_Progress_Min(0);
    ui.Set_Progress_Max(static_cast<float>(files.size()));
    ui.Set_Progress_Value(0);
    ui.Redraw_Progress();
    for (const Listed_File_Rec& file : files) {
        if (Fs2004_File_May_Hold(file.native_path, {Fs2004_Section_Boundaries}) &&
            Load_Bgl_Image(form.bgl_image, file.native_path) && Is_Fs2004_File(form.bgl_image) &&
            Declares_Fs2004_Section(form.bgl_image, Fs2004_Section_Boundaries)) {
            Decode_Fs2004_Boundaries(form.bgl_image, m.current_airport.lat, m.current_airport.lon,
                                     m.airspaces, m.airspace_count);
        }
        ui.Set_Progress_Value(ui.Progress_Value() + 1);
        ui.Redraw_Progress();
        ui.Repaint_Form();
    }
    for (int32_t i = 0; i < m.airspace_count; ++i) {
        Airspace_Rec& airspace = m.airspaces[static_cast<size_t>(i)];
        airspace.class_text = Fs2004_Class_Text(airspace.boundary_type);
        if (airspace.class_text.empty()) {
            airspace.class_text = Airspace_Class(airspace);
        }
    }
}

} // namespace quilmark
