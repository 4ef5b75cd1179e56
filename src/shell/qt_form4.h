// Form4, the chart: the chosen airport with its runways, taxiways, gates, ILS and
// airspace, the user's aircraft from the simulator once a second, three buttons and the
// menus. The chart is drawn into a back buffer that holds the last redraw until the next.
#pragma once

#include <QImage>
#include <QMainWindow>
#include <QTimer>
#include <functional>
#include <memory>

#include "chart/chart_view.h"
#include "chart/qt_surface.h"
#include "link/fsuipc.h"
#include "state/form_flow.h"

class QLabel;
class QPushButton;

namespace quilmark {

class Link_Transport;
struct Module1;

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

    Chart_View view;
    QImage back_buffer;
    Qt_Sprite_Cache sprites; // labels and discs kept from one redraw to the next
    QLabel* Label1 = nullptr;
    QPushButton* Command2 = nullptr;
    QPushButton* Command3 = nullptr;
    QPushButton* Command4 = nullptr;
    QTimer Timer1;
    QWidget* chart_area = nullptr;

  protected:
    void closeEvent(QCloseEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;

  private:
    void Take_Pixel_Size();
    void Zoom(bool in);
    Form_Flow& flow_;
    Module1& module_;
    Link_Transport_Maker make_link_transport_;
    std::unique_ptr<Link_Transport> transport_;
    Fsuipc_Rec link_;
    bool loaded_ = false;
};

} // namespace quilmark
