// The desktop program's flows, walked as a user would: timers are fired by hand instead of
// waited for, message boxes are answered OK and remembered. Where a flow hangs on the event
// loop, real message boxes run their own and a watcher answers them; where it hangs on
// the window manager, the test runs only under one (tests/ui/under_window_manager.sh).
#include <gtest/gtest.h>

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QGroupBox>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMenuBar>
#include <QMessageBox>
#include <QMouseEvent>
#include <QProgressBar>
#include <QPushButton>
#include <QRadioButton>
#include <QScreen>
#include <QTimer>
#include <filesystem>
#include <functional>

#include "dialogs/qt_form5.h"
#include "dialogs/qt_form6.h"
#include "platform/native_paths.h"
#include "scenery/airport_database.h"
#include "scenery/config_file.h"
#include "shell/qt_form1.h"
#include "shell/qt_form2.h"
#include "shell/qt_form3.h"
#include "shell/qt_form4.h"
#include "shell/qt_program.h"
#include "state/module1.h"
#include "support/fake_module.h"
#include "support/work_dir.h"

namespace quilmark {

namespace {

struct Recorded_Message {
    std::string text;
    std::string title;
    Message_Icon icon;
};

// A program whose message boxes and end are recorded; no simulator unless told.
struct Program_Under_Test {
    std::vector<Recorded_Message> messages;
    bool ended = false;
    bool ended_under_a_message = false;
    bool simulator = false;
    std::unique_ptr<Quilmark_Program> program;

    // Real message boxes, each running its own event loop until answered, if asked.
    explicit Program_Under_Test(bool real_message_boxes = false) {
        Program_Services services;
        services.show_message = [this, real_message_boxes](QWidget* owner, const std::string& text,
                                                           const std::string& title,
                                                           Message_Icon icon) {
            messages.push_back({text, title, icon});
            if (real_message_boxes) {
                Desktop_Services().show_message(owner, text, title, icon);
            }
        };
        services.end_program = [this] {
            ended = true;
            ended_under_a_message = QApplication::activeModalWidget() != nullptr;
        };
        services.make_link_transport = [this] {
            auto module = std::make_unique<Fake_Module_Transport>();
            module->main_window = simulator;
            module->fallback_window = simulator;
            module->space.Set_U32(0x0564, 5273034);                            // 47.4490 N
            module->space.Set_U32(0x056C, static_cast<uint32_t>(-1459206787)); // 122.3093 W
            module->space.Set_U32(0x0580, static_cast<uint32_t>(-1073741824)); // 270: -90
            module->space.Set_U16(0x0EC6, 16212);
            return std::unique_ptr<Link_Transport>(std::move(module));
        };
        program = std::make_unique<Quilmark_Program>(services);
    }
    Module1& m() { return program->module(); }
};

// Runs what the event loop has queued: deferred deletes and the last-form check.
void Settle() {
    for (int i = 0; i < 3; ++i) {
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QCoreApplication::processEvents();
    }
}

// Runs the event loop until the condition holds or the time is up.
bool Wait_Until(const std::function<bool()>& condition, int ms = 3000) {
    QElapsedTimer clock;
    clock.start();
    while (!condition() && clock.elapsed() < ms) {
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
    }
    return condition();
}

// Answers each real message box with OK once it has been up for a while, as a reader
// would; `look` sees each box before it is answered.
struct Message_Box_Watcher {
    std::function<void(QMessageBox&)> look;
    QTimer timer;

