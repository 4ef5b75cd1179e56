// quilmark-tool link against the bridge's listening side and the fake module.
#include <gtest/gtest.h>

#include <functional>

#include "support/fake_module.h"
#include "support/running_bridge.h"
#include "support/tool_run.h"

namespace quilmark {

TEST(ToolLink, VerdictForEachSetUp) {
    using F = Fake_Module_Transport;
    struct Case {
        const char* name;
        std::function<void(F&)> setup;
        int status;
        std::vector<const char*> lines; // in this order in the output
    };
    const Case cases[] = {
        {"no bridge", nullptr, 1, {"nothing listens there", "quilmark-bridge32.exe", "will not"}},
        {"no module window",
         [](F& f) { f.main_window = f.fallback_window = false; },
         1,
         {"Bridge on 127.0.0.1:", "listening.",
          "FSUIPC window: none of class UIPCMAIN or "
          "FS98MAIN",
          "will not"}},
        {"another simulator",
         [](F& f) { f.space.Set_U32(0x3308, 0xFADE0008); },
         1,
         {"FSUIPC window: found, class UIPCMAIN", "simulator code 8: this is not FS2002",
          "will not"}},
        {"hanging module",
         [](F& f) { f.failed_sends = 1000, f.send_error = 1460; },
         1,
         {"FSUIPC module: its window doesn't answer (result 12, system error 1460, time-out)",
          "will not"}},
        {"good module, via FS98MAIN",
         [](F& f) {
             f.main_window = false;
             f.space.Set_U32(0x0564, 5719983);
             f.space.Set_U32(0x056C, static_cast<uint32_t>(-5504630));
             f.space.Set_U32(0x0580, 5u << 28); // 112.5 degrees, to the even neighbour
             f.space.Set_U16(0x0EC6, 16200);
         },
         0,
         {"class FS98MAIN", "version 0x36200000, simulator code 6 (FS2002)",
          "latitude   51.470840 degrees", "longitude  -0.461393 degrees", "heading    112 degrees",
          "\"Altimeter: 1012\" in millibars, \"Altimeter: 29.9\" in inches of mercury",
          "Verdict: the chart will show the aircraft."}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        Fake_Module_Transport fake;
        if (c.setup) {
            c.setup(fake);
        }
        Running_Bridge bridge(fake);
        if (!c.setup) {
            bridge.Stop(); // the port is free again
        }
        Tool_Run run = Run_Quilmark_Tool({"link", "--port", std::to_string(bridge.Port())});
        EXPECT_EQ(run.status, c.status) << run.out;
        size_t at = 0;
        for (const char* line : c.lines) {
            at = run.out.find(line, at);
            EXPECT_NE(at, std::string::npos) << line << "\n" << run.out;
        }
    }
}

} // namespace quilmark
