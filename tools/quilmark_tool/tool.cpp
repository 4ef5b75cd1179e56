#include "tool.h"

#include <functional>
#include <map>
#include <memory>

#include "airport_json.h"
#include "bgl/bgl_image.h"
#include "bgl/sections.h"
#include "scenery/magdec.h"
#include "shell/form3_data.h"
#include "shell/module1.h"

namespace {

const char* const kUsage = "usage: quilmark-tool bgl [--magdec MAGDEC] FILE...\n";

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

} // namespace

int Run_Tool(const std::vector<std::string>& args, std::ostream& out, std::ostream& err) {
    using Command =
        std::function<int(const std::vector<std::string>&, std::ostream&, std::ostream&)>;
    static const std::map<std::string, Command> commands = {
        {"bgl", Command_Bgl},
    };
    if (args.empty() || commands.find(args[0]) == commands.end()) {
        err << kUsage;
        return 2;
    }
    std::vector<std::string> rest(args.begin() + 1, args.end());
    return commands.at(args[0])(rest, out, err);
}
