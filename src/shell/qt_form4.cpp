#include "shell/qt_form4.h"

#include <QActionGroup>
#include <QCloseEvent>
#include <QContextMenuEvent>
#include <QFileDialog>
#include <QFileInfo>
#include <QKeyEvent>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QMouseEvent>
#include <QPainter>
#include <QPrintDialog>
#include <QPrinter>
#include <QPushButton>
#include <QWheelEvent>
#include <cmath>
#include <stdexcept>

#include "chart/aircraft_overlay.h"
#include "chart/chart_draw.h"
#include "chart/chart_sequence.h"
#include "chart/diagram_frame.h"
#include "chart/diagram_layout.h"
#include "chart/diagram_session.h"
#include "chart/qt_back_buffer.h"
#include "chart/qt_export.h"
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

// A notch of a mouse wheel, in the eighths of a degree that wheel events count.
constexpr double Wheel_Notch = 120;
// The buttons zoom the diagram by as much as a level of the classic chart.
constexpr double Diagram_Button_Zoom = 2;

// The chart's drawing area: the back buffer, and the clicks that centre the view; in the
// diagram style the wheel, drags and double clicks.
class Chart_Area : public QWidget {
  public:
    Chart_Area(Form4& form, QWidget* parent) : QWidget(parent), form_(form) {
        setAttribute(Qt::WA_OpaquePaintEvent);
    }

  protected:
    void paintEvent(QPaintEvent*) override {
        QPainter p(this);
        p.fillRect(rect(), Qt::white);
        if (Diagram()) {
            p.fillRect(0, 0, width(), Form4::Diagram_Top, palette().window());
            p.drawImage(0, Form4::Diagram_Top, form_.diagram_buffer);
            return;
        }
        p.drawImage(0, 0, form_.back_buffer);
    }
    void mousePressEvent(QMouseEvent* event) override {
        if (Diagram()) {
            dragging_ = event->button() == Qt::LeftButton && On_Diagram(event->position());
            last_ = event->position();
            return;
        }
        form_.Form_MouseDown(event->button(), static_cast<int>(event->position().x()),
                             static_cast<int>(event->position().y()));
    }
    void mouseMoveEvent(QMouseEvent* event) override {
        if (Diagram() && dragging_ && (event->buttons() & Qt::LeftButton)) {
            const QPointF moved = event->position() - last_;
            last_ = event->position();
            form_.Diagram_Pan(moved.x(), moved.y());
        }
    }
    void mouseReleaseEvent(QMouseEvent* event) override {
        if (event->button() == Qt::LeftButton) {
            dragging_ = false;
        }
    }
    void mouseDoubleClickEvent(QMouseEvent* event) override {
        if (!Diagram()) {
            mousePressEvent(event); // a double click is two clicks
            return;
        }
        if (event->button() == Qt::LeftButton && On_Diagram(event->position())) {
            form_.Diagram_Center_At(event->position().x(),
                                    event->position().y() - Form4::Diagram_Top);
        }
    }
    void wheelEvent(QWheelEvent* event) override {
        if (!Diagram()) {
            event->ignore();
            return;
        }
        const double notches = event->angleDelta().y() / Wheel_Notch;
        form_.Diagram_Zoom(std::pow(Diagram_Zoom_Step, notches), event->position().x(),
                           std::max(0.0, event->position().y() - Form4::Diagram_Top));
    }
    void resizeEvent(QResizeEvent* event) override {
        QWidget::resizeEvent(event);
        if (Diagram()) {
            form_.Diagram_Resize(width(), height() - Form4::Diagram_Top);
        }
    }
    void contextMenuEvent(QContextMenuEvent* event) override {
        form_.chart_menu->popup(event->globalPos());
    }

  private:
    bool Diagram() const { return form_.style == Chart_Style::Diagram; }
    static bool On_Diagram(QPointF at) { return at.y() >= Form4::Diagram_Top; }
    Form4& form_;
    bool dragging_ = false;
    QPointF last_;
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
    Label1->setAutoFillBackground(true); // the chart doesn't show through the reading
    Command2 = new QPushButton("Zoom in", chart_area);
    Command3 = new QPushButton("Center", chart_area);
    Command4 = new QPushButton("Zoom out", chart_area);
    Place_Controls();
    setTabOrder(Command2, Command3);
    setTabOrder(Command3, Command4);
    connect(Command2, &QPushButton::clicked, this, [this] { Command2_Click(); });
    connect(Command3, &QPushButton::clicked, this, [this] { Command3_Click(); });
    connect(Command4, &QPushButton::clicked, this, [this] { Command4_Click(); });

