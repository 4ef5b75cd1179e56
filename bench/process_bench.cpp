// quilmark-process-bench: the program's long operations timed as a user starts them, each
// sample a fresh process, beside two plain reads of the same files in the same repetition:
// cat of the files to /dev/null, and quilmark-read-files, which reads them into memory and
// does nothing else. Prints the medians, the ratios of the medians, and the peak memory of
// each process (its maximum resident set, from wait4).
//
//   quilmark-process-bench --world FS [--world4 FS] [--world2004 FS] [--repetitions N]
//                          [--only CASE,...] [--samples]
//
// Cases: first_run_scan, later_run_scan, fetch, desktop (under an X server: the later start
// to a filled list, and GET AIRPORT to the drawn chart), first_run_scan_4x (with --world4,
// a world four times the size), first_run_scan_fs2004 (with --world2004, the full-size FS2004
// world). Each works in a folder of its own below a temporary folder.
#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <time.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <iostream>
#include <memory>
#include <set>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

#include "platform/text1252.h"
#include "scenery/airport_database.h"
#include "scenery/config_file.h"
#include "state/module1.h"
#include "world_files.h"

namespace fs = std::filesystem;

using namespace quilmark;

namespace {

int64_t Now_Ns() {
    timespec t{};
    clock_gettime(CLOCK_MONOTONIC, &t);
    return static_cast<int64_t>(t.tv_sec) * 1000000000 + t.tv_nsec;
}

double Median(std::vector<double> v) {
    if (v.empty()) {
        return 0;
    }
    std::sort(v.begin(), v.end());
    const size_t n = v.size();
    return n % 2 == 1 ? v[n / 2] : (v[n / 2 - 1] + v[n / 2]) / 2;
}

// Everything that comes through a pipe until its writers close it; closes it.
std::string Read_All(int fd) {
    std::string text;
    char buffer[4096];
    for (ssize_t got; (got = ::read(fd, buffer, sizeof buffer)) > 0;) {
        text.append(buffer, static_cast<size_t>(got));
    }
    ::close(fd);
    return text;
}

struct Child_Run {
    int64_t start_ns = 0; // just before the fork
    double ms = 0;        // from the fork to the end of the wait
    double peak_mb = 0;   // the child's maximum resident set
    std::string out;      // its standard output, when asked for
};

// Runs a program in a folder as a fresh process, its standard output thrown away or
// captured; throws if it does not end with status 0.
Child_Run Run_Child(const std::vector<std::string>& args, const fs::path& folder,
                    bool capture = false) {
    std::vector<char*> argv;
    for (const std::string& arg : args) {
        argv.push_back(const_cast<char*>(arg.c_str()));
    }
    argv.push_back(nullptr);
    int pipe_fds[2] = {-1, -1};
    if (capture && ::pipe(pipe_fds) != 0) {
        throw std::runtime_error("no pipe");
    }
    Child_Run run;
    run.start_ns = Now_Ns();
    const pid_t pid = ::fork();
    if (pid == 0) {
        const int out = capture ? pipe_fds[1] : ::open("/dev/null", O_WRONLY);
        if (::chdir(folder.c_str()) != 0 || out < 0 || ::dup2(out, STDOUT_FILENO) < 0) {
            ::_exit(126);
        }
        if (capture) {
            ::close(pipe_fds[0]);
        }
        ::execvp(argv[0], argv.data());
        ::_exit(127);
    }
    if (pid < 0) {
        throw std::runtime_error("cannot start " + args[0]);
    }
    if (capture) {
        ::close(pipe_fds[1]);
        run.out = Read_All(pipe_fds[0]);
    }
    int status = 0;
    rusage usage{};
    if (::wait4(pid, &status, 0, &usage) != pid || !WIFEXITED(status) || WEXITSTATUS(status) != 0) {
        throw std::runtime_error(args[0] + " failed in " + folder.string());
    }
    run.ms = static_cast<double>(Now_Ns() - run.start_ns) / 1e6;
    run.peak_mb = static_cast<double>(usage.ru_maxrss) / 1024.0;
    return run;
}

// One figure of the report: an operation's samples beside the plain reads of its files.
struct Row {
    Row(std::string name_, std::vector<std::string> inputs_)
        : name(std::move(name_)), inputs(std::move(inputs_)) {}
    std::string name;
    std::vector<std::string> inputs; // the files the operation reads
    std::vector<double> ms, cat_ms, read_ms, peak_mb, read_peak_mb;
};

struct Paths {
    std::string tool, desktop, read_files;
};

// A world and its working folders: a template configuration file as the wizard writes it,
// and a folder where a first run has already left its database.
struct World {
    std::string fs_path;
    World_Files files;
    fs::path config_template;
    fs::path later_folder;
};

class Process_Bench {
  public:
    Paths paths;
    int repetitions = 21;
    bool samples = false; // print every sample too
    std::set<std::string> only;
    fs::path work;

