// quilmark-bench: the program's long operations on the full-size world, each timed beside
// the plain reading of the files it reads, in the same run. Prints medians and the ratio
// of each operation to its plain read.
//
//   quilmark-bench [--world FS_FOLDER] [--repetitions N] [--only CASE,CASE...]
//
// Cases: first_run_scan, later_run_scan, fingerprint_check, get_airport, redraw_recording_9,
// redraw_recording_14, redraw_qt_9, redraw_qt_14, redraw_qt_first_14, diagram_recording,
// diagram_qt, diagram_qt_first. The scans work in a temporary folder, as the program works
// in its current directory.
#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <functional>
#include <iostream>
#include <memory>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "airspace/airport_fetch.h"
#include "chart/chart_draw.h"
#include "chart/chart_records.h"
#include "chart/chart_sequence.h"
#include "chart/diagram_layout.h"
#include "chart/recording_surface.h"
#include "scenery/airport_database.h"
#include "scenery/config_file.h"
#include "scenery/locate_folders.h"
#include "scenery/scan_sequence.h"
#include "scenery/scenery_cfg.h"
#include "scenery/scenery_fingerprint.h"
#include "state/chooser_form.h"
#include "state/form3_data.h"
#include "state/module1.h"
#include "world_files.h"

#ifdef QUILMARK_BENCH_QT
#include "qt_redraw_bench.h"
#endif

namespace quilmark {

namespace fs = std::filesystem;

namespace {

using Clock = std::chrono::steady_clock;

double Ms_Since(Clock::time_point start) {
    return std::chrono::duration<double, std::milli>(Clock::now() - start).count();
}

double Median(std::vector<double> v) {
    std::sort(v.begin(), v.end());
    const size_t n = v.size();
    return n % 2 == 1 ? v[n / 2] : (v[n / 2 - 1] + v[n / 2]) / 2;
}

// Reads every byte of the files into a buffer that is thrown away, as cat to /dev/null.
double Plain_Read_Ms(const std::vector<std::string>& paths) {
    static std::vector<char> buffer(1 << 20);
    const auto start = Clock::now();
    for (const std::string& path : paths) {
        const int fd = ::open(path.c_str(), O_RDONLY);
        if (fd < 0) {
            continue;
        }
        while (::read(fd, buffer.data(), buffer.size()) > 0) {
        }
        ::close(fd);
    }
    return Ms_Since(start);
}

struct Case_Result {
    std::string name;
    std::vector<double> ms;
    std::vector<double> read_ms; // empty: nothing is read
    double target_ms = 0;
    std::string note;
};

struct Bench {
    std::string fs_path;
    World_Files files;
    int repetitions = 5;
    std::set<std::string> only;
    std::vector<Case_Result> results;

    // Filled along the way for the later cases.
    Dyn_Array<Airport_Rec> airports;
    int32_t airport_count = 0;
    std::string atc_data_path;
    std::unique_ptr<Module1> chart_module;

    bool Wanted(const std::string& name) const { return only.empty() || only.contains(name); }

    // A fresh start as the program makes one: the configuration file of the current
    // directory read, then one scan.
    std::unique_ptr<Module1> Scan(Recording_Chooser_Form& ui, double& ms, bool sort) {
        auto m = std::make_unique<Module1>();
        auto form = std::make_unique<Form3_Data>();
        if (Read_Config_File(*m, Config_File_Name) != Config_Status::Ok) {
            throw std::runtime_error("no configuration file in the working folder");
        }
        form->database_present = false;
        const auto start = Clock::now();
        Run_Scenery_Scan(*m, *form, ui);
        if (sort) {
            Sort_List_Entries(ui.list);
        }
        ms = Ms_Since(start);
        return m;
    }

    void First_Run_Scan() {
        Case_Result r{"first-run scan", {}, {}, 2000, ""};
        std::vector<std::string> inputs = files.airport_files;
        inputs.push_back(files.scenery_cfg);
        inputs.push_back(files.magdec);
        for (int i = 0; i < repetitions; ++i) {
            Fresh_Config();
            r.read_ms.push_back(Plain_Read_Ms(inputs));
            Recording_Chooser_Form ui;
            double ms = 0;
            auto m = Scan(ui, ms, true);
            r.ms.push_back(ms);
            if (i == 0) {
                std::ostringstream note;
                note << m->airport_count << " airports, database "
                     << fs::file_size(Database_File_Name) / 1000000 << " MB";
                r.note = note.str();
            }
        }
        results.push_back(r);
    }

