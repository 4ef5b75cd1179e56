#include "shell/qt_form4.h"

#include <QCloseEvent>
#include <QLabel>
#include <QMenuBar>
#include <QMouseEvent>
#include <QPainter>
#include <QPushButton>
#include <stdexcept>

#include "chart/aircraft_overlay.h"
#include "chart/chart_sequence.h"
#include "chart/qt_back_buffer.h"
#include "link/link_transport.h"
#include "shell/qt_widgets.h"
#include "state/module1.h"

namespace quilmark {

namespace {

constexpr const char* Link_Open_Failed_Text =
    "This program couldn't connect to the FS2002. Anyway this program will still display the "
    "currently airport's chart.";
constexpr const char* Link_Read_Failed_Text =
    "Error while receiving data from FSUIPC. Anyway this program will still display the "
    "currently airport's chart.";
constexpr const char* Load_Failed_Text =
    "Your Microsoft Windows Version doesn't support the current API used by this program. "
    "The program will shutdown.";

// The chart's drawing area: the back buffer, and the clicks that centre the view.
class Chart_Area : public QWidget {
  public:
    Chart_Area(Form4& form, QWidget* parent) : QWidget(parent), form_(form) {
        setAttribute(Qt::WA_OpaquePaintEvent);
    }

  protected:
    void paintEvent(QPaintEvent*) override {
        QPainter p(this);
        p.fillRect(rect(), Qt::white);
        p.drawImage(0, 0, form_.back_buffer);
    }
    void mousePressEvent(QMouseEvent* event) override {
        form_.Form_MouseDown(event->button(), static_cast<int>(event->position().x()),
                             static_cast<int>(event->position().y()));
    }

