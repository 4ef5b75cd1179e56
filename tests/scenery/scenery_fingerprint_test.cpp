#include <gtest/gtest.h>

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
#include "scenery/scenery_fingerprint.h"
#include "state/chooser_form.h"
#include "state/form3_data.h"
#include "state/module1.h"
#include "support/decode.h"
#include "support/tool_run.h"
#include "support/work_dir.h"

namespace quilmark {

namespace {

namespace fs = std::filesystem;

const std::string Cfg = "[General]\r\n[Area.1]\r\nTitle=Airport and Facilities Data\r\n"
                        "Local=afd\r\nActive=TRUE\r\nRequired=TRUE\r\n";

void Airport_File(const Work_Dir& dir, const std::string& name, const std::string& ident) {
    Write_File(dir.Sub("fs/afd/scenery/" + name), One_Airport_File(ident, Name_Record(ident)));
}

// Two airports in one airport area, the configuration, and the first run's build.
void Built_World(const Work_Dir& dir) {
    Write_Text(dir.Sub("fs/scenery.cfg"), Cfg);
    Write_File(dir.Sub("fs/scenery/magdec.bgl"), Build_Magdec(std::vector<int16_t>(65160, 0)));
    Airport_File(dir, "a.bgl", "KAAA");
    Airport_File(dir, "b.bgl", "KBBB");
    Module1 m;
    ASSERT_EQ(Write_First_Config(m, true, dir.Sub("fs")), Config_Status::Ok);
    Run_Quilmark_Tool({"scan"});
    ASSERT_TRUE(fs::exists(Fingerprint_File_Name));
}

struct Started {
    Module1 m;
    Form3_Data form;
    Recording_Chooser_Form ui;
    Scenery_Changes_Rec changes;
};

std::unique_ptr<Started> Start(Scan_Request request = Scan_Request::Usual) {
    auto s = std::make_unique<Started>();
    EXPECT_EQ(Read_Config_File(s->m, Config_File_Name), Config_Status::Ok);
    Run_Scenery_Scan(s->m, s->form, s->ui, request, &s->changes);
    return s;
}

} // namespace

TEST(SceneryFingerprint, EachChangeLeadsToTheRightDecision) {
    const auto later = fs::file_time_type::clock::now() + std::chrono::hours(1);
    struct Case {
        const char* name;
        std::function<void(const Work_Dir&)> change;
        const char* notice; // empty: a later run as before, no rebuild
        size_t airports;
    };
    const std::vector<Case> cases = {
        {"nothing", [](const Work_Dir&) {}, "", 2},
        {"added",
         [](const Work_Dir& d) {
             Airport_File(d, "c.bgl", "KCCC");
             Airport_File(d, "d.BGL", "KDDD");
         },
         "2 files added", 4},
        {"removed", [](const Work_Dir& d) { fs::remove(d.Sub("fs/afd/scenery/b.bgl")); },
         "1 file removed", 1},
        {"touched",
         [&](const Work_Dir& d) { fs::last_write_time(d.Sub("fs/afd/scenery/a.bgl"), later); },
         "1 file changed", 2},
        {"replaced and removed",
         [](const Work_Dir& d) {
             Airport_File(d, "a.bgl", "KAAAX");
             fs::remove(d.Sub("fs/afd/scenery/b.bgl"));
         },
         "1 file changed, 1 removed", 1},
        {"cfg edited",
         [](const Work_Dir& d) { Write_Text(d.Sub("fs/scenery.cfg"), Cfg + ";\r\n"); },
         "scenery.cfg changed", 2},
        {"cfg touched",
         [&](const Work_Dir& d) { fs::last_write_time(d.Sub("fs/scenery.cfg"), later); }, "", 2},
        {"other file", [](const Work_Dir& d) { Write_Text(d.Sub("fs/afd/scenery/x.txt"), "x"); },
         "", 2},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        Work_Dir dir("fingerprint-decision");
        Built_World(dir);
        const std::string before = *Read_Whole_File(Fingerprint_File_Name, 1 << 20);
        c.change(dir);
        auto s = Start();
        EXPECT_EQ(s->m.airport_count, static_cast<int32_t>(c.airports));
        EXPECT_EQ(s->ui.list.size(), c.airports);
        Module1 stored;
        ASSERT_EQ(Read_Config_File(stored, Config_File_Name), Config_Status::Ok);
        EXPECT_EQ(stored.airport_count, s->m.airport_count);
        const std::string after = *Read_Whole_File(Fingerprint_File_Name, 1 << 20);
        if (std::string(c.notice).empty()) {
            EXPECT_TRUE(s->ui.messages.empty());
            EXPECT_TRUE(s->form.database_present);
            EXPECT_EQ(after, before);
            continue;
        }
        ASSERT_EQ(s->ui.messages.size(), 2u); // the notice, then the database created
        EXPECT_EQ(s->ui.messages[0],
                  (Shown_Message{"The scenery has changed since the airport list was made: " +
                                     std::string(c.notice) + ". The list will be made again.",
                                 "Quilmark Message", Message_Icon::Information}));
        EXPECT_NE(after, before);
        // The next start finds the scenery as the new fingerprint has it.
        EXPECT_TRUE(Start()->ui.messages.empty());
    }
}

TEST(SceneryFingerprint, MissingOrDamagedFingerprintIsStoredAfreshWithoutRebuild) {
    const std::vector<std::function<void(std::string&)>> damages = {
        [](std::string&) { fs::remove(Fingerprint_File_Name); },
        [](std::string& b) { b.resize(b.size() / 2); },
        [](std::string& b) { b[b.size() / 2] ^= 1; },
        [](std::string& b) { b = "QMSCENE1" + std::string(40, '\xff'); },
        [](std::string& b) { b.clear(); },
    };
    for (size_t i = 0; i < damages.size(); ++i) {
        SCOPED_TRACE(i);
        Work_Dir dir("fingerprint-damage");
        Built_World(dir);
        std::string bytes = *Read_Whole_File(Fingerprint_File_Name, 1 << 20);
        const std::string good = bytes;
        damages[i](bytes);
        if (i > 0) {
            ASSERT_TRUE(Write_File_Replacing(Fingerprint_File_Name, bytes));
            EXPECT_FALSE(Decode_Scenery_Fingerprint(bytes));
        }
        Airport_File(dir, "c.bgl", "KCCC"); // unseen: the fingerprint is taken as it is now
        auto s = Start();
        EXPECT_TRUE(s->ui.messages.empty());
        EXPECT_EQ(s->m.airport_count, 2);
        EXPECT_FALSE(s->changes.Any());
        EXPECT_TRUE(Decode_Scenery_Fingerprint(*Read_Whole_File(Fingerprint_File_Name, 1 << 20)));
    }
}

TEST(SceneryFingerprint, ToolReportsChangesAndRebuildsOnRequest) {
    Work_Dir dir("fingerprint-tool");
    Built_World(dir);
    EXPECT_EQ(Run_Quilmark_Tool({"scan"}).out.find("scenery_changes"), std::string::npos);
    fs::remove(dir.Sub("fs/afd/scenery/b.bgl"));
    const Tool_Run changed = Run_Quilmark_Tool({"scan"});
    EXPECT_NE(changed.out.find("\n, \"scenery_changes\": {\"scenery_cfg\": false, \"magdec\": "
                               "false, \"added\": [], \"changed\": [], \"removed\": [\"" +
                               dir.Sub("fs/afd/scenery/b.bgl") + "\"]}\n"),
              std::string::npos)
        << changed.out;
    // A forced rebuild of unchanged scenery: no notice, and the first run's build.
    auto s = Start(Scan_Request::Rebuild);
    EXPECT_EQ(s->ui.messages.size(), 1u); // the database created
    EXPECT_FALSE(s->form.database_present);
    EXPECT_EQ(s->m.airport_count, 1);
}

// A rebuild killed at a random moment: the next start lists the new scenery's airports,
// from a database that is the old one whole, the new one whole, or none.
TEST(SceneryFingerprint, AKillDuringARebuildLosesNothing) {
    Work_Dir dir("fingerprint-kill");
    // The rebuild in a child process, killed after the delay if one is given; its duration.
    auto rebuild = [&](std::optional<std::chrono::microseconds> kill_after) {
        Built_World(dir);
        Airport_File(dir, "c.bgl", "KCCC");
        const auto begun = std::chrono::steady_clock::now();
        const pid_t child = fork();
        if (child == 0) {
            Start();
            _exit(0);
        }
        if (kill_after) {
            std::this_thread::sleep_for(*kill_after);
            kill(child, SIGKILL);
        }
        waitpid(child, nullptr, 0);
        return std::chrono::duration_cast<std::chrono::microseconds>(
            std::chrono::steady_clock::now() - begun);
    };
    const int64_t undisturbed = rebuild(std::nullopt).count();
    std::mt19937 random(2004);
    std::uniform_int_distribution<int64_t> delay(0, undisturbed * 5 / 4);
    for (int i = 0; i < 40; ++i) {
        fs::remove(dir.Sub("fs/afd/scenery/c.bgl"));
        fs::remove(Database_File_Name);
        rebuild(std::chrono::microseconds(delay(random)));
        Module1 m;
        ASSERT_EQ(Read_Config_File(m, Config_File_Name), Config_Status::Ok);
        if (fs::exists(Database_File_Name)) {
            ASSERT_EQ(Read_Airport_Database(Database_File_Name, m.airport_count, m.airports),
                      Database_Read_Result::Ok)
                << "kill " << i;
        }
        ASSERT_EQ(Start()->ui.list.size(), 3u) << "kill " << i;
    }
}

} // namespace quilmark
