// quilmark-diagram-dev: a developer's tool that draws the airport diagram and the trip kit
// of a simulator folder's airports through the same calls the program makes, for looking
// at them while the diagram is worked on.
//
//   quilmark-diagram-dev FS_PATH OUT_DIR [--size WxH] [--zoom FACTOR] [--aircraft LAT,LON,HDG]
//                        [--follow] [--time N] [--crop X,Y,W,H] [--fs-version 1|2]
//                        "ENTRY"|--largest ["ENTRY"...]
//
// With --follow the view is centred on the aircraft. --largest stands for the airport with the most
// taxi paths; --time N also times N redraws of the diagram on a kept image, its layout alone, and
// its painting without the texts;
// --crop also writes crop.png, that part of the day picture four times as large.
// Writes OUT_DIR/diagram-day.png, diagram-night.png, diagram.svg and diagram.pdf of the
// first entry, and trip-kit.pdf with a PNG of each of its pages (trip-kit-N.png).
#include <QGuiApplication>
#include <QImage>
#include <QPainter>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <iostream>
#include <string>
#include <vector>

#include "airspace/airport_fetch.h"
#include "chart/diagram_layout.h"
#include "chart/diagram_style.h"
#include "chart/qt_export.h"
#include "chart/qt_surface.h"
#include "chart/trip_kit.h"
#include "scenery/config_file.h"
#include "scenery/scan_sequence.h"
#include "state/chooser_form.h"
#include "state/form3_data.h"
#include "state/module1.h"
#include "support/fetched_airports.h"
#include "support/work_dir.h"

namespace quilmark {

namespace {

std::string Largest_Entry(const std::string& fs_path, uint8_t fs_version) {
    auto m = std::make_unique<Module1>();
    auto form = std::make_unique<Form3_Data>();
    Write_Chosen_Config(*m, fs_version, fs_path);
    Read_Config_File(*m, Config_File_Name);
    Recording_Chooser_Form ui;
    Run_Scenery_Scan(*m, *form, ui);
    size_t best = 0;
    for (size_t i = 0; i < static_cast<size_t>(m->airport_count); ++i) {
        if (m->airports[i].taxi_path_count > m->airports[best].taxi_path_count) {
            best = i;
        }
    }
    return Airport_List_Text(m->airports[best]);
}

// Milliseconds of this thread's processor time per run: a shared machine's load slows
// wall-clock time far more.
double Ms_Of(int n, const std::function<void()>& work) {
    timespec start{};
    timespec end{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &start);
    for (int i = 0; i < n; ++i) {
        work();
    }
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &end);
    return ((end.tv_sec - start.tv_sec) * 1e3 + (end.tv_nsec - start.tv_nsec) / 1e6) / n;
}

void Time_Redraws(const Diagram_Source_Rec& source, const Diagram_View_Rec& view, int n) {
    QImage image(view.width, view.height, QImage::Format_RGB32);
    Diagram_Layout_Rec layout;
    Qt_Text_Metrics metrics;
    Qt_Sprite_Cache sprites;
    auto paint = [&](const Diagram_Layout_Rec& l) {
        QPainter painter(&image);
        Qt_Surface surface(painter, view.width, view.height, &sprites);
        Paint_Diagram(l, surface);
    };
    const double first = Ms_Of(n, [&] {
        QImage fresh(view.width, view.height, QImage::Format_RGB32);
        Qt_Sprite_Cache fresh_sprites;
        QPainter painter(&fresh);
        Qt_Surface surface(painter, view.width, view.height, &fresh_sprites);
        Draw_Diagram(surface, source, view, Diagram_Options_Rec{});
    });
    const double whole = Ms_Of(n, [&] {
        QPainter painter(&image);
        Qt_Surface surface(painter, view.width, view.height, &sprites);
        Draw_Diagram(surface, source, view, Diagram_Options_Rec{});
    });
    const double fresh_image = Ms_Of(n, [&] {
        QImage fresh(view.width, view.height, QImage::Format_RGB32);
        fresh.fill(Qt::white);
    });
    Diagram_Layout_Rec texts_only;
    Layout_Diagram(source, view, Diagram_Options_Rec{}, metrics, texts_only);
    const double new_sprites = Ms_Of(n, [&] {
        Qt_Sprite_Cache fresh_sprites;
        QPainter painter(&image);
        Qt_Surface surface(painter, view.width, view.height, &fresh_sprites);
        for (const Diagram_Text_Rec& t : texts_only.texts) {
            surface.Draw_Text(t.centre, t.angle_deg, t.text,
                              Diagram_Text_Style(t.role, Diagram_Day_Palette()));
        }
    });
    std::printf("first redraw %.2f ms (a fresh image %.2f, the labels' new sprites %.2f)\n", first,
                fresh_image, new_sprites);
    const double layout_ms =
        Ms_Of(n, [&] { Layout_Diagram(source, view, Diagram_Options_Rec{}, metrics, layout); });
    const double paint_ms = Ms_Of(n, [&] { paint(layout); });
    Diagram_Layout_Rec no_text = layout;
    no_text.texts.clear();
    no_text.frame_texts.clear();
    const double shapes_ms = Ms_Of(n, [&] { paint(no_text); });
    auto part = [&](const char* name, auto keep) {
        Diagram_Layout_Rec only = no_text;
        only.airspaces.clear();
        only.taxiways.clear();
        only.parking_lanes.clear();
        only.spots.clear();
        only.runways.clear();
        only.feathers.clear();
        only.panels.clear();
        only.ticks.clear();
        only.legend.clear();
        only.scale_bars.clear();
        only.has_north_arrow = false;
        keep(only);
        std::printf("  %s %.2f ms\n", name, Ms_Of(n, [&] { paint(only); }));
    };
    part("background", [](Diagram_Layout_Rec&) {});
    part("airspaces", [&](Diagram_Layout_Rec& l) { l.airspaces = layout.airspaces; });
    part("taxiways", [&](Diagram_Layout_Rec& l) { l.taxiways = layout.taxiways; });
    part("lanes", [&](Diagram_Layout_Rec& l) { l.parking_lanes = layout.parking_lanes; });
    part("spots", [&](Diagram_Layout_Rec& l) { l.spots = layout.spots; });
    part("runways", [&](Diagram_Layout_Rec& l) { l.runways = layout.runways; });
    part("frame", [&](Diagram_Layout_Rec& l) {
        l.panels = layout.panels;
        l.ticks = layout.ticks;
        l.legend = layout.legend;
        l.scale_bars = layout.scale_bars;
        l.has_north_arrow = true;
    });
    std::printf("redraw %.2f ms: layout %.2f, painting %.2f of which shapes %.2f; %zu texts\n",
                whole, layout_ms, paint_ms, shapes_ms,
                layout.texts.size() + layout.frame_texts.size());
}

} // namespace

} // namespace quilmark

