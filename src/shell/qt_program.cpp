#include "shell/qt_program.h"

#include <QApplication>
#include <QFont>
#include <QMessageBox>
#include <QString>
#include <QTimer>
#include <QWidget>

#include "chart/qt_form4.h"
#include "dialogs/qt_form5.h"
#include "dialogs/qt_form6.h"
#include "link/net_bridge_transport.h"
#include "platform/text1252.h"
#include "shell/qt_form1.h"
#include "shell/qt_form2.h"
#include "shell/qt_form3.h"
#include "state/module1.h"

namespace quilmark {

QString Ansi_To_QString(const std::string& ansi) {
    return QString::fromStdString(Ansi_To_Utf8(ansi));
}

std::string QString_To_Ansi(const QString& text) {
    return Utf8_To_Ansi(text.toStdString());
}

void Use_Program_Font() {
    QFont font(QStringLiteral("DejaVu Sans Condensed"));
    font.setStyleHint(QFont::SansSerif);
    font.setPointSize(8);
    QApplication::setFont(font);
}

void Fit_Width(QWidget* control) {
    const int wanted = control->sizeHint().width();
    if (wanted > control->width()) {
        control->resize(wanted, control->height());
    }
}

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
    Show_Form1();
}

void Quilmark_Program::Message(QWidget* owner, const std::string& text, const std::string& title,
                               Message_Icon icon) {
    if (services_.show_message) {
        services_.show_message(owner, text, title, icon);
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

void Quilmark_Program::Show_Form1() {
    if (form1 == nullptr) {
        form1 = new Form1(*this);
    }
    form1->show();
}

void Quilmark_Program::Show_Form2() {
    if (form2 == nullptr) {
        form2 = new Form2(*this);
    }
    form2->show();
}

void Quilmark_Program::Show_Form3() {
    if (form3 == nullptr) {
        form3 = new Form3(*this);
        form3->show();
        form3->Form_Load();
        return;
    }
    form3->show();
}

void Quilmark_Program::Show_Form4() {
    if (form4 == nullptr) {
        form4 = new Form4(*this);
        form4->show();
        form4->Form_Load();
        // An options dialog left open across the change of airport shows the new chart's.
        if (form5 != nullptr) {
            form5->Show_Variables();
        }
        return;
    }
    form4->show();
}

void Quilmark_Program::Show_Form5() {
    if (form5 == nullptr) {
        form5 = new Form5(*this);
    }
    form5->show();
    form5->raise();
}

void Quilmark_Program::Show_Form6() {
    if (form6 == nullptr) {
        form6 = new Form6(*this);
    }
    form6->show();
    form6->raise();
}

void Quilmark_Program::Unload_Form1() {
    Remove(form1);
}

void Quilmark_Program::Unload_Form2() {
    // The handler first, while the form is still up: an unfinished wizard's message must
    // be read before the program ends, and with the form gone the program would end by
    // itself as soon as the message box turned the event loop.
    if (form2 != nullptr) {
        form2->Form_Unload();
        Remove(form2);
    }
}

void Quilmark_Program::Unload_Form3() {
    Remove(form3);
}

void Quilmark_Program::Unload_Form4() {
    if (form4 != nullptr) {
        form4->Form_Unload();
        Remove(form4);
    }
}

void Quilmark_Program::Unload_Form5() {
    Remove(form5);
}
void Quilmark_Program::Unload_Form6() {
    Remove(form6);
}

void Quilmark_Program::Form_Closed(QWidget* form) {
    if (ended_) {
        return;
    }
    if (form == form1) {
        Unload_Form1();
    } else if (form == form2) {
        Unload_Form2();
    } else if (form == form3) {
        form3->Close_Program();
    } else if (form == form4) {
        Unload_Form4();
    } else if (form == form5) {
        Unload_Form5();
    } else if (form == form6) {
        Unload_Form6();
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
