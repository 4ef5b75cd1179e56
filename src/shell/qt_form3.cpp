#include "shell/qt_form3.h"

#include <QCloseEvent>
#include <QComboBox>
#include <QCompleter>
#include <QCoreApplication>
#include <QGroupBox>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMenuBar>
#include <QProgressBar>
#include <QPushButton>
#include <cmath>

#include "airspace/airport_fetch.h"
#include "scenery/scan_sequence.h"
#include "shell/qt_widgets.h"
#include "state/form3_data.h"
#include "state/module1.h"

namespace quilmark {

namespace {

int Bar_Number(float value) {
    return static_cast<int>(std::lround(value));
}

constexpr const char* Combo1_Hint = "[Type and select an airport from the list]";

// A key that edits a line's text: a character, a deletion or a paste.
bool Edits_Text(const QKeyEvent& key) {
    return (!key.text().isEmpty() && key.text().at(0).isPrint()) ||
           key.key() == Qt::Key_Backspace || key.key() == Qt::Key_Delete ||
           key.matches(QKeySequence::Paste);
}

} // namespace

Form3::Form3(Form_Flow& flow, Module1& module)
    : data(std::make_unique<Form3_Data>()), flow_(flow), module_(module) {
    setWindowTitle("Choosing an airport");
    auto* client = new QWidget(this);
    client->setFixedSize(Twips(5145), Twips(3195));
    setCentralWidget(client);
    QMenu* about = menuBar()->addMenu("About");
    QAction* quilmark_menu = about->addAction("Quilmark v1.1");
    connect(quilmark_menu, &QAction::triggered, this, [this] { flow_.Show_Form(Form_Id::Form6); });
    rebuild_menu = menuBar()->addAction("Rebuild airport list");
    connect(rebuild_menu, &QAction::triggered, this, [this] { Rebuild_Airport_List(); });

    Frame1 = new QGroupBox("Airports list", client);
    Frame1->setGeometry(Twips(120), Twips(120), Twips(4815), Twips(1215));
    Label1 = new QLabel("Airport:", Frame1);
    Label1->setGeometry(Twips(120), Twips(480), Twips(615), Twips(255));
    Combo1 = new QComboBox(Frame1);
    Combo1->setGeometry(Twips(720), Twips(480), Twips(3855), Twips(315));
    Combo1->setEditable(true);
    Combo1->setInsertPolicy(QComboBox::NoInsert);
    Combo1->setMaxVisibleItems(20);
    // Typing narrows the list to the entries holding the typed text, in any case.
    auto* completer = new QCompleter(Combo1->model(), Combo1);
    completer->setFilterMode(Qt::MatchContains);
    completer->setCaseSensitivity(Qt::CaseInsensitive);
    completer->setCompletionMode(QCompleter::PopupCompletion);
    completer->setMaxVisibleItems(20);
    Combo1->setCompleter(completer);
    Combo1->setCurrentIndex(-1);
    Combo1->setEditText(Combo1_Hint);
    Combo1->lineEdit()->installEventFilter(this);

    Label2 = new QLabel("Scanning:", client);
    Label2->setGeometry(Twips(120), Twips(1560), Twips(855), Twips(255));
    Text1 = new QLineEdit("-None-", client);
    Text1->setGeometry(Twips(960), Twips(1560), Twips(3255), Twips(285));
    Text1->setAlignment(Qt::AlignCenter);
    Text1->setReadOnly(true);
    Text1->setFocusPolicy(Qt::NoFocus); // it shows the status only: no stop for the tab key
    ProgressBar1 = new QProgressBar(client);
    ProgressBar1->setGeometry(Twips(120), Twips(2040), Twips(4815), Twips(255));
    ProgressBar1->setRange(0, 100);
    ProgressBar1->setValue(0);
    ProgressBar1->setTextVisible(false);
    Command3 = new QPushButton("GET AIRPORT", client);
    Command3->setGeometry(Twips(1440), Twips(2520), Twips(1575), Twips(495));
    Command2 = new QPushButton("CLOSE_PROGRAM", client);
    Command2->setGeometry(Twips(3240), Twips(2520), Twips(1695), Twips(495));
    connect(Command3, &QPushButton::clicked, this, [this] { Command3_Click(); });
    connect(Command2, &QPushButton::clicked, this, [this] { Command2_Click(); });

    Fit_Width(Label1);
    Fit_Width(Label2);
    Read_Sceneries_Paths.setInterval(1000);
    connect(&Read_Sceneries_Paths, &QTimer::timeout, this,
            [this] { Read_Sceneries_Paths_Timer(); });
}

Form3::~Form3() = default;

void Form3::Form_Load() {
    data->database_present = false;
    Read_Sceneries_Paths.start();
}

void Form3::Read_Sceneries_Paths_Timer() {
    // One scan per load of the form: the message boxes of the scan run an event loop of
    // their own, in which this timer must not start a second one.
    Read_Sceneries_Paths.stop();
    if (scan_started_) {
        return;
    }
    Run_Scan(Scan_Request::Usual);
}

void Form3::Rebuild_Airport_List() {
    // Before the first scan has begun, the rebuild takes its place.
    Read_Sceneries_Paths.stop();
    Combo1->clear();
    Combo1->setEditText(Combo1_Hint);
    data->database_present = false;
    Run_Scan(Scan_Request::Rebuild);
}

void Form3::Run_Scan(Scan_Request request) {
    scan_started_ = true;
    Run_Scenery_Scan(module_, *data, *this, request);
    // Ready for typing: the focus in the airport box, with its hint chosen whole.
    if (Combo1->isEnabled()) {
        Combo1->setFocus();
        if (Combo1->currentText() == Combo1_Hint) {
            Combo1->lineEdit()->selectAll();
        }
    }
}

bool Form3::eventFilter(QObject* watched, QEvent* event) {
    // Typing into the airport box replaces its hint, wherever the cursor stands in it.
    if (watched == Combo1->lineEdit() && event->type() == QEvent::KeyPress &&
        Combo1->currentText() == Combo1_Hint && Edits_Text(*static_cast<QKeyEvent*>(event))) {
        Combo1->lineEdit()->clear();
    }
    return QMainWindow::eventFilter(watched, event);
}

std::optional<std::string> Form3::Chosen_Entry() const {
    const int index = Combo1->currentIndex();
    if (index < 0 || Combo1->itemText(index) != Combo1->currentText()) {
        return std::nullopt;
    }
    return QString_To_Ansi(Combo1->itemText(index));
}

void Form3::Command3_Click() {
    Get_Airport(module_, *data, *this, Chosen_Entry());
}

void Form3::Command2_Click() {
    Close_Program();
}

void Form3::Close_Program() {
    Text1->setText("Please wait...");
    Text1->repaint();
    module_.airports.Release();
    flow_.End_Program();
}

void Form3::closeEvent(QCloseEvent* event) {
    event->ignore();
    Close_Program();
}

void Form3::Flush_List() {
    if (pending_entries_.empty()) {
        return;
    }
    // The sorted combo box: the entries take their places in the list's order.
    std::vector<std::string> all;
    all.reserve(static_cast<size_t>(Combo1->count()) + pending_entries_.size());
    for (int i = 0; i < Combo1->count(); ++i) {
        all.push_back(QString_To_Ansi(Combo1->itemText(i)));
    }
    all.insert(all.end(), pending_entries_.begin(), pending_entries_.end());
    pending_entries_.clear();
    Sort_List_Entries(all);
    QStringList items;
    items.reserve(static_cast<qsizetype>(all.size()));
    for (const std::string& entry : all) {
        items.push_back(Ansi_To_QString(entry));
    }
    const QString text = Combo1->currentText();
    Combo1->clear();
    Combo1->addItems(items);
    Combo1->setCurrentIndex(-1);
    Combo1->setEditText(text);
}

void Form3::Show_Status(const std::string& text) {
    Flush_List();
    Text1->setText(Ansi_To_QString(text));
    Text1->repaint();
}

void Form3::Redraw_Progress() {
    ProgressBar1->setRange(Bar_Number(progress_min_), Bar_Number(progress_max_));
    ProgressBar1->setValue(Bar_Number(progress_value_));
    ProgressBar1->repaint();
}

void Form3::Show_Message(const std::string& text, const std::string& title, Message_Icon icon) {
    flow_.Message(Form_Id::Form3, text, title, icon);
}

void Form3::Enable_Controls(bool enabled) {
    Flush_List();
    Combo1->setEnabled(enabled);
    Command3->setEnabled(enabled);
    Command2->setEnabled(enabled);
    // No second scan from the menu while one runs (its message boxes let the menu work).
    rebuild_menu->setEnabled(enabled);
}

void Form3::Add_List_Entry(const std::string& text) {
    pending_entries_.push_back(text);
}

void Form3::Repaint_Form() {
    // Whatever waits to be painted is painted now. The bar and the status box paint
    // themselves the moment they change, so a form that looks as it did is not painted
    // over again: the fetch asks for this twice for every ATC file.
    QCoreApplication::sendPostedEvents(this, QEvent::UpdateRequest);
}

void Form3::Hand_Over_To_Chart() {
    flow_.Unload_Form(Form_Id::Form3);
    flow_.Show_Form(Form_Id::Form4);
}

} // namespace quilmark
