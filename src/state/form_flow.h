// The flow between the desktop program's six forms, as the forms ask for it. The program
// implements it and owns the forms; a form calls it to show or unload a form (itself or
// another), to show a message box, or to end the program, and never calls another form.
#pragma once

#include <string>

#include "state/chooser_form.h"

namespace quilmark {

enum class Form_Id { Form1, Form2, Form3, Form4, Form5, Form6 };

class Form_Flow {
  public:
    virtual ~Form_Flow() = default;
    // Shows the form, loading it first (and running its load handler) if it isn't loaded.
    virtual void Show_Form(Form_Id form) = 0;
    // Runs the form's unload handler, if it has one, and removes the form; showing it
    // again loads it afresh. Nothing if it isn't loaded.
    virtual void Unload_Form(Form_Id form) = 0;
    // A modal message box with one OK button, above the form that shows it; returns when
    // the user has pressed OK. Texts are Windows-1252.
    virtual void Message(Form_Id owner, const std::string& text, const std::string& title,
                         Message_Icon icon) = 0;
    // An immediate stop: every form goes without its handlers, then the process ends.
    virtual void End_Program() = 0;
};

} // namespace quilmark
