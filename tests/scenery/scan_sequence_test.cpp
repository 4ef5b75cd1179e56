#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <csignal>
#include <filesystem>
#include <functional>
#include <optional>
#include <random>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

#include "platform/native_paths.h"
#include "scenery/airport_database.h"
#include "scenery/config_file.h"
#include "scenery/scan_sequence.h"
#include "state/chooser_form.h"
#include "state/form3_data.h"
#include "support/decode.h"
#include "support/hooked_form.h"
#include "support/named_pipe.h"
#include "support/work_dir.h"

namespace quilmark {

namespace {

struct Scan_Result {
    std::unique_ptr<Module1> m = std::make_unique<Module1>();
    std::unique_ptr<Form3_Data> form = std::make_unique<Form3_Data>();
    Recording_Chooser_Form ui;
};

// A start of the program in the current directory: the configuration file, then one scan.
std::unique_ptr<Scan_Result> Start(Recording_Chooser_Form* ui = nullptr) {
    auto r = std::make_unique<Scan_Result>();
    EXPECT_EQ(Read_Config_File(*r->m, Config_File_Name), Config_Status::Ok);
    Run_Scenery_Scan(*r->m, *r->form, ui != nullptr ? *ui : r->ui);
    return r;
}

// An area of scenery.cfg.
std::string Area(int n, const std::string& title, const std::string& local,
                 const std::string& remote = "", const std::string& required = "TRUE") {
    return "[Area." + std::to_string(n) + "]\r\nTitle=" + title + "\r\nRemote=" + remote +
           "\r\nLocal=" + local + "\r\nActive=TRUE\r\nRequired=" + required + "\r\n";
}

// A small simulator folder: scenery.cfg as given and airport files by relative path, each
// with one airport of that ident and name.
void Small_World(const Work_Dir& dir, const std::string& cfg,
                 const std::vector<std::array<std::string, 3>>& files = {}) {
    Write_Text(dir.Sub("fs/scenery.cfg"), "[General]\r\n" + cfg);
    Write_File(dir.Sub("fs/scenery/magdec.bgl"), Build_Magdec(std::vector<int16_t>(65160, 0)));
    for (const auto& [path, ident, name] : files) {
        Write_File(dir.Sub("fs/" + path), One_Airport_File(ident, Name_Record(name, 16)));
    }
    Module1 m;
    ASSERT_EQ(Write_First_Config(m, true, dir.Sub("fs")), Config_Status::Ok);
}

} // namespace

TEST(ScanSequence, FirstAndLaterRunOnTheSampleWorld) {
    Work_Dir dir("scan-sample");
    Module1 init;
    ASSERT_EQ(Write_First_Config(init, true, Sample_World_Folder()), Config_Status::Ok);

    auto first = Start();
    const std::vector<std::string> first_texts = {"Magdec.bgl File",
                                                  "Scenery.cfg File",
                                                  "Getting ATC Folder...",
                                                  "Airport and Facilities Data",
                                                  "Creating Database File...",
                                                  "Updating Configuration...",
                                                  "Adding Airports to List...",
                                                  "Done"};
    EXPECT_EQ(first->ui.Distinct_Status_Texts(), first_texts);
    ASSERT_EQ(first->ui.messages.size(), 3u); // CD prompt, first run, created
    EXPECT_EQ(first->m->airport_count, 8);
    EXPECT_EQ(first->ui.progress_max, 5);   // four BGL files and one: the bar never fills
    EXPECT_EQ(first->ui.progress_value, 0); // emptied at the end
    EXPECT_EQ(first->ui.control_changes, (std::vector<bool>{false, true}));
    EXPECT_FALSE(first->ui.scan_timer_enabled);

    auto later = Start();
    EXPECT_EQ(later->ui.Sorted_List(), first->ui.Sorted_List());
    EXPECT_EQ(later->ui.Sorted_List().front(), "KBFI (BOEING FLD KING CO INTL)");
    EXPECT_EQ(later->ui.Distinct_Status_Texts(),
              (std::vector<std::string>{"Magdec.bgl File", "Scenery.cfg File",
                                        "Getting ATC Folder...", "Reading Database File...",
                                        "Adding Airports to List...", "Done"}));
    ASSERT_EQ(later->ui.messages.size(), 1u); // the CD prompt comes at every scan
    EXPECT_EQ(later->ui.progress_redraws, 0); // a later run leaves the bar alone
    EXPECT_TRUE(later->form->database_present);
    // The database reads back the very records the build decoded.
    EXPECT_EQ(later->m->airports, first->m->airports);
}

TEST(ScanSequence, DamagedDatabaseIsReportedAndRebuilt) {
    Work_Dir dir("scan-damaged");
    Module1 init;
    ASSERT_EQ(Write_First_Config(init, true, Sample_World_Folder()), Config_Status::Ok);
    auto first = Start();
    const auto size = std::filesystem::file_size(Database_File_Name);
    std::filesystem::resize_file(Database_File_Name, size / 2);

    auto again = Start();
    // The CD prompt, the damage, and the database made again: no claim of a first run.
    ASSERT_EQ(again->ui.messages.size(), 3u);
    EXPECT_EQ(again->ui.messages[1], (Shown_Message{Database_Damaged_Text, "Quilmark Message",
                                                    Message_Icon::Information}));
    EXPECT_EQ(again->ui.messages[2].text.substr(0, 39), "The Database File was created successfu");
    EXPECT_EQ(again->ui.Sorted_List(), first->ui.Sorted_List());
    EXPECT_EQ(std::filesystem::file_size(Database_File_Name), size);
    EXPECT_FALSE(again->form->database_present);
}

TEST(ScanSequence, OneCdPromptForManyRemotes) {
    Work_Dir dir("scan-cd");
    Small_World(dir,
                Area(1, "Airport and Facilities Data", "ap", "[CD]\\a") +
                    Area(2, "Other", "o", "[CD]\\b"),
                {{"ap/scenery/a.bgl", "KAAA", "Alpha"}});
    auto r = Start();
    ASSERT_EQ(r->ui.messages.size(), 3u);
    EXPECT_EQ(r->ui.messages[0].title, "Quilmark v1.1");
    EXPECT_EQ(r->ui.messages[1].title, "Quilmark Message");
}

TEST(ScanSequence, AreasQualifyByTitleAndRequiredAndSameFolderRunsOnce) {
    Work_Dir dir("scan-areas");
    Small_World(dir,
                Area(1, "AIRPORT AND FACILITIES DATA", "ap", "", "true") +
                    Area(2, "Airport and Facilities Data", "ap") + // the same folder again
                    Area(3, "Airport and Facilities Data", "off", "", "FALSE") +
                    Area(4, "Additional Facility Data", "atc1") +
                    Area(5, "Additional Facility Data", "atc2"),
                {{"ap/scenery/B.BGL", "KBBB", "beta"},
                 {"ap/scenery/a.bgl", "KAAA", "Alpha"},
                 {"ap/scenery/c.txt", "KCCC", "not listed"},
                 {"off/scenery/d.bgl", "KDDD", "not required"}});
    auto r = Start();
    EXPECT_EQ(r->ui.Sorted_List(), (std::vector<std::string>{"KAAA (ALPHA)", "KBBB (BETA)"}));
    // Files in the order Windows lists them: a.bgl before B.BGL.
    EXPECT_EQ(r->m->airports[0].ident, "KAAA");
    EXPECT_EQ(r->ui.progress_max, 5); // the folder counted twice, read once
    EXPECT_NE(r->m->atc_data_path.find("atc2"), std::string::npos); // the last one counts
}

TEST(ScanSequence, EmptyResultsAreNoErrors) {
    Work_Dir dir("scan-empty");
    Small_World(dir, "");
    // A configuration file for some other simulator: no scenery.cfg is read.
    Config_Rec other;
    other.title = "Quilmark v1.1";
    other.format_mark = 1;
    other.fs_version = 2;
    other.fs_path = dir.Sub("fs");
    Write_Text(Config_File_Name, Encode_Config(other));
    auto r = Start();
    EXPECT_EQ(r->m->scenery_area_count, 0);
    EXPECT_EQ(r->m->airport_count, 0);
    EXPECT_TRUE(r->ui.list.empty());
    EXPECT_EQ(r->ui.status_texts.back(), "Done");
    EXPECT_EQ(std::filesystem::file_size(Database_File_Name), 64u);
}

TEST(ScanSequence, MissingSimulatorFilesAreNamedAndTheDatabaseIsKept) {
    Work_Dir dir("scan-missing");
    Small_World(dir, Area(1, "Airport and Facilities Data", "ap"),
                {{"ap/scenery/x.bgl", "KXYZ", "X"}});
    const std::string fs = dir.Sub("fs");
    std::filesystem::remove(fs + "/scenery/magdec.bgl");
    auto first = Start();
    ASSERT_EQ(first->ui.messages.size(), 3u); // the missing table, then the first run as ever
    EXPECT_EQ(first->ui.messages[0],
              (Shown_Message{"No readable magdec.bgl was found at " + fs +
                                 "/scenery/magdec.bgl, so the headings will be shown as true "
                                 "headings.",
                             "Quilmark Message", Message_Icon::Information}));
    EXPECT_EQ(first->ui.list, (std::vector<std::string>{"KXYZ (X)"}));
    const std::string database =
        Read_Whole_File(Database_File_Name, Max_Database_File_Size).value();

    // A damaged path, and a count that no longer fits the database: the path leads to no
    // scenery.cfg, so nothing is built, and the complete database stays as it is. A pipe
    // where magdec.bgl was is no file either, and is never opened.
    Named_Pipe magdec(fs + "/scenery/magdec.bgl");
    Config_Rec damaged{"Quilmark v1.1", 1, 1, fs + "\x01", 7};
    Write_Text(Config_File_Name, Encode_Config(damaged));
    for (bool with_database : {true, false}) {
        if (!with_database) {
            std::filesystem::remove(Database_File_Name);
        }
        auto r = Start();
        ASSERT_EQ(r->ui.messages.size(), 2u) << with_database;
        EXPECT_EQ(r->ui.messages[0].text.substr(0, 36), "No readable magdec.bgl was found at ");
        EXPECT_EQ(r->ui.messages[1],
                  (Shown_Message{"No readable scenery.cfg was found at " + fs +
                                     "\x01/scenery.cfg, so the list will stay empty.",
                                 "Quilmark Message", Message_Icon::Information}));
        EXPECT_TRUE(r->ui.list.empty());
        EXPECT_EQ(r->ui.status_texts.back(), "Done");
        EXPECT_TRUE(r->ui.controls_enabled);
        EXPECT_EQ(Read_Whole_File(Database_File_Name, Max_Database_File_Size),
                  with_database ? database : std::optional<std::string>());
    }
    EXPECT_FALSE(magdec.Reader_Was_Stuck());
}

TEST(ScanSequence, ABuildThatCannotStoreItsCountKeepsNoDatabase) {
    Work_Dir dir("scan-stopped");
    Small_World(dir, Area(1, "Airport and Facilities Data", "ap"),
                {{"ap/scenery/x.bgl", "KXYZ", "X"}});
    struct Case {
        std::function<void()> at_creating_database;
        Shown_Message message;
        std::vector<std::string> list;
    };
    const Case cases[] = {
        {[] {
             // The settings file turns into something that can't be read or replaced.
             std::filesystem::remove(Config_File_Name);
             std::filesystem::create_directory(Config_File_Name);
         },
         {"The number of airports could not be stored in the settings file "
          "quilmark_config.cfg, so the new airport database file was not kept. The airports "
          "are listed now, but they will be read from the scenery files again at the next "
          "start.",
          "Quilmark Message", Message_Icon::Exclamation},
         {"KXYZ (X)"}},
        {[] { throw std::bad_alloc(); },
         {"There is not enough memory to read the airports of this scenery, so the list will "
          "stay empty.",
          "Quilmark Message", Message_Icon::Exclamation},
         {}},
    };
    for (const Case& c : cases) {
        Hooked_Chooser_Form ui("Creating Database File...", c.at_creating_database);
        Start(&ui);
        EXPECT_EQ(ui.messages.back(), c.message);
        EXPECT_EQ(ui.list, c.list);
        EXPECT_EQ(ui.status_texts.back(), "Done");
        EXPECT_TRUE(ui.controls_enabled);
        // No database beside a count that doesn't match it, and no temporary file.
        EXPECT_EQ(std::distance(std::filesystem::directory_iterator("."),
                                std::filesystem::directory_iterator()),
                  2); // the settings and the simulator's folder

        std::filesystem::remove_all(Config_File_Name);
        Module1 m;
        ASSERT_EQ(Write_First_Config(m, true, dir.Sub("fs")), Config_Status::Ok);
        EXPECT_EQ(Start()->ui.list, (std::vector<std::string>{"KXYZ (X)"}));
        std::filesystem::remove(Database_File_Name);
    }
}

namespace {

// Starts the first-run build of the current directory in a process of its own. Without a
// kill time, waits for it and gives the time its writes took, from the status "Creating
// Database File..." to the end of the run, as the process itself measured it; with one,
// kills it that long after it has told of the beginning of its writes.
std::chrono::steady_clock::duration
Build_In_Child(std::optional<std::chrono::steady_clock::duration> kill_after) {
    using Clock = std::chrono::steady_clock;
    int signals[2];
    if (pipe(signals) != 0) {
        ADD_FAILURE() << "no pipe";
        return {};
    }
    const pid_t child = fork();
    if (child == 0) {
        Clock::time_point writes_begin;
        Hooked_Chooser_Form ui("Creating Database File...", [&] {
            writes_begin = Clock::now();
            (void)!write(signals[1], "w", 1);
        });
        Start(&ui);
        const Clock::rep writes = (Clock::now() - writes_begin).count();
        (void)!write(signals[1], &writes, sizeof writes);
        _exit(0);
    }
    char begun = 0;
    EXPECT_EQ(read(signals[0], &begun, 1), 1);
    Clock::rep writes = 0;
    if (kill_after) {
        // A sleep, not a spin: on a busy machine the child needs the processor meanwhile.
        std::this_thread::sleep_for(*kill_after);
        kill(child, SIGKILL);
    } else {
        EXPECT_EQ(read(signals[0], &writes, sizeof writes), static_cast<ssize_t>(sizeof writes));
    }
    waitpid(child, nullptr, 0);
    close(signals[0]);
    close(signals[1]);
    return Clock::duration(writes);
}

} // namespace

// The first-run build, killed at a random moment of its writes of the database and the
// settings; then the next start, here. Whenever the kill comes, that start lists the
// airports, read from the database or built again.
TEST(ScanSequence, AKillDuringTheWritesNeverLeavesAnEmptyList) {
    Work_Dir dir("scan-kill");
    Module1 init;
    auto fresh_start = [&] {
        std::filesystem::remove(Database_File_Name);
        ASSERT_EQ(Write_First_Config(init, true, Sample_World_Folder()), Config_Status::Ok);
    };
    std::vector<std::chrono::steady_clock::duration> undisturbed;
    for (int i = 0; i < 3; ++i) {
        fresh_start();
        undisturbed.push_back(Build_In_Child(std::nullopt));
    }
    std::sort(undisturbed.begin(), undisturbed.end());
    const std::vector<std::string> expected = Start()->ui.Sorted_List();
    ASSERT_EQ(expected.size(), 8u);

    std::mt19937 random(2002);
    std::uniform_int_distribution<int64_t> delay(0, undisturbed[1].count() * 5 / 4);
    for (int i = 0; i < 100; ++i) {
        fresh_start();
        Build_In_Child(std::chrono::steady_clock::duration(delay(random)));
        ASSERT_EQ(Start()->ui.Sorted_List(), expected) << "kill " << i;
    }
}

} // namespace quilmark