    Message_Box_Watcher() {
        timer.setInterval(20);
        QObject::connect(&timer, &QTimer::timeout, [this] {
            auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
            if (box == nullptr) {
                return;
            }
            const int ticks = box->property("watched").toInt() + 1;
            box->setProperty("watched", ticks);
            if (ticks == 10) {
                if (look) {
                    look(*box);
                }
                box->button(QMessageBox::Ok)->click();
            }
        });
        timer.start();
    }
};

void Press(QWidget* widget, int key, const QString& text = {}) {
    QKeyEvent press(QEvent::KeyPress, key, Qt::NoModifier, text);
    QKeyEvent release(QEvent::KeyRelease, key, Qt::NoModifier, text);
    QApplication::sendEvent(widget, &press);
    QApplication::sendEvent(widget, &release);
}

void Type(QWidget* widget, const QString& text) {
    for (QChar c : text) {
        Press(widget, 0, QString(c));
    }
}

void Click(QListWidget* list, QListWidgetItem* item) {
    list->scrollToItem(item);
    const QPointF at = list->visualItemRect(item).center();
    const QPointF global = list->viewport()->mapToGlobal(at);
    for (QEvent::Type type : {QEvent::MouseButtonPress, QEvent::MouseButtonRelease}) {
        QMouseEvent event(type, at, global, Qt::LeftButton, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(list->viewport(), &event);
    }
}

// HOME set to a folder of the test's own, for the test's lifetime.
struct Home_At {
    QByteArray previous = qgetenv("HOME");
    explicit Home_At(const std::string& home) { qputenv("HOME", QByteArray::fromStdString(home)); }
    ~Home_At() { qputenv("HOME", previous); }
};

// Where windows land and which lies on top is the window manager's doing: such tests run
// only under one.
bool Under_Window_Manager() {
    return !qEnvironmentVariableIsEmpty("QUILMARK_WINDOW_MANAGER") &&
           QGuiApplication::platformName() == "xcb";
}
constexpr const char* No_Window_Manager =
    "needs an X server with a window manager; the test ui_window_manager runs it under one";

// Waits until the window manager has framed a shown window and placed it.
bool Framed(QWidget* form) {
    const bool framed = Wait_Until(
        [form] { return form->isVisible() && form->frameGeometry() != form->geometry(); });
    Wait_Until([] { return false; }, 300);
    return framed;
}

// The part of the screen where a window is shows that window, not one in front of it.
bool Seen_On_Screen(QWidget& form) {
    const QPoint at = form.mapToGlobal(QPoint(0, 0));
    const QImage shown =
        form.screen()->grabWindow(0, at.x(), at.y(), form.width(), form.height()).toImage();
    return shown.convertToFormat(QImage::Format_RGB32) ==
           form.grab().toImage().convertToFormat(QImage::Format_RGB32);
}

std::vector<std::string> Combo_Items(const QComboBox* combo) {
    std::vector<std::string> items;
    for (int i = 0; i < combo->count(); ++i) {
        items.push_back(combo->itemText(i).toStdString());
    }
    return items;
}

QAction* Menu_Action(QMainWindow* form, const QString& menu, const QString& entry) {
    for (QAction* top : form->menuBar()->actions()) {
        if (top->text() == menu && top->menu() != nullptr) {
            for (QAction* action : top->menu()->actions()) {
                if (action->text() == entry) {
                    return action;
                }
            }
        }
    }
    return nullptr;
}

// The program started and past its splash.
void Past_Splash(Program_Under_Test& t) {
    t.program->Start();
    ASSERT_NE(t.program->form1, nullptr);
    t.program->form1->Timer1_Timer();
    Settle();
    ASSERT_EQ(t.program->form1, nullptr);
}

// Splash, then wizard finished on the sample world, then the first scan.
void First_Start(Program_Under_Test& t) {
    Past_Splash(t);
    ASSERT_NE(t.program->form2, nullptr);
    t.program->form2->Set_Dir1_Path(QUILMARK_SAMPLE_WORLD_DIR);
    t.program->form2->Command1->click();
    Settle();
    ASSERT_NE(t.program->form3, nullptr);
    t.program->form3->Read_Sceneries_Paths_Timer();
}

// Chooses Seattle on the chooser and asks for it: the chart comes up.
Form4* Open_Seattle(Program_Under_Test& t) {
    Form3* chooser = t.program->form3;
    chooser->Combo1->setCurrentIndex(chooser->Combo1->findText("KSEA (SEATTLE-TACOMA INTL)"));
    chooser->Command3->click();
    Settle();
    EXPECT_EQ(t.program->form3, nullptr);
    return t.program->form4;
}

} // namespace

TEST(Forms, FirstStartInAnEmptyFolderThenALaterStart) {
    Work_Dir dir("forms-first");
    Program_Under_Test t;
    First_Start(t);
    ASSERT_FALSE(t.ended);
    EXPECT_EQ(t.m().fs_path, QUILMARK_SAMPLE_WORLD_DIR);
    ASSERT_EQ(t.messages.size(), 4u);
    EXPECT_EQ(t.messages[0].text, "Settings file created successfully!");
    EXPECT_EQ(t.messages[3].text.substr(0, 33), "The Database File was created suc");
    Form3* chooser = t.program->form3;
    EXPECT_EQ(chooser->windowTitle(), "Choosing an airport");
    EXPECT_EQ(chooser->Text1->text(), "Done");
    EXPECT_TRUE(chooser->Combo1->isEnabled());
    EXPECT_TRUE(chooser->Command3->isEnabled());
    const auto list = Combo_Items(chooser->Combo1);
    ASSERT_EQ(list.size(), 8u);
    EXPECT_EQ(list.front(), "KBFI (BOEING FLD KING CO INTL)");
    EXPECT_EQ(chooser->Combo1->currentText(), "[Type and select an airport from the list]");
    EXPECT_EQ(chooser->ProgressBar1->value(), 0);
    // "Rebuild airport list" after the scan: the list and the database made again, the same.
    const auto database = Read_Whole_File(Database_File_Name, 1 << 30);
    t.messages.clear();
    chooser->rebuild_menu->trigger();
    ASSERT_EQ(t.messages.size(), 2u); // the CD prompt and the database made; no first-run text
    EXPECT_EQ(t.messages[1].text.substr(0, 29), "The Database File was created");
    EXPECT_EQ(Combo_Items(chooser->Combo1), list);
    EXPECT_EQ(Read_Whole_File(Database_File_Name, 1 << 30), database);
    // Ready for typing: the focus in the airport box, whose hint the first key replaces
    // wherever the cursor stands; the status box is passed over by the tab key.
    QWidget* focus = chooser->focusWidget();
    EXPECT_TRUE(focus == chooser->Combo1 || focus == chooser->Combo1->lineEdit());
    chooser->Combo1->lineEdit()->end(false);
    Type(chooser->Combo1->lineEdit(), "sea");
    EXPECT_EQ(chooser->Combo1->currentText(), "sea");
    EXPECT_FALSE(chooser->Text1->focusPolicy() & Qt::TabFocus);

    // A later start in the same folder: the chooser straight after the splash.
    Program_Under_Test later;
    Past_Splash(later);
    EXPECT_EQ(later.program->form2, nullptr);
    ASSERT_NE(later.program->form3, nullptr);
    later.program->form3->Read_Sceneries_Paths_Timer();
    EXPECT_EQ(Combo_Items(later.program->form3->Combo1), list);
    EXPECT_EQ(later.messages.size(), 1u);    // the CD prompt only
    later.program->form3->Command2->click(); // CLOSE_PROGRAM
    Settle();
    EXPECT_TRUE(later.ended);
    EXPECT_EQ(later.m().airports.Slot_Count(), 1u);
    // Rebuilding asked for before a start's first scan takes the scan's place: one list.
    Program_Under_Test third;
    Past_Splash(third);
    third.program->form3->rebuild_menu->trigger();
    third.program->form3->Read_Sceneries_Paths_Timer();
    EXPECT_EQ(Combo_Items(third.program->form3->Combo1), list);
}

TEST(Forms, UnfinishedWizardShowsItsMessageThenEndsWithoutASettingsFile) {
    Work_Dir dir("forms-wizard");
    Program_Under_Test t(true); // the end must wait until the message has been read
    Past_Splash(t);
    Form2* wizard = t.program->form2;
    ASSERT_NE(wizard, nullptr);
    EXPECT_EQ(wizard->windowTitle(), "Settings");
    EXPECT_TRUE(wizard->Option1->isChecked());
    EXPECT_EQ(t.m().fs_version, 1);
    EXPECT_FALSE(wizard->Text1->text().isEmpty()); // the lists always choose a folder
    Message_Box_Watcher watcher;
    wizard->close();
    Settle();
    EXPECT_TRUE(t.ended);
    EXPECT_FALSE(t.ended_under_a_message);
    ASSERT_EQ(t.messages.size(), 1u);
    EXPECT_EQ(t.messages[0].text, "You didn't finish setup process, program will end");
    EXPECT_FALSE(std::filesystem::exists(Config_File_Name));
}

TEST(Forms, ChartOpensZoomsCentresAndGoesBack) {
    Work_Dir dir("forms-chart");
    Program_Under_Test t;
    First_Start(t);
    Form3* chooser = t.program->form3;
    const auto list = Combo_Items(chooser->Combo1);
    t.messages.clear();

    // Typing alone chooses nothing: GET AIRPORT does nothing then.
    chooser->Combo1->setEditText("seattle");
    chooser->Command3->click();
    EXPECT_EQ(t.program->form4, nullptr);

    Form4* chart = Open_Seattle(t);
    ASSERT_NE(chart, nullptr);
    EXPECT_EQ(chart->windowTitle(), "SEATTLE-TACOMA INTL Chart");
    EXPECT_EQ(chart->view.zoom_level, 9);
    EXPECT_TRUE(chart->Timer1.isActive());
    // No simulator: the message, and the chart all the same.
    ASSERT_EQ(t.messages.size(), 1u);
    EXPECT_EQ(t.messages[0].icon, Message_Icon::Exclamation);
    EXPECT_EQ(t.messages[0].text.substr(0, 42), "This program couldn't connect to the FS200");
    EXPECT_FALSE(t.m().fsuipc_connected);
    EXPECT_EQ(chart->Label1->text(), "Altimeter: 0");

    chart->Command2->click(); // zoom in
    EXPECT_EQ(chart->view.zoom_level, 10);
    chart->Command4->click(); // zoom out
    chart->Command4->click();
    EXPECT_EQ(chart->view.zoom_level, 8);

    // A left click centres the view on the clicked point; a right click does nothing.
    const Chart_View before = chart->view;
    chart->Form_MouseDown(Qt::RightButton, 10, 10);
    EXPECT_EQ(chart->view.view_left, before.view_left);
    chart->Form_MouseDown(Qt::LeftButton, 0, 0);
    const double centre_lon = (chart->view.view_left + chart->view.view_right) / 2;
    EXPECT_NEAR(centre_lon, before.view_left, 1e-4);
    chart->Command3->click(); // back on the airport
    EXPECT_NEAR((chart->view.view_top + chart->view.view_bottom) / 2, t.m().current_airport.lat,
                1e-9);
    chart->Timer1_Timer(); // a tick without simulator redraws and keeps the label
    EXPECT_EQ(chart->Label1->text(), "Altimeter: 0");
    EXPECT_FALSE(chart->back_buffer.isNull());

    // "Change", "Airport": the chooser again, with the same list after its scan.
    QAction* change = Menu_Action(chart, "Change", "Airport");
    ASSERT_NE(change, nullptr);
    change->trigger();
    Settle();
    EXPECT_EQ(t.program->form4, nullptr);
    ASSERT_NE(t.program->form3, nullptr);
    EXPECT_FALSE(t.ended);
    t.program->form3->Read_Sceneries_Paths_Timer();
    EXPECT_EQ(Combo_Items(t.program->form3->Combo1), list);
}

TEST(Forms, LiveAircraftAndTheOptionsDialog) {
    Work_Dir dir("forms-options");
    Program_Under_Test t;
    t.simulator = true;
    First_Start(t);
    Form4* chart = Open_Seattle(t);
    ASSERT_NE(chart, nullptr);
    EXPECT_TRUE(t.m().fsuipc_connected);
    chart->Timer1_Timer();
    EXPECT_EQ(chart->Label1->text(), "Altimeter: 29.92"); // the last of the four values

    // The options dialog: every box checked, inches of mercury; a click writes at once.
    QAction* preferences = Menu_Action(chart, "Options", "Preferences");
    ASSERT_NE(preferences, nullptr);
    preferences->trigger();
    Form5* options = t.program->form5;
    ASSERT_NE(options, nullptr);
    EXPECT_TRUE(options->Check1->isChecked() && options->Check6->isChecked());
    EXPECT_TRUE(options->Option2->isChecked());
    options->Option1->click();
    EXPECT_EQ(t.m().altimeter_units, 0);
    chart->Timer1_Timer();
    EXPECT_EQ(chart->Label1->text(), "Altimeter: 1013");

    // Gates off at a click, and still off when the dialog opens again.
    options->Check5->click();
    EXPECT_FALSE(t.m().show_gates);
    options->Command1->click();
    Settle();
    EXPECT_EQ(t.program->form5, nullptr);
    preferences->trigger();
    EXPECT_FALSE(t.program->form5->Check5->isChecked()); // still cleared while the chart is up

    // The About box from the chart's menu: inside the bold "Credits" frame the labels keep
    // the form's plain font, and the caption of the thanks shows whole.
    QAction* about = Menu_Action(chart, "About", "Quilmark v1.1");
    ASSERT_NE(about, nullptr);
    about->trigger();
    Form6* about_box = t.program->form6;
    ASSERT_NE(about_box, nullptr);
    EXPECT_EQ(about_box->windowTitle(), "About Quilmark v1.1");
    EXPECT_TRUE(about_box->Frame1->font().bold());
    const auto inside = about_box->Frame1->findChildren<QWidget*>(Qt::FindDirectChildrenOnly);
    EXPECT_EQ(inside.size(), 3);
    for (const QWidget* control : inside) {
        EXPECT_FALSE(control->font().bold());
        EXPECT_EQ(control->font().pointSizeF(), about_box->font().pointSizeF());
    }
    EXPECT_GE(about_box->Label6->contentsRect().width(),
              about_box->Label6->fontMetrics().horizontalAdvance("Special Thanks To:"));

    // A new airport with the options left open: they show the new chart's settings.
    Menu_Action(chart, "Change", "Airport")->trigger();
    Settle();
    t.program->form3->Read_Sceneries_Paths_Timer();
    ASSERT_NE(Open_Seattle(t), nullptr);
    ASSERT_NE(t.program->form5, nullptr);
    EXPECT_TRUE(t.program->form5->Check5->isChecked());
    EXPECT_TRUE(t.program->form5->Option2->isChecked());
}

TEST(Forms, WizardFindsTheSimulatorInAWinePrefix) {
    Work_Dir dir("forms-prefix");
    const std::string home = dir.Sub("home");
    const std::string c = home + "/.wine-fs2002/drive_c";
    std::filesystem::create_directories(c + "/Program Files/Microsoft Games/FS2002");
    std::filesystem::create_directories(c + "/users");
    Home_At at(home);
    Program_Under_Test t;
    Past_Splash(t);
    Form2* wizard = t.program->form2;
    ASSERT_NE(wizard, nullptr);
    ASSERT_EQ(wizard->Drive1->count(), 3);
    EXPECT_EQ(wizard->Drive1->itemText(0), "c: [~/.wine-fs2002]");
    EXPECT_EQ(wizard->Drive1->itemText(1).toStdString(), "~ [" + home + "]");
    EXPECT_EQ(wizard->Text1->text().toStdString(), c); // the prefix's C: comes first

    // Hidden folders are listed.
    wizard->Drive1->setCurrentIndex(1);
    QListWidget* folders = wizard->Dir1;
    EXPECT_EQ(folders->item(folders->count() - 1)->text(), ".wine-fs2002");
    wizard->Drive1->setCurrentIndex(0);
    EXPECT_EQ(folders->item(folders->count() - 1)->text(), "users");

    // First letters jump to a folder and choose it, Enter opens it, a click chooses.
    Type(folders, "pro");
    EXPECT_EQ(wizard->Text1->text().toStdString(), c + "/Program Files");
    Press(folders, Qt::Key_Return);
    Click(folders, folders->item(folders->count() - 1));
    EXPECT_EQ(wizard->Text1->text().toStdString(), c + "/Program Files/Microsoft Games");
    wizard->Set_Dir1_Path(c + "/Program Files/Microsoft Games");
    Click(folders, folders->item(folders->count() - 1));
    wizard->Command1->click();
    Settle();
    EXPECT_EQ(t.m().fs_path, c + "/Program Files/Microsoft Games/FS2002");
}

TEST(UnderWindowManager, ChartAndItsDialogsOpenAtTheTopLeftCorner) {
    if (!Under_Window_Manager()) {
        GTEST_SKIP() << No_Window_Manager;
    }
    Work_Dir dir("forms-corner");
    Program_Under_Test t;
    First_Start(t);
    Form4* chart = Open_Seattle(t);
    ASSERT_NE(chart, nullptr);
    Menu_Action(chart, "Options", "Preferences")->trigger();
    Menu_Action(chart, "About", "Quilmark v1.1")->trigger();
    for (QWidget* form :
         std::initializer_list<QWidget*>{chart, t.program->form5, t.program->form6}) {
        ASSERT_TRUE(Framed(form)) << form->windowTitle().toStdString();
        const QPoint corner = form->frameGeometry().topLeft();
        EXPECT_EQ(std::make_pair(corner.x(), corner.y()), std::make_pair(0, 0))
            << form->windowTitle().toStdString();
    }
}

TEST(UnderWindowManager, LinkFailureMessageOpensAboveTheChart) {
    if (!Under_Window_Manager()) {
        GTEST_SKIP() << No_Window_Manager;
    }
    Work_Dir dir("forms-above");
    Program_Under_Test t(true);
    Message_Box_Watcher watcher;
    bool over_the_chart = false;
    bool seen = false;
    watcher.look = [&](QMessageBox& box) {
        if (box.text().startsWith("This program couldn't connect") && t.program->form4) {
            over_the_chart = box.frameGeometry().intersects(t.program->form4->frameGeometry());
            seen = Seen_On_Screen(box);
        }
    };
    First_Start(t);
    ASSERT_NE(Open_Seattle(t), nullptr);
    EXPECT_TRUE(over_the_chart);
    EXPECT_TRUE(seen);
}

} // namespace quilmark
