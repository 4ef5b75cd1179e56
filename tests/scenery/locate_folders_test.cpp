#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "platform/native_paths.h"
#include "scenery/locate_folders.h"
#include "support/work_dir.h"

namespace quilmark {

namespace fs = std::filesystem;

namespace {

Module1 With_Areas(const std::string& fs_path, const std::vector<Scenery_Area>& areas) {
    Module1 m;
    m.fs_path = fs_path;
    m.scenery_areas.Release();
    for (const Scenery_Area& area : areas) {
        Append(m.scenery_areas, m.scenery_area_count) = area;
    }
    return m;
}

Scenery_Area Paths(std::string local, std::string remote = "") {
    Scenery_Area area;
    area.Local = std::move(local);
    area.Remote = std::move(remote);
    return area;
}

} // namespace

TEST(LocateFolders, ThreePassesOverLabelsRelativePathsAndSubfolders) {
    const Drive_List drives = {{
                                   {"C:", Drive_Type_Fixed, "Win", "/w/c", true},
                                   {"D:", Drive_Type_Cd_Rom, "FS2002 Disk2", "/w/d", true},
                                   {"E:", Drive_Type_Network, "Net", "/w/e", true},
                                   {"F:", Drive_Type_Cd_Rom, "Empty Tray", "/w/f", false},
                                   {"G:", Drive_Type_Fixed, "", "/w/g", true},
                               },
                               ""};
    const std::string fs_path = "C:\\Program Files\\FS2002";
    struct Case {
        Scenery_Area in;
        Scenery_Area out;
    };
    const Case cases[] = {
        {Paths("Scenery\\World"), Paths("c:\\program files\\fs2002\\scenery\\world\\scenery")},
        {Paths("sCENERY"), Paths("C:\\Program Files\\FS2002\\sCENERY")},
        {Paths("[FS2002 Disk2]\\Scenery\\World", "[fs2002 DISK2]\\Scenery"),
         Paths("d:\\scenery\\world\\scenery", "d:\\scenery\\scenery")},
        {Paths("[]\\Odd"), Paths("g:\\odd\\scenery")}, // a drive without a label
        // A label of a drive without a medium stays, and the path is relative.
        {Paths("[Empty Tray]\\x"), Paths("c:\\program files\\fs2002\\[empty tray]\\x\\scenery")},
        {Paths("Addon [FS2002 Disk2]"),
         Paths("c:\\program files\\fs2002\\addon [fs2002 disk2]\\scenery")},
        // A drive path anywhere in the text makes it absolute; a network drive's does not.
        {Paths("D:\\Addons\\Foo"), Paths("d:\\addons\\foo\\scenery")},
        {Paths("Addons\\Abc:x"), Paths("addons\\abc:x\\scenery")},
        {Paths("E:\\Foo"), Paths("c:\\program files\\fs2002\\e:\\foo\\scenery")},
        // Remote takes no part in the relative pass.
        {Paths("", "Scenery\\Remote"), Paths("", "scenery\\remote\\scenery")},
        {Paths(""), Paths("")},
    };
    std::vector<Scenery_Area> in;
    for (const Case& c : cases) {
        in.push_back(c.in);
    }
    Module1 m = With_Areas(fs_path, in);
    Locate_Scenery_Folders(m, drives);
    for (size_t i = 0; i < std::size(cases); ++i) {
        EXPECT_EQ(m.scenery_areas[i].Local, cases[i].out.Local) << cases[i].in.Local;
        EXPECT_EQ(m.scenery_areas[i].Remote, cases[i].out.Remote) << cases[i].in.Remote;
    }
    EXPECT_EQ(m.scenery_areas[std::size(cases)], Scenery_Area{}); // the spare slot
}

// Inside a Wine prefix, the simulator's folder leads to the prefix's drives, and a CD label
// of scenery.cfg to the files on the disc. (The texts: the test above.)
TEST(LocateFolders, WinePrefixLabelsLeadToTheFilesOnTheDisc) {
    Work_Dir temp("locate-wine");
    const fs::path prefix = temp.Path() / "prefix";
    const fs::path disc = temp.Path() / "media/cdrom0";
    fs::create_directories(prefix / "dosdevices");
    fs::create_directories(prefix / "drive_c/FS2002");
    fs::create_directories(disc / "SCENERY/World/Scenery");
    fs::create_symlink("../drive_c", prefix / "dosdevices/c:");
    fs::create_symlink(disc, prefix / "dosdevices/d:");
    std::ofstream(disc / ".windows-label") << "FS2002 Disk2\n";
    std::ofstream(disc / "SCENERY/World/Scenery/Cd.bgl") << "x";

    const std::string sim = (prefix / "drive_c/FS2002").string();
    Drive_List drives = Drive_List_For_Fs_Path(sim);
    Module1 m = With_Areas(sim, {Paths("[FS2002 Disk2]\\Scenery\\World")});
    Locate_Scenery_Folders(m, drives);
    const auto files = List_Folder_Files(drives, m.scenery_areas[0].Local, "*.BGL");
    ASSERT_EQ(files.size(), 1u);
    EXPECT_EQ(files[0].native_path, (disc / "SCENERY/World/Scenery/Cd.bgl").string());
}

} // namespace quilmark
