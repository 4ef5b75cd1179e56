#include "link/net_bridge_loop.h"

#include <algorithm>
#include <chrono>
#include <vector>

namespace quilmark {

namespace {

using Clock = std::chrono::steady_clock;
using Milliseconds = std::chrono::milliseconds;

enum class Stage { Reading, Ready, Writing, Done };

struct Connection_Rec {
    Net_Socket socket = Net_No_Socket;
    Stage stage = Stage::Reading;
    Clock::time_point deadline;
    std::vector<uint8_t> bytes; // the frame as it comes, then the answer as it leaves
    size_t needed = Bridge_Request_Header;
    size_t sent = 0;
};

class Loop {
  public:
    Loop(Bridge_Server_Rec& bridge_rec, Net_Socket listener_socket, const Bridge_Limits_Rec& l,
         const std::function<void(Bridge_Outcome)>& report_to)
        : bridge(bridge_rec), listener(listener_socket), limits(l), report(report_to) {}
    ~Loop() {
        for (Connection_Rec& c : connections) {
            Close_Net_Socket(c.socket);
        }
    }

    void Turn() {
        fd_set readable, writable;
        FD_ZERO(&readable);
        FD_ZERO(&writable);
        Net_Socket highest = listener;
        if (connections.size() < Bridge_Max_Connections) {
            FD_SET(listener, &readable);
        }
        Clock::time_point wake = Clock::now() + Milliseconds(limits.poll_ms);
        for (const Connection_Rec& c : connections) {
            FD_SET(c.socket, c.stage == Stage::Writing ? &writable : &readable);
            highest = std::max(highest, c.socket);
            wake = std::min(wake, c.deadline);
        }
        auto wait_us = std::chrono::duration_cast<std::chrono::microseconds>(wake - Clock::now());
        long us = std::max<long>(0, static_cast<long>(wait_us.count()));
        timeval wait{static_cast<decltype(timeval::tv_sec)>(us / 1000000),
                     static_cast<decltype(timeval::tv_usec)>(us % 1000000)};
        if (select(static_cast<int>(highest + 1), &readable, &writable, nullptr, &wait) < 0) {
            return; // a signal; the caller looks at its stop flag and comes again
        }
        if (FD_ISSET(listener, &readable)) {
            Accept_All();
        }
        for (Connection_Rec& c : connections) {
            if (c.stage == Stage::Reading && FD_ISSET(c.socket, &readable)) {
                Read(c);
            } else if (c.stage == Stage::Writing && FD_ISSET(c.socket, &writable)) {
                Write(c);
            }
        }
        // Deadlines are judged after the reads, so that a frame whose bytes came while the
        // module was busy with another is taken whole, not dropped.
        Clock::time_point now = Clock::now();
        for (Connection_Rec& c : connections) {
            if (c.stage == Stage::Reading && now >= c.deadline) {
                End(c, Bridge_Outcome::Too_Slow);
            } else if (c.stage == Stage::Writing && now >= c.deadline) {
                End(c, Bridge_Outcome::Answer_Lost);
            }
        }
        for (Connection_Rec& c : connections) {
            if (c.stage == Stage::Ready) {
                Exchange(c);
            }
        }
        std::erase_if(connections, [](const Connection_Rec& c) { return c.stage == Stage::Done; });
    }

  private:
    void Accept_All() {
        while (connections.size() < Bridge_Max_Connections) {
            Net_Socket peer = accept(listener, nullptr, nullptr);
            if (peer == Net_No_Socket) {
                return;
            }
            if (!Net_Selectable(peer) || !Set_Net_Nonblocking(peer)) {
                Close_Net_Socket(peer);
                continue;
            }
            Connection_Rec c;
            c.socket = peer;
            c.deadline = Clock::now() + Milliseconds(limits.frame_deadline_ms);
            c.bytes.reserve(Bridge_Request_Header);
            connections.push_back(std::move(c));
        }
    }

