#include "shell/qt_form2.h"

#include <QCloseEvent>
#include <QComboBox>
#include <QDir>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QRadioButton>
#include <filesystem>

#include "platform/drives.h"
#include "shell/config_file.h"
#include "shell/module1.h"
#include "shell/qt_program.h"

namespace fs = std::filesystem;

namespace {

// The places a Linux user's simulator can live: the drives of the default Wine prefix,
// the home folder and the root of the file system.
std::vector<std::pair<QString, std::string>> Drive_Choices() {
    std::vector<std::pair<QString, std::string>> choices;
    const QString home = QDir::homePath();
    const std::string prefix = (home + "/.wine").toStdString();
    std::error_code error;
    if (fs::is_directory(prefix + "/dosdevices", error)) {
        for (const Drive_Rec& drive : Wine_Drive_List(prefix).drives) {
            if (!drive.native_root.empty() && fs::is_directory(drive.native_root, error)) {
                choices.push_back({QString::fromStdString(drive.path).toLower() + " [" +
                                       QString::fromStdString(drive.native_root) + "]",
                                   drive.native_root});
            }
        }
    }
    choices.push_back({"~ [" + home + "]", home.toStdString()});
    choices.push_back({"/ [root]", "/"});
    return choices;
}

} // namespace

Form2::Form2(Quilmark_Program& program) : program_(program) {
    setWindowTitle("Settings");
    setFixedSize(Twips(4590), Twips(5820));

    Frame1 = new QGroupBox("Flight Simulator Information", this);
    Frame1->setGeometry(Twips(120), Twips(120), Twips(4335), Twips(1215));
    Label1 = new QLabel("Select the version of your Microsoft Flight Simulator:", Frame1);
    Label1->setGeometry(Twips(120), Twips(360), Twips(3735), Twips(255));
    Option1 = new QRadioButton("Microsoft Flight Simulator 2002", Frame1);
    Option1->setGeometry(Twips(1440), Twips(720), Twips(2535), Twips(255));

    Frame2 = new QGroupBox("Flight Simulator's Path", this);
    Frame2->setGeometry(Twips(120), Twips(1440), Twips(4335), Twips(3615));
    Label2 = new QLabel("Enter your Flight Simulator's main path:", Frame2);
    Label2->setGeometry(Twips(120), Twips(360), Twips(2775), Twips(255));
    Drive1 = new QComboBox(Frame2);
    Drive1->setGeometry(Twips(120), Twips(720), Twips(2535), Twips(315));
    Dir1 = new QListWidget(Frame2);
    Dir1->setGeometry(Twips(120), Twips(1080), Twips(3975), Twips(1215));
    Label4 = new QLabel("Current Directory:", Frame2);
    Label4->setGeometry(Twips(120), Twips(2520), Twips(1575), Twips(255));
    Text1 = new QLineEdit(Frame2);
    Text1->setGeometry(Twips(120), Twips(2760), Twips(3975), Twips(285));
    Text1->setReadOnly(true);
    QPalette inactive = Text1->palette();
    inactive.setColor(QPalette::Base, palette().color(QPalette::Inactive, QPalette::Window));
    Text1->setPalette(inactive);
    Label3 = new QLabel("Example: C:\\Program Files\\Microsoft Games\\Fs2002", Frame2);
    Label3->setGeometry(Twips(120), Twips(3240), Twips(3735), Twips(255));

    Command1 = new QPushButton("NEXT STEP --->", this);
    Command1->setGeometry(Twips(1800), Twips(5160), Twips(2655), Twips(495));
    setTabOrder(Command1, Option1);

    for (QWidget* control :
         std::initializer_list<QWidget*>{Label1, Option1, Label2, Label4, Label3}) {
        Fit_Width(control);
    }
    for (const auto& [text, root] : Drive_Choices()) {
        Drive1->addItem(text, QString::fromStdString(root));
    }
    connect(Option1, &QRadioButton::clicked, this, [this] { program_.module().fs_version = 1; });
    connect(Drive1, &QComboBox::currentIndexChanged, this, [this] { Drive1_Change(); });
    connect(Dir1, &QListWidget::itemActivated, this, [this](QListWidgetItem* item) {
        Set_Dir1_Path(item->data(Qt::UserRole).toString().toStdString());
    });
    connect(Command1, &QPushButton::clicked, this, [this] { Command1_Click(); });

    // The load: the option selected (which sets the version), Dir1 on Drive1's drive.
    Option1->setChecked(true);
    program_.module().fs_version = 1;
    setup_done = false;
    Drive1_Change();
    Command1->setFocus();
}