    bool Wanted(const std::string& name) const { return only.empty() || only.contains(name); }

    World Prepare_World(const std::string& fs_folder, const std::string& name,
                        bool fs2004 = false) {
        World w;
        w.fs_path = fs::absolute(fs_folder).lexically_normal().string();
        w.files = fs2004 ? Find_Fs2004_World_Files(w.fs_path) : Find_World_Files(w.fs_path);
        const fs::path setup = work / (name + "-setup");
        fs::create_directories(setup);
        Run_Child(fs2004
                      ? std::vector<std::string>{paths.tool, "init", "--fs-version", "2", w.fs_path}
                      : std::vector<std::string>{paths.tool, "init", w.fs_path},
                  setup);
        w.config_template = work / (name + "-config");
        fs::copy_file(setup / Config_File_Name, w.config_template);
        w.later_folder = work / (name + "-later");
        Fresh_Folder(w, w.later_folder);
        Run_Child({paths.tool, "scan"}, w.later_folder);
        return w;
    }

    // A working folder as the wizard leaves it: the configuration file, no database.
    void Fresh_Folder(const World& w, const fs::path& folder) {
        fs::remove_all(folder);
        fs::create_directories(folder);
        fs::copy_file(w.config_template, folder / Config_File_Name);
    }

    // The list text of the airport with the largest ground network, from the database of a
    // later folder, found in a child process so that this one stays small: a child's peak
    // memory counts what it shared with its parent when it was forked.
    std::string Largest_Airport_Entry(const World& w) {
        int fds[2];
        if (::pipe(fds) != 0) {
            throw std::runtime_error("no pipe");
        }
        const pid_t pid = ::fork();
        if (pid == 0) {
            ::close(fds[0]);
            auto m = std::make_unique<Module1>();
            const std::string folder = w.later_folder.string();
            if (::chdir(folder.c_str()) != 0 ||
                Read_Config_File(*m, Config_File_Name) != Config_Status::Ok ||
                Read_Airport_Database(Database_File_Name, m->airport_count, m->airports) !=
                    Database_Read_Result::Ok) {
                ::_exit(1);
            }
            const std::string text = Ansi_To_Utf8(Airport_List_Text(
                m->airports[Largest_Airport_Index(m->airports, m->airport_count)]));
            const bool written =
                ::write(fds[1], text.data(), text.size()) == static_cast<ssize_t>(text.size());
            ::_exit(written ? 0 : 1);
        }
        ::close(fds[1]);
        const std::string text = Read_All(fds[0]);
        int status = 0;
        ::waitpid(pid, &status, 0);
        if (!WIFEXITED(status) || WEXITSTATUS(status) != 0 || text.empty()) {
            throw std::runtime_error("cannot read the database of " + w.later_folder.string());
        }
        return text;
    }

    void Plain_Reads(Row& row) {
        std::vector<std::string> cat = {"cat"};
        cat.insert(cat.end(), row.inputs.begin(), row.inputs.end());
        row.cat_ms.push_back(Run_Child(cat, work).ms);
        std::vector<std::string> read = {paths.read_files};
        read.insert(read.end(), row.inputs.begin(), row.inputs.end());
        const Child_Run r = Run_Child(read, work);
        row.read_ms.push_back(r.ms);
        row.read_peak_mb.push_back(r.peak_mb);
    }

    static void Add(Row& row, const Child_Run& run) {
        row.ms.push_back(run.ms);
        row.peak_mb.push_back(run.peak_mb);
    }

