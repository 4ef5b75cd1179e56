// The bridge's listening side: a loopback port that many clients may connect to at once,
// each sending one request frame (see bridge_server.h) and taking one answer.
//
// No client can hold the others up. Frames are read from every connection as their bytes
// come, and each connection has a deadline for its whole frame from the moment it is
// accepted: a client that trickles is dropped at it. Answers leave under a deadline of
// their own. Only the module exchanges take turns, one at a time, and a frame whose client
// has closed the connection before its turn is dropped instead of being handed to the
// module.
#pragma once

#include <atomic>
#include <cstdint>
#include <functional>

#include "link/bridge_server.h"
#include "link/net_socket.h"

namespace quilmark {

enum class Bridge_Outcome {
    Answered,
    Malformed,    // the frame broke the rules
    Too_Slow,     // the whole frame didn't come within the deadline
    Closed_Early, // the client closed before a whole frame
    Client_Gone,  // a whole frame, but the client had gone before its turn
    Answer_Lost,  // the answer could not be sent in time
};

struct Bridge_Limits_Rec {
    uint32_t frame_deadline_ms = 2000;
    uint32_t answer_deadline_ms = 2000;
    uint32_t poll_ms = 200; // how often the stop flag is looked at, at the longest
};

// At most this many connections are open at once, so that they and the listener fit in one
// select set (Winsock's holds 64); the backlog keeps the rest of a burst waiting meanwhile.
constexpr size_t Bridge_Max_Connections = 60;

struct Bridge_Listener_Rec {
    Net_Socket socket = Net_No_Socket;
    uint16_t port = 0; // the port listened on, also when the system chose it
    int error = 0;     // the system's error when it couldn't listen
};

// Listens on 127.0.0.1:port, 0 letting the system choose, with the system's largest
// backlog. False, with error set, when the port can't be had.
bool Open_Bridge_Listener(uint16_t port, Bridge_Listener_Rec& listener);
void Close_Bridge_Listener(Bridge_Listener_Rec& listener);

// Serves the listener's connections until stop is set; report hears how each connection
// ended. Closes every connection it still holds before it returns.
void Run_Bridge(Bridge_Server_Rec& bridge, const Bridge_Listener_Rec& listener,
                const std::atomic<bool>& stop, const Bridge_Limits_Rec& limits,
                const std::function<void(Bridge_Outcome)>& report);

} // namespace quilmark
