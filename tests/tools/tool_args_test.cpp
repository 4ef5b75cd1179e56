#include <gtest/gtest.h>

#include <algorithm>
#include <regex>

#include "support/tool_run.h"
#include "support/work_dir.h"

namespace quilmark {

TEST(ToolArgs, MisuseIsAnsweredWithOneLineAndStatus2) {
    Work_Dir dir("tool-args");
    ASSERT_EQ(Run_Quilmark_Tool({"init", Sample_World_Folder()}).status, 0);
    const std::string entry = "KSEA (SEATTLE-TACOMA INTL)";
    struct Case {
        std::vector<std::string> args;
        std::string reason; // a part of the answer that names the fault
    };
    const Case cases[] = {
        {{}, "no command"},
        {{"draw"}, "\"draw\""},
        {{"init"}, "FS_PATH missing"},
        {{"init", "a", "b"}, "\"b\""},
        {{"scan", "now"}, "\"now\""},
        {{"bgl"}, "FILE missing"},
        {{"bgl", "x.bgl", "--magdec"}, "--magdec needs MAGDEC"},
        {{"db", "all_fs_airports.dat"}, "COUNT missing"},
        {{"db", "all_fs_airports.dat", "ten"}, "COUNT must be a whole number"},
        {{"fetch", "KSEA"}, "\"KSEA\""},
        {{"chart", entry}, "one of --ops and --out"},
        {{"chart", entry, "--ops", "--out", "x.png"}, "one of --ops and --out"},
        {{"chart", entry, "--ops", "--zoom"}, "--zoom needs N"},
        {{"chart", entry, "--zoom", "21", "--ops"}, "--zoom takes a level"},
        {{"chart", entry, "--size", "10by10", "--ops"}, "--size takes"},
        {{"chart", entry, "--hide", "runways", "--ops"}, "--hide knows"}, // runways always show
        {{"chart", entry, "--aircraft", "47,-122", "--ops"}, "heading"},
        {{"chart", entry, "--colour", "red", "--ops"}, "unknown option --colour"},
        {{"chart", "NOWHERE", "--ops"}, "\"NOWHERE\""},
        {{"chart", entry, "--style", "diagram", "--ops"}, "takes --out FILE and no --ops"},
        {{"chart", entry, "--style", "plain", "--out", "k.png"}, "--style takes"},
        {{"chart", entry, "--night", "--out", "k.png"}, "--night is for --style diagram"},
        {{"kit", entry}, "kit takes --out FILE"},
        {{"link", "--port"}, "--port needs N"},
        {{"link", "--port", "0"}, "--port takes N"},
        {{"link", "--port", "65536"}, "--port takes N"},
        {{"link", "--port", "12x"}, "--port takes N"},
        {{"link", "20020"}, "\"20020\""},
    };
    for (const Case& c : cases) {
        Tool_Run run = Run_Quilmark_Tool(c.args);
        SCOPED_TRACE(c.reason);
        EXPECT_EQ(run.status, 2);
        EXPECT_TRUE(run.out.empty());
        EXPECT_EQ(run.err.rfind("quilmark-tool: ", 0), 0u) << run.err;
        EXPECT_EQ(std::count(run.err.begin(), run.err.end(), '\n'), 1) << run.err;
        EXPECT_NE(run.err.find(c.reason), std::string::npos) << run.err;
    }
}

TEST(ToolArgs, HelpListsEveryCommandAndVersionIsOneLine) {
    Tool_Run help = Run_Quilmark_Tool({"--help"});
    EXPECT_EQ(help.status, 0);
    for (const char* command : {"bgl", "init", "scan", "db", "fetch", "chart", "kit", "link"}) {
        EXPECT_NE(help.out.find(std::string("quilmark-tool ") + command), std::string::npos)
            << command;
    }
    Tool_Run chart_help = Run_Quilmark_Tool({"chart", "--help"});
    EXPECT_EQ(chart_help.status, 0);
    EXPECT_EQ(chart_help.out.rfind("usage: quilmark-tool chart \"ENTRY\"", 0), 0u);

    Tool_Run version = Run_Quilmark_Tool({"--version"});
    EXPECT_EQ(version.status, 0);
    EXPECT_TRUE(std::regex_match(version.out, std::regex("quilmark-tool [0-9]+(\\.[0-9]+)+\n")))
        << version.out;
}

} // namespace quilmark
