// Form4, the chart: the chosen airport with its runways, taxiways, gates, ILS and
// airspace, the user's aircraft from the simulator once a second, three buttons and the
// menus. The chart is drawn into a back buffer that holds the last redraw until the next.
//
// Beside the classic chart the window draws the airport diagram, chosen from the chart
// menu that a right click on the chart opens (with night colours, export and print). The
// diagram keeps a view of its own: the wheel and the + and - keys zoom, a drag with the
// left button pans, a double click centres; the buttons zoom and centre it too.
#pragma once

#include <QImage>
#include <QMainWindow>
#include <QTimer>
#include <functional>
#include <memory>

#include "chart/chart_view.h"
#include "chart/diagram_view.h"
#include "chart/qt_surface.h"
#include "link/fsuipc.h"
#include "state/form_flow.h"

class QAction;
class QLabel;
class QMenu;
class QPrinter;
class QPushButton;

namespace quilmark {

class Link_Transport;
struct Module1;

enum class Chart_Style { Classic, Diagram };

// Makes the way to the simulator's FSUIPC module, each time the chart opens.
using Link_Transport_Maker = std::function<std::unique_ptr<Link_Transport>()>;

class Form4 : public QMainWindow {
  public:
    Form4(Form_Flow& flow, Module1& module, Link_Transport_Maker make_link_transport);
    ~Form4() override;

    void Form_Load();
    void Form_Unload();
    void Form_Resize();
    // A mouse press at a point of the chart (client pixels) with a button.
    void Form_MouseDown(Qt::MouseButton button, int x, int y);
    void Timer1_Timer();
    void Command2_Click(); // Zoom in
    void Command3_Click(); // Center
    void Command4_Click(); // Zoom out
    void Center_Airport(double airpt_loc_x, double airpt_loc_y);
    // Cls, Draw_Chart, Draw_Aircraft into the back buffer, shown at once.
    void Redraw();

    // The chart menu's entries.
    void Set_Style(Chart_Style new_style);
    void Set_Night(bool on);
    void Export_Click();
    void Print_Click();
    // Writes what the window shows into a file, PNG, SVG or PDF by its extension, at the
    // chart's size. Returns "" or a message for the user.
    std::string Export_To(const std::string& path);
    // The diagram on the printer's page: the ground the window's diagram shows, as large
    // as the page allows, with its frame, in day colours.
    void Print_On(QPrinter& printer);
    // In the diagram style the altimeter and the buttons stand in a row above the
    // diagram, which takes the chart area below it: its pixels start this far down.
    static constexpr int Diagram_Top = 33;
    // The diagram's hand controls, in pixels of the diagram.
    void Diagram_Zoom(double factor, double x, double y);
    void Diagram_Pan(double dx, double dy);
    void Diagram_Center_At(double x, double y);
    void Diagram_Resize(int width, int height);
    // The diagram drawn again into its back buffer, at the screen's device pixel ratio.
    void Redraw_Diagram();

    Chart_View view;
    QImage back_buffer;
    Qt_Sprite_Cache sprites; // labels and discs kept from one redraw to the next
    QLabel* Label1 = nullptr;
    QPushButton* Command2 = nullptr;
    QPushButton* Command3 = nullptr;
    QPushButton* Command4 = nullptr;
    QTimer Timer1;
    QWidget* chart_area = nullptr;

    Chart_Style style = Chart_Style::Classic;
    bool night = false;
    Diagram_View_Rec diagram_view;
    bool diagram_fitted = false; // the view is fitted to the airport the first time it shows
    QImage diagram_buffer;
    Qt_Sprite_Cache diagram_sprites;
    QMenu* chart_menu = nullptr; // opened by a right click on the chart
    QAction* classic_style = nullptr;
    QAction* diagram_style = nullptr;
    QAction* night_colours = nullptr;

  protected:
    void closeEvent(QCloseEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

  private:
    void Take_Pixel_Size();
    void Zoom(bool in);
    void Fit_Diagram();
    // The label and the buttons where the style has them.
    void Place_Controls();
    Form_Flow& flow_;
    Module1& module_;
    Link_Transport_Maker make_link_transport_;
    std::unique_ptr<Link_Transport> transport_;
    Fsuipc_Rec link_;
    bool loaded_ = false;
};

} // namespace quilmark
