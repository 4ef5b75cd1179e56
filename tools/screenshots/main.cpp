// Walks the desktop program through its forms on the sample world and saves a picture of
// each: the splash, the wizard (also finding a simulator in a Wine prefix of its own), the
// chooser with its list, the chart of the sample world's major airport, the same window
// in the diagram style by day and by night, its About box, the message of a chart that
// can't reach the simulator, above that chart, and the notice of a chooser that finds the
// scenery changed since its list was made. The diagram's printed page goes to the work
// folder as chart-print.pdf. Run under an X server with a window manager by
// scripts/screenshots.sh.
#include <QApplication>
#include <QComboBox>
#include <QListWidget>
#include <QPrinter>
#include <QScreen>
#include <QTimer>
#include <QWidget>
#include <cmath>
#include <filesystem>
#include <iostream>

#include "dialogs/qt_form6.h"
#include "platform/native_paths.h"
#include "scenery/scenery_fingerprint.h"
#include "shell/qt_form1.h"
#include "shell/qt_form2.h"
#include "shell/qt_form3.h"
#include "shell/qt_form4.h"
#include "shell/qt_program.h"
#include "state/module1.h"
#include "support/fake_module.h"

namespace quilmark {

namespace {

void Settle(int ms = 300) {
    QTimer wait;
    wait.setSingleShot(true);
    wait.start(ms);
    while (wait.isActive()) {
        QApplication::processEvents(QEventLoop::AllEvents, 50);
    }
}

bool Save(QWidget* form, const std::string& path) {
    Settle();
    // The whole window with its frame as the screen shows it, where the platform can.
    QScreen* screen = form->screen();
    QPixmap picture = screen != nullptr ? screen->grabWindow(form->winId()) : QPixmap();
    if (picture.isNull()) {
        picture = form->grab();
    }
    bool ok = picture.save(QString::fromStdString(path));
    std::cout << (ok ? "wrote " : "could not write ") << path << "\n";
    return ok;
}

// The part of the screen that holds all the given windows, frames included.
bool Save_Screen(std::initializer_list<const QWidget*> forms, const std::string& path) {
    QRect area;
    for (const QWidget* form : forms) {
        area |= form->frameGeometry();
    }
    QPixmap picture = QGuiApplication::primaryScreen()->grabWindow(0, area.x(), area.y(),
                                                                   area.width(), area.height());
    bool ok = picture.save(QString::fromStdString(path));
    std::cout << (ok ? "wrote " : "could not write ") << path << "\n";
    return ok;
}

// A home folder with FS2002 installed in a Wine prefix of its own, as many pilots keep it.
std::string Make_Home_With_Prefix(const std::filesystem::path& home) {
    const std::filesystem::path c = home / ".wine-fs2002/drive_c";
    for (const char* folder : {"Program Files/Microsoft Games/FS2002/Scenery",
                               "Program Files/Common Files", "users/pilot", "windows"}) {
        std::filesystem::create_directories(c / folder);
    }
    return (c / "Program Files/Microsoft Games").string();
}

// The work folder's fingerprint as if one airport file had since been replaced and another
// removed, so that the next chooser tells of it; the simulator's folder stays untouched.
void Age_Fingerprint() {
    std::optional<std::string> bytes = Read_Whole_File(Fingerprint_File_Name, 1 << 20);
    std::optional<Scenery_Fingerprint_Rec> f =
        bytes ? Decode_Scenery_Fingerprint(*bytes) : std::nullopt;
    if (f && !f->bgl_files.empty()) {
        f->bgl_files.front().time -= 1;
        f->bgl_files.push_back({f->bgl_files.back().path + ".old.bgl", 1, 0});
        Write_File_Replacing(Fingerprint_File_Name, Encode_Scenery_Fingerprint(*f));
    }
}

} // namespace

} // namespace quilmark

