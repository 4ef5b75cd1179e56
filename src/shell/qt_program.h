// The desktop program: six forms that follow each other on one user-interface thread, and
// the shared state they work on. A form exists while it is shown; unloading it removes its
// window, and showing it again loads it afresh. The process ends on the chooser's close, on
// an unfinished settings wizard, or when its last form is gone.
#pragma once

#include <functional>
#include <memory>
#include <string>

#include "shell/qt_form4.h"
#include "state/form_flow.h"

class QWidget;

namespace quilmark {

struct Module1;
class Form1;
class Form2;
class Form3;
class Form5;
class Form6;

// What the forms need of the platform beyond their own widgets; tests replace these.
struct Program_Services {
    // A modal message box with one OK button, above the form it belongs to (none before the
    // first form). Texts are Windows-1252.
    std::function<void(QWidget* owner, const std::string& text, const std::string& title,
                       Message_Icon icon)>
        show_message;
    // Ends the process at once.
    std::function<void()> end_program;
    // The way to the simulator's FSUIPC module.
    Link_Transport_Maker make_link_transport;
};

// Message boxes with QMessageBox, the end through QCoreApplication::exit, and the link
// through the bridge in the simulator's Wine prefix.
Program_Services Desktop_Services();

class Quilmark_Program final : public Form_Flow {
  public:
    explicit Quilmark_Program(Program_Services services);
    ~Quilmark_Program() override;
    Quilmark_Program(const Quilmark_Program&) = delete;
    Quilmark_Program& operator=(const Quilmark_Program&) = delete;

    // The process starts: Form1, the splash, is created and shown.
    void Start();

    void Show_Form(Form_Id form) override;
    void Unload_Form(Form_Id form) override;
    void Message(Form_Id owner, const std::string& text, const std::string& title,
                 Message_Icon icon) override;
    void End_Program() override;
    bool Ended() const { return ended_; }

    Module1& module() { return *module_; }

    Form1* form1 = nullptr;
    Form2* form2 = nullptr;
    Form3* form3 = nullptr;
    Form4* form4 = nullptr;
    Form5* form5 = nullptr;
    Form6* form6 = nullptr;

  private:
    QWidget* Widget_Of(Form_Id form) const;
    void Check_Last_Form();
    template <class Form> void Remove(Form*& form);

    Program_Services services_;
    std::unique_ptr<Module1> module_;
    bool ended_ = false;
};

} // namespace quilmark
