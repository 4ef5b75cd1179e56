// Form5, the chart's options: which layers show, whether the chart follows the aircraft,
// and the altimeter's units. Each control writes its variable the moment it is clicked;
// the chart picks the change up at its next redraw.
#pragma once

#include "state/form_flow.h"
#include <QWidget>

class QCheckBox;
class QGroupBox;
class QPushButton;
class QRadioButton;

namespace quilmark {

struct Module1;

class Form5 : public QWidget {
  public:
    Form5(Form_Flow& flow, Module1& module);
    // The controls show the variables as they are: at the load, and when a new chart has
    // set them anew while the dialog stayed open.
    void Show_Variables();

    QGroupBox* Frame1 = nullptr;
    QCheckBox* Check1 = nullptr; // taxiway names
    QCheckBox* Check2 = nullptr; // taxiways
    QCheckBox* Check3 = nullptr; // ILS
    QCheckBox* Check4 = nullptr; // airspace
    QCheckBox* Check5 = nullptr; // gates and parkings
    QCheckBox* Check6 = nullptr; // follow the aircraft
    QGroupBox* Frame2 = nullptr;
    QRadioButton* Option1 = nullptr; // millibars
    QRadioButton* Option2 = nullptr; // inches of mercury
    QPushButton* Command1 = nullptr;

  protected:
    void closeEvent(QCloseEvent* event) override;

  private:
    Form_Flow& flow_;
    Module1& module_;
};

} // namespace quilmark
