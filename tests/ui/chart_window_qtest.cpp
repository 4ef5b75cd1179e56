// The chart window's diagram style: the hand controls move the view as a pilot expects,
// and the classic chart comes back as it was.
#include <QApplication>
#include <QKeyEvent>
#include <QMouseEvent>
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
    void Show_Form(Form_Id) override {}
    void Unload_Form(Form_Id) override {}
    void Message(Form_Id, const std::string&, const std::string&, Message_Icon) override {}
    void End_Program() override {}
};

// The ground under a pixel of the chart area (below the row of controls), and how far in
// pixels a point of the ground now lies from that pixel.
Point_F_Rec Ground(const Form4& form, QPointF at) {
    Point_F_Rec ground;
    Diagram_Pixel_To_Geo(form.diagram_view, {at.x(), at.y() - Form4::Diagram_Top}, ground.y,
                         ground.x);
    return ground;
}
double Off_By(const Form4& form, Point_F_Rec ground, QPointF at) {
    const Point_F_Rec p = Diagram_Geo_To_Pixel(form.diagram_view, ground.y, ground.x);
    return std::hypot(p.x - at.x(), p.y + Form4::Diagram_Top - at.y());
}

void Mouse(QWidget* to, QEvent::Type type, QPointF at, Qt::MouseButtons held) {
    QMouseEvent event(type, at, to->mapToGlobal(at), Qt::LeftButton, held, Qt::NoModifier);
    QApplication::sendEvent(to, &event);
}

} // namespace

TEST(ChartWindow, DiagramStyleZoomsPansCentresAndKeepsItsViewOnResize) {
    Work_Dir dir("chart-window");
    auto module = std::make_unique<Module1>();
    module->current_airport = Fetch_Airports(QUILMARK_SAMPLE_WORLD_DIR,
                                             {"KSEA (SEATTLE-TACOMA INTL)"}, module->magvar_grid)[0]
                                  .airport;
    Quiet_Flow flow;
    Form4 form(flow, *module, nullptr);
    form.resize(900, 700);
    form.show();
    form.Form_Load();
    const Chart_View classic = form.view;
    form.Set_Style(Chart_Style::Diagram);
    QWidget* area = form.chart_area;
    EXPECT_EQ(form.diagram_view.height, area->height() - Form4::Diagram_Top);
    EXPECT_EQ(form.diagram_buffer.height(),
              std::ceil(form.diagram_view.height * area->devicePixelRatioF()));

    // A notch of the wheel, then +: closer about the cursor, then about the middle.
    const QPointF cursor(200, 150);
    const Point_F_Rec under = Ground(form, cursor);
    const double scale = form.diagram_view.px_per_metre;
    QWheelEvent wheel(cursor, area->mapToGlobal(cursor), {}, {0, 120}, Qt::NoButton, Qt::NoModifier,
                      Qt::NoScrollPhase, false);
    QApplication::sendEvent(area, &wheel);
    EXPECT_LT(Off_By(form, under, cursor), 0.5);
    QKeyEvent plus(QEvent::KeyPress, Qt::Key_Plus, Qt::NoModifier);
    QApplication::sendEvent(&form, &plus);
    EXPECT_NEAR(form.diagram_view.px_per_metre, scale * 1.5625, 1e-12);

    // A drag carries the ground with the hand; a double click brings a point to the middle.
    const Point_F_Rec grabbed = Ground(form, {300, 300});
    Mouse(area, QEvent::MouseButtonPress, {300, 300}, Qt::LeftButton);
    Mouse(area, QEvent::MouseMove, {340, 270}, Qt::LeftButton);
    Mouse(area, QEvent::MouseButtonRelease, {340, 270}, Qt::NoButton);
    EXPECT_LT(Off_By(form, grabbed, {340, 270}), 0.5);
    const Point_F_Rec target = Ground(form, {100, 120});
    Mouse(area, QEvent::MouseButtonDblClick, {100, 120}, Qt::LeftButton);
    EXPECT_NEAR(form.diagram_view.center_lat, target.y, 1e-9);

    // A new size keeps the middle and the scale.
    const Diagram_View_Rec kept = form.diagram_view;
    form.resize(700, 500);
    QApplication::processEvents();
    EXPECT_EQ(form.diagram_view.width, area->width());
    EXPECT_EQ(form.diagram_view.center_lat, kept.center_lat);
    EXPECT_EQ(form.diagram_view.px_per_metre, kept.px_per_metre);

    // Back to the classic chart: its view never moved, its buttons are back in place.
    form.Set_Style(Chart_Style::Classic);
    EXPECT_EQ(form.view.view_left, classic.view_left);
    EXPECT_EQ(form.Command2->geometry(), QRect(8, 192, 73, 25));
    form.Form_Unload();
}

} // namespace quilmark
