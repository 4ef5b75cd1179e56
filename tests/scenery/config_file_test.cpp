#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <tuple>

#include "platform/native_paths.h"
#include "scenery/config_file.h"
#include "support/work_dir.h"

namespace quilmark {

namespace fs = std::filesystem;

namespace {

const std::string Path_25 = "E:\\Microsoft Games\\FS2002"; // 25 characters

// Title "Quilmark v1.1", mark 1, version 1, the 25-character path, the count.
std::string Expected_48_Bytes(char count_low, char count_high) {
    return std::string("\x0D\x00", 2) + "Quilmark v1.1" + "\x01\x01" + std::string("\x19\x00", 2) +
           Path_25 + count_low + count_high + std::string(2, '\0');
}

std::string File_Bytes() {
    return Read_Whole_File(Config_File_Name, 1 << 20).value_or("(missing)");
}

} // namespace

TEST(ConfigFile, WizardWriteAndScanUpdateKeepThe48ByteLayout) {
    Work_Dir here("config-layout");
    Module1 m;
    m.airport_count = 0x1234;
    EXPECT_EQ(Update_Config_Airport_Count(m), Config_Status::Missing); // skipped
    EXPECT_FALSE(fs::exists(Config_File_Name));

    ASSERT_EQ(Write_First_Config(m, true, Path_25), Config_Status::Ok);
    EXPECT_EQ(File_Bytes(), Expected_48_Bytes(0, 0));
    EXPECT_EQ(m.fs_version, 1);
    ASSERT_EQ(Update_Config_Airport_Count(m), Config_Status::Ok);
    EXPECT_EQ(File_Bytes(), Expected_48_Bytes(0x34, 0x12));
    // Only the file itself is in the folder: no temporary file is left behind.
    EXPECT_EQ(std::distance(fs::directory_iterator("."), fs::directory_iterator()), 1);

    Module1 later;
    ASSERT_EQ(Read_Config_File(later, Config_File_Name), Config_Status::Ok);
    EXPECT_EQ(later.config, (Config_Rec{"Quilmark v1.1", 1, 1, Path_25, 0x1234}));
    EXPECT_EQ(std::tie(later.fs_version, later.fs_path, later.airport_count),
              std::tie(m.fs_version, m.fs_path, m.airport_count));

    // A file longer than its record keeps its tail, as a write at position 0 does.
    std::ofstream(Config_File_Name, std::ios::binary | std::ios::app) << "TAIL";
    m.airport_count = 5;
    ASSERT_EQ(Update_Config_Airport_Count(m), Config_Status::Ok);
    EXPECT_EQ(File_Bytes(), Expected_48_Bytes(5, 0) + "TAIL");
}

TEST(ConfigFile, FileCutShortLeavesTheRemainingFieldsEmpty) {
    const std::string whole = Expected_48_Bytes(7, 0);
    const Config_Rec full{"Quilmark v1.1", 1, 1, Path_25, 7};
    struct Case {
        size_t length;
        Config_Rec expected;
    };
    const Case cases[] = {
        {0, {}},
        {1, {}},
        {14, {}}, // title cut in the middle
        {15, {full.title, 0, 0, "", 0}},
        {16, {full.title, 1, 0, "", 0}},
        {17, {full.title, 1, 1, "", 0}},
        {43, {full.title, 1, 1, "", 0}},
        {46, {full.title, 1, 1, Path_25, 0}}, // count cut in the middle
        {48, full},
        {60, full}, // bytes behind the record are not looked at
    };
    Work_Dir here("config-cut");
    for (const Case& c : cases) {
        std::ofstream(Config_File_Name, std::ios::binary)
            << (whole + std::string(12, 'z')).substr(0, c.length);
        Module1 m;
        m.fs_path = "stale";
        EXPECT_EQ(Read_Config_File(m, Config_File_Name), Config_Status::Ok) << c.length;
        EXPECT_EQ(m.config, c.expected) << c.length;
        EXPECT_EQ(m.fs_path, c.expected.fs_path) << c.length;
    }
}

TEST(ConfigFile, FailuresComeBackAsValues) {
    Work_Dir here("config-failures");
    Module1 m;
    EXPECT_EQ(Read_Config_File(m, Config_File_Name), Config_Status::Missing);
    EXPECT_EQ(Write_First_Config(m, true, std::string(65536, 'x')), Config_Status::Text_Too_Long);
    EXPECT_EQ(Write_First_Config(m, true, "x", "no/such/folder/cfg"), Config_Status::Unwritable);
    EXPECT_EQ(m.fs_path, "x"); // set before the write failed; the wizard stops there anyway
    // Without the simulator's option the version stays 0; the scan then reads no areas.
    Module1 fresh;
    ASSERT_EQ(Write_First_Config(fresh, false, "/home/ann/FS2002"), Config_Status::Ok);
    EXPECT_EQ(Decode_Config(File_Bytes()).fs_version, 0);
}

} // namespace quilmark
