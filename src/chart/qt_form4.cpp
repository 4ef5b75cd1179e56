#include "chart/qt_form4.h"

#include <QCloseEvent>
#include <QLabel>
#include <QMenuBar>
#include <QMouseEvent>
#include <QPainter>
#include <QPushButton>
#include <cmath>
#include <stdexcept>

#include "chart/aircraft_overlay.h"
#include "chart/chart_draw.h"
#include "chart/qt_surface.h"
#include "link/link_transport.h"
#include "platform/rounding.h"
#include "shell/qt_program.h"
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

Form4::Form4(Quilmark_Program& program) : program_(program) {
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
        program_.Unload_Form4();
        program_.Show_Form3();
    });
    connect(pref1, &QAction::triggered, this, [this] { program_.Show_Form5(); });
    connect(quilmark_abot2, &QAction::triggered, this, [this] { program_.Show_Form6(); });

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

void Redraw_Back_Buffer(QImage& back_buffer, Qt_Sprite_Cache& sprites, const Chart_View& view,
                        Module1& module) {
    const int width = std::max(1, view.chart_px_width);
    const int height = std::max(1, view.chart_px_height);
    // The back buffer is drawn over in place while its size holds: Cls paints all of it.
    if (back_buffer.size() != QSize(width, height)) {
        back_buffer = QImage(width, height, QImage::Format_RGB32);
    }
    QPainter painter(&back_buffer);
    Qt_Surface surface(painter, width, height, &sprites);
    Redraw_Chart(surface, view, module);
}

void Form4::Redraw() {
    Redraw_Back_Buffer(back_buffer, sprites, view, program_.module());
    chart_area->repaint();
}

void Form4::Form_Load() {
    Module1& m = program_.module();
    try {
        m.fsuipc_connected = false;
        move(0, 0); // top left, above all other windows, size kept
        raise();
        transport_ = program_.services().make_link_transport
                         ? program_.services().make_link_transport()
                         : nullptr;
        Link_Reset(link_);
        link_.transport = transport_.get();
        Link_Result result = Link_Result::Ok;
        m.fsuipc_connected = transport_ != nullptr && Link_Open(link_, Fsuipc_Fs2002, result);
        if (!m.fsuipc_connected) {
            program_.Message(this, Link_Open_Failed_Text, Message_Title, Message_Icon::Exclamation);
            Link_Close(link_);
            m.fsuipc_connected = false;
        }
        setWindowTitle(Ansi_To_QString(m.current_airport.name + " Chart"));
        Take_Pixel_Size();
        Open_Chart_View(view, m, view.chart_px_width, view.chart_px_height, [this] { Redraw(); });
        loaded_ = true;
        Timer1.start();
    } catch (const std::exception&) {
        program_.Message(this, Load_Failed_Text, Message_Title, Message_Icon::Critical);
        program_.End_Program();
    }
}

void Form4::Form_Unload() {
    Timer1.stop();
    Link_Close(link_);
    program_.module().fsuipc_connected = false;
}

void Form4::closeEvent(QCloseEvent* event) {
    event->ignore();
    program_.Form_Closed(this);
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
    // The client area is scaled to the view for the mouse; the point arrives as single
    // precision, as the form's scale gives it.
    const double w = std::max(1, chart_area->width());
    const double h = std::max(1, chart_area->height());
    const float lon =
        static_cast<float>(view.view_left + x * (view.view_right - view.view_left) / w);
    const float lat =
        static_cast<float>(view.view_top - y * (view.view_top - view.view_bottom) / h);
    Center_Airport(lon, lat);
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
    const Airport_Rec& airport = program_.module().current_airport;
    Center_Airport(airport.lon, airport.lat);
}

// The four values of the chart, each in an exchange of its own with the simulator.
bool Form4::Read_Aircraft() {
    Module1& m = program_.module();
    Link_Result result = Link_Result::Ok;
    int32_t lat_raw = 0, lon_raw = 0, heading_raw = 0;
    uint16_t altimeter_raw = 0;
    const auto read = [&](int32_t offset, int32_t size, void* into) {
        return Link_Read(link_, offset, size, into, result) && Link_Process(link_, result);
    };
    if (!read(0x0564, 4, &lat_raw)) {
        return false;
    }
    m.aircraft_lat = lat_raw * 90.0 / 10001750.0;
    if (!read(0x056C, 4, &lon_raw)) {
        return false;
    }
    m.aircraft_lon = lon_raw * 360.0 / 4294967296.0;
    if (!read(0x0580, 4, &heading_raw)) {
        return false;
    }
    m.aircraft_heading = To_I16(heading_raw * 360.0 / 4294967296.0);
    if (!read(0x0EC6, 2, &altimeter_raw)) {
        return false;
    }
    m.altimeter_value = Altimeter_Value(altimeter_raw, m.altimeter_units);
    return true;
}

void Form4::Timer1_Timer() {
    Module1& m = program_.module();
    if (m.fsuipc_connected) {
        if (!Read_Aircraft()) {
            program_.Message(this, Link_Read_Failed_Text, Message_Title, Message_Icon::Exclamation);
            Link_Close(link_);
            m.fsuipc_connected = false;
            return;
        }
        Label1->setText(QString::fromStdString(Altimeter_Text(m.altimeter_value)));
        Fit_Width(Label1);
        Label1->repaint();
    }
    if (m.follow_aircraft && m.fsuipc_connected) {
        Center_Airport(m.aircraft_lon, m.aircraft_lat);
    } else {
        Redraw();
    }
}

} // namespace quilmark