int main(int argc, char** argv) {
    using namespace quilmark;
    if (argc < 4) {
        std::cerr << "usage: quilmark-diagram-dev FS_PATH OUT_DIR [--size WxH] [--zoom F] "
                     "[--aircraft LAT,LON,HDG] ENTRY...\n";
        return 2;
    }
    const std::string fs_path = std::filesystem::absolute(argv[1]).string();
    const std::filesystem::path out = std::filesystem::absolute(argv[2]);
    int width = 1280, height = 800;
    double zoom = 1;
    int time_runs = 0;
    int crop[4] = {0, 0, 0, 0};
    bool follow = false;
    uint8_t fs_version = Fs_Version_2002;
    Diagram_Aircraft_Rec aircraft;
    std::vector<std::string> entries;
    for (int i = 3; i < argc; ++i) {
        const std::string arg = argv[i];
        if (arg == "--size" && i + 1 < argc) {
            std::sscanf(argv[++i], "%dx%d", &width, &height);
        } else if (arg == "--time" && i + 1 < argc) {
            time_runs = std::stoi(argv[++i]);
        } else if (arg == "--crop" && i + 1 < argc) {
            std::sscanf(argv[++i], "%d,%d,%d,%d", &crop[0], &crop[1], &crop[2], &crop[3]);
        } else if (arg == "--fs-version" && i + 1 < argc) {
            fs_version = std::string(argv[++i]) == "2" ? Fs_Version_2004 : Fs_Version_2002;
        } else if (arg == "--follow") {
            follow = true;
        } else if (arg == "--largest") {
            entries.push_back("");
        } else if (arg == "--zoom" && i + 1 < argc) {
            zoom = std::stod(argv[++i]);
        } else if (arg == "--aircraft" && i + 1 < argc) {
            int heading = 0;
            std::sscanf(argv[++i], "%lf,%lf,%d", &aircraft.lat, &aircraft.lon, &heading);
            aircraft.heading = static_cast<int16_t>(heading);
            aircraft.shown = true;
        } else {
            entries.push_back(arg);
        }
    }
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    QGuiApplication app(argc, argv);
    std::filesystem::create_directories(out);
    Work_Dir work("diagram-dev");
    auto grid = std::make_unique<Magvar_Grid>();
    std::vector<Kit_Airport_Rec> airports;
    try {
        for (std::string& entry : entries) {
            if (entry.empty()) {
                entry = Largest_Entry(fs_path, fs_version);
                std::filesystem::remove(Config_File_Name);
                std::filesystem::remove("all_fs_airports.dat");
            }
        }
        airports = Fetch_Airports(fs_path, entries, *grid, fs_version);
    } catch (const std::exception& e) {
        std::cerr << "quilmark-diagram-dev: " << e.what() << "\n";
        return 1;
    }
    const Kit_Airport_Rec& first = airports.front();
    const Diagram_Source_Rec source{first.airport, first.airspaces, *grid, aircraft};
    Diagram_View_Rec view =
        Fit_Diagram_View(first.airport, width, height, Diagram_Frame_Insets(width, height));
    if (follow) {
        Center_Diagram(view, aircraft.lat, aircraft.lon); // following the aircraft
    }
    Zoom_Diagram_About(view, zoom, {width / 2.0, height / 2.0});
    if (time_runs > 0) {
        Time_Redraws(source, view, time_runs);
    }
    if (const char* loops = std::getenv("QUILMARK_DIAGRAM_LOOPS")) {
        // Nothing but redraws with kept state, for a profiler.
        // QUILMARK_DIAGRAM_FIRST makes each a first redraw, with a new image and sprites.
        const bool fresh = std::getenv("QUILMARK_DIAGRAM_FIRST") != nullptr;
        auto image = std::make_unique<QImage>(width, height, QImage::Format_RGB32);
        auto sprites = std::make_unique<Qt_Sprite_Cache>();
        for (int i = 0; i < std::atoi(loops); ++i) {
            if (fresh) {
                image = std::make_unique<QImage>(width, height, QImage::Format_RGB32);
                sprites = std::make_unique<Qt_Sprite_Cache>();
            }
            QPainter painter(image.get());
            Qt_Surface surface(painter, width, height, sprites.get());
            Draw_Diagram(surface, source, view, Diagram_Options_Rec{});
        }
        return 0;
    }
    for (const auto& [name, night] :
         {std::pair{"diagram-day.png", false}, std::pair{"diagram-night.png", true},
          std::pair{"diagram.svg", false}, std::pair{"diagram.pdf", false}}) {
        Diagram_Options_Rec options;
        options.night = night;
        const std::string problem =
            Export_Chart_Image((out / name).string(), width, height,
                               [&](Surface& s) { Draw_Diagram(s, source, view, options); });
        if (!problem.empty()) {
            std::cerr << problem << "\n";
            return 1;
        }
    }
    if (crop[2] > 0) {
        // A part of the day picture four times as large, for a closer look.
        const QImage day(QString::fromStdString((out / "diagram-day.png").string()));
        day.copy(crop[0], crop[1], crop[2], crop[3])
            .scaled(crop[2] * 4, crop[3] * 4)
            .save(QString::fromStdString((out / "crop.png").string()));
    }
    const std::string problem = Export_Trip_Kit((out / "trip-kit.pdf").string(), airports, *grid);
    if (!problem.empty()) {
        std::cerr << problem << "\n";
        return 1;
    }
    const std::vector<Kit_Page_Rec> pages = Layout_Trip_Kit(airports, *grid, Qt_Text_Metrics());
    for (size_t i = 0; i < pages.size(); ++i) {
        Export_Chart_Image((out / ("trip-kit-" + std::to_string(i + 1) + ".png")).string(),
                           Kit_Page_Width, Kit_Page_Height,
                           [&](Surface& s) { Draw_Kit_Page(s, pages[i], airports, *grid); });
    }
    std::cout << "px per metre " << view.px_per_metre << ", " << pages.size() << " kit pages\n";
    return 0;
}
