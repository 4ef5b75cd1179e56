#include "link_check.h"

#include <cstdio>
#include <cstdlib>

#include <memory>

#include "chart/aircraft_overlay.h"
#include "link/fsuipc.h"
#include "link/net_bridge_transport.h"
#include "state/module1.h"

namespace quilmark {

namespace {

constexpr uint32_t Error_Timeout = 1460; // ERROR_TIMEOUT: the window took too long to answer

std::string Format(const char* pattern, auto... values) {
    char text[256];
    std::snprintf(text, sizeof text, pattern, values...);
    return text;
}

int Code(Link_Result result) {
    return static_cast<int>(result);
}

// Where the chart's link ends, and why. Each line starts with the step it is about.
class Diagnosis {
  public:
    Diagnosis(uint16_t bridge_port, std::ostream& to)
        : port(bridge_port), out(to), transport(port) {
        link.transport = &transport;
        Link_Reset(link);
    }
    ~Diagnosis() { Link_Close(link); }

    bool Run() { return Find_Bridge_And_Window() && Open() && Read_Aircraft(); }

  private:
    // What a failure of the bridge itself looks like, or "" when the bridge answered.
    std::string Bridge_Trouble() {
        switch (transport.Last_Error()) {
        case Bridge_Error_Refused:
            return "nothing listens there.\n"
                   "  Start quilmark-bridge.exe in the simulator's Wine prefix "
                   "(quilmark-bridge32.exe in a 32-bit prefix): see docs/bridge.md.";
        case Bridge_Error_Timed_Out:
            return "something accepts connections there but gives no whole answer in time.";
        case Bridge_Error_Invalid_Data:
            return "something answers there, but not as quilmark-bridge does.";
        default:
            return "";
        }
    }

    bool Find_Bridge_And_Window() {
        out << Format("Bridge on 127.0.0.1:%u: ", port) << std::flush;
        const char* found_class = Link_Main_Class;
        uint64_t window = transport.Find_Window(Link_Main_Class);
        if (std::string trouble = Bridge_Trouble(); !trouble.empty()) {
            out << trouble << "\n";
            return false;
        }
        out << "listening.\n";
        if (window == 0) {
            found_class = Link_Fallback_Class;
            window = transport.Find_Window(Link_Fallback_Class);
        }
        if (window == 0) {
            out << "FSUIPC window: none of class " << Link_Main_Class << " or "
                << Link_Fallback_Class << ".\n"
                << "  The simulator isn't running, FSUIPC isn't loaded in it, or the bridge runs "
                   "in another Wine prefix than the simulator.\n";
            return false;
        }
        out << "FSUIPC window: found, class " << found_class << ".\n";
        return true;
    }

    bool Open() {
        // A module that doesn't answer takes the chart's ten tries, about 20 s, to tell.
        out << "FSUIPC module: " << std::flush;
        Link_Result result = Link_Result::Ok;
        // Any simulator, so that the one the module reports can be named.
        if (!Link_Open(link, 0, result)) {
            out << Open_Trouble(result) << "\n";
            return false;
        }
        out << Format("version 0x%08X, simulator code %d", Module_Version(), link.link_sim_version);
        if (link.link_sim_version != Fsuipc_Fs2002) {
            out << ": this is not FS2002.\n"
                << "  The chart connects to FS2002 only (simulator code 6).\n";
            return false;
        }
        out << " (FS2002).\n";
        return true;
    }

    unsigned Module_Version() const { return static_cast<unsigned>(link.link_module_version); }

    std::string Open_Trouble(Link_Result result) {
        switch (result) {
        case Link_Result::No_Window:
            return "its window went away.";
        case Link_Result::Bad_Version:
        case Link_Result::Bad_Version_Fallback:
            return Format("answers with version 0x%08X and check word 0x%04X, but the chart "
                          "needs version 0x19980005 or later and the check word 0xFADE.",
                          Module_Version(), static_cast<uint32_t>(link.link_sim_version) >> 16);
        default:
            return Exchange_Trouble(result);
        }
    }

    std::string Exchange_Trouble(Link_Result result) {
        uint32_t error = transport.Last_Error();
        if (!Bridge_Trouble().empty()) {
            return Format("the bridge on 127.0.0.1:%u stopped answering (result %d, system "
                          "error %u).",
                          port, Code(result), error);
        }
        switch (result) {
        case Link_Result::No_Answer:
        case Link_Result::Send_Failed:
            return Format("its window doesn't answer (result %d, system error %u%s).\n"
                          "  The simulator is busy or hanging, or FSUIPC doesn't handle the "
                          "message.",
                          Code(result), error, error == Error_Timeout ? ", time-out" : "");
        case Link_Result::Refused:
            return Format("its window answered, but not as FSUIPC does (result %d).", Code(result));
        default:
            return Format("the link failed (result %d).", Code(result));
        }
    }

    // The chart's four values, one exchange each, read and converted by the chart's own code.
    bool Read_Aircraft() {
        out << "Aircraft, read as the chart reads it:\n";
        auto values = std::make_unique<Module1>();
        for (size_t i = 0; i < Aircraft_Values.size(); ++i) {
            const Aircraft_Value_Rec& value = Aircraft_Values[i];
            int32_t raw = 0;
            Link_Result result = Link_Result::Ok;
            if (!Read_Aircraft_Value(link, i, *values, raw, result)) {
                out << Format("  %-10s reading offset 0x%04X: ", value.name,
                              static_cast<unsigned>(value.offset))
                    << Exchange_Trouble(result) << "\n";
                return false;
            }
            out << Format("  %-10s ", value.name);
            switch (i) {
            case 0:
                out << Format("%.6f degrees (raw %d)\n", values->aircraft_lat, raw);
                break;
            case 1:
                out << Format("%.6f degrees (raw %d)\n", values->aircraft_lon, raw);
                break;
            case 2:
                out << Format("%d degrees (raw %d)\n", values->aircraft_heading, raw);
                break;
            default: {
                const auto altimeter = static_cast<uint16_t>(raw);
                out << "\"" << Altimeter_Text(Altimeter_Value(altimeter, 0))
                    << "\" in millibars, \"" << Altimeter_Text(Altimeter_Value(altimeter, 1))
                    << "\" in inches of mercury" << Format(" (raw %u)\n", altimeter);
                break;
            }
            }
        }
        return true;
    }

    uint16_t port;
    std::ostream& out;
    Bridge_Transport transport;
    Fsuipc_Rec link;
};

} // namespace

int Command_Link(const Command_Args& args, std::ostream& out, std::ostream& err) {
    long port = Bridge_Default_Port;
    for (const auto& [name, value] : args.options) {
        char* end = nullptr;
        port = std::strtol(value.c_str(), &end, 10);
        if (value.empty() || *end != '\0' || port < 1 || port > 65535) {
            err << "quilmark-tool: link: --port takes N from 1 to 65535\n";
            return 2;
        }
    }
    bool shown = Diagnosis(static_cast<uint16_t>(port), out).Run();
    out << (shown ? "Verdict: the chart will show the aircraft.\n"
                  : "Verdict: the chart will not show the aircraft.\n");
    if (port != Bridge_Default_Port) {
        out << Format("(The chart looks for the bridge on port %u only.)\n", Bridge_Default_Port);
    }
    return shown ? 0 : 1;
}

} // namespace quilmark