    void Later_Run_Scan() {
        Case_Result r{"later-run scan", {}, {}, 500, ""};
        std::vector<std::string> inputs = {Database_File_Name, files.scenery_cfg, files.magdec};
        for (int i = 0; i < repetitions; ++i) {
            r.read_ms.push_back(Plain_Read_Ms(inputs));
            Recording_Chooser_Form ui;
            double ms = 0;
            auto m = Scan(ui, ms, true);
            r.ms.push_back(ms);
            r.note = std::to_string(ui.list.size()) + " list entries";
        }
        results.push_back(r);
    }

    // The later run's look at the scenery, beside a plain stat of the same files.
    void Fingerprint_Check() {
        Case_Result r{"scenery fingerprint check", {}, {}, 10, ""};
        Recording_Chooser_Form ui;
        double ms = 0;
        auto m = Scan(ui, ms, false);
        const Drive_List drives = Drive_List_For_Fs_Path(fs_path);
        std::vector<std::string> inputs = files.airport_files;
        inputs.push_back(files.scenery_cfg);
        inputs.push_back(files.magdec);
        for (int i = 0; i < repetitions; ++i) {
            const auto stat_start = Clock::now();
            for (const std::string& path : inputs) {
                struct stat st {};
                ::stat(path.c_str(), &st);
            }
            r.read_ms.push_back(Ms_Since(stat_start));
            const auto start = Clock::now();
            const Scenery_Check_Rec check = Check_Scenery_Fingerprint(*m, drives);
            r.ms.push_back(Ms_Since(start));
            r.note = std::to_string(check.now.bgl_files.size()) + " files, " +
                     (check.result == Scenery_Check::Same ? "same" : "NOT SAME");
        }
        results.push_back(r);
    }

    void Get_Airport_Case() {
        Case_Result r{"GET AIRPORT", {}, {}, 300, ""};
        const Airport_Rec& largest = Largest_Airport();
        const std::string entry = Airport_List_Text(largest);
        // Only the airspace for the charts when GET AIRPORT itself is not wanted.
        const int runs = Wanted("get_airport") ? repetitions : 1;
        for (int i = 0; i < runs; ++i) {
            auto m = std::make_unique<Module1>();
            auto form = std::make_unique<Form3_Data>();
            m->airports = airports;
            m->airport_count = airport_count;
            m->atc_data_path = atc_data_path;
            form->drives = Drive_List_For_Fs_Path(fs_path);
            r.read_ms.push_back(Plain_Read_Ms(files.atc_files));
            Recording_Chooser_Form ui;
            const auto start = Clock::now();
            Get_Airport(*m, *form, ui, entry);
            r.ms.push_back(Ms_Since(start));
            r.note = largest.ident + ": " + std::to_string(m->airspace_count) + " airspaces";
            if (i + 1 == runs) {
                chart_module = std::move(m);
            }
        }
        if (Wanted("get_airport")) {
            results.push_back(r);
        }
    }

    template <class Draw> void Redraw_Case(const std::string& name, int zoom, Draw draw) {
        constexpr int Iterations = 20;
        Case_Result r{name, {}, {}, 5, ""};
        Chart_View view;
        Open_Chart_View(view, *chart_module, 1200, 900, nullptr);
        Zoom_To_Level(view, zoom);
        for (int i = 0; i < repetitions; ++i) {
            r.ms.push_back(draw(view, Iterations));
        }
        Recording_Surface ops;
        Redraw_Chart(ops, view, *chart_module);
        r.note = std::to_string(ops.ops.size()) + " surface calls";
        results.push_back(r);
    }

    // The airport diagram of the same airport, fitted to a 1920 by 1080 view with its
    // frame, label placement included.
    Diagram_Source_Rec Diagram_Source() const {
        const Module1& m = *chart_module;
        return {m.current_airport, Filled_Span(m.airspaces, m.airspace_count), m.magvar_grid, {}};
    }

