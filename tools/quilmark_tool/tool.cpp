#include "tool.h"

#include <climits>
#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <new>
#include <sstream>

#include "airport_json.h"
#include "airspace/airport_fetch.h"
#include "airspace/section_dispatch.h"
#include "bgl/bgl_image.h"
#include "chart/chart_draw.h"
#include "chart/chart_records.h"
#include "chart/chart_sequence.h"
#include "chart/chart_view.h"
#include "chart/diagram_frame.h"
#include "chart/diagram_layout.h"
#include "chart/diagram_session.h"
#include "chart/recording_surface.h"
#include "chart/trip_kit.h"
#include "command_line.h"
#include "link_check.h"
#include "platform/text1252.h"
#include "scenery/airport_database.h"
#include "scenery/config_file.h"
#include "scenery/fs2004_scan.h"
#include "scenery/magdec.h"
#include "scenery/scan_sequence.h"
#include "scenery/scenery_fingerprint.h"
#include "state/chooser_form.h"
#include "state/form3_data.h"
#include "state/module1.h"

namespace quilmark {

namespace {

Chart_Image_Writer& Image_Writer() {
    static Chart_Image_Writer writer;
    return writer;
}

Trip_Kit_Writer& Kit_Writer() {
    static Trip_Kit_Writer writer;
    return writer;
}

// The airport diagram's picture when none is asked for.
constexpr long long Diagram_Default_Width = 1280;
constexpr long long Diagram_Default_Height = 800;

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
int Command_Bgl(const Command_Args& args, std::ostream& out, std::ostream& err) {
    auto module = std::make_unique<Module1>();
    auto form = std::make_unique<Form3_Data>();
    for (const auto& [option, path] : args.options) { // --magdec
        if (!Load_Magdec(form->bgl_image, module->magvar_grid, path)) {
            err << "quilmark-tool: cannot open " << path << "\n";
            return 1;
        }
    }
    int status = 0;
    form->database_present = false;
    // FS2004 files are laid over each other in the order given, each file a layer, and
    // their airports follow those of the FS2002 files.
    Fs2004_Reading_Rec fs2004;
    bool any_fs2004 = false;
    for (const std::string& path : args.words) {
        if (!Load_Bgl_Image(form->bgl_image, path)) {
            err << "quilmark-tool: cannot open " << path << "\n";
            status = 1;
            continue;
        }
        if (Has_Bgl_Marker(form->bgl_image)) {
            Read_BGL_Sections(*form, *module);
        } else {
            fs2004.layers.emplace_back();
            any_fs2004 = Read_Fs2004_File(form->bgl_image, fs2004) || any_fs2004;
        }
    }
    Release_Bgl_Image(form->bgl_image);
    if (any_fs2004) {
        Append_Fs2004_Airports(std::move(fs2004), module->magvar_grid, module->airports,
                               module->airport_count);
    }
    Json_Out json;
    Write_Airports(json, *module);
    out << json.Text();
    return status;
}

// Writes the configuration file of the current directory as the wizard's finish does.
int Command_Init(const Command_Args& args, std::ostream&, std::ostream& err) {
    auto module = std::make_unique<Module1>();
    // The folder as an absolute path, as the wizard's folder list gives it.
    std::error_code error;
    std::string folder =
        std::filesystem::absolute(args.words[0], error).lexically_normal().string();
    if (error) {
        folder = args.words[0];
    }
    if (folder.size() > 1 && folder.back() == '/') {
        folder.pop_back();
    }
    uint8_t version = Fs_Version_2002;
    for (const auto& [option, value] : args.options) { // --fs-version
        if (value != "1" && value != "2") {
            err << "quilmark-tool: --fs-version takes 1 (FS2002) or 2 (FS2004)\n";
            return 2;
        }
        version = value == "2" ? Fs_Version_2004 : Fs_Version_2002;
    }
    if (Write_Chosen_Config(*module, version, Utf8_To_Ansi(folder)) != Config_Status::Ok) {
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
                            std::ostream& err, Scan_Request request = Scan_Request::Usual,
                            Scenery_Changes_Rec* changes = nullptr) {
    if (Read_Config_File(module, Config_File_Name) != Config_Status::Ok) {
        err << "quilmark-tool: no readable " << Config_File_Name
            << " in the current directory (quilmark-tool init FS_PATH writes one)\n";
        return false;
    }
    form.database_present = false;
    Run_Scenery_Scan(module, form, ui, request, changes);
    return true;
}

// The files that differ from the scenery the database was built from, by native path.
void Write_Scenery_Changes(Json_Out& json, const Scenery_Changes_Rec& changes) {
    json.Begin_Object();
    json.Key("scenery_cfg");
    json.Bool(changes.scenery_cfg);
    json.Key("magdec");
    json.Bool(changes.magdec);
    for (const auto& [key, files] :
         {std::pair{"added", &changes.added}, std::pair{"changed", &changes.changed},
          std::pair{"removed", &changes.removed}}) {
        json.Key(key);
        json.Begin_Array();
        for (const std::string& file : *files) {
            json.Utf8_Text(file);
        }
        json.End_Array();
    }
    json.End_Object();
}

int Command_Scan(const Command_Args& args, std::ostream& out, std::ostream& err) {
    auto module = std::make_unique<Module1>();
    auto form = std::make_unique<Form3_Data>();
    Recording_Chooser_Form ui;
    Scenery_Changes_Rec changes;
    const Scan_Request request =
        args.options.empty() ? Scan_Request::Usual : Scan_Request::Rebuild; // --rebuild
    if (!Start_Like_The_Program(*module, *form, ui, err, request, &changes)) {
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
    // Only a scan that found the scenery changed tells of it.
    if (changes.Any()) {
        json.Key("scenery_changes");
        Write_Scenery_Changes(json, changes);
        json.Line_Break();
    }
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
int Command_Db(const Command_Args& args, std::ostream& out, std::ostream& err) {
    const std::string& file = args.words[0];
    const std::string& count_text = args.words[1];
    int32_t count = 0;
    try {
        size_t used = 0;
        long long value = std::stoll(count_text, &used);
        if (used != count_text.size() || value < INT32_MIN || value > INT32_MAX) {
            throw std::invalid_argument("count");
        }
        count = static_cast<int32_t>(value);
    } catch (const std::exception&) {
        err << "quilmark-tool: COUNT must be a whole number\n";
        return 2;
    }
    auto module = std::make_unique<Module1>();
    switch (Read_Airport_Database(file, count, module->airports)) {
    case Database_Read_Result::Ok:
        break;
    case Database_Read_Result::Cannot_Open:
        err << "quilmark-tool: cannot open " << file << "\n";
        return 1;
    case Database_Read_Result::Damaged:
        err << "quilmark-tool: " << file << " is damaged or holds fewer than " << count
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
// line). Exit status 1 without a configuration file, 2 if no entry has that text.
int Scan_And_Fetch(Module1& module, const std::string& entry_utf8, Recording_Chooser_Form& ui,
                   std::ostream& err) {
    auto form = std::make_unique<Form3_Data>();
    Recording_Chooser_Form scan_ui;
    if (!Start_Like_The_Program(module, *form, scan_ui, err)) {
        return 1;
    }
    const std::string entry = Utf8_To_Ansi(entry_utf8);
    bool listed = false;
    for (const std::string& text : scan_ui.list) {
        listed = listed || text == entry;
    }
    if (!listed) {
        err << "quilmark-tool: no list entry is \"" << entry_utf8 << "\"\n";
        return 2;
    }
    Get_Airport(module, *form, ui, entry);
    return 0;
}

int Command_Fetch(const Command_Args& args, std::ostream& out, std::ostream& err) {
    auto module = std::make_unique<Module1>();
    Recording_Chooser_Form ui;
    if (int status = Scan_And_Fetch(*module, args.words[0], ui, err); status != 0) {
        return status;
    }

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

bool Parse_Int(const std::string& text, long long& value) {
    try {
        size_t used = 0;
        value = std::stoll(text, &used);
        return used == text.size();
    } catch (const std::exception&) {
        return false;
    }
}

// The scan and GET AIRPORT as fetch does, the chart's opening, a zoom to the level asked
// for, and one redraw, recorded (--ops) or written as an image (--out).
int Command_Chart(const Command_Args& args, std::ostream& out, std::ostream& err) {
    long long zoom = Opening_Zoom_Level, width = 271, height = 228;
    bool ops = false;
    bool diagram = false, night = false, sized = false, zoomed = false;
    std::string out_file;
    std::vector<std::string> hidden;
    bool aircraft = false;
    double aircraft_lat = 0, aircraft_lon = 0;
    long long aircraft_heading = 0;
    for (const auto& [option, value] : args.options) {
        if (option == "--ops") {
            ops = true;
        } else if (option == "--out") {
            out_file = value;
        } else if (option == "--zoom") {
            if (!Parse_Int(value, zoom) || zoom < Min_Zoom_Level || zoom > Max_Zoom_Level) {
                err << "quilmark-tool: --zoom takes a level from 1 to 20\n";
                return 2;
            }
            zoomed = true;
        } else if (option == "--size") {
            const std::string& size = value;
            size_t x = size.find('x');
            if (x == std::string::npos || !Parse_Int(size.substr(0, x), width) ||
                !Parse_Int(size.substr(x + 1), height) || width < 1 || height < 1 ||
                width > 20000 || height > 20000) {
                err << "quilmark-tool: --size takes WIDTHxHEIGHT in pixels\n";
                return 2;
            }
            sized = true;
        } else if (option == "--aircraft") {
            std::stringstream parts(value);
            std::string lat, lon, heading;
            std::getline(parts, lat, ',');
            std::getline(parts, lon, ',');
            std::getline(parts, heading, ',');
            try {
                aircraft_lat = std::stod(lat);
                aircraft_lon = std::stod(lon);
            } catch (const std::exception&) {
                err << "quilmark-tool: --aircraft takes LAT,LON,HEADING\n";
                return 2;
            }
            if (!Parse_Int(heading, aircraft_heading) || aircraft_heading < -32768 ||
                aircraft_heading > 32767) {
                err << "quilmark-tool: --aircraft takes a whole heading in degrees\n";
                return 2;
            }
            aircraft = true;
        } else if (option == "--style") {
            if (value != "classic" && value != "diagram") {
                err << "quilmark-tool: --style takes classic or diagram\n";
                return 2;
            }
            diagram = value == "diagram";
        } else if (option == "--night") {
            night = true;
        } else if (option == "--hide") {
            std::stringstream layers(value);
            std::string layer;
            while (std::getline(layers, layer, ',')) {
                hidden.push_back(layer);
            }
        }
    }
    if (diagram && (ops || out_file.empty() || zoomed)) {
        err << "quilmark-tool: chart --style diagram takes --out FILE and no --ops or --zoom\n";
        return 2;
    }
    if (night && !diagram) {
        err << "quilmark-tool: --night is for --style diagram\n";
        return 2;
    }
    if (ops == !out_file.empty()) {
        err << "quilmark-tool: chart takes one of --ops and --out\n";
        return 2;
    }
    if (diagram && !sized) {
        width = Diagram_Default_Width;
        height = Diagram_Default_Height;
    }
    auto module = std::make_unique<Module1>();
    Recording_Chooser_Form ui;
    if (int status = Scan_And_Fetch(*module, args.words[0], ui, err); status != 0) {
        return status;
    }
    Chart_View view;
    Recording_Surface opening; // the first redraw of the opening, at level 1
    Open_Chart_View(view, *module, static_cast<int32_t>(width), static_cast<int32_t>(height),
                    [&] { Redraw_Chart(opening, view, *module); });
    Zoom_To_Level(view, static_cast<int>(zoom));
    const std::map<std::string, bool*> layers = {{"airspace", &module->show_airspace},
                                                 {"gates", &module->show_gates},
                                                 {"taxiways", &module->show_taxiways},
                                                 {"taxiway_ids", &module->show_taxiway_ids},
                                                 {"ils", &module->show_ils}};
    for (const std::string& layer : hidden) {
        auto it = layers.find(layer);
        if (it == layers.end()) {
            err << "quilmark-tool: --hide knows airspace, gates, taxiways, taxiway_ids, ils\n";
            return 2;
        }
        *it->second = false;
    }
    if (aircraft) {
        module->fsuipc_connected = true;
        module->aircraft_lat = aircraft_lat;
        module->aircraft_lon = aircraft_lon;
        module->aircraft_heading = static_cast<int16_t>(aircraft_heading);
    }
    if (ops) {
        Recording_Surface surface;
        Redraw_Chart(surface, view, *module);
        Write_Recorded_Ops(surface, out);
        return 0;
    }
    if (!Image_Writer()) {
        err << "quilmark-tool: this build cannot write images\n";
        return 1;
    }
    std::string problem;
    if (diagram) {
        // The diagram as the window first shows it: fitted to the airport with its frame.
        const Diagram_Source_Rec source = Module_Diagram_Source(*module);
        const Diagram_Options_Rec options = Module_Diagram_Options(*module, night);
        const auto w = static_cast<int32_t>(width), h = static_cast<int32_t>(height);
        const Diagram_View_Rec diagram_view =
            Fit_Diagram_View(source.airport, w, h, Diagram_Frame_Insets(w, h));
        problem = Image_Writer()(out_file, w, h, [&](Surface& surface) {
            Draw_Diagram(surface, source, diagram_view, options);
        });
    } else {
        problem = Image_Writer()(out_file, view.chart_px_width, view.chart_px_height,
                                 [&](Surface& surface) { Redraw_Chart(surface, view, *module); });
    }
    if (!problem.empty()) {
        err << "quilmark-tool: " << problem << "\n";
        return 1;
    }
    return 0;
}

// The trip kit: the scan and GET AIRPORT for each entry in turn (each fetch releases the
// list, so each has a scan of its own), then the PDF.
int Command_Kit(const Command_Args& args, std::ostream&, std::ostream& err) {
    std::string out_file;
    for (const auto& [option, value] : args.options) { // --out
        out_file = value;
    }
    if (out_file.empty()) {
        err << "quilmark-tool: kit takes --out FILE\n";
        return 2;
    }
    std::vector<Kit_Airport_Rec> airports;
    auto grid = std::make_unique<Magvar_Grid>();
    for (const std::string& entry : args.words) {
        auto module = std::make_unique<Module1>();
        Recording_Chooser_Form ui;
        if (int status = Scan_And_Fetch(*module, entry, ui, err); status != 0) {
            return status;
        }
        const auto airspaces = Filled_Span(module->airspaces, module->airspace_count);
        airports.push_back({module->current_airport, {airspaces.begin(), airspaces.end()}});
        *grid = module->magvar_grid;
    }
    if (!Kit_Writer()) {
        err << "quilmark-tool: this build cannot write images\n";
        return 1;
    }
    if (std::string problem = Kit_Writer()(out_file, airports, *grid); !problem.empty()) {
        err << "quilmark-tool: " << problem << "\n";
        return 1;
    }
    return 0;
}

} // namespace

void Set_Chart_Image_Writer(Chart_Image_Writer writer) {
    Image_Writer() = std::move(writer);
}

void Set_Trip_Kit_Writer(Trip_Kit_Writer writer) {
    Kit_Writer() = std::move(writer);
}

namespace {

struct Command {
    Command_Syntax syntax;
    int (*run)(const Command_Args& args, std::ostream& out, std::ostream& err);
};

// Every command: the shape of its arguments, which Run_Tool checks before the command
// runs, and what runs it.
const std::vector<Command>& Commands() {
    static const std::vector<Command> commands = {
        {{"bgl", "[--magdec MAGDEC] FILE...", {"FILE"}, true, {{"--magdec", "MAGDEC"}}},
         Command_Bgl},
        {{"init", "[--fs-version 1|2] FS_PATH", {"FS_PATH"}, false, {{"--fs-version", "1|2"}}},
         Command_Init},
        {{"scan", "[--rebuild]", {}, false, {{"--rebuild", nullptr}}}, Command_Scan},
        {{"db", "FILE COUNT", {"FILE", "COUNT"}, false, {}}, Command_Db},
        {{"fetch", "\"ENTRY\"", {"ENTRY"}, false, {}}, Command_Fetch},
        {{"chart",
          "\"ENTRY\" [--style classic|diagram] [--night] [--zoom N] [--size WxH] "
          "[--aircraft LAT,LON,HEADING] [--hide LAYER,...] (--ops | --out FILE)",
          {"ENTRY"},
          false,
          {{"--zoom", "N"},
           {"--size", "WxH"},
           {"--aircraft", "LAT,LON,HEADING"},
           {"--hide", "LAYER,..."},
           {"--ops", nullptr},
           {"--out", "FILE"},
           {"--style", "classic|diagram"},
           {"--night", nullptr}}},
         Command_Chart},
        {{"kit", "\"ENTRY\"... --out FILE.pdf", {"ENTRY"}, true, {{"--out", "FILE.pdf"}}},
         Command_Kit},
        {{"link", "[--port N]", {}, false, {{"--port", "N"}}}, Command_Link},
    };
    return commands;
}

void Write_Help(std::ostream& out) {
    const char* lead = "usage: ";
    for (const Command& command : Commands()) {
        out << lead << Usage_Line(command.syntax) << "\n";
        lead = "       ";
    }
    out << lead << "quilmark-tool --help | --version | COMMAND --help\n"
        << "\n"
        << "Each command works in the current directory, as the program does; see "
           "quilmark-tool(1).\n";
}

} // namespace

int Run_Tool(const std::vector<std::string>& args, std::ostream& out, std::ostream& err) {
    if (args.empty()) {
        err << "quilmark-tool: no command given; quilmark-tool --help lists them\n";
        return 2;
    }
    if (args[0] == "--help") {
        Write_Help(out);
        return 0;
    }
    if (args[0] == "--version") {
        out << "quilmark-tool " << QUILMARK_VERSION << "\n";
        return 0;
    }
    for (const Command& command : Commands()) {
        if (args[0] != command.syntax.name) {
            continue;
        }
        if (args.size() == 2 && args[1] == "--help") {
            out << "usage: " << Usage_Line(command.syntax) << "\n";
            return 0;
        }
        Command_Args parsed;
        std::string problem = Parse_Command_Args(
            command.syntax, std::vector<std::string>(args.begin() + 1, args.end()), parsed);
        if (!problem.empty()) {
            err << "quilmark-tool: " << problem << "\n";
            return 2;
        }
        try {
            return command.run(parsed, out, err);
        } catch (const std::bad_alloc&) {
            err << "quilmark-tool: not enough memory for this input\n";
            return 1;
        }
    }
    err << "quilmark-tool: unknown command \"" << args[0]
        << "\"; quilmark-tool --help lists the commands\n";
    return 2;
}

} // namespace quilmark