  private:
    Form4& form_;
};

} // namespace

Form4::Form4(Form_Flow& flow, Module1& module, Link_Transport_Maker make_link_transport)
    : flow_(flow), module_(module), make_link_transport_(std::move(make_link_transport)) {
    setWindowTitle("Current Airport's Chart");
    setWindowFlags(Qt::Window | Qt::WindowMinimizeButtonHint | Qt::WindowCloseButtonHint |
                   Qt::WindowTitleHint | Qt::WindowStaysOnTopHint);
    chart_area = new Chart_Area(*this, this);
    setCentralWidget(chart_area);

    QMenu* go_to1 = menuBar()->addMenu("Change");
    QAction* airpt_place = go_to1->addAction("Airport");
    QMenu* op1 = menuBar()->addMenu("Options");
    QAction* pref1 = op1->addAction("Preferences");
    QMenu* abot2 = menuBar()->addMenu("About");
    QAction* quilmark_abot2 = abot2->addAction("Quilmark v1.1");
    connect(airpt_place, &QAction::triggered, this, [this] {
        flow_.Unload_Form(Form_Id::Form4);
        flow_.Show_Form(Form_Id::Form3);
    });
    connect(pref1, &QAction::triggered, this, [this] { flow_.Show_Form(Form_Id::Form5); });
    connect(quilmark_abot2, &QAction::triggered, this, [this] { flow_.Show_Form(Form_Id::Form6); });

    Label1 = new QLabel("Altimeter: 0", chart_area);
    Label1->setGeometry(Twips(120), Twips(120), Twips(1455), Twips(255));
    Label1->setAutoFillBackground(true); // the chart doesn't show through the reading
    Fit_Width(Label1);
    Command2 = new QPushButton("Zoom in", chart_area);
    Command2->setGeometry(Twips(120), Twips(2880), Twips(1095), Twips(375));
    Command3 = new QPushButton("Center", chart_area);
    Command3->setGeometry(Twips(1440), Twips(2880), Twips(1095), Twips(375));
    Command4 = new QPushButton("Zoom out", chart_area);
    Command4->setGeometry(Twips(2760), Twips(2880), Twips(1095), Twips(375));
    setTabOrder(Command2, Command3);
    setTabOrder(Command3, Command4);
    connect(Command2, &QPushButton::clicked, this, [this] { Command2_Click(); });
    connect(Command3, &QPushButton::clicked, this, [this] { Command3_Click(); });
    connect(Command4, &QPushButton::clicked, this, [this] { Command4_Click(); });

    // Client area 271 by 228 pixels, below the menu bar. The chart goes to the top left
    // corner before it first shows: a window manager places a new window as it first
    // maps it, and may take no notice of a move that comes just after.
    resize(Twips(4065), Twips(3420) + menuBar()->sizeHint().height());
    move(0, 0);
    Timer1.setInterval(1000);
    connect(&Timer1, &QTimer::timeout, this, [this] { Timer1_Timer(); });
}

Form4::~Form4() {
    Link_Close(link_);
}

void Form4::Take_Pixel_Size() {
    // The projection spreads the view over the form's outer size, frame and bars included.
    const QRect outer = frameGeometry();
    view.chart_px_width = outer.width();
    view.chart_px_height = outer.height();
}

void Form4::Redraw() {
    Redraw_Back_Buffer(back_buffer, sprites, view, module_);
    chart_area->repaint();
}

void Form4::Form_Load() {
    Module1& m = module_;
    try {
        m.fsuipc_connected = false;
        move(0, 0); // top left, above all other windows, size kept
        raise();
        transport_ = make_link_transport_ ? make_link_transport_() : nullptr;
        Link_Reset(link_);
        link_.transport = transport_.get();
        Link_Result result = Link_Result::Ok;
        m.fsuipc_connected = transport_ != nullptr && Link_Open(link_, Fsuipc_Fs2002, result);
        if (!m.fsuipc_connected) {
            flow_.Message(Form_Id::Form4, Link_Open_Failed_Text, Message_Title,
                          Message_Icon::Exclamation);
            Link_Close(link_);
            m.fsuipc_connected = false;
        }
        setWindowTitle(Ansi_To_QString(m.current_airport.name + " Chart"));
        Take_Pixel_Size();
        Open_Chart_View(view, m, view.chart_px_width, view.chart_px_height, [this] { Redraw(); });
        loaded_ = true;
        Timer1.start();
    } catch (const std::exception&) {
        flow_.Message(Form_Id::Form4, Load_Failed_Text, Message_Title, Message_Icon::Critical);
        flow_.End_Program();
    }
}

void Form4::Form_Unload() {
    Timer1.stop();
    Link_Close(link_);
    module_.fsuipc_connected = false;
}

void Form4::closeEvent(QCloseEvent* event) {
    event->ignore();
    flow_.Unload_Form(Form_Id::Form4);
}

void Form4::Form_Resize() {
    Timer1.stop();
    if (!isMinimized()) {
        // The old drawing stays until the next tick draws in the new size.
        Take_Pixel_Size();
        Timer1.start();
    }
}

void Form4::resizeEvent(QResizeEvent* event) {
    QMainWindow::resizeEvent(event);
    if (loaded_) {
        Form_Resize();
    }
}

void Form4::changeEvent(QEvent* event) {
    QMainWindow::changeEvent(event);
    if (loaded_ && event->type() == QEvent::WindowStateChange) {
        Form_Resize();
    }
}

void Form4::Center_Airport(double airpt_loc_x, double airpt_loc_y) {
    Timer1.stop();
    quilmark::Center_Airport(view, airpt_loc_x, airpt_loc_y, [this] { Redraw(); });
    Timer1.start();
}

void Form4::Form_MouseDown(Qt::MouseButton button, int x, int y) {
    if (button != Qt::LeftButton) {
        return;
    }
    const Geo_Point_Rec point = Pixel_To_Geo(view, x, y, chart_area->width(), chart_area->height());
    Center_Airport(point.lon, point.lat);
}

void Form4::Zoom(bool in) {
    Timer1.stop();
    if (in) {
        Zoom_In_View(view);
    } else {
        Zoom_Out_View(view);
    }
    Redraw();
    Timer1.start();
}

void Form4::Command2_Click() {
    Zoom(true);
}
void Form4::Command4_Click() {
    Zoom(false);
}

void Form4::Command3_Click() {
    const Airport_Rec& airport = module_.current_airport;
    Center_Airport(airport.lon, airport.lat);
}

void Form4::Timer1_Timer() {
    Module1& m = module_;
    if (m.fsuipc_connected) {
        Link_Result result = Link_Result::Ok;
        if (!Read_Aircraft(link_, m, result)) {
            flow_.Message(Form_Id::Form4, Link_Read_Failed_Text, Message_Title,
                          Message_Icon::Exclamation);
            Link_Close(link_);
            m.fsuipc_connected = false;
            return;
        }
        Label1->setText(QString::fromStdString(Altimeter_Text(m.altimeter_value)));
        Fit_Width(Label1);
        Label1->repaint();
    }
    Chart_Tick_Redraw(
        m, [this] { Redraw(); }, [this](double x, double y) { Center_Airport(x, y); });
}

} // namespace quilmark