    // The chart menu: after the three menus of the menu bar, which keep their places, and
    // on the chart itself, where a right click opens it.
    chart_menu = menuBar()->addMenu("Chart");
    auto* styles = new QActionGroup(this);
    classic_style = chart_menu->addAction("Classic");
    diagram_style = chart_menu->addAction("Diagram");
    for (QAction* entry : {classic_style, diagram_style}) {
        entry->setCheckable(true);
        styles->addAction(entry);
    }
    classic_style->setChecked(true);
    chart_menu->addSeparator();
    night_colours = chart_menu->addAction("Night colours");
    night_colours->setCheckable(true);
    night_colours->setEnabled(false); // the diagram's
    chart_menu->addSeparator();
    QAction* export_entry = chart_menu->addAction("Export...");
    QAction* print_entry = chart_menu->addAction("Print...");
    connect(classic_style, &QAction::triggered, this, [this] { Set_Style(Chart_Style::Classic); });
    connect(diagram_style, &QAction::triggered, this, [this] { Set_Style(Chart_Style::Diagram); });
    connect(night_colours, &QAction::toggled, this, [this](bool on) { Set_Night(on); });
    connect(export_entry, &QAction::triggered, this, [this] { Export_Click(); });
    connect(print_entry, &QAction::triggered, this, [this] { Print_Click(); });

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
    if (style == Chart_Style::Diagram) {
        const double factor = in ? Diagram_Button_Zoom : 1 / Diagram_Button_Zoom;
        Diagram_Zoom(factor, diagram_view.width / 2.0, diagram_view.height / 2.0);
        return;
    }
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
    if (style == Chart_Style::Diagram) {
        Center_Diagram(diagram_view, airport.lat, airport.lon);
        Redraw_Diagram();
        return;
    }
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
    if (style == Chart_Style::Diagram) {
        Diagram_Tick(diagram_view, m);
        Redraw_Diagram();
        return;
    }
    Chart_Tick_Redraw(
        m, [this] { Redraw(); }, [this](double x, double y) { Center_Airport(x, y); });
}

void Form4::Fit_Diagram() {
    const int width = std::max(1, chart_area->width());
    const int height = std::max(1, chart_area->height() - Diagram_Top);
    diagram_view = Fit_Diagram_View(module_.current_airport, width, height,
                                    Diagram_Frame_Insets(width, height));
    diagram_fitted = true;
}

void Form4::Place_Controls() {
    if (style == Chart_Style::Classic) {
        Label1->setGeometry(Twips(120), Twips(120), Twips(1455), Twips(255));
        Fit_Width(Label1);
        Command2->setGeometry(Twips(120), Twips(2880), Twips(1095), Twips(375));
        Command3->setGeometry(Twips(1440), Twips(2880), Twips(1095), Twips(375));
        Command4->setGeometry(Twips(2760), Twips(2880), Twips(1095), Twips(375));
        return;
    }
    // One row: the three buttons, then the reading.
    const int top = (Diagram_Top - Twips(375)) / 2;
    int left = Twips(120);
    for (QPushButton* button : {Command2, Command3, Command4}) {
        button->setGeometry(left, top, Twips(1095), Twips(375));
        left += Twips(1095) + Twips(120);
    }
    Label1->setGeometry(left + Twips(120), (Diagram_Top - Twips(255)) / 2, Twips(1455), Twips(255));
    Fit_Width(Label1);
}

void Form4::Redraw_Diagram() {
    if (!diagram_fitted) {
        Fit_Diagram();
    }
    Redraw_Diagram_Back_Buffer(diagram_buffer, diagram_sprites, Module_Diagram_Source(module_),
                               diagram_view, Module_Diagram_Options(module_, night),
                               chart_area->devicePixelRatioF());
    chart_area->update();
}

void Form4::Set_Style(Chart_Style new_style) {
    style = new_style;
    const bool diagram = style == Chart_Style::Diagram;
    (diagram ? diagram_style : classic_style)->setChecked(true);
    night_colours->setEnabled(diagram);
    Place_Controls();
    if (diagram) {
        // The window may have been resized while the classic chart showed.
        if (diagram_fitted) {
            Resize_Diagram(diagram_view, chart_area->width(),
                           std::max(1, chart_area->height() - Diagram_Top));
        }
        Redraw_Diagram();
    } else {
        Redraw();
    }
}

void Form4::Set_Night(bool on) {
    night = on;
    if (night_colours->isChecked() != on) {
        night_colours->setChecked(on);
    }
    if (style == Chart_Style::Diagram) {
        Redraw_Diagram();
    }
}

void Form4::Diagram_Zoom(double factor, double x, double y) {
    Zoom_Diagram_About(diagram_view, factor, {x, y});
    Redraw_Diagram();
}

