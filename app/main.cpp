// quilmark: the desktop program. It starts with the splash; everything after that runs in
// the forms' timers and event handlers.
#include <QApplication>

#include "shell/qt_program.h"

int main(int argc, char** argv) {
    using namespace quilmark;
    QApplication app(argc, argv);
    // The program ends by itself when its last form is gone, not when a window closes
    // during a hand-over from one form to the next.
    QApplication::setQuitOnLastWindowClosed(false);
    Quilmark_Program program(Desktop_Services());
    program.Start();
    return QApplication::exec();
}
