// Form6, the About box.
#pragma once

#include <QWidget>

class QGroupBox;
class QLabel;
class QPlainTextEdit;
class QPushButton;

namespace quilmark {

class Quilmark_Program;

class Form6 : public QWidget {
  public:
    explicit Form6(Quilmark_Program& program);

    QLabel* Label1 = nullptr;
    QGroupBox* Frame1 = nullptr;
    QLabel* Label6 = nullptr;
    QPlainTextEdit* Text1 = nullptr;
    QPushButton* Command1 = nullptr;

  protected:
    void closeEvent(QCloseEvent* event) override;

  private:
    Quilmark_Program& program_;
};

} // namespace quilmark
