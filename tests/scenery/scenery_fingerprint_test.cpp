#include <gtest/gtest.h>

#include <chrono>
#include <csignal>
#include <filesystem>
#include <functional>
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
};

std::unique_ptr<Started> Start() {
    auto s = std::make_unique<Started>();
    EXPECT_EQ(Read_Config_File(s->m, Config_File_Name), Config_Status::Ok);
    Run_Scenery_Scan(s->m, s->form, s->ui);
    return s;
}

} // namespace

TEST(SceneryFingerprint, EachChangeLeadsToTheRightDecision) {
    const auto later = fs::file_time_type::clock::now() + std::chrono::hours(1);
    auto bgl = [](const Work_Dir& d, const char* name) { return d.Sub("fs/afd/scenery/") + name; };
    // The fingerprint file cut short or foreign, and a new file that it does not see.
    auto damaged = [](size_t keep, const std::string& tail) {
        return [=](const Work_Dir& d) {
            Write_Text(Fingerprint_File_Name,
                       Read_Whole_File(Fingerprint_File_Name, 1 << 20)->substr(0, keep) + tail);
            Airport_File(d, "c.bgl", "C");
        };
    };
    const struct {
        std::function<void(const Work_Dir&)> change;
        std::string notice; // empty: a later run as before, no rebuild
        int32_t airports;
    } cases[] = {
        {[](const Work_Dir&) {}, "", 2},
        {[](const Work_Dir& d) { Airport_File(d, "c.bgl", "KC"), Airport_File(d, "d.BGL", "KD"); },
         "2 files added", 4},
        {[&](const Work_Dir& d) { fs::remove(bgl(d, "b.bgl")); }, "1 file removed", 1},
        {[&](const Work_Dir& d) { fs::last_write_time(bgl(d, "a.bgl"), later); }, "1 file changed",
         2},
        {[&](const Work_Dir& d) { Airport_File(d, "a.bgl", "KAAAX"), fs::remove(bgl(d, "b.bgl")); },
         "1 file changed, 1 removed", 1},
        {[](const Work_Dir& d) { Write_Text(d.Sub("fs/scenery.cfg"), Cfg + ";\r\n"); },
         "scenery.cfg changed", 2},
        {[&](const Work_Dir& d) { fs::last_write_time(d.Sub("fs/scenery.cfg"), later); }, "", 2},
        {[](const Work_Dir& d) { Write_Text(d.Sub("fs/afd/scenery/x.txt"), "x"); }, "", 2},
        // A damaged or foreign fingerprint is none: the scenery as it is now is the database's.
        {damaged(60, ""), "", 2},
        {damaged(8, std::string(40, '\xff')), "", 2},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.notice + " " + std::to_string(&c - cases));
        Work_Dir dir("fingerprint-decision");
        Built_World(dir);
        c.change(dir);
        auto s = Start();
        EXPECT_EQ(s->ui.list.size(), static_cast<size_t>(c.airports));
        Module1 stored;
        ASSERT_EQ(Read_Config_File(stored, Config_File_Name), Config_Status::Ok);
        EXPECT_EQ(stored.airport_count, c.airports);
        EXPECT_EQ(s->form.database_present, c.notice.empty());
        ASSERT_EQ(s->ui.messages.size(), c.notice.empty() ? 0u : 2u); // and the database made
        if (!c.notice.empty()) {
            EXPECT_EQ(s->ui.messages[0],
                      (Shown_Message{"The scenery has changed since the airport list was made: " +
                                         c.notice + ". The list will be made again.",
                                     "Quilmark Message", Message_Icon::Information}));
        }
        EXPECT_TRUE(Start()->ui.messages.empty()); // the new fingerprint is the scenery's
    }
}

TEST(SceneryFingerprint, ToolReportsChangesOnlyWhenThereAreAnyAndRebuildsOnRequest) {
    Work_Dir dir("fingerprint-tool");
    Built_World(dir);
    EXPECT_EQ(Run_Quilmark_Tool({"scan"}).out.find("scenery_changes"), std::string::npos);
    fs::remove(dir.Sub("fs/afd/scenery/b.bgl"));
    EXPECT_NE(Run_Quilmark_Tool({"scan"}).out.find(
                  "\n, \"scenery_changes\": {\"scenery_cfg\": false, \"magdec\": false, \"added\": "
                  "[], \"changed\": [], \"removed\": [\"" +
                  dir.Sub("fs/afd/scenery/b.bgl") + "\"]}\n"),
              std::string::npos);
    EXPECT_NE(Run_Quilmark_Tool({"scan", "--rebuild"}).out.find("The Database File was created"),
              std::string::npos);
}

// A rebuild killed at a random moment: the next start lists the new scenery's airports,
// from a database that is the old one whole, the new one whole, or none.
TEST(SceneryFingerprint, AKillDuringARebuildLosesNothing) {
    Work_Dir dir("fingerprint-kill");
    auto changed_world = [&] {
        fs::remove(Database_File_Name);
        fs::remove(dir.Sub("fs/afd/scenery/c.bgl"));
        Built_World(dir);
        Airport_File(dir, "c.bgl", "KCCC");
    };
    changed_world();
    const auto begun = std::chrono::steady_clock::now();
    Start();
    std::uniform_int_distribution<int64_t> delay(
        0, (std::chrono::steady_clock::now() - begun).count() * 5 / 4);
    std::mt19937 random(2004);
    for (int i = 0; i < 40; ++i) {
        changed_world();
        const pid_t child = fork();
        if (child == 0) {
            Start();
            _exit(0);
        }
        std::this_thread::sleep_for(std::chrono::steady_clock::duration(delay(random)));
        kill(child, SIGKILL);
        waitpid(child, nullptr, 0);
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
