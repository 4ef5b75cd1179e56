#include "shell/qt_program.h"

#include <QApplication>
#include <QMessageBox>
#include <QTimer>
#include <QWidget>

#include "dialogs/qt_form5.h"
#include "dialogs/qt_form6.h"
#include "link/net_bridge_transport.h"
#include "shell/qt_form1.h"
#include "shell/qt_form2.h"
#include "shell/qt_form3.h"
#include "shell/qt_widgets.h"
#include "state/module1.h"

namespace quilmark {

Program_Services Desktop_Services() {
    Program_Services services;
    services.show_message = [](QWidget* owner, const std::string& text, const std::string& title,
                               Message_Icon icon) {
        // Owned by its form, the box opens over it and the window manager keeps it above,
        // even above a form that stays above all other windows.
        QMessageBox box(owner);
        box.setWindowTitle(Ansi_To_QString(title));
        box.setText(Ansi_To_QString(text));
        box.setIcon(icon == Message_Icon::Critical      ? QMessageBox::Critical
                    : icon == Message_Icon::Exclamation ? QMessageBox::Warning
                                                        : QMessageBox::Information);
        box.setStandardButtons(QMessageBox::Ok);
        box.exec();
    };
    services.end_program = [] { QCoreApplication::exit(0); };
    services.make_link_transport = [] { return std::make_unique<Bridge_Transport>(); };
    return services;
}

Quilmark_Program::Quilmark_Program(Program_Services services)
    : services_(std::move(services)), module_(std::make_unique<Module1>()) {
    Use_Program_Font();
}

Quilmark_Program::~Quilmark_Program() {
    ended_ = true;
    delete form1;
    delete form2;
    delete form3;
    delete form4;
    delete form5;
    delete form6;
}

void Quilmark_Program::Start() {
    Show_Form(Form_Id::Form1);
}

QWidget* Quilmark_Program::Widget_Of(Form_Id form) const {
    switch (form) {
    case Form_Id::Form1:
        return form1;
    case Form_Id::Form2:
        return form2;
    case Form_Id::Form3:
        return form3;
    case Form_Id::Form4:
        return form4;
    case Form_Id::Form5:
        return form5;
    case Form_Id::Form6:
        return form6;
    }
    return nullptr;
}

void Quilmark_Program::Message(Form_Id owner, const std::string& text, const std::string& title,
                               Message_Icon icon) {
    if (services_.show_message) {
        services_.show_message(Widget_Of(owner), text, title, icon);
    }
}

template <class Form> void Quilmark_Program::Remove(Form*& form) {
    if (form == nullptr) {
        return;
    }
    Form* going = form;
    form = nullptr;
    going->hide();
    going->deleteLater();
    QTimer::singleShot(0, [this] { Check_Last_Form(); });
}

void Quilmark_Program::Check_Last_Form() {
    if (ended_) {
        return;
    }
    // The process ends by itself when its last form is gone.
    if (form1 == nullptr && form2 == nullptr && form3 == nullptr && form4 == nullptr &&
        form5 == nullptr && form6 == nullptr) {
        End_Program();
    }
}

void Quilmark_Program::Show_Form(Form_Id form) {
    Module1& m = *module_;
    switch (form) {
    case Form_Id::Form1:
        if (form1 == nullptr) {
            form1 = new Form1(*this, m);
        }
        form1->show();
        break;
    case Form_Id::Form2:
        if (form2 == nullptr) {
            form2 = new Form2(*this, m);
        }
        form2->show();
        break;
    case Form_Id::Form3:
        if (form3 == nullptr) {
            form3 = new Form3(*this, m);
            form3->show();
            form3->Form_Load();
            return;
        }
        form3->show();
        break;
    case Form_Id::Form4:
        if (form4 == nullptr) {
            form4 = new Form4(*this, m, services_.make_link_transport);
            form4->show();
            form4->Form_Load();
            // An options dialog left open across the change of airport shows the new
            // chart's.
            if (form5 != nullptr) {
                form5->Show_Variables();
            }
            return;
        }
        form4->show();
        break;
    case Form_Id::Form5:
        if (form5 == nullptr) {
            form5 = new Form5(*this, m);
        }
        form5->show();
        form5->raise();
        break;
    case Form_Id::Form6:
        if (form6 == nullptr) {
            form6 = new Form6(*this);
        }
        form6->show();
        form6->raise();
        break;
    }
}

void Quilmark_Program::Unload_Form(Form_Id form) {
    // Once the program has ended every form is gone; a close that comes after changes
    // nothing.
    if (ended_) {
        return;
    }
    switch (form) {
    case Form_Id::Form1:
        Remove(form1);
        break;
    case Form_Id::Form2:
        // The handler first, while the form is still up: an unfinished wizard's message
        // must be read before the program ends, and with the form gone the program would
        // end by itself as soon as the message box turned the event loop.
        if (form2 != nullptr) {
            form2->Form_Unload();
            Remove(form2);
        }
        break;
    case Form_Id::Form3:
        Remove(form3);
        break;
    case Form_Id::Form4:
        if (form4 != nullptr) {
            form4->Form_Unload();
            Remove(form4);
        }
        break;
    case Form_Id::Form5:
        Remove(form5);
        break;
    case Form_Id::Form6:
        Remove(form6);
        break;
    }
}

void Quilmark_Program::End_Program() {
    if (ended_) {
        return;
    }
    ended_ = true;
    for (QWidget* form :
         std::initializer_list<QWidget*>{form1, form2, form3, form4, form5, form6}) {
        if (form != nullptr) {
            form->hide();
            form->deleteLater();
        }
    }
    form1 = nullptr;
    form2 = nullptr;
    form3 = nullptr;
    form4 = nullptr;
    form5 = nullptr;
    form6 = nullptr;
    if (services_.end_program) {
        services_.end_program();
    }
}

} // namespace quilmark
