// Form1, the splash: three seconds of the program's picture, then the wizard on a first
// start in this folder or the chooser on a later one.
#pragma once

#include "state/form_flow.h"
#include <QImage>
#include <QTimer>
#include <QWidget>

class QLabel;

namespace quilmark {

struct Module1;

class Form1 : public QWidget {
  public:
    Form1(Form_Flow& flow, Module1& module);

    // The splash timer's one tick.
    void Timer1_Timer();
    // The configuration file in the current directory decides what follows the splash.
    void Choose_First_Form();

    QTimer Timer1;
    QLabel* Label1 = nullptr;

  protected:
    void paintEvent(QPaintEvent* event) override;
    void closeEvent(QCloseEvent* event) override;

  private:
    Form_Flow& flow_;
    Module1& module_;
    QImage picture_;
};

// The splash picture, 320 by 240: an airport chart of the program's own drawing.
QImage Splash_Picture();

} // namespace quilmark
