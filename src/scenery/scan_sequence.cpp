#include "scenery/scan_sequence.h"

#include <filesystem>
#include <new>
#include <optional>
#include <thread>
#include <utility>
#include <vector>

#include "airspace/section_dispatch.h"
#include "platform/native_paths.h"
#include "platform/text1252.h"
#include "scenery/airport_database.h"
#include "scenery/airport_file_decoder.h"
#include "scenery/config_file.h"
#include "scenery/fs2004_scan.h"
#include "scenery/locate_folders.h"
#include "scenery/magdec.h"
#include "scenery/scenery_cfg.h"
#include "scenery/scenery_fingerprint.h"
#include "state/chooser_form.h"
#include "state/form3_data.h"
#include "state/module1.h"

namespace quilmark {

namespace {

constexpr const char* Cd_Prompt_Text =
    "Please insert your FS2002 CD disk2. After you insert it, press OK to continue. If you "
    "already have the FS2002 CD disk2 inside your CD-ROM Drive, then press OK.";
constexpr const char* First_Run_Text =
    "This is the first time you run this program. Now this program will create a database "
    "file of all the airports of the FS2002 world. This process can take a few minutes, "
    "please wait.";
constexpr const char* Database_Created_Text =
    "The Database File was created successfully!. Now this program will add all airports to "
    "the list, please wait.";
constexpr const char* Database_Not_Written_Text =
    "The airport database file all_fs_airports.dat could not be written in this program's "
    "folder. The airports are listed now, but they will be read from the scenery files again "
    "at the next start.";
constexpr const char* Count_Not_Stored_Text =
    "The number of airports could not be stored in the settings file quilmark_config.cfg, so "
    "the new airport database file was not kept. The airports are listed now, but they will "
    "be read from the scenery files again at the next start.";
constexpr const char* Out_Of_Memory_Text =
    "There is not enough memory to read the airports of this scenery, so the list will stay "
    "empty.";

// One worker beside the scan's own thread, where the machine has a second core.
int Scan_Worker_Threads() {
    return std::thread::hardware_concurrency() > 1 ? 1 : 0;
}

bool Database_File_Exists() {
    std::error_code error;
    return std::filesystem::is_regular_file(Database_File_Name, error);
}

// Where the scan looked for one of the simulator's files, for a message: the native path,
// or the program's own path if no native one could be formed.
std::string Looked_For_At(const std::string& native_path, const std::string& program_path) {
    return native_path.empty() ? program_path : Utf8_To_Ansi(native_path);
}

std::string Not_Found_Text(const std::string& file, const std::string& where,
                           const std::string& what_follows) {
    return "No readable " + file + " was found at " + where + ", so " + what_follows + ".";
}

void Set_Empty_Bar(Form3_Data& form, Chooser_Form& ui) {
    ui.Set_Progress_Value(0);
    ui.Set_Progress_Min(0);
    ui.Set_Progress_Max(static_cast<float>(form.bgl_file_total) + 1);
    ui.Redraw_Progress();
}

void Finish(const Module1& m, Chooser_Form& ui) {
    ui.Show_Status("Adding Airports to List...");
    Fill_Airport_List(m, ui);
    ui.Show_Status("Done");
    ui.Enable_Controls(true);
}

// A later start takes the database file as holding exactly the count that the configuration
// file gives, and lists that many airports (a count of 0 beside a filled file lists none).
// So the two must never disagree, also when the process is killed or the disk fills up
// between the two writes. The new database therefore waits under its temporary name until
// the count is stored, and goes into place last: a stop at any moment leaves either no
// database file, and the next start builds it again, or both files complete. A damaged old
// database goes before the count is stored, so that it can't be read with the new count.
// Returns the text of the message to show if the pair could not be stored.
const char* Store_Count_Then_Database(Module1& m, const Pending_File_Rec& database) {
    std::error_code error;
    const auto old_type = std::filesystem::symlink_status(Database_File_Name, error).type();
    if (old_type != std::filesystem::file_type::not_found &&
        old_type != std::filesystem::file_type::directory &&
        !std::filesystem::remove(Database_File_Name, error)) {
        Discard_Pending_File(database);
        return Database_Not_Written_Text;
    }
    Config_Status stored = Update_Config_Airport_Count(m);
    // Without a configuration file nothing is stored: the next start is one with the wizard.
    if (stored != Config_Status::Ok && stored != Config_Status::Missing) {
        Discard_Pending_File(database);
        return Count_Not_Stored_Text;
    }
    if (!Commit_Pending_File(database)) {
        return Database_Not_Written_Text;
    }
    return nullptr;
}

// The first-run path: build the database from the scenery, store it and its count. After a
// damaged database the message about the damage has already said that the file is made
// again, and the first-run message would wrongly claim a first time; the same goes for a
// rebuild. The fingerprint of the scenery goes beside a database that was stored.
void Build_Database(Module1& m, Form3_Data& form, Chooser_Form& ui, bool after_damage,
                    const Scenery_Fingerprint_Rec* fingerprint) {
    form.database_present = false;
    form.bgl_file_total = 0;
    if (m.fs_version == Fs_Version_2004) {
        form.bgl_file_total = Count_Fs2004_Area_Files(m, form.drives);
    }
    for (int16_t i = 0; i < m.scenery_area_count && m.fs_version != Fs_Version_2004; ++i) {
        const Scenery_Area& area = m.scenery_areas[static_cast<size_t>(i)];
        if (Is_Airport_Area(area)) {
            form.bgl_file_total +=
                static_cast<int32_t>(List_Folder_Files(form.drives, area.Local, "*.bgl").size());
        }
    }
    Set_Empty_Bar(form, ui);
    form.area_folder.clear();
    form.area_files.clear();
    form.next_area_file = 0;
    form.area_index = 0;
    m.airport_count = 0;
    m.airports.Release();

    if (!after_damage) {
        ui.Show_Message(First_Run_Text, Message_Title, Message_Icon::Information);
    }
    if (m.fs_version == Fs_Version_2004) {
        Scan_Fs2004_Areas(m, form, ui);
    } else {
        Scan_Airport_Areas(m, form, ui);
    }

    ui.Show_Status("Creating Database File...");
    std::optional<Pending_File_Rec> database =
        Write_Pending_Airport_Database(Database_File_Name, m.airports);
    Release_Bgl_Image(form.bgl_image);

    ui.Show_Status("Updating Configuration...");
    const char* problem =
        database ? Store_Count_Then_Database(m, *database) : Database_Not_Written_Text;
    if (problem == nullptr && fingerprint != nullptr) {
        Store_Scenery_Fingerprint(*fingerprint);
    }
    if (problem == nullptr) {
        ui.Show_Message(Database_Created_Text, Message_Title, Message_Icon::Information);
    } else {
        ui.Show_Message(problem, Message_Title, Message_Icon::Exclamation);
    }
    Finish(m, ui);
    Set_Empty_Bar(form, ui);
}

void Scan(Module1& m, Form3_Data& form, Chooser_Form& ui, Scan_Request request,
          Scenery_Changes_Rec* changes) {
    ui.Enable_Controls(false);
    form.drives = Drive_List_For_Fs_Path(m.fs_path);

    ui.Show_Status("Magdec.bgl File");
    // Without the table the grid stays as it is, all zeros in a new process: headings then
    // come out unconverted.
    const std::string magdec_path = m.fs_version == Fs_Version_2004
                                        ? Fs2004_Magdec_Path(m.fs_path)
                                        : m.fs_path + "\\scenery\\magdec.bgl";
    const std::string magdec = Resolve_Native_Path(form.drives, magdec_path);
    if (!Load_Magdec(form.bgl_image, m.magvar_grid, magdec)) {
        ui.Show_Message(Not_Found_Text("magdec.bgl", Looked_For_At(magdec, magdec_path),
                                       "the headings will be shown as true headings"),
                        Message_Title, Message_Icon::Information);
    }

    // Without scenery.cfg there is nothing to build the database from.
    std::optional<std::string> scenery_cfg_missing;
    if (m.fs_version == 1 || m.fs_version == Fs_Version_2004) {
        ui.Show_Status("Scenery.cfg File");
        m.scenery_areas.Release();
        m.scenery_area_count = 0;
        const std::string cfg_path = m.fs_path + "\\scenery.cfg";
        const std::string cfg = Resolve_Native_Path(form.drives, cfg_path);
        if (Read_Scenery_Cfg(m, cfg) == Scenery_Cfg_Status::Unreadable) {
            scenery_cfg_missing = Looked_For_At(cfg, cfg_path);
        }
        form.cd_prompt_shown = false;
        for (int16_t i = 0; i < m.scenery_area_count; ++i) {
            if (!m.scenery_areas[static_cast<size_t>(i)].Remote.empty()) {
                ui.Show_Message(Cd_Prompt_Text, Program_Title, Message_Icon::Information);
                form.cd_prompt_shown = true;
                break;
            }
        }
        Locate_Scenery_Folders(m, form.drives);
    }

    ui.Show_Status("Getting ATC Folder...");
    for (int16_t i = 0; i < m.scenery_area_count; ++i) {
        const Scenery_Area& area = m.scenery_areas[static_cast<size_t>(i)];
        if (Is_Atc_Area(area)) {
            m.atc_data_path = area.Local; // the last matching area counts
        }
    }

    m.airports.Release();
    const bool database_found = Database_File_Exists();
    form.database_present = database_found;
    ui.Stop_Scan_Timer();
    // The scenery against the one the database was built from, where there is scenery.cfg
    // to build from.
    std::optional<Scenery_Check_Rec> check;
    if ((m.fs_version == 1 || m.fs_version == Fs_Version_2004) && !scenery_cfg_missing) {
        check = Check_Scenery_Fingerprint(m, form.drives);
        if (changes != nullptr) {
            *changes = check->changes;
        }
    }
    const Scenery_Fingerprint_Rec* fingerprint = check ? &check->now : nullptr;
    if (database_found && check &&
        (request == Scan_Request::Rebuild || check->result == Scenery_Check::Changed)) {
        // The old database stays in place until the new one is complete.
        if (request == Scan_Request::Usual) {
            ui.Show_Message(Scenery_Changed_Text(check->changes), Message_Title,
                            Message_Icon::Information);
        }
        Build_Database(m, form, ui, true, fingerprint);
        return;
    }
    if (database_found) {
        ui.Show_Status("Reading Database File...");
        if (Read_Airport_Database(Database_File_Name, m.airport_count, m.airports) ==
            Database_Read_Result::Ok) {
            // A database from before fingerprints: the scenery as it is now is its own.
            if (check && check->result == Scenery_Check::No_Fingerprint) {
                Store_Scenery_Fingerprint(check->now);
            }
            Finish(m, ui);
            return;
        }
    }
    if (scenery_cfg_missing) {
        // Nothing is written: a database file that is there stays as it is, for the day
        // the path leads to the simulator again.
        ui.Show_Message(
            Not_Found_Text("scenery.cfg", *scenery_cfg_missing, "the list will stay empty"),
            Message_Title, Message_Icon::Information);
        ui.Show_Status("Done");
        ui.Enable_Controls(true);
        return;
    }
    if (database_found) {
        // Never half a list: the file is rebuilt as on a first run.
        ui.Show_Message(Database_Damaged_Text, Message_Title, Message_Icon::Information);
    } else {
        Remove_Scenery_Fingerprint();
    }
    Build_Database(m, form, ui, database_found, fingerprint);
}

} // namespace

void Scan_Airport_Areas(Module1& m, Form3_Data& form, Chooser_Form& ui) {
    // The walk over the areas lists the files first, so that a worker can decode them
    // ahead; the statuses, the boundary sections, the airports and the bar then follow
    // step by step, file by file, in the same order.
    struct Step {
        int16_t area_index;
        bool takes_file;
    };
    std::vector<Step> steps;
    std::vector<std::string> paths;
    while (form.area_index < m.scenery_area_count) {
        const Scenery_Area& area = m.scenery_areas[static_cast<size_t>(form.area_index)];
        if (!Is_Airport_Area(area)) {
            ++form.area_index;
            continue;
        }
        steps.push_back({form.area_index, false});
        if (area.Local != form.area_folder) {
            // A new folder: its enumeration starts. The same folder again in the next area
            // continues the enumeration that has already ended.
            form.area_folder = area.Local;
            form.area_files = List_Folder_Files(form.drives, form.area_folder, "*.bgl");
            form.next_area_file = 0;
        }
        if (form.next_area_file >= form.area_files.size()) {
            ++form.area_index;
            continue;
        }
        // The program's path is the folder and name in lower case; it is resolved to the
        // file listed, whatever the case of its letters.
        paths.push_back(form.area_files[form.next_area_file++].native_path);
        steps.back().takes_file = true;
    }
    Airport_File_Decoder decoder(std::move(paths), m.magvar_grid, !form.database_present,
                                 Scan_Worker_Threads());
    for (const Step& step : steps) {
        ui.Show_Status(m.scenery_areas[static_cast<size_t>(step.area_index)].Title);
        if (!step.takes_file) {
            continue;
        }
        Decoded_Airport_File_Rec file = decoder.Take_Next();
        std::swap(form.bgl_image, file.image);
        Append_Decoded_Airports(file, m.airports, m.airport_count);
        if (file.has_sections) {
            Read_Boundary_Part(form, m);
        }
        ui.Set_Progress_Value(ui.Progress_Value() + 1);
        ui.Redraw_Progress();
    }
}

void Fill_Airport_List(const Module1& m, Chooser_Form& ui) {
    for (int32_t i = 0; i < m.airport_count && static_cast<size_t>(i) < m.airports.Slot_Count();
         ++i) {
        ui.Add_List_Entry(Airport_List_Text(m.airports[static_cast<size_t>(i)]));
    }
}

void Run_Scenery_Scan(Module1& m, Form3_Data& form, Chooser_Form& ui, Scan_Request request,
                      Scenery_Changes_Rec* changes) {
    try {
        Scan(m, form, ui, request, changes);
    } catch (const std::bad_alloc&) {
        // A scenery beyond the machine's memory: what was read goes, nothing is written,
        // and the chooser stays usable with an empty list.
        m.airports.Release();
        m.airspaces.Release();
        m.airspace_count = 0;
        Release_Bgl_Image(form.bgl_image);
        ui.Stop_Scan_Timer();
        ui.Show_Message(Out_Of_Memory_Text, Message_Title, Message_Icon::Exclamation);
        ui.Show_Status("Done");
        ui.Enable_Controls(true);
    }
}

} // namespace quilmark
