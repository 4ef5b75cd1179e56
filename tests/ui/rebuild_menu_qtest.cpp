// The chooser's "Rebuild airport list": the list made again at once, beside "About".
#include <gtest/gtest.h>

#include <QComboBox>
#include <QMenuBar>

#include "platform/native_paths.h"
#include "scenery/airport_database.h"
#include "scenery/config_file.h"
#include "shell/qt_form1.h"
#include "shell/qt_form3.h"
#include "shell/qt_program.h"
#include "support/work_dir.h"

namespace quilmark {

TEST(RebuildMenu, MakesTheListAgainOnceAndKeepsTheDatabaseWhole) {
    Work_Dir dir("rebuild-menu");
    Module1 init;
    ASSERT_EQ(Write_First_Config(init, true, QUILMARK_SAMPLE_WORLD_DIR), Config_Status::Ok);
    std::vector<std::string> messages;
    Program_Services services;
    services.show_message = [&](QWidget*, const std::string& text, const std::string&,
                                Message_Icon) { messages.push_back(text); };
    Quilmark_Program program(services);
    program.Start();
    program.form1->Timer1_Timer();
    Form3* chooser = program.form3;
    EXPECT_EQ(chooser->menuBar()->actions().value(1)->text(), "Rebuild airport list");
    // Asked for before the first scan: the rebuild takes its place, and the list fills once.
    chooser->rebuild_menu->trigger();
    chooser->Read_Sceneries_Paths_Timer();
    EXPECT_EQ(chooser->Combo1->count(), 8);
    const auto database = Read_Whole_File(Database_File_Name, 1 << 30);
    messages.clear();
    chooser->rebuild_menu->trigger();
    // The sample world's CD prompt and the database made: no notice, no first-run message.
    ASSERT_EQ(messages.size(), 2u);
    EXPECT_EQ(messages[1].substr(0, 29), "The Database File was created");
    EXPECT_EQ(chooser->Combo1->count(), 8);
    EXPECT_EQ(Read_Whole_File(Database_File_Name, 1 << 30), database);
}

} // namespace quilmark
