// The bridge between a client that can't reach the module's window (a native Linux program)
// and the module inside a Wine prefix. The client sends a frame over loopback TCP; the
// bridge, a Windows program in the simulator's prefix, makes the Windows calls and answers.
//
// One frame per connection, all fields little-endian u32:
//
//   request:  magic "QMB1", command, length, then length bytes
//     command 1, find window:  the class name (1 to 64 bytes, no terminator)
//     command 2, send list:    window, timeout in ms, then the request list, closing word
//                              included; the list must end exactly where the frame ends
//   answer:   magic "QMB1", status, value, error, length, then length bytes
//     find window:  status 1, value the window (0 for none), length 0
//     send list:    status 1 and value the message's result, then the answered list, of
//                   the length sent; or status 0 and error the system error, length 0
//
// A frame that breaks any of this gets no answer: the bridge closes the connection. It checks
// every length before it reads or copies what follows. A client that closes its connection
// before the answer has given up: its request is not handed to the module.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "link/fsuipc.h"
#include "link/link_transport.h"
#include "link/request_list.h"

namespace quilmark {

constexpr uint16_t Bridge_Default_Port = 20020;
constexpr uint32_t Bridge_Magic = 0x31424D51; // "QMB1"
constexpr uint32_t Bridge_Find_Window = 1;
constexpr uint32_t Bridge_Send_List = 2;
constexpr uint32_t Bridge_Request_Header = 12;
constexpr uint32_t Bridge_Answer_Header = 20;
constexpr uint32_t Bridge_Max_Class_Name = 64;
constexpr uint32_t Bridge_Send_Prefix = 8; // window and timeout before the list
constexpr uint32_t Bridge_Max_Frame = Bridge_Send_Prefix + Link_Block_Size;
constexpr uint32_t Bridge_Max_Timeout_Ms = 5000;

// A request frame: header and payload. length is what the header claims; a sound frame
// gives the payload's size.
std::vector<uint8_t> Form_Bridge_Request(uint32_t command, const std::vector<uint8_t>& payload,
                                         uint32_t length, uint32_t magic = Bridge_Magic);

// The bridge's own end of the link: the message, atom, mapping and view that name its block
// to the module, made once at start through module_side.
struct Bridge_Server_Rec {
    Link_Transport* module_side = nullptr;
    uint32_t message = 0;
    int32_t atom = 0;
    uint64_t mapping = 0;
    uint8_t* view = nullptr;
};

// Ok, or the result that Link_Open would give at the failing step (No_Message to No_View).
Link_Result Bridge_Open(Bridge_Server_Rec& bridge, Link_Transport& module_side);
void Bridge_Close(Bridge_Server_Rec& bridge);

// Whether a request's first Bridge_Request_Header bytes are sound; length gets the number of
// payload bytes that must follow them.
bool Check_Bridge_Header(const uint8_t* header, uint32_t& length);
// Answers a whole request frame, header included: finds the window or hands the list to the
// module, and puts the answer frame into answer. False for a frame that breaks the rules:
// answer stays empty and nothing reaches the module.
bool Bridge_Answer(Bridge_Server_Rec& bridge, const uint8_t* frame, size_t size,
                   std::vector<uint8_t>& answer);

} // namespace quilmark
