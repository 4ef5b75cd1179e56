// quilmark-bridge.exe (64-bit) and quilmark-bridge32.exe (32-bit): started inside the
// simulator's Wine prefix, it lets Quilmark on Linux reach the FSUIPC module. It listens on
// 127.0.0.1 only, reads one frame from each connection (see link/bridge_server.h), hands the
// request list to the module through the Win32 calls of the link, one exchange at a time,
// and sends the answered list back. Many clients may connect at once; none can hold the
// others up (see link/net_bridge_loop.h).
//
//   quilmark-bridge.exe [--port N]     N defaults to 20020; 0 lets the system choose.
//
// It stops cleanly, releasing its atom and block, when its console closes or on Ctrl+C.
#include "link/net_bridge_loop.h"

#include <windows.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "win32_transport.h"

namespace quilmark {

namespace {

constexpr DWORD Close_Grace_Ms = 4000;

std::atomic<bool> stopping{false};
HANDLE stopped_event = nullptr;

BOOL WINAPI On_Console_Event(DWORD event) {
    switch (event) {
    case CTRL_C_EVENT:
    case CTRL_BREAK_EVENT:
    case CTRL_CLOSE_EVENT:
    case CTRL_LOGOFF_EVENT:
    case CTRL_SHUTDOWN_EVENT:
        stopping = true;
        // The process ends when this returns after a close; give the loop time to clean up.
        WaitForSingleObject(stopped_event, Close_Grace_Ms);
        return TRUE;
    default:
        return FALSE;
    }
}

const char* Outcome_Text(Bridge_Outcome outcome) {
    switch (outcome) {
    case Bridge_Outcome::Malformed:
        return "dropped a malformed frame";
    case Bridge_Outcome::Too_Slow:
        return "dropped a client that did not send its request in time";
    case Bridge_Outcome::Client_Gone:
        return "dropped a request whose client had already gone";
    case Bridge_Outcome::Answer_Lost:
        return "could not send an answer";
    default:
        return nullptr;
    }
}

bool Parse_Port(int argc, char** argv, unsigned& port) {
    port = Bridge_Default_Port;
    if (argc == 1) {
        return true;
    }
    if (argc != 3 || std::strcmp(argv[1], "--port") != 0) {
        return false;
    }
    char* end = nullptr;
    unsigned long value = std::strtoul(argv[2], &end, 10);
    if (*argv[2] == '\0' || *end != '\0' || value > 65535) {
        return false;
    }
    port = static_cast<unsigned>(value);
    return true;
}

} // namespace

} // namespace quilmark

int main(int argc, char** argv) {
    using namespace quilmark;
    std::setvbuf(stdout, nullptr, _IONBF, 0);
    unsigned port = 0;
    if (!Parse_Port(argc, argv, port)) {
        std::printf("usage: %s [--port N]\n",
                    sizeof(void*) == 4 ? "quilmark-bridge32.exe" : "quilmark-bridge.exe");
        return 2;
    }
    stopped_event = CreateEventA(nullptr, TRUE, FALSE, nullptr);
    SetConsoleCtrlHandler(On_Console_Event, TRUE);

    WSADATA wsa;
    if (WSAStartup(MAKEWORD(2, 2), &wsa) != 0) {
        std::printf("quilmark-bridge: no network stack\n");
        return 1;
    }
    Bridge_Listener_Rec listener;
    if (!Open_Bridge_Listener(static_cast<uint16_t>(port), listener)) {
        std::printf("quilmark-bridge: cannot listen on 127.0.0.1:%u (error %d); is another "
                    "bridge running?\n",
                    port, listener.error);
        WSACleanup();
        return 1;
    }

    Win32_Transport module_side;
    Bridge_Server_Rec bridge;
    if (Link_Result code = Bridge_Open(bridge, module_side); code != Link_Result::Ok) {
        std::printf("quilmark-bridge: cannot set up the shared block (step %d, error %u)\n",
                    static_cast<int>(code), module_side.Last_Error());
        Close_Bridge_Listener(listener);
        WSACleanup();
        return 1;
    }
    std::printf("quilmark-bridge: listening on 127.0.0.1:%u\n", listener.port);

    Run_Bridge(bridge, listener, stopping, Bridge_Limits_Rec{}, [](Bridge_Outcome outcome) {
        if (const char* text = Outcome_Text(outcome)) {
            std::printf("quilmark-bridge: %s\n", text);
        }
    });

    Close_Bridge_Listener(listener);
    Bridge_Close(bridge);
    WSACleanup();
    std::printf("quilmark-bridge: stopped\n");
    SetEvent(stopped_event);
    return 0;
}
