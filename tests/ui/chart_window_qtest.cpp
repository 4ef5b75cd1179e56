// The chart window's diagram style: the hand controls move the view as a pilot expects,
// the buffer is drawn at the screen's pixel ratio, and export and print write files.
#include <QApplication>
#include <QFile>
#include <QImage>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPrinter>
#include <QPushButton>
#include <QWheelEvent>
#include <cmath>
#include <gtest/gtest.h>
#include <memory>

#include "shell/qt_form4.h"
#include "state/module1.h"
#include "support/fetched_airports.h"
#include "support/work_dir.h"

namespace quilmark {

namespace {

struct Quiet_Flow final : Form_Flow {
    std::vector<std::string> messages;
    void Show_Form(Form_Id) override {}
    void Unload_Form(Form_Id) override {}
    void Message(Form_Id, const std::string& text, const std::string&, Message_Icon) override {
        messages.push_back(text);
    }
    void End_Program() override {}
};

// The ground under a pixel of the chart area, below the row of controls.
std::pair<double, double> Ground(const Form4& form, QPointF at) {
    double lat = 0, lon = 0;
    Diagram_Pixel_To_Geo(form.diagram_view, {at.x(), at.y() - Form4::Diagram_Top}, lat, lon);
    return {lat, lon};
}

// How far in pixels a point of the ground lies from a pixel of the chart area now.
double Off_By(const Form4& form, std::pair<double, double> ground, QPointF at) {
    const Point_F_Rec p = Diagram_Geo_To_Pixel(form.diagram_view, ground.first, ground.second);
    return std::hypot(p.x - at.x(), p.y + Form4::Diagram_Top - at.y());
}

void Send_Mouse(QWidget* to, QEvent::Type type, QPointF at, Qt::MouseButtons held) {
    QMouseEvent event(type, at, to->mapToGlobal(at), Qt::LeftButton, held, Qt::NoModifier);
    QApplication::sendEvent(to, &event);
}

} // namespace

TEST(ChartWindow, DiagramStyleZoomsPansCentresAndKeepsItsViewOnResize) {
    Work_Dir dir("chart-window");
    auto module = std::make_unique<Module1>();
    Magvar_Grid grid{};
    module->current_airport =
        Fetch_Airports(QUILMARK_SAMPLE_WORLD_DIR, {"KSEA (SEATTLE-TACOMA INTL)"}, grid)[0].airport;
    module->magvar_grid = grid;
    Quiet_Flow flow;
    Form4 form(flow, *module, nullptr);
    form.resize(900, 700);
    form.show();
    form.Form_Load();
    form.Set_Style(Chart_Style::Diagram);
    QWidget* area = form.chart_area;
    const double ratio = area->devicePixelRatioF();
    EXPECT_EQ(form.diagram_view.width, area->width());
    EXPECT_EQ(form.diagram_view.height, area->height() - Form4::Diagram_Top);
    EXPECT_EQ(form.diagram_buffer.size(),
              QSize(form.diagram_view.width, form.diagram_view.height) * ratio);

    // The wheel: one notch closer, the ground under the cursor stays under it.
    const QPointF cursor(200, 150);
    const auto before = Ground(form, cursor);
    const double scale = form.diagram_view.px_per_metre;
    QWheelEvent wheel(cursor, area->mapToGlobal(cursor), {}, {0, 120}, Qt::NoButton, Qt::NoModifier,
                      Qt::NoScrollPhase, false);
    QApplication::sendEvent(area, &wheel);
    EXPECT_NEAR(form.diagram_view.px_per_metre, scale * Diagram_Zoom_Step, 1e-12);
    EXPECT_LT(Off_By(form, before, cursor), 0.5);

    // The keys: - undoes +.
    for (int key : {Qt::Key_Plus, Qt::Key_Minus}) {
        QKeyEvent press(QEvent::KeyPress, key, Qt::NoModifier);
        QApplication::sendEvent(&form, &press);
    }
    EXPECT_NEAR(form.diagram_view.px_per_metre, scale * Diagram_Zoom_Step, 1e-12);

    // A drag carries the ground with the hand; a double click brings a point to the middle.
    const auto grabbed = Ground(form, {300, 300});
    Send_Mouse(area, QEvent::MouseButtonPress, {300, 300}, Qt::LeftButton);
    Send_Mouse(area, QEvent::MouseMove, {340, 270}, Qt::LeftButton);
    Send_Mouse(area, QEvent::MouseButtonRelease, {340, 270}, Qt::NoButton);
    EXPECT_LT(Off_By(form, grabbed, {340, 270}), 0.5);
    const auto target = Ground(form, {100, 120});
    Send_Mouse(area, QEvent::MouseButtonDblClick, {100, 120}, Qt::LeftButton);
    EXPECT_NEAR(form.diagram_view.center_lat, target.first, 1e-9);
    EXPECT_NEAR(form.diagram_view.center_lon, target.second, 1e-9);
    EXPECT_EQ(form.Command2->y(), 4); // the buttons in the row above the diagram

    // A new size keeps the middle and the scale.
    const Diagram_View_Rec kept = form.diagram_view;
    form.resize(700, 500);
    QApplication::processEvents();
    EXPECT_EQ(form.diagram_view.width, area->width());
    EXPECT_EQ(form.diagram_view.center_lat, kept.center_lat);
    EXPECT_EQ(form.diagram_view.px_per_metre, kept.px_per_metre);

    // Export at the view's size; print to a PDF page.
    const std::string png = dir.Sub("diagram.png");
    EXPECT_EQ(form.Export_To(png), "");
    EXPECT_EQ(QImage(QString::fromStdString(png)).size(),
              QSize(form.diagram_view.width, form.diagram_view.height));
    QPrinter printer;
    printer.setOutputFormat(QPrinter::PdfFormat);
    printer.setOutputFileName(QString::fromStdString(dir.Sub("printed.pdf")));
    form.Print_On(printer);
    EXPECT_GT(QFile(QString::fromStdString(dir.Sub("printed.pdf"))).size(), 10000);

    // Back to the classic chart: its own view never moved, its buttons are back in place.
    const Chart_View classic = form.view;
    form.Set_Style(Chart_Style::Classic);
    EXPECT_EQ(form.view.view_left, classic.view_left);
    EXPECT_EQ(form.view.zoom_level, classic.zoom_level);
    EXPECT_EQ(form.Command2->geometry(), QRect(8, 192, 73, 25));
    form.Form_Unload();
}

} // namespace quilmark