int main(int argc, char** argv) {
    using namespace quilmark;
    if (argc != 4) {
        std::cerr << "usage: quilmark-screenshots FS_FOLDER WORK_FOLDER OUT_FOLDER\n";
        return 2;
    }
    QApplication app(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    const std::string fs_folder = argv[1];
    const std::filesystem::path out = std::filesystem::absolute(argv[3]);
    std::filesystem::create_directories(out);
    std::filesystem::remove_all(argv[2]);
    std::filesystem::create_directories(argv[2]);
    std::filesystem::current_path(argv[2]);

    const std::string prefix_games = Make_Home_With_Prefix(std::filesystem::absolute("home"));
    qputenv("HOME", std::filesystem::absolute("home").string().c_str());

    // Message boxes are told on the terminal, except one that is to be seen: that one opens
    // as the program opens it, is pictured with its form, and is answered.
    Program_Services services;
    std::string pictured_message;
    std::string pictured_file = "chart-message.png";
    bool ok = true;
    services.show_message = [&](QWidget* owner, const std::string& text, const std::string& title,
                                Message_Icon icon) {
        std::cout << "[" << title << "] " << text << "\n";
        if (pictured_message.empty() || text.find(pictured_message) != 0) {
            return;
        }
        pictured_message.clear();
        QTimer::singleShot(1000, [&, owner] {
            QWidget* box = QApplication::activeModalWidget();
            if (box != nullptr) {
                ok = Save_Screen({owner, box}, (out / pictured_file).string()) && ok;
                box->close();
            }
        });
        Desktop_Services().show_message(owner, text, title, icon);
    };
    services.end_program = [] {};
    // An aircraft on final for 16L, from a stand-in for the simulator's module; later a
    // simulator that isn't running.
    bool simulator_running = true;
    services.make_link_transport = [&simulator_running] {
        auto module = std::make_unique<Fake_Module_Transport>();
        module->main_window = simulator_running;
        module->fallback_window = simulator_running;
        module->space.Set_U32(0x0564, static_cast<uint32_t>(std::lround(47.4560 * 10001750 / 90)));
        module->space.Set_U32(0x056C,
                              static_cast<uint32_t>(std::llround(-122.3080 * 4294967296.0 / 360)));
        module->space.Set_U32(0x0580,
                              static_cast<uint32_t>(std::llround(179.9 * 4294967296.0 / 360)));
        module->space.Set_U16(0x0EC6, 16211); // 1013.2 millibars in sixteenths
        return std::unique_ptr<Link_Transport>(std::move(module));
    };
    Quilmark_Program program(services);

    program.Start();
    ok = Save(program.form1, (out / "splash.png").string()) && ok;
    program.form1->Timer1_Timer(); // the splash's three seconds
    Settle();
    Form2* wizard = program.form2;
    // The wizard on the prefix's drive C:, at the simulator's folder.
    wizard->Set_Dir1_Path(prefix_games);
    wizard->Dir1->setCurrentRow(wizard->Dir1->count() - 1);
    ok = Save(wizard, (out / "wizard-prefix.png").string()) && ok;
    wizard->Drive1->setCurrentIndex(wizard->Drive1->count() - 1); // the root, "/"
    wizard->Set_Dir1_Path(fs_folder);
    ok = Save(wizard, (out / "wizard.png").string()) && ok;
    wizard->Command1_Click();
    Settle();
    Form3* chooser = program.form3;
    chooser->Read_Sceneries_Paths_Timer();
    chooser->Combo1->setCurrentIndex(chooser->Combo1->findText("KSEA (SEATTLE-TACOMA INTL)"));
    ok = Save(chooser, (out / "chooser.png").string()) && ok;
    chooser->Command3_Click();
    Settle();
    Form4* chart = program.form4;
    chart->resize(900, 700);
    Settle();
    for (int i = 0; i < 5; ++i) {
        chart->Command2_Click(); // to level 14
    }
    program.module().follow_aircraft = false;
    chart->Center_Airport(-122.3105, 47.4570); // the north end: the ILS of 16L and 16R
    chart->Timer1_Timer(); // one poll of the simulator: the aircraft and the altimeter
    ok = Save(chart, (out / "chart.png").string()) && ok;
    chart->Set_Style(Chart_Style::Diagram);
    ok = Save(chart, (out / "chart-diagram.png").string()) && ok;
    chart->Set_Night(true);
    ok = Save(chart, (out / "chart-diagram-night.png").string()) && ok;
    chart->Set_Night(false);
    QPrinter printer(QPrinter::HighResolution);
    printer.setOutputFormat(QPrinter::PdfFormat);
    printer.setPageOrientation(QPageLayout::Landscape); // as Print... turns it for this window
    printer.setOutputFileName(QStringLiteral("chart-print.pdf")); // a PDF tells its time
    chart->Print_On(printer);
    std::cout << "printed chart-print.pdf in the work folder\n";
    chart->Set_Style(Chart_Style::Classic);
    program.Show_Form(Form_Id::Form6);
    ok = Save(program.form6, (out / "about.png").string()) && ok;
    program.Unload_Form(Form_Id::Form6);

    // Another airport, with the simulator gone: the message opens above the new chart.
    program.Unload_Form(Form_Id::Form4);
    program.Show_Form(Form_Id::Form3);
    Settle();
    program.form3->Read_Sceneries_Paths_Timer();
    program.form3->Combo1->setCurrentIndex(
        program.form3->Combo1->findText("KBFI (BOEING FLD KING CO INTL)"));
    simulator_running = false;
    pictured_message = "This program couldn't connect";
    program.form3->Command3_Click();
    Settle();

    // Back to the chooser after the scenery has changed: the notice above it.
    program.Unload_Form(Form_Id::Form4);
    Age_Fingerprint();
    program.Show_Form(Form_Id::Form3);
    Settle();
    pictured_message = "The scenery has changed";
    pictured_file = "scenery-changed.png";
    program.form3->Read_Sceneries_Paths_Timer();
    Settle();
    program.End_Program();
    return ok ? 0 : 1;
}
