// Form6, the About box.
#pragma once

#include "state/form_flow.h"
#include <QWidget>

class QGroupBox;
class QLabel;
class QPlainTextEdit;
class QPushButton;

namespace quilmark {

class Form6 : public QWidget {
  public:
    explicit Form6(Form_Flow& flow);

    QLabel* Label1 = nullptr;
    QGroupBox* Frame1 = nullptr;
    QLabel* Label6 = nullptr;
    QPlainTextEdit* Text1 = nullptr;
    QPushButton* Command1 = nullptr;

  protected:
    void closeEvent(QCloseEvent* event) override;

  private:
    Form_Flow& flow_;
};

} // namespace quilmark
