// The native half of the Wine tests: talks to quilmark-bridge.exe on its port.
//
//   bridge_check values --port N      opens the link through the bridge and the mock module,
//                                     reads the chart's four values as the chart does, one
//                                     exchange each, and checks them after the chart's
//                                     conversions
//   bridge_check no-window --port N   expects Link_Open to report 2 (bridge, no module)
//   bridge_check malformed --port N   sends broken frames, expects no answer to any of them,
//                                     and a sound request after each still answered
//
// Exits 0 when everything was as expected, 1 otherwise, printing what it does.
#include <arpa/inet.h>
#include <cerrno>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <netinet/in.h>
#include <string>
#include <sys/socket.h>
#include <sys/time.h>
#include <thread>
#include <unistd.h>
#include <vector>

#include "link/bridge_transport.h"
#include "link/fsuipc.h"
#include "mock_table.h"
#include "platform/rounding.h"

namespace {

using Clock = std::chrono::steady_clock;

bool Open_With_Patience(Fsuipc_Rec& link, int32_t& result) {
    // The script starts the check once the bridge has said it listens; a slow machine may
    // still need a moment before Wine hands the first connection over.
    auto deadline = Clock::now() + std::chrono::seconds(20);
    for (;;) {
        Link_Reset(link);
        if (Link_Open(link, fsuipc_fs2002, result)) {
            return true;
        }
        Link_Close(link);
        if (result != 2 || Clock::now() > deadline) {
            return false;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(250));
    }
}

bool Read_One(Fsuipc_Rec& link, int32_t offset, int32_t size, void* into) {
    int32_t result = -1;
    bool ok = Link_Read(link, offset, size, into, result) && Link_Process(link, result);
    if (!ok) {
        std::printf("  reading 0x%04X failed with result %d\n", offset, result);
    }
    return ok;
}

int Check_Values(uint16_t port) {
    Bridge_Transport transport(port);
    Fsuipc_Rec link;
    link.transport = &transport;
    int32_t result = -1;
    std::printf("opening the link through the bridge on 127.0.0.1:%u\n", port);
    if (!Open_With_Patience(link, result)) {
        std::printf("  Link_Open failed with result %d\n", result);
        return 1;
    }
    std::printf("  Link_Open: result %d, module version 0x%08X, simulator %d\n", result,
                static_cast<unsigned>(link.link_module_version), link.link_sim_version);

    int32_t lat_raw = 0, lon_raw = 0, heading_raw = 0;
    uint16_t altimeter_raw = 0;
    bool ok = Read_One(link, 0x0564, 4, &lat_raw) && Read_One(link, 0x056C, 4, &lon_raw) &&
              Read_One(link, 0x0580, 4, &heading_raw) && Read_One(link, 0x0EC6, 2, &altimeter_raw);
    Link_Close(link);
    if (!ok) {
        return 1;
    }
    // The chart's conversions.
    double lat = lat_raw * 90.0 / 10001750.0;
    double lon = lon_raw * 360.0 / 4294967296.0;
    int16_t heading = To_I16(heading_raw * 360.0 / 4294967296.0);
    double millibars = Round_Decimals(altimeter_raw / 16.0, 0);
    double inches = Round_Decimals(altimeter_raw / 16.0 / 33.86, 2);
    std::printf("  raw: lat %d, lon %d, heading %d, altimeter %u\n", lat_raw, lon_raw, heading_raw,
                altimeter_raw);
    std::printf("  chart: lat %.9f, lon %.9f, heading %d, altimeter %.0f mb / %.2f inHg\n", lat,
                lon, heading, millibars, inches);

    bool expected = std::fabs(lat - 51.470839603069464) < 1e-12 &&
                    std::fabs(lon - -0.46139275655150414) < 1e-12 && heading == 112 &&
                    millibars == 1012.0 && inches == 29.9;
    std::printf("  %s\n", expected ? "as served by the mock module" : "NOT what the mock served");
    return expected ? 0 : 1;
}

int Check_No_Window(uint16_t port) {
    Bridge_Transport transport(port);
    Fsuipc_Rec link;
    link.transport = &transport;
    int32_t result = -1;
    Link_Reset(link);
    bool opened = Link_Open(link, fsuipc_fs2002, result);
    Link_Close(link);
    std::printf("Link_Open with the bridge but no module: %s, result %d\n",
                opened ? "opened" : "failed", result);
    return !opened && result == 2 ? 0 : 1;
}

// Raw frames for the malformed-frame check.
struct Probe_Rec {
    const char* what;
    std::vector<uint8_t> bytes;
    bool half_close; // shut our sending side after the bytes
};

// Sends bytes and reads until the bridge closes. Returns how many answer bytes came, -1
// when the bridge neither answered nor closed within the wait, -2 when it can't be reached.
long Send_And_Collect(uint16_t port, const Probe_Rec& probe) {
    int fd = socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(port);
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    timeval tv{8, 0};
    setsockopt(fd, SOL_SOCKET, SO_RCVTIMEO, &tv, sizeof tv);
    if (connect(fd, reinterpret_cast<sockaddr*>(&address), sizeof address) != 0) {
        close(fd);
        return -2;
    }
    send(fd, probe.bytes.data(), probe.bytes.size(), MSG_NOSIGNAL);
    if (probe.half_close) {
        shutdown(fd, SHUT_WR);
    }
    long total = 0;
    for (;;) {
        uint8_t buffer[512];
        ssize_t got = recv(fd, buffer, sizeof buffer, 0);
        if (got > 0) {
            total += got;
            continue;
        }
        if (got < 0 && errno == EINTR) {
            continue;
        }
        bool closed = got == 0 || errno == ECONNRESET;
        close(fd);
        return closed ? total : -1;
    }
}

// The frame checks themselves are tested natively (bridge_test.cpp); these are the cases
// where the bridge's sockets under Wine matter: lengths it must not wait for, and peers
// that stop sending.
int Check_Malformed(uint16_t port) {
    // Window, timeout, one read of 4 bytes, the closing word, then 4 bytes too many.
    std::vector<uint8_t> padded(bridge_send_prefix + link_read_header + 4 + 4 + 4, 0);
    Put_U32(padded.data() + 8, link_read_id);
    Put_U32(padded.data() + 16, 4);
    auto frame = [](size_t length, const std::vector<uint8_t>& payload) {
        return Form_Bridge_Request(bridge_send_list, payload, static_cast<uint32_t>(length));
    };
    std::vector<uint8_t> half(50, 0);
    std::vector<Probe_Rec> probes = {
        {"length over the 32 KiB block", frame(bridge_max_frame + 1, half), true},
        {"length longer than the list", frame(padded.size(), padded), false},
        {"connection closed half way", frame(100, half), true},
        {"peer silent half way", frame(100, half), false},
    };
    int failures = 0;
    for (const Probe_Rec& probe : probes) {
        auto start = Clock::now();
        long answered = Send_And_Collect(port, probe);
        double seconds = std::chrono::duration<double>(Clock::now() - start).count();
        bool ok = answered == 0;
        std::printf("  %-32s %s (%.1f s)\n", probe.what,
                    answered == 0    ? "no answer, connection closed"
                    : answered == -1 ? "no answer, but the connection stayed open"
                    : answered == -2 ? "bridge not reachable"
                                     : "ANSWERED",
                    seconds);
        // After every broken frame the bridge must still answer a sound one.
        Bridge_Transport transport(port);
        if (transport.Find_Window(link_main_class) == 0) {
            std::printf("  the bridge no longer finds the module's window\n");
            ok = false;
        }
        failures += ok ? 0 : 1;
    }
    std::printf("%d of %zu broken frames mishandled\n", failures, probes.size());
    return failures == 0 ? 0 : 1;
}

} // namespace

int main(int argc, char** argv) {
    std::setvbuf(stdout, nullptr, _IONBF, 0);
    if (argc != 4 || std::strcmp(argv[2], "--port") != 0) {
        std::printf("usage: bridge_check values|no-window|malformed --port N\n");
        return 2;
    }
    auto port = static_cast<uint16_t>(std::atoi(argv[3]));
    std::string mode = argv[1];
    if (mode == "values") {
        return Check_Values(port);
    }
    if (mode == "no-window") {
        return Check_No_Window(port);
    }
    if (mode == "malformed") {
        return Check_Malformed(port);
    }
    std::printf("unknown mode %s\n", argv[1]);
    return 2;
}