void Form4::Diagram_Pan(double dx, double dy) {
    Pan_Diagram(diagram_view, dx, dy);
    Redraw_Diagram();
}

void Form4::Diagram_Center_At(double x, double y) {
    double lat = 0;
    double lon = 0;
    Diagram_Pixel_To_Geo(diagram_view, {x, y}, lat, lon);
    Center_Diagram(diagram_view, lat, lon);
    Redraw_Diagram();
}

void Form4::Diagram_Resize(int width, int height) {
    if (!diagram_fitted || isMinimized() || width < 1 || height < 1) {
        return;
    }
    Resize_Diagram(diagram_view, width, height);
    Redraw_Diagram();
}

void Form4::keyPressEvent(QKeyEvent* event) {
    if (style == Chart_Style::Diagram) {
        const int key = event->key();
        if (key == Qt::Key_Plus || key == Qt::Key_Equal || key == Qt::Key_Minus) {
            const double step = key == Qt::Key_Minus ? 1 / Diagram_Zoom_Step : Diagram_Zoom_Step;
            Diagram_Zoom(step, diagram_view.width / 2.0, diagram_view.height / 2.0);
            return;
        }
    }
    QMainWindow::keyPressEvent(event);
}

std::string Form4::Export_To(const std::string& path) {
    if (style == Chart_Style::Diagram) {
        if (!diagram_fitted) {
            Fit_Diagram();
        }
        const Diagram_Source_Rec source = Module_Diagram_Source(module_);
        const Diagram_Options_Rec options = Module_Diagram_Options(module_, night);
        return Export_Chart_Image(path, diagram_view.width, diagram_view.height, [&](Surface& s) {
            Draw_Diagram(s, source, diagram_view, options);
        });
    }
    return Export_Chart_Image(path, view.chart_px_width, view.chart_px_height,
                              [&](Surface& s) { Redraw_Chart(s, view, module_); });
}

void Form4::Export_Click() {
    const QString png = QStringLiteral("PNG image (*.png)");
    const QString svg = QStringLiteral("SVG image (*.svg)");
    const QString pdf = QStringLiteral("PDF document (*.pdf)");
    QString chosen = png;
    QString path = QFileDialog::getSaveFileName(
        this, QStringLiteral("Export"),
        Ansi_To_QString(module_.current_airport.ident) + QStringLiteral(".png"),
        png + QStringLiteral(";;") + svg + QStringLiteral(";;") + pdf, &chosen);
    if (path.isEmpty()) {
        return;
    }
    if (QFileInfo(path).suffix().isEmpty()) {
        path += chosen == svg   ? QStringLiteral(".svg")
                : chosen == pdf ? QStringLiteral(".pdf")
                                : QStringLiteral(".png");
    }
    const std::string problem = Export_To(path.toStdString());
    if (!problem.empty()) {
        flow_.Message(Form_Id::Form4, problem, Message_Title, Message_Icon::Exclamation);
    }
}

void Form4::Print_On(QPrinter& printer) {
    if (!diagram_fitted) {
        Fit_Diagram();
    }
    // The page in units of a 96 dpi screen, which the diagram's sizes of text and lines
    // are made for, mapped onto the printer's own pixels.
    const QRectF page = printer.pageRect(QPrinter::Inch);
    const int width = std::max(1, static_cast<int>(std::lround(page.width() * 96)));
    const int height = std::max(1, static_cast<int>(std::lround(page.height() * 96)));
    QPainter painter;
    if (!painter.begin(&printer)) {
        flow_.Message(Form_Id::Form4, "Could not start printing.", Message_Title,
                      Message_Icon::Exclamation);
        return;
    }
    painter.setWindow(0, 0, width, height);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setRenderHint(QPainter::TextAntialiasing);
    Qt_Surface surface(painter, width, height);
    Draw_Diagram(surface, Module_Diagram_Source(module_),
                 Diagram_Page_View(diagram_view, width, height),
                 Module_Diagram_Options(module_, false));
    painter.end();
}

void Form4::Print_Click() {
    if (!diagram_fitted) {
        Fit_Diagram();
    }
    QPrinter printer(QPrinter::HighResolution);
    // The page turned the way the window is, so that what it shows fills the paper.
    printer.setPageOrientation(diagram_view.width > diagram_view.height ? QPageLayout::Landscape
                                                                        : QPageLayout::Portrait);
    QPrintDialog dialog(&printer, this);
    dialog.setWindowTitle(QStringLiteral("Print"));
    if (dialog.exec() == QDialog::Accepted) {
        Print_On(printer);
    }
}

} // namespace quilmark
