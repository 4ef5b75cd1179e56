// Form5, the chart's options: which layers show, whether the chart follows the aircraft,
// and the altimeter's units. Each control writes its variable the moment it is clicked;
// the chart picks the change up at its next redraw.
#pragma once

#include <QWidget>

class QCheckBox;
class QGroupBox;
class QPushButton;
class QRadioButton;

namespace quilmark {

class Quilmark_Program;

class Form5 : public QWidget {
  public:
    explicit Form5(Quilmark_Program& program);
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
    Quilmark_Program& program_;
};

// Places a dialog at the top left corner of the screen, above all other windows, keeping
// its size.
void Put_On_Top_At_Corner(QWidget& form);

} // namespace quilmark
