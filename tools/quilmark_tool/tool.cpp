#include "tool.h"

#include <climits>
#include <functional>
#include <map>
#include <memory>

#include "airport_json.h"
#include "airspace/airport_fetch.h"
#include "bgl/bgl_image.h"
#include "bgl/sections.h"
#include "platform/text1252.h"
#include "scenery/airport_database.h"
#include "scenery/magdec.h"
#include "scenery/scan_sequence.h"
#include "shell/chooser_form.h"
#include "shell/config_file.h"
#include "shell/form3_data.h"
#include "shell/module1.h"

namespace {

const char* const kUsage = "usage: quilmark-tool bgl [--magdec MAGDEC] FILE...\n"
                           "       quilmark-tool init FS_PATH\n"
                           "       quilmark-tool scan\n"
                           "       quilmark-tool db FILE COUNT\n"
                           "       quilmark-tool fetch \"ENTRY\"\n";

void Write_Airports(Json_Out& json, const Module1& module) {
    json.Begin_Object();
    json.Key("airport_count");
    json.Int(module.airport_count);
    json.Line_Break();
    json.Key("airports");
    json.Begin_Array();
    for (int32_t i = 0; i < module.airport_count; ++i) {
        json.Line_Break();
        Write_Airport_Json(json, module.airports[static_cast<size_t>(i)]);
    }
    json.End_Array();
    json.End_Object();
    json.Line_Break();
}

// Decodes BGL files as the database build does, in the order given.
int Command_Bgl(const std::vector<std::string>& args, std::ostream& out, std::ostream& err) {
    auto module = std::make_unique<Module1>();
    auto form = std::make_unique<Form3_Data>();
    std::vector<std::string> files;
    for (size_t i = 0; i < args.size(); ++i) {
        if (args[i] == "--magdec") {
            if (i + 1 >= args.size()) {
                err << kUsage;
                return 2;
            }
            const std::string& path = args[++i];
            if (!Load_Magdec(form->bgl_image, module->magvar_grid, path)) {
                err << "quilmark-tool: cannot open " << path << "\n";
                return 1;
            }
        } else {
            files.push_back(args[i]);
        }
    }
    if (files.empty()) {
        err << kUsage;
        return 2;
    }
    int status = 0;
    form->database_present = false;
    for (const std::string& path : files) {
        if (!Load_Bgl_Image(form->bgl_image, path)) {
            err << "quilmark-tool: cannot open " << path << "\n";
            status = 1;
            continue;
        }
        if (Has_Bgl_Marker(form->bgl_image)) {
            Read_BGL_Sections(*form, *module);
        }
    }
    Release_Bgl_Image(form->bgl_image);
    Json_Out json;
    Write_Airports(json, *module);
    out << json.Text();
    return status;
}

// Writes the configuration file of the current directory as the wizard's finish does.
int Command_Init(const std::vector<std::string>& args, std::ostream&, std::ostream& err) {
    if (args.size() != 1) {
        err << kUsage;
        return 2;
    }
    auto module = std::make_unique<Module1>();
    if (Write_First_Config(*module, true, Utf8_To_Ansi(args[0])) != Config_Status::ok) {
        err << "quilmark-tool: cannot write " << Config_File_Name << "\n";
        return 1;
    }
    return 0;
}

const char* Icon_Name(Message_Icon icon) {
    switch (icon) {
    case Message_Icon::Exclamation:
        return "exclamation";
    case Message_Icon::Critical:
        return "critical";
    default:
        return "information";
    }
}

void Write_Strings(Json_Out& json, const std::vector<std::string>& texts) {
    json.Begin_Array();
    for (const std::string& text : texts) {
        json.Ansi_Text(text);
    }
    json.End_Array();
}

void Write_Progress(Json_Out& json, const Recording_Chooser_Form& ui) {
    json.Begin_Object();
    json.Key("min");
    json.Number(ui.progress_min);
    json.Key("max");
    json.Number(ui.progress_max);
    json.Key("value");
    json.Number(ui.progress_value);
    json.End_Object();
}

// Reads the configuration file of the current directory and runs one scan, answering OK
// to every message. False (with a message) if there is no configuration file.
bool Start_Like_The_Program(Module1& module, Form3_Data& form, Recording_Chooser_Form& ui,
                            std::ostream& err) {
    if (Read_Config_File(module, Config_File_Name) != Config_Status::ok) {
        err << "quilmark-tool: no readable " << Config_File_Name
            << " in the current directory (quilmark-tool init FS_PATH writes one)\n";
        return false;
    }
    form.database_present = false;
    Run_Scenery_Scan(module, form, ui);
    return true;
}

int Command_Scan(const std::vector<std::string>& args, std::ostream& out, std::ostream& err) {
    if (!args.empty()) {
        err << kUsage;
        return 2;
    }
    auto module = std::make_unique<Module1>();
    auto form = std::make_unique<Form3_Data>();
    Recording_Chooser_Form ui;
    if (!Start_Like_The_Program(*module, *form, ui, err)) {
        return 1;
    }
    Json_Out json;
    json.Begin_Object();
    json.Key("status_texts");
    Write_Strings(json, ui.Distinct_Status_Texts());
    json.Line_Break();
    json.Key("messages");
    json.Begin_Array();
    for (const Shown_Message& message : ui.messages) {
        json.Begin_Object();
        json.Key("title");
        json.Ansi_Text(message.title);
        json.Key("text");
        json.Ansi_Text(message.text);
        json.Key("icon");
        json.Utf8_Text(Icon_Name(message.icon));
        json.End_Object();
    }
    json.End_Array();
    json.Line_Break();
    json.Key("progress");
    Write_Progress(json, ui);
    json.Line_Break();
    json.Key("scenery_areas");
    json.Begin_Array();
    for (int16_t i = 0; i < module->scenery_area_count; ++i) {
        const Scenery_Area& area = module->scenery_areas[static_cast<size_t>(i)];
        json.Line_Break();
        json.Begin_Object();
        const std::pair<const char*, const std::string*> fields[] = {
            {"Title", &area.Title}, {"Texture_ID", &area.Texture_ID}, {"Active", &area.Active},
            {"Layer", &area.Layer}, {"Required", &area.Required},     {"Remote", &area.Remote},
            {"Local", &area.Local}};
        for (const auto& [key, value] : fields) {
            json.Key(key);
            json.Ansi_Text(*value);
        }
        json.End_Object();
    }
    json.End_Array();
    json.Line_Break();
    json.Key("atc_data_path");
    json.Ansi_Text(module->atc_data_path);
    json.Line_Break();
    json.Key("airport_count");
    json.Int(module->airport_count);
    json.Line_Break();
    json.Key("list");
    Write_Strings(json, ui.Sorted_List());
    json.End_Object();
    json.Line_Break();
    out << json.Text();
    return 0;
}

// Reads a database file with a given count and prints its records.
int Command_Db(const std::vector<std::string>& args, std::ostream& out, std::ostream& err) {
    if (args.size() != 2) {
        err << kUsage;
        return 2;
    }
    int32_t count = 0;
    try {
        size_t used = 0;
        long long value = std::stoll(args[1], &used);
        if (used != args[1].size() || value < INT32_MIN || value > INT32_MAX) {
            throw std::invalid_argument("count");
        }
        count = static_cast<int32_t>(value);
    } catch (const std::exception&) {
        err << "quilmark-tool: COUNT must be a whole number\n";
        return 2;
    }
    auto module = std::make_unique<Module1>();
    switch (Read_Airport_Database(args[0], count, module->airports)) {
    case Database_Read_Result::Ok:
        break;
    case Database_Read_Result::Cannot_Open:
        err << "quilmark-tool: cannot open " << args[0] << "\n";
        return 1;
    case Database_Read_Result::Damaged:
        err << "quilmark-tool: " << args[0] << " is damaged or holds fewer than " << count
            << " airports\n";
        return 1;
    }
    module->airport_count = count;
    Json_Out json;
    Write_Airports(json, *module);
    out << json.Text();
    return 0;
}

void Write_Airspace_Json(Json_Out& json, const Airspace_Rec& a) {
    json.Begin_Object();
    json.Key("point_count");
    json.Int(a.point_count);
    json.Key("points");
    if (!a.points.allocated) {
        json.Null();
    } else {
        json.Begin_Array();
        for (int32_t i = 0; i < a.point_count && static_cast<size_t>(i) < a.points.Slot_Count();
             ++i) {
            const Boundary_Point_Rec& p = a.points[static_cast<size_t>(i)];
            json.Begin_Object();
            json.Key("kind");
            json.Int(p.kind);
            json.Key("lat");
            json.Number(p.lat);
            json.Key("lon");
            json.Number(p.lon);
            json.Key("radius");
            json.Int(p.radius);
            json.End_Object();
        }
        json.End_Array();
    }
    json.Key("center_lat");
    json.Number(a.center_lat);
    json.Key("center_lon");
    json.Number(a.center_lon);
    json.Key("floor_alt");
    json.Int(a.floor_alt);
    json.Key("ceiling_alt");
    json.Int(a.ceiling_alt);
    const std::pair<const char*, const std::string*> texts[] = {
        {"freq_text", &a.freq_text},
        {"class_text", &a.class_text},
        {"region_name", &a.region_name},
        {"facility_name", &a.facility_name}};
    for (const auto& [key, value] : texts) {
        json.Key(key);
        json.Ansi_Text(*value);
    }
    json.End_Object();
}

// The scan, then GET AIRPORT for the list entry with the given text (UTF-8 on the command
// line). Exit status 2 if no entry has that text.
int Command_Fetch(const std::vector<std::string>& args, std::ostream& out, std::ostream& err) {
    if (args.size() != 1) {
        err << kUsage;
        return 2;
    }
    auto module = std::make_unique<Module1>();
    auto form = std::make_unique<Form3_Data>();
    Recording_Chooser_Form scan_ui;
    if (!Start_Like_The_Program(*module, *form, scan_ui, err)) {
        return 1;
    }
    const std::string entry = Utf8_To_Ansi(args[0]);
    bool listed = false;
    for (const std::string& text : scan_ui.list) {
        listed = listed || text == entry;
    }
    if (!listed) {
        err << "quilmark-tool: no list entry is \"" << args[0] << "\"\n";
        return 2;
    }
    Recording_Chooser_Form ui;
    Get_Airport(*module, *form, ui, entry);

    Json_Out json;
    json.Begin_Object();
    json.Key("status_texts");
    Write_Strings(json, ui.status_texts);
    json.Line_Break();
    json.Key("progress");
    Write_Progress(json, ui);
    json.Line_Break();
    json.Key("current_airport");
    Write_Airport_Json(json, module->current_airport);
    json.Line_Break();
    json.Key("airspace_count");
    json.Int(module->airspace_count);
    json.Line_Break();
    json.Key("airspaces");
    json.Begin_Array();
    for (int32_t i = 0; i < module->airspace_count; ++i) {
        json.Line_Break();
        Write_Airspace_Json(json, module->airspaces[static_cast<size_t>(i)]);
    }
    json.End_Array();
    json.End_Object();
    json.Line_Break();
    out << json.Text();
    return 0;
}

} // namespace

int Run_Tool(const std::vector<std::string>& args, std::ostream& out, std::ostream& err) {
    using Command =
        std::function<int(const std::vector<std::string>&, std::ostream&, std::ostream&)>;
    static const std::map<std::string, Command> commands = {
        {"bgl", Command_Bgl}, {"init", Command_Init},   {"scan", Command_Scan},
        {"db", Command_Db},   {"fetch", Command_Fetch},
    };
    if (args.empty() || commands.find(args[0]) == commands.end()) {
        err << kUsage;
        return 2;
    }
    std::vector<std::string> rest(args.begin() + 1, args.end());
    return commands.at(args[0])(rest, out, err);
}
