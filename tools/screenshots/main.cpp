// Walks the desktop program through its forms on the sample world and saves a picture of
// each: the splash, the wizard, the chooser with its list, and the chart of the sample
// world's major airport. Run under an X server (xvfb-run) by scripts/screenshots.sh.
#include <QApplication>
#include <QComboBox>
#include <QScreen>
#include <QTimer>
#include <QWidget>
#include <cmath>
#include <filesystem>
#include <iostream>

#include "chart/qt_form4.h"
#include "link/fake_module.h"
#include "shell/module1.h"
#include "shell/qt_form1.h"
#include "shell/qt_form2.h"
#include "shell/qt_form3.h"
#include "shell/qt_program.h"

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

} // namespace

int main(int argc, char** argv) {
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

    Program_Services services;
    services.show_message = [](QWidget*, const std::string& text, const std::string& title,
                               Message_Icon) { std::cout << "[" << title << "] " << text << "\n"; };
    services.end_program = [] {};
    // An aircraft on final for 16L, from a stand-in for the simulator's module.
    services.make_link_transport = [] {
        auto module = std::make_unique<Fake_Module_Transport>();
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
    bool ok = Save(program.form1, (out / "splash.png").string());
    program.form1->Timer1_Timer(); // the splash's three seconds
    Settle();
    Form2* wizard = program.form2;
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
    program.End_Program();
    return ok ? 0 : 1;
}
