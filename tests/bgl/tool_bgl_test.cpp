// quilmark-tool bgl on a fixture whose every value was worked out by hand from the record
// descriptions (an independent calculation in exact decimal arithmetic).
#include <gtest/gtest.h>

#include <filesystem>

#include "bgl_writer/bgl_writer.h"
#include "support/decode.h"
#include "support/example_field.h"
#include "support/json_value.h"
#include "support/named_pipe.h"
#include "support/tool_run.h"
#include "support/work_dir.h"

namespace quilmark {

TEST(ToolBgl, HandCheckedAirport) {
    Work_Dir work("tool-bgl");
    const std::string dir = work.Path().string();
    Write_File(dir + "/kxyz.bgl", Example_Field());
    // 3641 counts = 20.0006 degrees: a variation of 20 everywhere.
    Write_File(dir + "/magdec.bgl", Build_Magdec(Magdec_Values([](int, int) { return 3641; })));

    Tool_Run run = Run_Quilmark_Tool({"bgl", "--magdec", dir + "/magdec.bgl", dir + "/kxyz.bgl"});
    ASSERT_EQ(run.status, 0) << run.err;
    Json_Value json = Parse_Json(run.out);
    ASSERT_EQ(json["airport_count"].number, 1);
    ASSERT_EQ(json["airports"].Size(), 1u);
    const Json_Value& a = json["airports"][0];

    EXPECT_EQ(a["ident"].text, "KXYZ");
    EXPECT_EQ(a["name"].text, "EXAMPLE FIELD");
    EXPECT_EQ(a["lat"].number, 45.0);
    EXPECT_EQ(a["lon"].number, -119.99999994412065); // divides by 2^32 + 1
    EXPECT_EQ(a["tower_freq"].text, "119.9");        // the first of kind 6 wins
    EXPECT_EQ(a["ground_freq"].text, "121.7");
    EXPECT_EQ(a["atis_freq"].text, "118");
    EXPECT_EQ(a["approach_freq"].text, "124.75");
    EXPECT_EQ(a["departure_freq"].text, "126.05");
    EXPECT_EQ(a["clearance_freq"].text, "128.35");
    EXPECT_EQ(a["center_freq"].text, "132.1");

    ASSERT_EQ(a["runway_count"].number, 2);
    const Json_Value& r1 = a["runways"][0];
    EXPECT_EQ(r1["end1_name"].text, "4L");
    EXPECT_EQ(r1["end2_name"].text, "22R");
    EXPECT_EQ(r1["end1_lat"].number, 44.99549750080183);
    EXPECT_EQ(r1["end1_lon"].number, -120.0074751188925);
    EXPECT_EQ(r1["end2_lat"].number, 45.006752105517066);
    EXPECT_EQ(r1["end2_lon"].number, -119.99155839179247);
    EXPECT_EQ(r1["altitude_ft"].number, 427);  // 426.509
    EXPECT_EQ(r1["end1_heading"].number, 25);  // 45 true - 20
    EXPECT_EQ(r1["end2_heading"].number, 205); // -135 - 20 = -155, folded
    EXPECT_EQ(r1["length_raw"].number, 6000);
    EXPECT_EQ(r1["width_raw"].number, 150);
    const Json_Value& r2 = a["runways"][1];
    EXPECT_EQ(r2["end1_name"].text, "9");
    EXPECT_EQ(r2["end2_name"].text, "27");
    EXPECT_EQ(r2["end1_lon"].number, -120.00210029920592);
    EXPECT_EQ(r2["end2_lon"].number, -119.99860959211335);
    EXPECT_EQ(r2["end1_lat"].number, 44.99662559052166);
    EXPECT_EQ(r2["altitude_ft"].number, 430); // 429.79
    EXPECT_EQ(r2["end1_heading"].number, 70);
    EXPECT_EQ(r2["end2_heading"].number, 250);

    ASSERT_EQ(a["ils_count"].number, 3);
    const Json_Value& ia = a["ils"][0];
    EXPECT_EQ(ia["ils_name"].text, "IXYZ");
    EXPECT_EQ(ia["frequency"].text, "110.3");
    EXPECT_EQ(ia["mag_heading"].number, 25);
    EXPECT_EQ(ia["lat"].number, r1["end1_lat"].number); // seated on the primary end
    EXPECT_EQ(ia["lon"].number, r1["end1_lon"].number);
    const Json_Value& ib = a["ils"][1]; // behind a VOR that was stepped over
    EXPECT_EQ(ib["ils_name"].text, "IABC");
    EXPECT_EQ(ib["frequency"].text, "111.9");
    EXPECT_EQ(ib["mag_heading"].number, 205);
    EXPECT_EQ(ib["lat"].number, r1["end2_lat"].number); // seated on the reciprocal end
    EXPECT_EQ(ib["lon"].number, r1["end2_lon"].number);
    const Json_Value& ic = a["ils"][2];
    EXPECT_EQ(ic["ils_name"].text, "");
    EXPECT_EQ(ic["frequency"].text, "108.5");
    EXPECT_EQ(ic["mag_heading"].number, 80);
    EXPECT_EQ(ic["lat"].number, 44.98762716524608); // matches neither end: its own place
    EXPECT_EQ(ic["lon"].number, -119.99867856502533);

    ASSERT_EQ(a["taxi_point_count"].number, 3);
    const Json_Value& points = a["taxi_points"];
    EXPECT_EQ(points[0]["lat"].number, 45.0);
    EXPECT_EQ(points[0]["lon"].number, -119.99999994412065); // full precision at offset 0
    EXPECT_EQ(points[1]["point_kind"].number, 1);
    EXPECT_EQ(points[1]["lat"].number, 44.999548);
    EXPECT_EQ(points[1]["lon"].number, -119.998721);
    EXPECT_EQ(points[2]["lat"].number, 45.0027);
    EXPECT_EQ(points[2]["lon"].number, -120.002545);

    ASSERT_EQ(a["parking_count"].number, 2);
    const Json_Value& spots = a["parkings"];
    EXPECT_EQ(spots[0]["spot_name"].text, "GATE B 12");
    EXPECT_EQ(spots[0]["lat"].number, 45.00054);
    EXPECT_EQ(spots[0]["lon"].number, -119.999364);
    EXPECT_EQ(spots[0]["radius_ft"].number, 66); // 65.617
    EXPECT_EQ(spots[1]["spot_name"].text, "N PARKING 1056");
    EXPECT_EQ(spots[1]["lat"].number, 45.0);
    EXPECT_EQ(spots[1]["lon"].number, -120.000382);
    EXPECT_EQ(spots[1]["radius_ft"].number, 50); // 49.9999992

    ASSERT_EQ(a["taxi_path_count"].number, 5);
    const Json_Value& paths = a["taxi_paths"];
    const char* labels[] = {"A", "B1", "Runway 9", "7", "5"};
    for (size_t i = 0; i < 5; ++i) {
        EXPECT_EQ(paths[i]["path_label"].text, labels[i]) << i;
    }
    EXPECT_EQ(paths[3]["path_kind"].number, 2);
    EXPECT_EQ(paths[3]["start_point"].number, 2);
    EXPECT_EQ(paths[3]["end_point"].number, 0);
}

TEST(ToolBgl, UnallocatedTaxiwayListsAreNullTextsUtf8AndMissingFilesReported) {
    Work_Dir work("tool-bgl");
    const std::string dir = work.Path().string();
    Write_File(dir + "/plain.bgl", One_Airport_File("KABC", Name_Record("Pl\xE4in")));
    Write_File(dir + "/not_bgl.bgl", Bytes(300, 7));
    Tool_Run run =
        Run_Quilmark_Tool({"bgl", dir + "/missing.bgl", dir + "/not_bgl.bgl", dir + "/plain.bgl"});
    EXPECT_EQ(run.status, 1);
    EXPECT_NE(run.err.find("missing.bgl"), std::string::npos);
    Json_Value json = Parse_Json(run.out);
    ASSERT_EQ(json["airport_count"].number, 1); // the other files were still decoded
    const Json_Value& a = json["airports"][0];
    EXPECT_EQ(a["name"].text, "PL\xC3\x84IN"); // texts leave as UTF-8
    EXPECT_TRUE(a["taxi_points"].Is_Null());
    EXPECT_TRUE(a["parkings"].Is_Null());
    EXPECT_TRUE(a["taxi_paths"].Is_Null());
    EXPECT_EQ(a["runways"].Size(), 0u);
    EXPECT_EQ(a["runway_count"].number, 0);
}

TEST(ToolBgl, InputsThatAreNoRegularFilesAreRefusedAtOnce) {
    Work_Dir dir("tool-inputs");
    Named_Pipe pipe("pipe.bgl");
    std::filesystem::create_directory("folder.bgl");
    const std::vector<std::string> cases[] = {{"bgl", "pipe.bgl"},
                                              {"bgl", "folder.bgl"},
                                              {"bgl", "--magdec", "pipe.bgl", "folder.bgl"},
                                              {"db", "pipe.bgl", "0"},
                                              {"db", "folder.bgl", "0"}};
    for (const std::vector<std::string>& args : cases) {
        Tool_Run run = Run_Quilmark_Tool(args);
        EXPECT_EQ(run.status, 1) << args[0] << " " << args[1];
        EXPECT_NE(run.err.find("cannot open"), std::string::npos) << run.err;
    }
    EXPECT_FALSE(pipe.Reader_Was_Stuck());
}

} // namespace quilmark
