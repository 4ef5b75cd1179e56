#include "shell/qt_widgets.h"

#include <QApplication>
#include <QFont>
#include <QString>
#include <QWidget>

#include "platform/text1252.h"

namespace quilmark {

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

void Put_On_Top_At_Corner(QWidget& form) {
    form.setWindowFlag(Qt::WindowStaysOnTopHint, true);
    form.move(0, 0);
}

QString Ansi_To_QString(const std::string& ansi) {
    return QString::fromStdString(Ansi_To_Utf8(ansi));
}

std::string QString_To_Ansi(const QString& text) {
    return Utf8_To_Ansi(text.toStdString());
}

} // namespace quilmark
