#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "platform/native_paths.h"
#include "platform/text1252.h"
#include "support/work_dir.h"

namespace quilmark {

namespace fs = std::filesystem;

namespace {

struct Temp_Tree {
    Work_Dir dir{"paths"};
    fs::path root = dir.Path();
    fs::path File(const fs::path& relative, const std::string& bytes = "x") {
        fs::create_directories((root / relative).parent_path());
        std::ofstream(root / relative, std::ios::binary) << bytes;
        return root / relative;
    }
    Drive_List Drives() const { return {{{"C:", Drive_Type_Fixed, "", root.string(), true}}, ""}; }
};

} // namespace

TEST(NativePaths, ResolverMatchesEachComponentWithoutRegardToCase) {
    Temp_Tree tree;
    fs::path bgl = tree.File("Scenery/World/scenery/AP1234.BGL");
    fs::path zurich = tree.File("Z\xC3\xBCrich/x.bgl"); // UTF-8 name on disk
    tree.File("Two/Data/a");
    tree.File("Two/DATA/b");
    std::string r = tree.root.string();
    struct Case {
        std::string path;
        std::string expected;
    };
    const Case cases[] = {
        {"c:\\scenery\\world\\scenery\\ap1234.bgl", bgl.string()},
        {"C:/SCENERY//World\\\\scenery\\AP1234.bgl", bgl.string()},
        {"c:scenery\\world\\scenery\\ap1234.bgl", bgl.string()},
        {"c:\\scenery\\..\\scenery\\.\\world\\scenery\\ap1234.bgl", bgl.string()},
        {"c:\\..\\..\\scenery", r + "/Scenery"},   // no way above the drive's root
        {"c:\\z\xFCrich\\X.BGL", zurich.string()}, // Windows-1252 text
        {"c:\\Z\xDCRICH", zurich.parent_path().string()},
        {"c:\\two\\DATA", r + "/Two/DATA"}, // the name as given, where it exists
        {"c:\\two\\data", r + "/Two/DATA"}, // else the lowest by bytes
        {"c:\\scenery\\gone\\Deeper\\f.bgl", r + "/Scenery/gone/Deeper/f.bgl"},
        {r + "/Scenery/World", r + "/Scenery/World"}, // a native path passes through
        // A native simulator folder after the scenery passes: lower case, mixed separators.
        {Lower_1252(r + "\\scenery\\world"), r + "/Scenery/World"},
        {"x:\\scenery", ""}, // no such drive
        {"", ""},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(Resolve_Native_Path(tree.Drives(), c.path), c.expected) << c.path;
    }
}

TEST(NativePaths, WildcardsMatchWithoutRegardToCase) {
    struct Case {
        const char* pattern;
        const char* name;
        bool match;
    };
    const Case cases[] = {
        {"*.bgl", "AP1234.BGL", true}, {"*.bgl", "ap.bgl.bak", false}, {"*.bgl", ".bgl", true},
        {"?.bgl", "a.BGL", true},      {"a*b*c", "aXbYbZc", true},     {"a*b*c", "aXbYc!", false},
        {"*.*", "README", true},       {"\xE9*", "\xC9t\xE9", true}, // é matches É
    };
    for (const Case& c : cases) {
        EXPECT_EQ(Wildcard_Match(c.pattern, c.name), c.match) << c.pattern << " " << c.name;
    }
}

TEST(NativePaths, ListingAndExistenceTakeNormalFilesOnly) {
    Temp_Tree tree;
    for (const char* name : {"b.BGL", "a.bgl", "A.bgl", "_x.bgl", "c.txt", ".hidden.bgl"}) {
        tree.File(fs::path("Area/Scenery") / name);
    }
    fs::create_directories(tree.root / "Area/Scenery/d.bgl");
    fs::create_symlink(tree.root / "nowhere", tree.root / "Area/Scenery/e.bgl");
    fs::create_symlink(tree.root / "Area/Scenery/c.txt", tree.root / "Area/Scenery/f.bgl");

    std::vector<std::string> names;
    for (const Listed_File_Rec& file :
         List_Folder_Files(tree.Drives(), "c:\\area\\scenery", "*.bgl")) {
        names.push_back(file.name);
        EXPECT_TRUE(fs::is_regular_file(file.native_path)) << file.native_path;
    }
    // By upper case first, so "_" (0x5F) comes after the letters; then by bytes.
    EXPECT_EQ(names, (std::vector<std::string>{"A.bgl", "a.bgl", "b.BGL", "f.bgl", "_x.bgl"}));
    EXPECT_TRUE(List_Folder_Files(tree.Drives(), "c:\\no\\such", "*.bgl").empty());

    EXPECT_TRUE(Normal_File_Exists(tree.Drives(), "c:\\area\\scenery\\B.bgl"));
    EXPECT_TRUE(Normal_File_Exists(tree.Drives(), (tree.root / "Area/Scenery/f.bgl").string()));
    for (const char* name : {"d.bgl", "e.bgl", "missing.bgl"}) {
        EXPECT_FALSE(Normal_File_Exists(tree.Drives(), std::string("c:\\area\\scenery\\") + name));
    }
}

TEST(NativePaths, AWriteClearsWhatStoppedWritesOfTheSameFileLeft) {
    Temp_Tree tree;
    const std::pair<const char*, bool> leftovers[] = {
        {".all_fs_airports.dat.tmp-3141592653", true}, // a write of the file, killed
        {".all_fs_airports.dat.tmp-", false},          // from here on: not ours
        {".all_fs_airports.dat.tmp-12a", false},
        {"all_fs_airports.dat.tmp-12", false},
        {".all_fs_airports.dat.bak", false},
        {".quilmark_config.cfg.tmp-27", false}, // another file's, cleared at its own write
    };
    for (const auto& [name, removed] : leftovers) {
        tree.File(name);
    }
    fs::create_directory(tree.root / ".all_fs_airports.dat.tmp-55"); // only files are ours
    ASSERT_TRUE(Write_File_Replacing((tree.root / "all_fs_airports.dat").string(), "db"));
    for (const auto& [name, removed] : leftovers) {
        EXPECT_EQ(fs::exists(tree.root / name), !removed) << name;
    }
    EXPECT_TRUE(fs::is_directory(tree.root / ".all_fs_airports.dat.tmp-55"));
    EXPECT_EQ(Read_Whole_File((tree.root / "all_fs_airports.dat").string(), 2), "db");
}

} // namespace quilmark
