// Form3, the airport chooser. One second after it appears its timer runs the scenery scan;
// the list then holds every airport, and typing narrows it to the entries that contain the
// typed text. GET AIRPORT fetches the chosen airport and its airspace and opens the chart.
#pragma once

#include <QMainWindow>
#include <QTimer>
#include <memory>
#include <optional>
#include <vector>

#include "scenery/scan_sequence.h"
#include "state/chooser_form.h"
#include "state/form_flow.h"

class QAction;
class QComboBox;
class QGroupBox;
class QLabel;
class QLineEdit;
class QProgressBar;
class QPushButton;

namespace quilmark {

struct Module1;
struct Form3_Data;

class Form3 : public QMainWindow, public Chooser_Form {
  public:
    Form3(Form_Flow& flow, Module1& module);
    ~Form3() override;

    void Form_Load();
    void Read_Sceneries_Paths_Timer();
    void Command3_Click(); // GET AIRPORT
    void Command2_Click(); // CLOSE_PROGRAM
    // "Rebuild airport list": the list made again from the scenery now, the old database
    // kept until the new one is written.
    void Rebuild_Airport_List();
    // The end of the program from this form: by its button or its close box.
    void Close_Program();
    // The chosen entry: its text if an entry of the list is chosen, else nothing.
    std::optional<std::string> Chosen_Entry() const;

    // Chooser_Form
    void Show_Status(const std::string& text) override;
    float Progress_Value() const override { return progress_value_; }
    void Set_Progress_Value(float value) override { progress_value_ = value; }
    void Set_Progress_Min(float value) override { progress_min_ = value; }
    void Set_Progress_Max(float value) override { progress_max_ = value; }
    void Redraw_Progress() override;
    void Show_Message(const std::string& text, const std::string& title,
                      Message_Icon icon) override;
    void Enable_Controls(bool enabled) override;
    void Stop_Scan_Timer() override { Read_Sceneries_Paths.stop(); }
    void Add_List_Entry(const std::string& text) override;
    void Repaint_Form() override;
    void Hand_Over_To_Chart() override;

    QGroupBox* Frame1 = nullptr;
    QLabel* Label1 = nullptr;
    QComboBox* Combo1 = nullptr;
    QLabel* Label2 = nullptr;
    QLineEdit* Text1 = nullptr;
    QProgressBar* ProgressBar1 = nullptr;
    QPushButton* Command3 = nullptr;
    QPushButton* Command2 = nullptr;
    QAction* rebuild_menu = nullptr;
    QTimer Read_Sceneries_Paths;
    std::unique_ptr<Form3_Data> data;

  protected:
    void closeEvent(QCloseEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    void Flush_List();
    void Run_Scan(Scan_Request request);
    Form_Flow& flow_;
    Module1& module_;
    float progress_min_ = 0;
    float progress_max_ = 100;
    float progress_value_ = 0;
    std::vector<std::string> pending_entries_;
    bool scan_started_ = false;
};

} // namespace quilmark
