#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "platform/drives.h"
#include "support/work_dir.h"

namespace quilmark {

namespace fs = std::filesystem;

namespace {

// A Wine prefix as winecfg leaves it, with drives of every kind the list tells apart.
struct Fake_Prefix {
    Work_Dir dir{"drives"};
    fs::path top = dir.Path();
    fs::path prefix = top / ".wine";

    Fake_Prefix() {
        fs::create_directories(prefix / "dosdevices");
        fs::create_directories(prefix / "drive_c/Program Files/FS2002");
        fs::create_directories(top / "media/cdrom0");
        fs::create_directories(top / "stuff");
        fs::create_directories(top / "discs/FS2K");
        fs::create_directories(top / "data");
        std::ofstream(prefix / "drive_c/.windows-label") << "System\n";
        std::ofstream(top / "media/cdrom0/.windows-label") << "FS2002 Disk2\n";
        std::ofstream(top / "discs/FS2K/.windows-label") << "Caf\xC3\xA9"; // UTF-8, no newline
        std::ofstream(prefix / "system.reg") << "WINE REGISTRY Version 2\n"
                                                "[Software\\\\Wine\\\\Drives] 1700000000\n"
                                                "#time=1da0\n\"h:\"=\"cdrom\"\n\"z:\"=\"network\"\n"
                                                "[Software\\\\Wine\\\\Other] 1700000000\n"
                                                "\"e:\"=\"cdrom\"\n";
        Link("c:", "../drive_c");
        Link("d:", top / "media/cdrom0");
        Link("e:", top / "stuff");
        Link("e::", "/dev/sdb1");
        Link("f:", top / "discs/FS2K");
        Link("f::", "/dev/sr1");
        Link("g:", top / "gone");
        Link("h:", top / "data");
        Link("z:", "/");
        Link("com1", "/dev/ttyS0");
    }
    void Link(const char* name, const fs::path& target) {
        fs::create_symlink(target, prefix / "dosdevices" / name);
    }
};

} // namespace

TEST(Drives, WinePrefixGivesLettersTypesLabelsAndRoots) {
    Fake_Prefix f;
    Drive_List list = Wine_Drive_List(f.prefix.string());
    std::string t = f.top.string();
    const std::vector<Drive_Rec> expected = {
        {"C:", Drive_Type_Fixed, "System", f.prefix.string() + "/drive_c", true},
        {"D:", Drive_Type_Cd_Rom, "FS2002 Disk2", t + "/media/cdrom0", true}, // mount name
        {"E:", Drive_Type_Fixed, "", t + "/stuff", true},                     // disk device
        {"F:", Drive_Type_Cd_Rom, "Caf\xE9", t + "/discs/FS2K", true},        // optical device
        {"G:", Drive_Type_Fixed, "", t + "/gone", false},                     // dangling link
        {"H:", Drive_Type_Cd_Rom, "", t + "/data", true}, // the registry says so
        {"Z:", Drive_Type_Network, "", "/", true},
    };
    EXPECT_EQ(list.drives, expected);
    EXPECT_EQ(list.wine_prefix, f.prefix.string());
    ASSERT_NE(Find_Drive(list, "d:"), nullptr);
    EXPECT_EQ(Find_Drive(list, "d:")->path, "D:");
    EXPECT_EQ(Find_Drive(list, "Q:"), nullptr);
}

TEST(Drives, PrefixIsFoundAboveTheSimulatorFolderOnly) {
    Fake_Prefix f;
    std::string prefix = f.prefix.string();
    EXPECT_EQ(Find_Wine_Prefix((f.prefix / "drive_c/Program Files/FS2002").string()), prefix);
    EXPECT_EQ(Find_Wine_Prefix((f.prefix / "dosdevices/c:/Program Files/FS2002").string()), prefix);
    EXPECT_EQ(Find_Wine_Prefix(prefix), prefix);
    EXPECT_EQ(Find_Wine_Prefix((f.top / "stuff").string()), "");

    EXPECT_EQ(Drive_List_For_Folder((f.prefix / "drive_c").string()).drives.size(), 7u);
    Drive_List plain = Drive_List_For_Folder((f.top / "stuff").string());
    EXPECT_EQ(plain.drives, Plain_Drive_List().drives);
    EXPECT_EQ(plain.drives.at(0).native_root, "/");
    EXPECT_EQ(plain.wine_prefix, "");
}

TEST(Drives, HomePrefixesOfWineAndTheGameLaunchers) {
    Work_Dir dir("home-prefixes");
    const fs::path home = dir.Path();
    const std::string h = home.string();
    // A prefix with its drive_c folder, and dosdevices links where Wine has run in it.
    const auto make_prefix = [&](const std::string& folder, const fs::path& c_link) {
        fs::create_directories(home / folder / "drive_c");
        if (!c_link.empty()) {
            fs::create_directories(home / folder / "dosdevices");
            fs::create_symlink(c_link, home / folder / "dosdevices/c:");
        }
    };
    make_prefix(".wine", "../drive_c");
    make_prefix(".wine-fs2002", "");
    fs::create_directories(home / ".wine-notes"); // no drive C: here
    make_prefix(".local/share/wineprefixes/fs9", "");
    make_prefix("Games/flight-simulator-2002", "");
    fs::create_directories(home / "Games/tetris"); // a native game
    fs::create_directories(home / "Disks/c");
    make_prefix(".local/share/bottles/bottles/Gaming", home / "Disks/c"); // C: elsewhere
    make_prefix(".PlayOnLinux/wineprefix/FS2002", "");
    make_prefix(".local/share/Steam/steamapps/compatdata/12345/pfx", "../drive_c");
    fs::create_directories(home / ".local/share/Steam/steamapps/compatdata/0"); // no pfx
    // Steam's usual link: the same prefixes a second way, listed once.
    fs::create_directories(home / ".steam");
    fs::create_directory_symlink(home / ".local/share/Steam", home / ".steam/steam");

    const std::vector<Wine_Prefix_Rec> expected = {
        {h + "/.wine", h + "/.wine/drive_c"},
        {h + "/.wine-fs2002", h + "/.wine-fs2002/drive_c"},
        {h + "/.local/share/wineprefixes/fs9", h + "/.local/share/wineprefixes/fs9/drive_c"},
        {h + "/Games/flight-simulator-2002", h + "/Games/flight-simulator-2002/drive_c"},
        {h + "/.local/share/bottles/bottles/Gaming", h + "/Disks/c"},
        {h + "/.PlayOnLinux/wineprefix/FS2002", h + "/.PlayOnLinux/wineprefix/FS2002/drive_c"},
        {h + "/.local/share/Steam/steamapps/compatdata/12345/pfx",
         h + "/.local/share/Steam/steamapps/compatdata/12345/pfx/drive_c"},
    };
    EXPECT_EQ(Find_Home_Wine_Prefixes(h), expected);
    EXPECT_TRUE(Find_Home_Wine_Prefixes(h + "/nowhere").empty());
}

} // namespace quilmark
