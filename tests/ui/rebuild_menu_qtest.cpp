// The chooser's "Rebuild airport list": the list made again at once, beside "About".
#include <gtest/gtest.h>

#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QMenuBar>
#include <filesystem>

#include "platform/native_paths.h"
#include "scenery/airport_database.h"
#include "scenery/config_file.h"
#include "shell/qt_form1.h"
#include "shell/qt_form3.h"
#include "shell/qt_program.h"
#include "state/module1.h"
#include "support/work_dir.h"

namespace quilmark {

TEST(RebuildMenu, MakesTheListAgainAndKeepsTheDatabaseWhole) {
    Work_Dir dir("rebuild-menu");
    Module1 init;
    ASSERT_EQ(Write_First_Config(init, true, QUILMARK_SAMPLE_WORLD_DIR), Config_Status::Ok);
    std::vector<std::string> messages;
    Program_Services services;
    services.show_message = [&](QWidget*, const std::string& text, const std::string&,
                                Message_Icon) { messages.push_back(text); };
    services.end_program = [] {};
    Quilmark_Program program(services);
    program.Start();
    program.form1->Timer1_Timer();
    QCoreApplication::processEvents();
    Form3* chooser = program.form3;
    ASSERT_NE(chooser, nullptr);

    QStringList tops;
    for (QAction* top : chooser->menuBar()->actions()) {
        tops.push_back(top->text());
    }
    EXPECT_EQ(tops, (QStringList{"About", "Rebuild airport list"}));

    // Asked for before the first scan: the rebuild takes its place, and runs once.
    chooser->rebuild_menu->trigger();
    const auto database = Read_Whole_File(Database_File_Name, 1 << 30);
    ASSERT_TRUE(database);
    chooser->Read_Sceneries_Paths_Timer();
    EXPECT_EQ(chooser->Combo1->count(), 8);
    messages.clear();

    chooser->rebuild_menu->trigger();
    ASSERT_EQ(messages.size(), 2u); // the CD prompt of the sample world, the database made
    EXPECT_EQ(messages[1].substr(0, 33), "The Database File was created suc");
    EXPECT_EQ(chooser->Combo1->count(), 8);
    EXPECT_TRUE(chooser->rebuild_menu->isEnabled());
    EXPECT_EQ(Read_Whole_File(Database_File_Name, 1 << 30), database);
}

} // namespace quilmark
