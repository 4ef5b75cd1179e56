#include "shell/qt_form1.h"

#include <QCloseEvent>
#include <QLabel>
#include <QPainter>
#include <QPainterPath>
#include <filesystem>

#include "scenery/config_file.h"
#include "shell/qt_widgets.h"
#include "state/module1.h"

namespace quilmark {

QImage Splash_Picture() {
    QImage image(320, 240, QImage::Format_RGB32);
    QPainter p(&image);
    p.setRenderHint(QPainter::Antialiasing);
    QLinearGradient sky(0, 0, 0, 240);
    sky.setColorAt(0, QColor(18, 42, 78));
    sky.setColorAt(1, QColor(46, 96, 140));
    p.fillRect(image.rect(), sky);
    // Three parallel runways with their numbers, taxiways and a terminal, as on a chart.
    p.save();
    p.translate(160, 150);
    p.rotate(-20);
    p.setPen(QPen(QColor(120, 200, 120), 2));
    for (int i = 0; i < 6; ++i) {
        p.drawLine(-120 + 40 * i, -60, -120 + 40 * i, 60);
    }
    p.setPen(Qt::NoPen);
    p.setBrush(QColor(235, 235, 235));
    for (int x : {-70, -20, 30}) {
        p.drawRect(QRectF(x, -80, 9, 160));
    }
    p.setBrush(QColor(255, 214, 92));
    p.drawRoundedRect(QRectF(60, -40, 40, 80), 6, 6);
    p.setPen(QPen(QColor(255, 214, 92), 1.5));
    p.setBrush(Qt::NoBrush);
    p.drawEllipse(QPointF(0, 0), 110, 110);
    p.restore();
    // A compass rose in the corner.
    p.setPen(QPen(QColor(200, 220, 255), 1.5));
    p.drawEllipse(QPointF(270, 190), 28, 28);
    QPainterPath north;
    north.moveTo(270, 160);
    north.lineTo(276, 190);
    north.lineTo(264, 190);
    north.closeSubpath();
    p.fillPath(north, QColor(230, 80, 60));
    p.end();
    return image;
}

Form1::Form1(Form_Flow& flow, Module1& module)
    : flow_(flow), module_(module), picture_(Splash_Picture()) {
    setWindowTitle("Quilmark v1.1");
    setFixedSize(Twips(4680), Twips(3555));
    Label1 = new QLabel("QUILMARK VERSION 1.1", this);
    Label1->setGeometry(Twips(120), Twips(120), Twips(4335), Twips(855));
    Label1->setAlignment(Qt::AlignCenter);
    Label1->setAttribute(Qt::WA_TranslucentBackground);
    QFont font = Label1->font();
    font.setBold(true);
    font.setPointSize(18);
    Label1->setFont(font);
    Label1->setStyleSheet("color: white; background: transparent;");
    Timer1.setInterval(3000);
    Timer1.setSingleShot(true);
    connect(&Timer1, &QTimer::timeout, this, [this] { Timer1_Timer(); });
    Timer1.start();
}

void Form1::paintEvent(QPaintEvent*) {
    QPainter p(this);
    p.drawImage(rect(), picture_);
}

void Form1::closeEvent(QCloseEvent* event) {
    event->ignore();
    flow_.Unload_Form(Form_Id::Form1);
}

void Form1::Timer1_Timer() {
    Timer1.stop();
    Choose_First_Form();
}

void Form1::Choose_First_Form() {
    std::error_code error;
    if (!std::filesystem::is_regular_file(Config_File_Name, error)) {
        flow_.Unload_Form(Form_Id::Form1);
        flow_.Show_Form(Form_Id::Form2);
        return;
    }
    Read_Config_File(module_, Config_File_Name);
    flow_.Unload_Form(Form_Id::Form1);
    flow_.Show_Form(Form_Id::Form3);
}

} // namespace quilmark
