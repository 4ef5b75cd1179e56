// Clients that probe a bridge listening on a loopback port, natively or under Wine: a raw
// connection that sends bytes and waits for the answer or the close, and clients that try
// to hold the bridge up.
#pragma once

#include <algorithm>
#include <arpa/inet.h>
#include <cerrno>
#include <chrono>
#include <latch>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/time.h>
#include <thread>
#include <unistd.h>
#include <vector>

#include "link/bridge_server.h"
#include "link/net_bridge_transport.h"

namespace quilmark {

// Sends bytes, gap_ms apart one by one when gap_ms isn't 0, shutting our sending side after
// them if asked, and reads until the bridge closes. Between the bytes it stops as soon as
// the bridge answers or closes. Returns how many answer bytes came, -1 when the bridge
// neither answered nor closed within wait_s, -2 when it can't be reached. With wait_s
// negative it closes the connection as soon as the bytes are sent, as a client that gives
// up, and returns 0.
inline long Send_And_Collect(uint16_t port, const std::vector<uint8_t>& bytes, bool half_close,
                             int gap_ms = 0, int wait_s = 8) {
    int fd = socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(port);
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    timeval tv{wait_s, 0};
    setsockopt(fd, SOL_SOCKET, SO_RCVTIMEO, &tv, sizeof tv);
    if (connect(fd, reinterpret_cast<sockaddr*>(&address), sizeof address) != 0) {
        close(fd);
        return -2;
    }
    for (size_t at = 0; at < bytes.size(); at += gap_ms == 0 ? bytes.size() : 1) {
        pollfd readable{fd, POLLIN, 0};
        if (at > 0 && poll(&readable, 1, gap_ms) > 0) {
            break;
        }
        send(fd, bytes.data() + at, gap_ms == 0 ? bytes.size() : 1, MSG_NOSIGNAL);
    }
    if (half_close) {
        shutdown(fd, SHUT_WR);
    }
    long total = 0;
    if (wait_s < 0) {
        close(fd);
        return total;
    }
    for (;;) {
        uint8_t buffer[512];
        ssize_t got = recv(fd, buffer, sizeof buffer, 0);
        if (got > 0 || (got < 0 && errno == EINTR)) {
            total += got > 0 ? got : 0;
            continue;
        }
        bool closed = got == 0 || errno == ECONNRESET;
        close(fd);
        return closed ? total : -1;
    }
}

struct Hold_Up_Rec {
    long trickled = -3;     // what Send_And_Collect gave the trickler: 0 dropped unanswered
    double dropped_s = 0;   // when the trickler's connection ended
    bool served = false;    // another client, asking while the trickler held on, was served
    double served_s = 0;    // when it was
    int burst_answered = 0; // of Burst_Clients connecting at once afterwards
    static constexpr int Burst_Clients = 50;
};

// A client sends a sound request a byte every gap_ms while another asks after ask_after_ms;
// then a burst of clients connect at once.
inline Hold_Up_Rec Try_To_Hold_Up(uint16_t port, int gap_ms, int ask_after_ms) {
    using Clock = std::chrono::steady_clock;
    const auto start = Clock::now();
    const auto seconds = [start] {
        return std::chrono::duration<double>(Clock::now() - start).count();
    };
    const auto found = [port] { return Bridge_Transport(port).Find_Window(Link_Main_Class) != 0; };
    Hold_Up_Rec r;
    std::thread trickler([&] {
        r.trickled = Send_And_Collect(
            port,
            Form_Bridge_Request(Bridge_Find_Window, {'U', 'I', 'P', 'C', 'M', 'A', 'I', 'N'}, 8),
            false, gap_ms);
        r.dropped_s = seconds();
    });
    std::this_thread::sleep_for(std::chrono::milliseconds(ask_after_ms));
    r.served = found();
    r.served_s = seconds();
    trickler.join();

    std::vector<std::thread> burst;
    std::vector<int> answered(Hold_Up_Rec::Burst_Clients, 0);
    std::latch all_ready(Hold_Up_Rec::Burst_Clients);
    for (int& a : answered) {
        burst.emplace_back([&] {
            all_ready.arrive_and_wait();
            a = found() ? 1 : 0;
        });
    }
    for (std::thread& t : burst) {
        t.join();
    }
    r.burst_answered = static_cast<int>(std::count(answered.begin(), answered.end(), 1));
    return r;
}

} // namespace quilmark
