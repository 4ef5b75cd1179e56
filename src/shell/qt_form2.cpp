#include "shell/qt_form2.h"

#include <QAbstractItemView>
#include <QCloseEvent>
#include <QComboBox>
#include <QDir>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QRadioButton>
#include <QStyledItemDelegate>
#include <filesystem>

#include "platform/drives.h"
#include "scenery/config_file.h"
#include "shell/qt_widgets.h"
#include "state/module1.h"

namespace quilmark {

namespace fs = std::filesystem;

namespace {

constexpr int Folder_Path_Role = Qt::UserRole;
constexpr int Folder_Depth_Role = Qt::UserRole + 1;

// A folder as the user knows it: the home folder written as "~".
QString Home_Relative(const QString& folder, const QString& home) {
    if (folder == home) {
        return "~";
    }
    return folder.startsWith(home + "/") ? "~" + folder.mid(home.size()) : folder;
}

// The places a Linux user's simulator can live: the drive C: of every Wine prefix in the
// home folder, the home folder itself and the root of the file system.
std::vector<std::pair<QString, std::string>> Drive_Choices() {
    std::vector<std::pair<QString, std::string>> choices;
    const QString home = QDir::homePath();
    for (const Wine_Prefix_Rec& prefix : Find_Home_Wine_Prefixes(home.toStdString())) {
        choices.push_back(
            {"c: [" + Home_Relative(QString::fromStdString(prefix.prefix), home) + "]",
             prefix.c_root});
    }
    choices.push_back({"~ [" + home + "]", home.toStdString()});
    choices.push_back({"/ [root]", "/"});
    return choices;
}

// Draws each folder indented by its depth below the root, as a folder list box does, while
// the item's text stays the bare name, for the list's jump to a folder by its first letters.
class Folder_Indent : public QStyledItemDelegate {
  public:
    using QStyledItemDelegate::QStyledItemDelegate;
    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override {
        QStyleOptionViewItem indented(option);
        indented.rect.setLeft(option.rect.left() + Indent(option, index));
        QStyledItemDelegate::paint(painter, indented, index);
    }
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override {
        return QStyledItemDelegate::sizeHint(option, index) + QSize(Indent(option, index), 0);
    }

  private:
    static int Indent(const QStyleOptionViewItem& option, const QModelIndex& index) {
        return index.data(Folder_Depth_Role).toInt() * option.fontMetrics.horizontalAdvance("  ");
    }
};

} // namespace

Form2::Form2(Form_Flow& flow, Module1& module) : flow_(flow), module_(module) {
    setWindowTitle("Settings");
    setFixedSize(Twips(4590), Twips(5820));

    Frame1 = new QGroupBox("Flight Simulator Information", this);
    Frame1->setGeometry(Twips(120), Twips(120), Twips(4335), Twips(1215));
    Label1 = new QLabel("Select the version of your Microsoft Flight Simulator:", Frame1);
    Label1->setGeometry(Twips(120), Twips(360), Twips(3735), Twips(255));
    Option1 = new QRadioButton("Microsoft Flight Simulator 2002", Frame1);
    Option1->setGeometry(Twips(1440), Twips(720), Twips(2535), Twips(255));
    Option2 = new QRadioButton("Microsoft Flight Simulator 2004", Frame1);
    Option2->setGeometry(Twips(1440), Twips(960), Twips(2535), Twips(255));

    Frame2 = new QGroupBox("Flight Simulator's Path", this);
    Frame2->setGeometry(Twips(120), Twips(1440), Twips(4335), Twips(3615));
    Label2 = new QLabel("Enter your Flight Simulator's main path:", Frame2);
    Label2->setGeometry(Twips(120), Twips(360), Twips(2775), Twips(255));
    Drive1 = new QComboBox(Frame2);
    Drive1->setGeometry(Twips(120), Twips(720), Twips(2535), Twips(315));
    Dir1 = new QListWidget(Frame2);
    Dir1->setGeometry(Twips(120), Twips(1080), Twips(3975), Twips(1215));
    Dir1->setItemDelegate(new Folder_Indent(Dir1));
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
         std::initializer_list<QWidget*>{Label1, Option1, Option2, Label2, Label4, Label3}) {
        Fit_Width(control);
    }
    for (const auto& [text, root] : Drive_Choices()) {
        Drive1->addItem(text, QString::fromStdString(root));
    }
    // The prefixes' names can be long: the open list is as wide as they are.
    Drive1->view()->setMinimumWidth(Drive1->view()->sizeHintForColumn(0) + 8);
    connect(Option1, &QRadioButton::clicked, this,
            [this] { module_.fs_version = Fs_Version_2002; });
    connect(Option2, &QRadioButton::clicked, this,
            [this] { module_.fs_version = Fs_Version_2004; });
    connect(Drive1, &QComboBox::currentIndexChanged, this, [this] { Drive1_Change(); });
    // A click, or a jump by first letters, chooses a folder; a double click opens it.
    connect(Dir1, &QListWidget::currentItemChanged, this, [this] { Dir1_Change(); });
    connect(Dir1, &QListWidget::itemActivated, this, [this](QListWidgetItem* item) {
        Set_Dir1_Path(item->data(Folder_Path_Role).toString().toStdString());
    });
    connect(Command1, &QPushButton::clicked, this, [this] { Command1_Click(); });