    void Run(const std::string& world_folder, const std::string& world4_folder,
             const std::string& world2004_folder) {
        const World world = Prepare_World(world_folder, "world");
        const std::vector<std::string> scan_inputs = [&] {
            std::vector<std::string> v = world.files.airport_files;
            v.push_back(world.files.scenery_cfg);
            v.push_back(world.files.magdec);
            return v;
        }();
        const std::vector<std::string> later_inputs = {
            (world.later_folder / Database_File_Name).string(), world.files.scenery_cfg,
            world.files.magdec};
        std::vector<std::string> fetch_inputs = later_inputs;
        fetch_inputs.insert(fetch_inputs.end(), world.files.atc_files.begin(),
                            world.files.atc_files.end());
        const std::string entry = Largest_Airport_Entry(world);
        std::cout << "world: " << world.files.airport_files.size() << " airport files, "
                  << world.files.atc_files.size() << " ATC files; largest airport " << entry
                  << "\n";

        Row first{"first-run scan, quilmark-tool scan", scan_inputs};
        Row later{"later-run scan, quilmark-tool scan", later_inputs};
        Row fetch{"quilmark-tool fetch, largest airport", fetch_inputs};
        Row list{"desktop later run, start to filled list", later_inputs};
        Row chart{"GET AIRPORT in the window, click to chart", world.files.atc_files};
        Row first4{"first-run scan, four times the world", {}};

        const bool desktop = Wanted("desktop") && std::getenv("DISPLAY") != nullptr;
        if (Wanted("desktop") && !desktop) {
            std::cout << "desktop: skipped, no X server (DISPLAY is not set)\n";
        }
        World world4;
        const bool four = Wanted("first_run_scan_4x") && !world4_folder.empty();
        if (four) {
            world4 = Prepare_World(world4_folder, "world4");
            first4.inputs = world4.files.airport_files;
            first4.inputs.push_back(world4.files.scenery_cfg);
            first4.inputs.push_back(world4.files.magdec);
            std::cout << "four times the world: " << world4.files.airport_files.size()
                      << " airport files\n";
        }

        Row first2004{"first-run scan, FS2004 world", {}};
        World world2004;
        const bool fs2004 = Wanted("first_run_scan_fs2004") && !world2004_folder.empty();
        if (fs2004) {
            world2004 = Prepare_World(world2004_folder, "world2004", true);
            first2004.inputs = world2004.files.airport_files;
            first2004.inputs.push_back(world2004.files.scenery_cfg);
            std::cout << "FS2004 world: " << world2004.files.airport_files.size()
                      << " BGL files in its active areas\n";
        }

        const fs::path first_folder = work / "first";
        for (int i = 0; i < repetitions; ++i) {
            if (Wanted("first_run_scan")) {
                Fresh_Folder(world, first_folder);
                Plain_Reads(first);
                Add(first, Run_Child({paths.tool, "scan"}, first_folder));
            }
            if (Wanted("later_run_scan")) {
                Plain_Reads(later);
                Add(later, Run_Child({paths.tool, "scan"}, world.later_folder));
            }
            if (Wanted("fetch")) {
                Plain_Reads(fetch);
                Add(fetch, Run_Child({paths.tool, "fetch", entry}, world.later_folder));
            }
            if (desktop) {
                Plain_Reads(list);
                Plain_Reads(chart);
                const Child_Run run = Run_Child({paths.desktop, entry}, world.later_folder, true);
                const Desktop_Stamps stamps = Parse_Stamps(run.out);
                list.ms.push_back(static_cast<double>(stamps.list_filled - run.start_ns) / 1e6);
                chart.ms.push_back(static_cast<double>(stamps.chart - stamps.click) / 1e6);
                list.peak_mb.push_back(run.peak_mb);
            }
            if (four) {
                Fresh_Folder(world4, first_folder);
                Plain_Reads(first4);
                Add(first4, Run_Child({paths.tool, "scan"}, first_folder));
            }
            if (fs2004) {
                Fresh_Folder(world2004, first_folder);
                Plain_Reads(first2004);
                Add(first2004, Run_Child({paths.tool, "scan"}, first_folder));
            }
            std::cerr << "\rrepetition " << i + 1 << " of " << repetitions << std::flush;
        }
        std::cerr << "\n";
        Print({&first, &later, &fetch, &list, &chart, &first4, &first2004});
        Print_Targets(first, later, chart, first4);
    }

    struct Desktop_Stamps {
        int64_t list_filled = 0, click = 0, chart = 0;
    };

    static Desktop_Stamps Parse_Stamps(const std::string& out) {
        Desktop_Stamps s;
        std::istringstream lines(out);
        std::string key;
        long long value = 0;
        while (lines >> key >> value) {
            if (key == "list_filled") {
                s.list_filled = value;
            } else if (key == "click") {
                s.click = value;
            } else if (key == "chart") {
                s.chart = value;
            }
        }
        if (s.list_filled == 0 || s.click == 0 || s.chart == 0) {
            throw std::runtime_error("the desktop driver gave no times: " + out);
        }
        return s;
    }

    void Print(const std::vector<const Row*>& rows) const {
        std::printf("\n%-44s %9s %8s %8s %7s %7s %9s %9s\n", "operation", "median", "cat", "read",
                    "x cat", "x read", "peak MB", "read MB");
        for (const Row* r : rows) {
            if (r->ms.empty()) {
                continue;
            }
            const double ms = Median(r->ms), cat = Median(r->cat_ms), read = Median(r->read_ms);
            std::printf("%-44s %6.1f ms %8.1f %8.1f %7.1f %7.1f", r->name.c_str(), ms, cat, read,
                        ms / cat, ms / read);
            if (!r->peak_mb.empty()) {
                std::printf(" %9.0f %9.0f", Median(r->peak_mb), Median(r->read_peak_mb));
            }
            std::printf("\n");
            if (samples) {
                Print_Samples("", r->ms);
                Print_Samples("cat", r->cat_ms);
                Print_Samples("read", r->read_ms);
            }
        }
        std::printf("%d repetitions; medians in ms; x cat, x read: the operation's median over the "
                    "plain read's\n",
                    repetitions);
    }

