#include "support/fetched_airports.h"

#include <algorithm>
#include <memory>
#include <stdexcept>

#include "airspace/airport_fetch.h"
#include "chart/chart_records.h"
#include "scenery/config_file.h"
#include "scenery/scan_sequence.h"
#include "state/chooser_form.h"
#include "state/form3_data.h"
#include "state/module1.h"

namespace quilmark {

std::vector<Kit_Airport_Rec> Fetch_Airports(const std::string& fs_path,
                                            const std::vector<std::string>& entries,
                                            Magvar_Grid& grid, uint8_t fs_version) {
    std::vector<Kit_Airport_Rec> fetched;
    if (auto m = std::make_unique<Module1>();
        Write_Chosen_Config(*m, fs_version, fs_path) != Config_Status::Ok) {
        throw std::runtime_error("cannot write the configuration file");
    }
    for (const std::string& entry : entries) {
        // Each GET AIRPORT releases the list, so each airport has a scan of its own; the
        // later ones read the database file the first one wrote.
        auto m = std::make_unique<Module1>();
        auto form = std::make_unique<Form3_Data>();
        if (Read_Config_File(*m, Config_File_Name) != Config_Status::Ok) {
            throw std::runtime_error("cannot read the configuration file");
        }
        Recording_Chooser_Form scan;
        Run_Scenery_Scan(*m, *form, scan);
        if (std::find(scan.list.begin(), scan.list.end(), entry) == scan.list.end()) {
            throw std::runtime_error("no list entry " + entry);
        }
        Recording_Chooser_Form ui;
        Get_Airport(*m, *form, ui, entry);
        const auto airspaces = Filled_Span(m->airspaces, m->airspace_count);
        fetched.push_back({m->current_airport, {airspaces.begin(), airspaces.end()}});
        grid = m->magvar_grid;
    }
    return fetched;
}

} // namespace quilmark