    template <class Draw> void Diagram_Case(const std::string& name, double target, Draw draw) {
        constexpr int Iterations = 20;
        Case_Result r{name, {}, {}, target, ""};
        const Diagram_Source_Rec source = Diagram_Source();
        const Diagram_View_Rec view =
            Fit_Diagram_View(source.airport, 1920, 1080, Diagram_Frame_Insets(1920, 1080));
        for (int i = 0; i < repetitions; ++i) {
            r.ms.push_back(draw(source, view, Iterations));
        }
        Recording_Surface ops;
        Diagram_Layout_Rec layout;
        Layout_Diagram(source, view, Diagram_Options_Rec{}, ops, layout);
        Paint_Diagram(layout, ops);
        r.note = std::to_string(ops.ops.size()) + " surface calls, " +
                 std::to_string(layout.texts.size() + layout.frame_texts.size()) + " texts";
        results.push_back(r);
    }

    void Diagrams() {
        if (Wanted("diagram_recording")) {
            Diagram_Case(
                "diagram, recording, 1920x1080", 5,
                [](const Diagram_Source_Rec& source, const Diagram_View_Rec& view, int iterations) {
                    const auto start = Clock::now();
                    for (int k = 0; k < iterations; ++k) {
                        Recording_Surface surface;
                        Draw_Diagram(surface, source, view, Diagram_Options_Rec{});
                    }
                    return Ms_Since(start) / iterations;
                });
        }
#ifdef QUILMARK_BENCH_QT
        Start_Qt_For_Bench();
        if (Wanted("diagram_qt")) {
            Diagram_Case(
                "diagram, QPainter 1920x1080", 5,
                [](const Diagram_Source_Rec& source, const Diagram_View_Rec& view, int iterations) {
                    return Qt_Diagram_Redraw_Ms(source, view, iterations, false);
                });
        }
        if (Wanted("diagram_qt_first")) {
            Diagram_Case(
                "first diagram, QPainter 1920x1080", 10,
                [](const Diagram_Source_Rec& source, const Diagram_View_Rec& view, int iterations) {
                    return Qt_Diagram_Redraw_Ms(source, view, iterations, true);
                });
        }
#endif
    }

    void Redraws() {
        auto recording = [this](const Chart_View& view, int iterations) {
            const auto start = Clock::now();
            for (int k = 0; k < iterations; ++k) {
                Recording_Surface surface;
                Redraw_Chart(surface, view, *chart_module);
            }
            return Ms_Since(start) / iterations;
        };
        for (int zoom : {9, 14}) {
            const std::string name = "redraw_recording_" + std::to_string(zoom);
            if (Wanted(name)) {
                Redraw_Case("redraw, recording, zoom " + std::to_string(zoom), zoom, recording);
            }
        }
#ifdef QUILMARK_BENCH_QT
        Start_Qt_For_Bench();
        auto qt = [this](const Chart_View& view, int iterations) {
            return Qt_Redraw_Ms(view, *chart_module, iterations, false);
        };
        for (int zoom : {9, 14}) {
            const std::string name = "redraw_qt_" + std::to_string(zoom);
            if (Wanted(name)) {
                Redraw_Case("redraw, QPainter 1200x900, zoom " + std::to_string(zoom), zoom, qt);
            }
        }
        if (Wanted("redraw_qt_first_14")) {
            auto first = [this](const Chart_View& view, int iterations) {
                return Qt_Redraw_Ms(view, *chart_module, iterations, true);
            };
            Redraw_Case("first redraw, QPainter 1200x900, zoom 14", 14, first);
        }
#endif
    }

    void Fresh_Config() {
        std::error_code ec;
        fs::remove(Database_File_Name, ec);
        auto m = std::make_unique<Module1>();
        if (Write_First_Config(*m, true, fs_path) != Config_Status::Ok) {
            throw std::runtime_error("cannot write the configuration file");
        }
    }

    // The database and the configuration file as a first run leaves them.
    void Ensure_Database() {
        if (!fs::exists(Database_File_Name)) {
            Fresh_Config();
            Recording_Chooser_Form ui;
            double ms = 0;
            Scan(ui, ms, false);
        }
    }