    // Takes what has come, up to the end of the frame.
    void Read(Connection_Rec& c) {
        while (c.bytes.size() < c.needed) {
            size_t have = c.bytes.size();
            c.bytes.resize(c.needed);
            auto got = recv(c.socket, reinterpret_cast<char*>(c.bytes.data() + have),
                            static_cast<int>(c.needed - have), 0);
            c.bytes.resize(have + static_cast<size_t>(std::max<decltype(got)>(got, 0)));
            if (got == 0 || (got < 0 && !Net_Would_Block(Net_Error()))) {
                End(c, Bridge_Outcome::Closed_Early);
                return;
            }
            if (got < 0) {
                return;
            }
            uint32_t length = 0;
            if (c.bytes.size() == Bridge_Request_Header && c.needed == Bridge_Request_Header) {
                if (!Check_Bridge_Header(c.bytes.data(), length)) {
                    End(c, Bridge_Outcome::Malformed);
                    return;
                }
                c.needed = Bridge_Request_Header + length;
            }
        }
        c.stage = Stage::Ready;
    }

    // A client that gave up closed its end; what it sent still waits to be read, and after
    // it the end of the stream.
    bool Client_Gone(const Connection_Rec& c) {
        char next = 0;
        auto got = recv(c.socket, &next, 1, MSG_PEEK);
        return got == 0 || (got < 0 && !Net_Would_Block(Net_Error()));
    }

    void Exchange(Connection_Rec& c) {
        if (Client_Gone(c)) {
            End(c, Bridge_Outcome::Client_Gone);
            return;
        }
        std::vector<uint8_t> answer;
        if (!Bridge_Answer(bridge, c.bytes.data(), c.bytes.size(), answer)) {
            End(c, Bridge_Outcome::Malformed);
            return;
        }
        c.bytes = std::move(answer);
        c.sent = 0;
        c.stage = Stage::Writing;
        c.deadline = Clock::now() + Milliseconds(limits.answer_deadline_ms);
        Write(c);
    }

    void Write(Connection_Rec& c) {
        while (c.sent < c.bytes.size()) {
            auto put = send(c.socket, reinterpret_cast<const char*>(c.bytes.data() + c.sent),
                            static_cast<int>(c.bytes.size() - c.sent), Net_Send_Flags);
            if (put < 0 && Net_Would_Block(Net_Error())) {
                return;
            }
            if (put <= 0) {
                End(c, Bridge_Outcome::Answer_Lost);
                return;
            }
            c.sent += static_cast<size_t>(put);
        }
        End(c, Bridge_Outcome::Answered);
    }

    void End(Connection_Rec& c, Bridge_Outcome outcome) {
        Close_Net_Socket(c.socket);
        c.socket = Net_No_Socket;
        c.stage = Stage::Done;
        if (report) {
            report(outcome);
        }
    }

    Bridge_Server_Rec& bridge;
    Net_Socket listener;
    const Bridge_Limits_Rec& limits;
    const std::function<void(Bridge_Outcome)>& report;
    std::vector<Connection_Rec> connections;
};

} // namespace

bool Open_Bridge_Listener(uint16_t port, Bridge_Listener_Rec& listener) {
    listener = {};
    Net_Socket s = socket(AF_INET, SOCK_STREAM, IPPROTO_TCP);
    if (s == Net_No_Socket) {
        listener.error = Net_Error();
        return false;
    }
#ifdef _WIN32
    // On Windows a second bridge could otherwise share the port, and half the requests
    // would reach the wrong prefix.
    BOOL exclusive = TRUE;
    setsockopt(s, SOL_SOCKET, SO_EXCLUSIVEADDRUSE, reinterpret_cast<const char*>(&exclusive),
               sizeof exclusive);
#endif
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(port);
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    Net_Length size = sizeof address;
    if (bind(s, reinterpret_cast<sockaddr*>(&address), sizeof address) != 0 ||
        listen(s, SOMAXCONN) != 0 || !Set_Net_Nonblocking(s) || !Net_Selectable(s) ||
        getsockname(s, reinterpret_cast<sockaddr*>(&address), &size) != 0) {
        listener.error = Net_Error();
        Close_Net_Socket(s);
        return false;
    }
    listener.socket = s;
    listener.port = ntohs(address.sin_port);
    return true;
}

void Close_Bridge_Listener(Bridge_Listener_Rec& listener) {
    if (listener.socket != Net_No_Socket) {
        Close_Net_Socket(listener.socket);
        listener.socket = Net_No_Socket;
    }
}

void Run_Bridge(Bridge_Server_Rec& bridge, const Bridge_Listener_Rec& listener,
                const std::atomic<bool>& stop, const Bridge_Limits_Rec& limits,
                const std::function<void(Bridge_Outcome)>& report) {
    Loop loop(bridge, listener.socket, limits, report);
    while (!stop) {
        loop.Turn();
    }
}

} // namespace quilmark
