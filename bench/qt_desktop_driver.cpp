// quilmark-bench-desktop "ENTRY": one later start of the desktop program in the current
// folder (its configuration file and database file made by an earlier run), with the real
// forms on the X server of the environment, timed. It prints the monotonic clock in
// nanoseconds at three moments, one a line:
//
//   list_filled NS   the chooser's scan handler has returned, every airport in the list
//   click NS         GET AIRPORT is clicked, with ENTRY chosen in the list
//   chart NS         the chart's drawing area has ended its first paint after the click
//
// and then "entries N" and "airspaces N". The designed waits are cut short: the splash's
// three seconds and the chooser's one second before its scan each end at the form's first
// paint, so that what remains is the work the user waits for. The chart's first timer tick,
// a second after it opens, is not waited for: the chart is drawn as the form loads.
//
// The simulator is the tests' stand-in for the FSUIPC module, running, so no message box
// interrupts the chart's opening; a message is an error here.
#include <time.h>

#include <QApplication>
#include <QComboBox>
#include <QElapsedTimer>
#include <QEvent>
#include <QPushButton>
#include <QTimer>
#include <cstdio>
#include <functional>
#include <iostream>
#include <memory>

#include "shell/qt_form1.h"
#include "shell/qt_form3.h"
#include "shell/qt_form4.h"
#include "shell/qt_program.h"
#include "state/module1.h"
#include "support/fake_module.h"

using namespace quilmark;

namespace {

int64_t Now_Ns() {
    timespec t{};
    clock_gettime(CLOCK_MONOTONIC, &t);
    return static_cast<int64_t>(t.tv_sec) * 1000000000 + t.tv_nsec;
}

// Notes the end of the first paint of a widget, once that widget exists: the widget is
// asked each time a paint event passes through the application.
class Paint_Watch : public QObject {
  public:
    std::function<QWidget*()> target;
    int64_t painted_ns = 0;

    void Watch(std::function<QWidget*()> which) {
        target = std::move(which);
        painted_ns = 0;
    }

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() != QEvent::Paint || painted_ns != 0 || !target || watched != target()) {
            return false;
        }
        // The widget paints now, so that the time taken is that of the paint's end; the
        // event then goes no further.
        watched->event(event);
        painted_ns = Now_Ns();
        return true;
    }
};

// Runs the event loop until the stamp is set; false after the time limit.
bool Run_Until_Set(const int64_t& stamp, int limit_ms = 30000) {
    QTimer wake; // the loop wakes at least this often to look at the time
    wake.start(50);
    QElapsedTimer elapsed;
    elapsed.start();
    while (stamp == 0 && elapsed.elapsed() < limit_ms) {
        QApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    return stamp != 0;
}

void Settle(int ms) {
    QElapsedTimer elapsed;
    elapsed.start();
    while (elapsed.elapsed() < ms) {
        QApplication::processEvents(QEventLoop::AllEvents, 20);
    }
}

int Fail(const char* what) {
    std::cerr << "quilmark-bench-desktop: " << what << "\n";
    return 1;
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::cerr << "usage: quilmark-bench-desktop \"ENTRY\"\n";
        return 2;
    }
    QApplication app(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    const QString entry = QString::fromUtf8(argv[1]);

    int messages = 0;
    Program_Services services;
    services.show_message = [&messages](QWidget*, const std::string& text, const std::string&,
                                        Message_Icon) {
        std::cerr << "message: " << text << "\n";
        ++messages;
    };
    services.end_program = [] {};
    services.make_link_transport = [] {
        return std::unique_ptr<Link_Transport>(std::make_unique<Fake_Module_Transport>());
    };
    Quilmark_Program program(services);
    Paint_Watch paints;
    app.installEventFilter(&paints);

    paints.Watch([&program] { return program.form1; });
    program.Start();
    if (!Run_Until_Set(paints.painted_ns)) {
        return Fail("the splash never painted");
    }
    program.form1->Timer1_Timer();
    if (program.form3 == nullptr) {
        return Fail("no chooser after the splash: no configuration file here?");
    }
    paints.Watch([&program] { return program.form3; });
    if (!Run_Until_Set(paints.painted_ns)) {
        return Fail("the chooser never painted");
    }
    Form3* chooser = program.form3;
    chooser->Read_Sceneries_Paths_Timer();
    const int64_t list_filled = Now_Ns();
    const int entries = chooser->Combo1->count();

    // The pilot picks the airport: by then the chooser has long painted its new state.
    const int index = chooser->Combo1->findText(entry);
    if (index < 0 || !chooser->Command3->isEnabled()) {
        return Fail("the entry is not in the list");
    }
    chooser->Combo1->setCurrentIndex(index);
    Settle(300);

    paints.Watch([&program]() -> QWidget* {
        // The drawing area once it shows the chart drawn as the form loaded.
        Form4* chart = program.form4;
        return chart != nullptr && !chart->back_buffer.isNull() ? chart->chart_area : nullptr;
    });
    const int64_t click = Now_Ns();
    chooser->Command3->click();
    if (!Run_Until_Set(paints.painted_ns)) {
        return Fail("the chart never painted");
    }
    std::printf("list_filled %lld\nclick %lld\nchart %lld\nentries %d\nairspaces %d\n",
                static_cast<long long>(list_filled), static_cast<long long>(click),
                static_cast<long long>(paints.painted_ns), entries,
                program.module().airspace_count);
    std::fflush(stdout);
    program.End_Program();
    return messages == 0 ? 0 : Fail("a message box would have opened");
}
