// Form2, the settings wizard: which simulator, and where its main folder is. Finishing it
// writes the configuration file and opens the chooser; leaving it unfinished ends the
// program with no configuration file left behind.
#pragma once

#include "state/form_flow.h"
#include <QWidget>
#include <string>

class QComboBox;
class QGroupBox;
class QLabel;
class QLineEdit;
class QListWidget;
class QPushButton;
class QRadioButton;

namespace quilmark {

struct Module1;

class Form2 : public QWidget {
  public:
    Form2(Form_Flow& flow, Module1& module);

    // The drive and folder lists; Text1 always shows the folder they have chosen.
    void Drive1_Change();
    void Dir1_Change();
    // Moves Dir1 to a folder (a native path), as a double click in the list does.
    void Set_Dir1_Path(const std::string& native_folder);
    void Command1_Click();
    // The leaving, whichever way the form goes.
    void Form_Unload();

    bool setup_done = false;
    QGroupBox* Frame1 = nullptr;
    QLabel* Label1 = nullptr;
    QRadioButton* Option1 = nullptr;
    QRadioButton* Option2 = nullptr;
    QGroupBox* Frame2 = nullptr;
    QLabel* Label2 = nullptr;
    QComboBox* Drive1 = nullptr;
    QListWidget* Dir1 = nullptr;
    QLabel* Label4 = nullptr;
    QLineEdit* Text1 = nullptr;
    QLabel* Label3 = nullptr;
    QPushButton* Command1 = nullptr;

  protected:
    void closeEvent(QCloseEvent* event) override;

  private:
    void Fill_Dir1();
    Form_Flow& flow_;
    Module1& module_;
    std::string dir1_path_;
};

} // namespace quilmark
