#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "platform/drives.h"
#include "support/work_dir.h"

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