    // The list as a later scan leaves it, and the ATC folder, for GET AIRPORT.
    void Keep_List() {
        Recording_Chooser_Form ui;
        double ms = 0;
        auto m = Scan(ui, ms, false);
        airports = std::move(m->airports);
        airport_count = m->airport_count;
        atc_data_path = m->atc_data_path;
    }

    const Airport_Rec& Largest_Airport() const {
        return airports[Largest_Airport_Index(airports, airport_count)];
    }

    void Run() {
        if (Wanted("first_run_scan")) {
            First_Run_Scan();
        }
        const bool need_list = Wanted("get_airport") || Wanted("redraw_recording_9") ||
                               Wanted("redraw_recording_14") || Wanted("redraw_qt_9") ||
                               Wanted("redraw_qt_14") || Wanted("redraw_qt_first_14") ||
                               Wanted("diagram_recording") || Wanted("diagram_qt") ||
                               Wanted("diagram_qt_first");
        if (Wanted("later_run_scan") || need_list) {
            Ensure_Database();
        }
        if (Wanted("later_run_scan")) {
            Later_Run_Scan();
        }
        if (Wanted("fingerprint_check")) {
            Ensure_Database();
            Fingerprint_Check();
        }
        if (need_list) {
            Keep_List();
            Get_Airport_Case();
            airports.Clear();
            Redraws();
            Diagrams();
        }
    }

    void Print() const {
        std::printf("%-42s %10s %10s %12s %8s %9s\n", "operation", "median ms", "min ms",
                    "plain read", "ratio", "target");
        for (const Case_Result& r : results) {
            const double median = Median(r.ms);
            const double low = *std::min_element(r.ms.begin(), r.ms.end());
            if (r.read_ms.empty()) {
                std::printf("%-42s %10.3f %10.3f %12s %8s %6.0f ms %s  %s\n", r.name.c_str(),
                            median, low, "-", "-", r.target_ms,
                            median < r.target_ms ? "met" : "MISSED", r.note.c_str());
            } else {
                const double read = Median(r.read_ms);
                std::printf("%-42s %10.1f %10.1f %9.1f ms %8.1f %6.0f ms %s  %s\n", r.name.c_str(),
                            median, low, read, median / read, r.target_ms,
                            median < r.target_ms ? "met" : "MISSED", r.note.c_str());
            }
        }
    }
};

} // namespace

} // namespace quilmark

int main(int argc, char** argv) {
    using namespace quilmark;
    Bench bench;
    std::string world = QUILMARK_FULL_WORLD_DIR;
    for (int i = 1; i < argc; ++i) {
        const std::string arg = argv[i];
        if (arg == "--world" && i + 1 < argc) {
            world = argv[++i];
        } else if (arg == "--repetitions" && i + 1 < argc) {
            bench.repetitions = std::max(1, std::atoi(argv[++i]));
        } else if (arg == "--only" && i + 1 < argc) {
            std::stringstream names(argv[++i]);
            for (std::string name; std::getline(names, name, ',');) {
                bench.only.insert(name);
            }
        } else {
            std::cerr << "usage: quilmark-bench [--world FS_FOLDER] [--repetitions N] "
                         "[--only CASE,...]\n";
            return 2;
        }
    }
    if (!fs::exists(fs::path(world) / "scenery.cfg")) {
        std::cerr << "quilmark-bench: no world at " << world
                  << " (cmake --build build --target full_world writes it)\n";
        return 1;
    }
    bench.fs_path = fs::absolute(world).lexically_normal().string();
    bench.files = Find_World_Files(bench.fs_path);

    const fs::path work =
        fs::temp_directory_path() / ("quilmark-bench-" + std::to_string(::getpid()));
    fs::create_directories(work);
    const fs::path previous = fs::current_path();
    fs::current_path(work);
    int status = 0;
    try {
        bench.Run();
        bench.Print();
    } catch (const std::exception& e) {
        std::cerr << "quilmark-bench: " << e.what() << "\n";
        status = 1;
    }
    fs::current_path(previous);
    fs::remove_all(work);

    rusage usage{};
    ::getrusage(RUSAGE_SELF, &usage);
    std::printf("airport files %zu, ATC files %zu; repetitions %d; peak resident memory %.0f MB\n",
                bench.files.airport_files.size(), bench.files.atc_files.size(), bench.repetitions,
                usage.ru_maxrss / 1024.0);
    return status;
}
