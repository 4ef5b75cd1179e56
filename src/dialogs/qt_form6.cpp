#include "dialogs/qt_form6.h"

#include <QCloseEvent>
#include <QGroupBox>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>

#include "shell/qt_widgets.h"

namespace quilmark {

Form6::Form6(Form_Flow& flow) : flow_(flow) {
    setWindowTitle("About Quilmark v1.1");
    setFixedSize(Twips(5115), Twips(5550));
    Label1 = new QLabel("QUILMARK VERSION 1.1", this);
    Label1->setGeometry(Twips(120), Twips(120), Twips(4815), Twips(855));
    Label1->setAlignment(Qt::AlignCenter);
    QFont title = Label1->font();
    title.setBold(true);
    title.setPointSize(18);
    Label1->setFont(title);

    Frame1 = new QGroupBox("Credits", this);
    Frame1->setGeometry(Twips(120), Twips(1080), Twips(4815), Twips(3735));
    QFont frame_font = Frame1->font();
    frame_font.setBold(true);
    frame_font.setPointSize(12);
    Frame1->setFont(frame_font);
    // The labels inside keep the form's font. A font taken from font() as it stands sets
    // nothing of its own, so that the labels would inherit the frame's; so weight and
    // size are set explicitly.
    QFont plain = font();
    plain.setWeight(QFont::Normal);
    plain.setPointSizeF(font().pointSizeF());
    auto* made =
        new QLabel("Airport charts from the scenery of Microsoft Flight Simulator 2002.", Frame1);
    made->setFont(plain);
    made->setWordWrap(true);
    made->setGeometry(Twips(240), Twips(360), Twips(4335), Twips(855));
    Label6 = new QLabel("Special Thanks To:", Frame1);
    Label6->setFont(plain);
    Label6->setGeometry(Twips(240), Twips(1320), Twips(1455), Twips(255));
    Fit_Width(Label6);
    Text1 = new QPlainTextEdit(Frame1);
    Text1->setFont(plain);
    Text1->setGeometry(Twips(240), Twips(1560), Twips(4335), Twips(735));
    Text1->setReadOnly(true);
    Text1->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    QPalette inactive = Text1->palette();
    inactive.setColor(QPalette::Base, palette().color(QPalette::Inactive, QPalette::Window));
    Text1->setPalette(inactive);
    Text1->setPlainText("Pete Dowson, for the FSUIPC module that lets programs talk to the "
                        "simulator.\nThe flight simulation community, for years of scenery "
                        "and for sharing what they learned about it.\nEvery pilot who flew "
                        "with an early version and told us what was missing.");

    Command1 = new QPushButton("Ok", this);
    Command1->setGeometry(Twips(3360), Twips(4920), Twips(1575), Twips(495));
    connect(Command1, &QPushButton::clicked, this, [this] { flow_.Unload_Form(Form_Id::Form6); });
    Put_On_Top_At_Corner(*this);
}

void Form6::closeEvent(QCloseEvent* event) {
    event->ignore();
    flow_.Unload_Form(Form_Id::Form6);
}

} // namespace quilmark
