#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "platform/native_paths.h"

namespace fs = std::filesystem;

namespace {

struct Temp_Tree {
    fs::path root =
        fs::path(testing::TempDir()) /
        ("qm-" + std::string(testing::UnitTest::GetInstance()->current_test_info()->name()));
    Temp_Tree() {
        fs::remove_all(root);
        fs::create_directories(root);
    }
    ~Temp_Tree() { fs::remove_all(root); }
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
        {r + "\\scenery\\world", r + "/Scenery/World"},
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
        {"*.bgl", "bgl", false},       {"?.bgl", "a.BGL", true},       {"?.bgl", "ab.bgl", false},
        {"a*b*c", "aXbYbZc", true},    {"a*b*c", "aXbYc!", false},     {"*", "", true},
        {"*.*", "README", true},       {"\xE9*", "\xC9t\xE9", true}, // é matches É
    };
    for (const Case& c : cases) {
        EXPECT_EQ(Wildcard_Match(c.pattern, c.name), c.match) << c.pattern << " " << c.name;
    }
}

TEST(NativePaths, ListingGivesNormalFilesInWindowsOrder) {
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
}

TEST(NativePaths, ExistenceAndReplacingWrites) {
    Temp_Tree tree;
    fs::path file = tree.File("Dir/File.dat", "old contents");
    fs::create_symlink(tree.root / "nowhere", tree.root / "Dir/dangling");
    EXPECT_TRUE(Normal_File_Exists(tree.Drives(), "c:\\dir\\file.dat"));
    EXPECT_TRUE(Normal_File_Exists(tree.Drives(), file.string()));
    EXPECT_FALSE(Normal_File_Exists(tree.Drives(), "c:\\dir"));
    EXPECT_FALSE(Normal_File_Exists(tree.Drives(), "c:\\dir\\dangling"));
    EXPECT_FALSE(Normal_File_Exists(tree.Drives(), "c:\\dir\\missing"));

    ASSERT_TRUE(Write_File_Replacing(file.string(), std::string("new\0bytes", 9)));
    EXPECT_EQ(Read_Whole_File(file.string()), std::string("new\0bytes", 9));
    EXPECT_FALSE(Read_Whole_File(file.string(), 8).has_value()); // over the size limit
    EXPECT_FALSE(Write_File_Replacing((tree.root / "none/x").string(), "x"));
    // Nothing but the file and the link is left in the folder.
    EXPECT_EQ(std::distance(fs::directory_iterator(tree.root / "Dir"), fs::directory_iterator()),
              2);
}