    // The load: the option selected (which sets the version), Dir1 on Drive1's drive.
    Option1->setChecked(true);
    module_.fs_version = 1;
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
    const QListWidgetItem* chosen = Dir1->currentItem();
    Text1->setText(chosen != nullptr ? chosen->data(Folder_Path_Role).toString()
                                     : QString::fromStdString(dir1_path_));
}

// Like a folder list box: the open folder's ancestors, the folder itself, then the folders
// inside it, hidden ones too, each opened by a double click.
void Form2::Fill_Dir1() {
    Dir1->clear();
    fs::path current(dir1_path_);
    // The chain starts at the root of Drive1's drive, named as the drive ("c:", "~"), when
    // the folder lies on it, else at the root of the file system.
    const fs::path drive_root(Drive1->currentData().toString().toStdString());
    std::vector<fs::path> ancestors;
    for (fs::path p = current; !p.empty(); p = p.parent_path()) {
        ancestors.insert(ancestors.begin(), p);
        if (p == drive_root || p == p.root_path()) {
            break;
        }
    }
    int depth = 0;
    for (const fs::path& p : ancestors) {
        QString name = p == drive_root      ? Drive1->currentText().section(" [", 0, 0)
                       : p == p.root_path() ? QString::fromStdString(p.string())
                                            : QString::fromStdString(p.filename().string());
        auto* item = new QListWidgetItem(name, Dir1);
        item->setData(Folder_Path_Role, QString::fromStdString(p.string()));
        item->setData(Folder_Depth_Role, depth);
        ++depth;
        if (p == current) {
            Dir1->setCurrentItem(item);
        }
    }
    std::vector<std::string> children;
    std::error_code error;
    for (fs::directory_iterator it(current, error), end; !error && it != end; it.increment(error)) {
        std::error_code type_error;
        if (it->is_directory(type_error)) {
            children.push_back(it->path().filename().string());
        }
    }
    std::sort(children.begin(), children.end());
    for (const std::string& child : children) {
        auto* item = new QListWidgetItem(QString::fromStdString(child), Dir1);
        item->setData(Folder_Path_Role, QString::fromStdString((current / child).string()));
        item->setData(Folder_Depth_Role, depth);
    }
}

void Form2::Command1_Click() {
    if (Text1->text().isEmpty() && !setup_done) {
        flow_.Message(Form_Id::Form2, "Please enter the your fs directory", Message_Title,
                      Message_Icon::Information);
    }
    if (Text1->text().isEmpty()) {
        return;
    }
    const uint8_t chosen = Option2->isChecked()   ? Fs_Version_2004
                           : Option1->isChecked() ? Fs_Version_2002
                                                  : 0;
    if (Write_Chosen_Config(module_, chosen, QString_To_Ansi(Text1->text())) != Config_Status::Ok) {
        flow_.Message(Form_Id::Form2,
                      "The settings file quilmark_config.cfg could not be written in this "
                      "folder. Please start the program in a folder where it may write.",
                      Message_Title, Message_Icon::Exclamation);
        return;
    }
    flow_.Message(Form_Id::Form2, "Settings file created successfully!", Message_Title,
                  Message_Icon::Information);
    setup_done = true;
    flow_.Show_Form(Form_Id::Form3);
    flow_.Unload_Form(Form_Id::Form2);
}

void Form2::closeEvent(QCloseEvent* event) {
    event->ignore();
    flow_.Unload_Form(Form_Id::Form2);
}

void Form2::Form_Unload() {
    if (setup_done) {
        return;
    }
    std::error_code error;
    fs::remove(Config_File_Name, error); // a failure, or no file at all, is of no matter
    flow_.Message(Form_Id::Form2, "You didn't finish setup process, program will end",
                  Message_Title, Message_Icon::Information);
    flow_.End_Program();
}

} // namespace quilmark