void Form2::Drive1_Change() {
    Set_Dir1_Path(Drive1->currentData().toString().toStdString());
}

void Form2::Set_Dir1_Path(const std::string& native_folder) {
    dir1_path_ = native_folder;
    Fill_Dir1();
    Dir1_Change();
}

void Form2::Dir1_Change() {
    Text1->setText(QString::fromStdString(dir1_path_));
}

// Like a folder list box: the chosen folder's ancestors, the folder itself, then the folders
// inside it, each opened by a double click.
void Form2::Fill_Dir1() {
    Dir1->clear();
    fs::path current(dir1_path_);
    std::vector<fs::path> ancestors;
    for (fs::path p = current; !p.empty(); p = p.parent_path()) {
        ancestors.insert(ancestors.begin(), p);
        if (p == p.root_path()) {
            break;
        }
    }
    int depth = 0;
    for (const fs::path& p : ancestors) {
        QString name = p == p.root_path() ? QString::fromStdString(p.string())
                                          : QString::fromStdString(p.filename().string());
        auto* item = new QListWidgetItem(QString(depth * 2, ' ') + name, Dir1);
        item->setData(Qt::UserRole, QString::fromStdString(p.string()));
        ++depth;
        if (p == current) {
            Dir1->setCurrentItem(item);
        }
    }
    std::vector<std::string> children;
    std::error_code error;
    for (fs::directory_iterator it(current, error), end; !error && it != end; it.increment(error)) {
        std::error_code type_error;
        if (it->is_directory(type_error) && it->path().filename().string()[0] != '.') {
            children.push_back(it->path().filename().string());
        }
    }
    std::sort(children.begin(), children.end());
    for (const std::string& child : children) {
        auto* item =
            new QListWidgetItem(QString(depth * 2, ' ') + QString::fromStdString(child), Dir1);
        item->setData(Qt::UserRole, QString::fromStdString((current / child).string()));
    }
}

void Form2::Command1_Click() {
    if (Text1->text().isEmpty() && !setup_done) {
        program_.Message(this, "Please enter the your fs directory", Message_Title,
                         Message_Icon::Information);
    }
    if (Text1->text().isEmpty()) {
        return;
    }
    if (Write_First_Config(program_.module(), Option1->isChecked(),
                           QString_To_Ansi(Text1->text())) != Config_Status::ok) {
        program_.Message(this,
                         "The settings file quilmark_config.cfg could not be written in this "
                         "folder. Please start the program in a folder where it may write.",
                         Message_Title, Message_Icon::Exclamation);
        return;
    }
    program_.Message(this, "Settings file created successfully!", Message_Title,
                     Message_Icon::Information);
    setup_done = true;
    program_.Show_Form3();
    program_.Unload_Form2();
}

void Form2::closeEvent(QCloseEvent* event) {
    event->ignore();
    program_.Form_Closed(this);
}

void Form2::Form_Unload() {
    if (setup_done) {
        return;
    }
    std::error_code error;
    fs::remove(Config_File_Name, error); // a failure, or no file at all, is of no matter
    program_.Message(this, "You didn't finish setup process, program will end", Message_Title,
                     Message_Icon::Information);
    program_.End_Program();
}
