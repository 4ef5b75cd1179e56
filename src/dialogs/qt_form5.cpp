#include "dialogs/qt_form5.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QCloseEvent>
#include <QGroupBox>
#include <QPushButton>
#include <QRadioButton>

#include "shell/qt_widgets.h"
#include "state/module1.h"

namespace quilmark {

Form5::Form5(Form_Flow& flow, Module1& module) : flow_(flow), module_(module) {
    setWindowTitle("Options");
    setFixedSize(Twips(4560), Twips(3300));
    Frame1 = new QGroupBox("Options", this);
    Frame1->setGeometry(Twips(120), Twips(120), Twips(4215), Twips(1575));
    Module1& m = module_;
    const auto check = [this](const char* caption, int left, int top, int width, int height,
                              bool& variable) {
        auto* box = new QCheckBox(caption, Frame1);
        box->setGeometry(Twips(left), Twips(top), Twips(width), Twips(height) + 6);
        Fit_Width(box);
        box->setChecked(true); // checked at design time
        connect(box, &QCheckBox::clicked, this, [box, &variable] { variable = box->isChecked(); });
        return box;
    };
    Check1 = check("Display Taxiways IDs", 120, 360, 1815, 195, m.show_taxiway_ids);
    Check2 = check("Display Taxiways", 120, 720, 1575, 195, m.show_taxiways);
    Check5 = check("Display Gates\\Parkings", 120, 1080, 2055, 255, m.show_gates);
    Check3 = check("Display ILS", 2520, 360, 1095, 195, m.show_ils);
    Check4 = check("Display Airspace", 2520, 720, 1575, 195, m.show_airspace);
    Check6 = check("Follow Aircraft", 2520, 1080, 1335, 255, m.follow_aircraft);

    Frame2 = new QGroupBox("Altimeter Setting Units", this);
    Frame2->setGeometry(Twips(120), Twips(1800), Twips(4215), Twips(855));
    Option1 = new QRadioButton("Millibars", Frame2);
    Option1->setGeometry(Twips(360), Twips(360), Twips(855), Twips(255));
    Fit_Width(Option1);
    Option2 = new QRadioButton("Inches of Mercury", Frame2);
    Option2->setGeometry(Twips(1800), Twips(360), Twips(1575), Twips(255));
    Fit_Width(Option2);
    connect(Option1, &QRadioButton::clicked, this, [this] { module_.altimeter_units = 0; });
    connect(Option2, &QRadioButton::clicked, this, [this] { module_.altimeter_units = 1; });

    Command1 = new QPushButton("Ok", this);
    Command1->setGeometry(Twips(3000), Twips(2760), Twips(1335), Twips(375));
    connect(Command1, &QPushButton::clicked, this, [this] { flow_.Unload_Form(Form_Id::Form5); });

    // The load: at the corner on top, then the controls show the variables as they are.
    Put_On_Top_At_Corner(*this);
    Show_Variables();
}

void Form5::Show_Variables() {
    const Module1& m = module_;
    const std::pair<QCheckBox*, bool> states[] = {
        {Check1, m.show_taxiway_ids}, {Check2, m.show_taxiways}, {Check5, m.show_gates},
        {Check3, m.show_ils},         {Check4, m.show_airspace}, {Check6, m.follow_aircraft}};
    for (const auto& [box, on] : states) {
        box->setChecked(on);
    }
    (m.altimeter_units != 0 ? Option2 : Option1)->setChecked(true);
}

void Form5::closeEvent(QCloseEvent* event) {
    event->ignore();
    flow_.Unload_Form(Form_Id::Form5);
}

} // namespace quilmark
