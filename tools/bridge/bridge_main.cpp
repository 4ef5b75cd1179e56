// quilmark-bridge.exe: started inside the simulator's Wine prefix, it lets Quilmark on Linux
// reach the FSUIPC module. It listens on 127.0.0.1 only, takes one connection at a time,
// reads one frame from it (see link/bridge_server.h), hands the request list to the module
// through the Win32 calls of the link, and sends the answered list back.
//
//   quilmark-bridge.exe [--port N]     N defaults to 20020; 0 lets the system choose.
//
// It stops cleanly, releasing its atom and block, when its console closes or on Ctrl+C.
// Winsock has to come before windows.h.
#include <winsock2.h>

#include <windows.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "link/bridge_server.h"
#include "win32_transport.h"

namespace {

constexpr DWORD peer_wait_ms = 2000; // a client that goes quiet half way is dropped after this
constexpr long poll_wait_us = 200000;
constexpr DWORD close_grace_ms = 4000;

volatile LONG stopping = 0;
HANDLE stopped_event = nullptr;

BOOL WINAPI On_Console_Event(DWORD event) {
    switch (event) {
    case CTRL_C_EVENT:
    case CTRL_BREAK_EVENT:
    case CTRL_CLOSE_EVENT:
    case CTRL_LOGOFF_EVENT:
    case CTRL_SHUTDOWN_EVENT:
        InterlockedExchange(&stopping, 1);
        // The process ends when this returns after a close; give the loop time to clean up.
        WaitForSingleObject(stopped_event, close_grace_ms);
        return TRUE;
    default:
        return FALSE;
    }
}

class Winsock_Stream : public Byte_Stream {
  public:
    explicit Winsock_Stream(SOCKET s) : sock(s) {}
    bool Read_Exact(uint8_t* data, size_t size) override {
        while (size > 0) {
            int got = recv(sock, reinterpret_cast<char*>(data), static_cast<int>(size), 0);
            if (got <= 0) {
                return false;
            }
            data += got;
            size -= static_cast<size_t>(got);
        }
        return true;
    }
    bool Write_All(const uint8_t* data, size_t size) override {
        while (size > 0) {
            int put = send(sock, reinterpret_cast<const char*>(data), static_cast<int>(size), 0);
            if (put <= 0) {
                return false;
            }
            data += put;
            size -= static_cast<size_t>(put);
        }
        return true;
    }

  private:
    SOCKET sock;
};

const char* Outcome_Text(Bridge_Outcome outcome) {
    switch (outcome) {
    case Bridge_Outcome::malformed:
        return "dropped a malformed frame";
    case Bridge_Outcome::answer_lost:
        return "could not send an answer";
    default:
        return nullptr;
    }
}

bool Parse_Port(int argc, char** argv, unsigned& port) {
    port = bridge_default_port;
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

void Serve(SOCKET listener, Bridge_Server_Rec& bridge) {
    while (stopping == 0) {
        fd_set readable;
        FD_ZERO(&readable);
        FD_SET(listener, &readable);
        timeval wait{0, poll_wait_us};
        if (select(0, &readable, nullptr, nullptr, &wait) <= 0) {
            continue;
        }
        SOCKET peer = accept(listener, nullptr, nullptr);
        if (peer == INVALID_SOCKET) {
            continue;
        }
        DWORD wait_ms = peer_wait_ms;
        setsockopt(peer, SOL_SOCKET, SO_RCVTIMEO, reinterpret_cast<const char*>(&wait_ms),
                   sizeof wait_ms);
        setsockopt(peer, SOL_SOCKET, SO_SNDTIMEO, reinterpret_cast<const char*>(&wait_ms),
                   sizeof wait_ms);
        Winsock_Stream stream(peer);
        const char* text = Outcome_Text(Bridge_Serve(bridge, stream));
        if (text != nullptr) {
            std::printf("quilmark-bridge: %s\n", text);
        }
        closesocket(peer);
    }
}

} // namespace

int main(int argc, char** argv) {
    std::setvbuf(stdout, nullptr, _IONBF, 0);
    unsigned port = 0;
    if (!Parse_Port(argc, argv, port)) {
        std::printf("usage: quilmark-bridge.exe [--port N]\n");
        return 2;
    }
    stopped_event = CreateEventA(nullptr, TRUE, FALSE, nullptr);
    SetConsoleCtrlHandler(On_Console_Event, TRUE);

    WSADATA wsa;
    if (WSAStartup(MAKEWORD(2, 2), &wsa) != 0) {
        std::printf("quilmark-bridge: no network stack\n");
        return 1;
    }
    SOCKET listener = socket(AF_INET, SOCK_STREAM, IPPROTO_TCP);
    BOOL exclusive = TRUE;
    setsockopt(listener, SOL_SOCKET, SO_EXCLUSIVEADDRUSE, reinterpret_cast<const char*>(&exclusive),
               sizeof exclusive);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(static_cast<u_short>(port));
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    int address_size = sizeof address;
    if (listener == INVALID_SOCKET ||
        bind(listener, reinterpret_cast<sockaddr*>(&address), sizeof address) != 0 ||
        listen(listener, 4) != 0 ||
        getsockname(listener, reinterpret_cast<sockaddr*>(&address), &address_size) != 0) {
        std::printf("quilmark-bridge: cannot listen on 127.0.0.1:%u (error %d); is another "
                    "bridge running?\n",
                    port, WSAGetLastError());
        WSACleanup();
        return 1;
    }

    Win32_Transport module_side;
    Bridge_Server_Rec bridge;
    if (Link_Result code = Bridge_Open(bridge, module_side); code != Link_Result::ok) {
        std::printf("quilmark-bridge: cannot set up the shared block (step %d, error %u)\n",
                    static_cast<int>(code), module_side.Last_Error());
        closesocket(listener);
        WSACleanup();
        return 1;
    }
    std::printf("quilmark-bridge: listening on 127.0.0.1:%u\n", ntohs(address.sin_port));

    Serve(listener, bridge);

    closesocket(listener);
    Bridge_Close(bridge);
    WSACleanup();
    std::printf("quilmark-bridge: stopped\n");
    SetEvent(stopped_event);
    return 0;
}