    static void Print_Samples(const char* what, const std::vector<double>& ms) {
        std::printf("  %-5s", what);
        for (double v : ms) {
            std::printf(" %.1f", v);
        }
        std::printf("\n");
    }

    static void Print_Targets(const Row& first, const Row& later, const Row& chart,
                              const Row& first4) {
        std::printf("\n%-44s %-40s %s\n", "target", "now", "target");
        if (!first.ms.empty()) {
            std::printf("%-44s %-40s %s\n", "first-run scan",
                        Format("%.1fx cat", Median(first.ms) / Median(first.cat_ms)).c_str(),
                        "4x cat");
        }
        if (!later.ms.empty()) {
            std::printf("%-44s %-40s %s\n", "later-run scan",
                        Format("%.1fx cat", Median(later.ms) / Median(later.cat_ms)).c_str(),
                        "10x cat");
        }
        if (!chart.ms.empty()) {
            std::printf("%-44s %-40s %s\n", "GET AIRPORT in the window, click to chart",
                        Format("%.0f ms", Median(chart.ms)).c_str(), "25 ms");
        }
        if (!first.ms.empty()) {
            std::string now = Format("%.0f MB", Median(first.peak_mb));
            if (!first4.ms.empty()) {
                now += Format("; 4x world %.0f MB (%.1f times)", Median(first4.peak_mb),
                              Median(first4.peak_mb) / Median(first.peak_mb));
            }
            std::printf("%-44s %-40s %s\n", "peak memory, first run", now.c_str(), "60 MB, linear");
        }
        if (!first4.ms.empty()) {
            std::string now = Format("%.2f s", Median(first4.ms) / 1000);
            if (!first.ms.empty()) {
                now += Format(" (%.1f times)", Median(first4.ms) / Median(first.ms));
            }
            std::printf("%-44s %-40s %s\n", "four times the world, first run", now.c_str(),
                        "0.35 s");
        }
    }

    template <class... Args> static std::string Format(const char* format, Args... args) {
        char text[128];
        std::snprintf(text, sizeof text, format, args...);
        return text;
    }
};

} // namespace

int main(int argc, char** argv) {
    Process_Bench bench;
    bench.paths = {QUILMARK_TOOL_PATH, QUILMARK_DESKTOP_DRIVER_PATH, QUILMARK_READ_FILES_PATH};
    std::string world, world4, world2004;
    for (int i = 1; i < argc; ++i) {
        const std::string arg = argv[i];
        if (arg == "--world" && i + 1 < argc) {
            world = argv[++i];
        } else if (arg == "--world4" && i + 1 < argc) {
            world4 = argv[++i];
        } else if (arg == "--world2004" && i + 1 < argc) {
            world2004 = argv[++i];
        } else if (arg == "--repetitions" && i + 1 < argc) {
            bench.repetitions = std::max(1, std::atoi(argv[++i]));
        } else if (arg == "--samples") {
            bench.samples = true;
        } else if (arg == "--only" && i + 1 < argc) {
            std::stringstream names(argv[++i]);
            for (std::string name; std::getline(names, name, ',');) {
                bench.only.insert(name);
            }
        } else {
            world.clear();
            break;
        }
    }
    if (world.empty()) {
        std::cerr << "usage: quilmark-process-bench --world FS [--world4 FS] [--world2004 FS] "
                     "[--repetitions N] [--only CASE,...] [--samples]\n";
        return 2;
    }
    for (const std::string& w : {world, world4, world2004}) {
        if (!w.empty() && !fs::exists(fs::path(w) / "scenery.cfg")) {
            std::cerr << "quilmark-process-bench: no world at " << w << "\n";
            return 1;
        }
    }
    char folder[] = "/tmp/quilmark-process-bench-XXXXXX";
    if (::mkdtemp(folder) == nullptr) {
        std::cerr << "quilmark-process-bench: no temporary folder\n";
        return 1;
    }
    bench.work = folder;
    int status = 0;
    try {
        bench.Run(world, world4, world2004);
    } catch (const std::exception& e) {
        std::cerr << "\nquilmark-process-bench: " << e.what() << "\n";
        status = 1;
    }
    fs::remove_all(bench.work);
    return status;
}
