// The desktop program: six forms that follow each other on one user-interface thread, and
// the shared state they work on. A form exists while it is shown; unloading it removes its
// window, and showing it again loads it afresh. The process ends on the chooser's close, on
// an unfinished settings wizard, or when its last form is gone.
#pragma once

#include <functional>
#include <memory>
#include <string>

#include "state/chooser_form.h"

class QWidget;
class QString;

namespace quilmark {

class Link_Transport;
struct Module1;
class Form1;
class Form2;
class Form3;
class Form4;
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
    std::function<std::unique_ptr<Link_Transport>()> make_link_transport;
};

// Message boxes with QMessageBox, the end through QCoreApplication::exit, and the link
// through the bridge in the simulator's Wine prefix.
Program_Services Desktop_Services();

class Quilmark_Program {
  public:
    explicit Quilmark_Program(Program_Services services);
    ~Quilmark_Program();
    Quilmark_Program(const Quilmark_Program&) = delete;
    Quilmark_Program& operator=(const Quilmark_Program&) = delete;

    // The process starts: Form1, the splash, is created and shown.
    void Start();

    void Show_Form1();
    void Show_Form2();
    void Show_Form3();
    void Show_Form4();
    void Show_Form5();
    void Show_Form6();
    // Unloading runs the form's unload handler and removes it.
    void Unload_Form1();
    void Unload_Form2();
    void Unload_Form3();
    void Unload_Form4();
    void Unload_Form5();
    void Unload_Form6();

    // An immediate stop: every form goes without its handlers, then the process ends.
    void End_Program();
    bool Ended() const { return ended_; }

    void Message(QWidget* owner, const std::string& text, const std::string& title,
                 Message_Icon icon);

    Module1& module() { return *module_; }
    const Program_Services& services() const { return services_; }

    Form1* form1 = nullptr;
    Form2* form2 = nullptr;
    Form3* form3 = nullptr;
    Form4* form4 = nullptr;
    Form5* form5 = nullptr;
    Form6* form6 = nullptr;

    // Called by a form whose window the user has closed, after its unload handler.
    void Form_Closed(QWidget* form);

  private:
    void Check_Last_Form();
    template <class Form> void Remove(Form*& form);

    Program_Services services_;
    std::unique_ptr<Module1> module_;
    bool ended_ = false;
};

// Twips, the forms' unit of layout, to pixels at 96 dots per inch.
constexpr int Twips(int twips) {
    return twips / 15;
}

// The forms' font: a narrow 8-point face, as near as this platform comes to the metrics the
// layouts in twips were made for.
void Use_Program_Font();
// Widens a label, check box or option button to its text where the layout is too narrow
// for this platform's font.
void Fit_Width(QWidget* control);

// Windows-1252 texts of the program on Qt widgets.
QString Ansi_To_QString(const std::string& ansi);
std::string QString_To_Ansi(const QString& text);

} // namespace quilmark
