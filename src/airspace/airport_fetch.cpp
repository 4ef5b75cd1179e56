#include "airspace/airport_fetch.h"

#include <new>

#include "airspace/airspace_class.h"
#include "airspace/fs2004_fetch.h"
#include "airspace/section_dispatch.h"
#include "platform/native_paths.h"
#include "state/chooser_form.h"
#include "state/form3_data.h"
#include "state/module1.h"

namespace quilmark {

namespace {

std::string Frequency_Item(const std::string& frequency) {
    return frequency + " Mhz  ";
}

void Add_Terminal_Airspace(Module1& m) {
    const Airport_Rec& airport = m.current_airport;
    Airspace_Rec& terminal = Append(m.airspaces, m.airspace_count);
    terminal.center_lat = airport.lat;
    terminal.center_lon = airport.lon;
    terminal.floor_alt = 0;
    terminal.ceiling_alt = 10000;
    terminal.class_text = "TRACON (Departure/Approach)";
    if (!airport.departure_freq.empty()) {
        terminal.freq_text += Frequency_Item(airport.departure_freq);
    }
    if (!airport.approach_freq.empty()) {
        terminal.freq_text += Frequency_Item(airport.approach_freq);
    }
    terminal.point_count = 2;
    terminal.points.Resize_Keep(2);
    terminal.points[0] = Boundary_Point_Rec{Point_Fix, airport.lat, airport.lon, 0};
    terminal.points[1] = Boundary_Point_Rec{Point_Circle, 0, 0, 20};
}

constexpr const char* Airport_Out_Of_Memory_Text =
    "There is not enough memory to open this airport.";
constexpr const char* Airspace_Out_Of_Memory_Text =
    "There is not enough memory to read the airspace around this airport, so the chart will "
    "show no airspace.";

void Reset_Progress_And_Enable(Chooser_Form& ui) {
    ui.Show_Status("Done");
    ui.Set_Progress_Min(0);
    ui.Set_Progress_Max(100);
    ui.Set_Progress_Value(0);
    ui.Redraw_Progress();
    ui.Enable_Controls(true);
}

// The fetch from the chosen record to the terminal airspace. airport_taken turns true once
// the record is in current_airport and the list has been released.
void Fetch_Airport_And_Airspace(Module1& m, Form3_Data& form, Chooser_Form& ui,
                                const std::string& chosen_entry, bool& airport_taken) {
    ui.Show_Status("Getting Airport's Info...");
    // The list is sorted, so its index says nothing: the record is found by its text, and of
    // two records with the same text the later one wins.
    for (int32_t i = 0; i < m.airport_count && static_cast<size_t>(i) < m.airports.Slot_Count();
         ++i) {
        const Airport_Rec& airport = m.airports[static_cast<size_t>(i)];
        if (Airport_List_Text(airport) == chosen_entry) {
            m.current_airport = airport;
        }
    }
    m.airports.Release();
    airport_taken = true;

    ui.Show_Status("Looking for Airspace...");
    if (m.airspace_count > 0) {
        m.airspaces.Release();
        m.airspace_count = 0;
    }
    form.airspace_bytes_left = Max_Airspace_Bytes_Per_Fetch;
    if (m.fs_version == Fs_Version_2004) {
        Read_Fs2004_Airspace(m, form, ui);
        if (!m.current_airport.departure_freq.empty() || !m.current_airport.approach_freq.empty()) {
            Add_Terminal_Airspace(m);
        }
        return;
    }
    // Listed twice, so that the bar has its true maximum before the first file is read.
    int32_t file_total = 0;
    const size_t listed = List_Folder_Files(form.drives, m.atc_data_path, "*.bgl").size();
    for (size_t i = 0; i < listed; ++i) {
        ++file_total;
        ui.Repaint_Form();
    }
    ui.Set_Progress_Min(0);
    ui.Set_Progress_Max(static_cast<float>(file_total));
    ui.Set_Progress_Value(0);
    ui.Redraw_Progress();
    for (const Listed_File_Rec& file : List_Folder_Files(form.drives, m.atc_data_path, "*.bgl")) {
        if (Load_Bgl_Image(form.bgl_image, file.native_path) && Has_Bgl_Marker(form.bgl_image)) {
            Read_BGL_Sections(form, m);
        }
        ui.Set_Progress_Value(ui.Progress_Value() + 1);
        ui.Redraw_Progress();
        ui.Repaint_Form();
    }

    for (int32_t i = 0; i < m.airspace_count; ++i) {
        Airspace_Rec& airspace = m.airspaces[static_cast<size_t>(i)];
        airspace.class_text = Airspace_Class(airspace);
    }
    if (!m.current_airport.departure_freq.empty() || !m.current_airport.approach_freq.empty()) {
        Add_Terminal_Airspace(m);
    }
}

} // namespace

void Get_Airport(Module1& m, Form3_Data& form, Chooser_Form& ui,
                 const std::optional<std::string>& chosen_entry) {
    if (!chosen_entry.has_value()) {
        return;
    }
    ui.Enable_Controls(false);
    bool airport_taken = false;
    try {
        Fetch_Airport_And_Airspace(m, form, ui, *chosen_entry, airport_taken);
    } catch (const std::bad_alloc&) {
        // Whatever was being read goes; the program goes on with what it still has.
        Release_Bgl_Image(form.bgl_image);
        m.airspaces.Release();
        m.airspace_count = 0;
        if (!airport_taken) {
            // The list is still whole: the user can choose again.
            m.current_airport = Airport_Rec{};
            ui.Show_Message(Airport_Out_Of_Memory_Text, Message_Title, Message_Icon::Exclamation);
            Reset_Progress_And_Enable(ui);
            return;
        }
        // The list is gone, the airport is kept: the chart opens without airspace.
        ui.Show_Message(Airspace_Out_Of_Memory_Text, Message_Title, Message_Icon::Exclamation);
    }
    Reset_Progress_And_Enable(ui);
    ui.Hand_Over_To_Chart();
}

} // namespace quilmark
