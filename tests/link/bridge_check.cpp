// The native half of the Wine tests (wine_bridge_test.sh): talks to quilmark-bridge.exe on
// its port. Modes: values (the aircraft read as the chart does, through the bridge and the
// mock module), no-window (Link_Open reports 2: a bridge, no module), malformed (broken
// frames get no answer, and a sound request after each is still answered), hold-up (a
// trickling client is dropped while another is served; a burst of connections all answered).
// Exits 0 when everything was as expected, 1 otherwise, printing what it does.
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <thread>
#include <vector>

#include "../support/bridge_probe.h"
#include "chart/aircraft_overlay.h"
#include "link/fsuipc.h"
#include "link/net_bridge_transport.h"
#include "state/module1.h"

namespace quilmark {

namespace {

using Clock = std::chrono::steady_clock;

// Link_Open through the bridge: the open's result code, with the link open on 0.
int Open(Fsuipc_Rec& link, Bridge_Transport& transport, int patience_s) {
    link.transport = &transport;
    auto deadline = Clock::now() + std::chrono::seconds(patience_s);
    Link_Result result = Link_Result::Ok;
    for (;;) {
        Link_Reset(link);
        if (Link_Open(link, Fsuipc_Fs2002, result)) {
            return 0;
        }
        Link_Close(link);
        // A slow machine may need a moment before Wine hands the first connection over.
        if (result != Link_Result::No_Window || Clock::now() > deadline) {
            return static_cast<int>(result);
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(250));
    }
}

int Check_Values(uint16_t port) {
    Bridge_Transport transport(port);
    Fsuipc_Rec link;
    std::printf("opening the link through the bridge on 127.0.0.1:%u\n", port);
    int result = Open(link, transport, 20);
    std::printf("  Link_Open: result %d, module version 0x%08X, simulator %d\n", result,
                static_cast<unsigned>(link.link_module_version), link.link_sim_version);
    // The chart's own reading, one exchange a value, in millibars; the mock's heading and
    // altimeter are halfway cases.
    Module1 m;
    m.altimeter_units = 0;
    Link_Result read = Link_Result::Ok;
    bool ok = result == 0 && Read_Aircraft(link, m, read);
    Link_Close(link);
    std::printf("  chart: lat %.9f, lon %.9f, heading %d, altimeter %.0f mb (result %d)\n",
                m.aircraft_lat, m.aircraft_lon, m.aircraft_heading, m.altimeter_value,
                static_cast<int>(read));
    ok = ok && m.aircraft_lat == 51.470839603069464 && m.aircraft_lon == -0.46139275655150414 &&
         m.aircraft_heading == 112 && m.altimeter_value == 1012.0;
    std::printf("  %s\n", ok ? "as served by the mock module" : "NOT what the mock served");
    return ok ? 0 : 1;
}

int Check_No_Window(uint16_t port) {
    Bridge_Transport transport(port);
    Fsuipc_Rec link;
    int result = Open(link, transport, 0);
    Link_Close(link);
    std::printf("Link_Open with the bridge but no module: result %d\n", result);
    return result == 2 ? 0 : 1;
}

// The frame checks themselves are tested natively (bridge_test.cpp); these are the cases
// where the bridge's sockets under Wine matter: lengths it must not wait for, and peers
// that stop sending.
int Check_Malformed(uint16_t port) {
    // Window, timeout, one read of 4 bytes, the closing word, then 4 bytes too many.
    std::vector<uint8_t> padded(Bridge_Send_Prefix + Link_Read_Header + 4 + 4 + 4, 0);
    Put_U32(padded.data() + 8, Link_Read_Id);
    Put_U32(padded.data() + 16, 4);
    auto frame = [](size_t length, const std::vector<uint8_t>& payload) {
        return Form_Bridge_Request(Bridge_Send_List, payload, static_cast<uint32_t>(length));
    };
    const std::vector<uint8_t> half(50, 0);
    const struct {
        const char* what;
        std::vector<uint8_t> bytes;
        bool half_close;
    } probes[] = {
        {"length over the 32 KiB block", frame(Bridge_Max_Frame + 1, half), true},
        {"length longer than the list", frame(padded.size(), padded), false},
        {"connection closed half way", frame(100, half), true},
        {"peer silent half way", frame(100, half), false},
    };
    int failures = 0;
    for (const auto& probe : probes) {
        auto start = Clock::now();
        long answered = Send_And_Collect(port, probe.bytes, probe.half_close);
        std::printf("  %-32s %s (%.1f s)\n", probe.what,
                    answered == 0    ? "no answer, connection closed"
                    : answered == -1 ? "no answer, but the connection stayed open"
                    : answered == -2 ? "bridge not reachable"
                                     : "ANSWERED",
                    std::chrono::duration<double>(Clock::now() - start).count());
        // After every broken frame the bridge must still answer a sound one.
        bool still_serves = Bridge_Transport(port).Find_Window(Link_Main_Class) != 0;
        if (!still_serves) {
            std::printf("  the bridge no longer finds the module's window\n");
        }
        failures += answered == 0 && still_serves ? 0 : 1;
    }
    std::printf("%d of %zu broken frames mishandled\n", failures, std::size(probes));
    return failures == 0 ? 0 : 1;
}

// Clients that would hold a bridge up: one that trickles its request, a byte every 0.2 s,
// while another is served, and a burst of connections at once.
int Check_Hold_Up(uint16_t port) {
    const Hold_Up_Rec r = Try_To_Hold_Up(port, 200, 300);
    std::printf("  a request trickled a byte every 0.2 s: %s after %.1f s; another client %s "
                "after %.1f s\n",
                r.trickled == 0 ? "dropped unanswered" : "NOT dropped", r.dropped_s,
                r.served ? "served" : "NOT served", r.served_s);
    std::printf("  a burst of %d connections: %d answered\n", Hold_Up_Rec::Burst_Clients,
                r.burst_answered);
    // Dropped at the bridge's deadline of 2 s, well before its last byte at 3.8 s.
    return r.trickled == 0 && r.dropped_s < 3.5 && r.served && r.served_s < r.dropped_s &&
                   r.burst_answered == Hold_Up_Rec::Burst_Clients
               ? 0
               : 1;
}

} // namespace

} // namespace quilmark

int main(int argc, char** argv) {
    using namespace quilmark;
    std::setvbuf(stdout, nullptr, _IONBF, 0);
    std::string mode = argc == 4 && std::strcmp(argv[2], "--port") == 0 ? argv[1] : "";
    auto port = static_cast<uint16_t>(argc == 4 ? std::atoi(argv[3]) : 0);
    if (mode == "values") {
        return Check_Values(port);
    }
    if (mode == "no-window") {
        return Check_No_Window(port);
    }
    if (mode == "malformed") {
        return Check_Malformed(port);
    }
    if (mode == "hold-up") {
        return Check_Hold_Up(port);
    }
    std::printf("usage: bridge_check values|no-window|malformed|hold-up --port N\n");
    return 2;
}
