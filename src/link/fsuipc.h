// The FSUIPC client. FSUIPC runs inside the simulator and offers the simulator's state as a
// table of numbered offsets. The client queues read and write requests in a shared block
// (see request_list.h), sends them with one blocking window message, and copies the answers
// into the caller's variables.
//
// Every operation returns true for success and leaves a Link_Result in result (below).
//
// Calling order: Link_Reset, Link_Open, rounds of Link_Read / Link_Write then Link_Process,
// Link_Close. A caller that gets false from Link_Read, Link_Write or Link_Process closes.
#pragma once

#include <cstdint>
#include <vector>

#include "link/link_transport.h"

namespace quilmark {

// What an operation of the link came to. The numbers are the module protocol's own result
// codes, so that a code printed in a diagnosis means the same everywhere.
enum class Link_Result : int32_t {
    Ok = 0,
    Already_Open = 1,          // Link_Open
    No_Window = 2,             // Link_Open: no module window of either class
    No_Message = 3,            // Link_Open: the message can't be registered
    No_Atom = 4,               // Link_Open: the atom can't be added
    No_Mapping = 5,            // Link_Open: the mapping can't be created, or already exists
    No_View = 6,               // Link_Open: the view can't be mapped
    Bad_Version = 7,           // Link_Open: version or check pattern wrong, via UIPCMAIN
    Wrong_Simulator = 8,       // Link_Open: not the simulator asked for
    Not_Open = 9,              // Link_Read, Link_Write, Link_Process
    Queue_Empty = 10,          // Link_Process
    No_Answer = 11,            // Link_Process: no answer in time, no system error
    Send_Failed = 12,          // Link_Process: no answer, with a system error
    Refused = 13,              // Link_Process: the module answered something other than 1
    Bad_Version_Fallback = 14, // Link_Open: version or check pattern wrong, via FS98MAIN
    Too_Big = 15,              // Link_Read, Link_Write: the request doesn't fit in the block
};

// A read's destination as the client remembers it. The record in the block has only 4 bytes
// for the destination, too few for an address of a 64-bit process, so it carries a token:
// the position in this list plus one. 0 stays "no destination".
struct Link_Destination_Rec {
    void* address = nullptr;
    uint32_t size = 0;
};

struct Fsuipc_Rec {
    Link_Transport* transport = nullptr;

    int32_t link_module_version = 0; // offset 0x3304
    int32_t link_sim_version = 0;    // offset 0x3308: 0xFADE and the simulator's code
    int16_t link_client_version = 0; // written to 0x330A; nothing sets it
    uint64_t link_window = 0;
    uint32_t link_message = 0;
    int32_t link_atom = 0; // the atom's 16 bits widened with sign
    uint64_t link_mapping = 0;
    uint8_t* link_view = nullptr; // nullptr: the link is closed
    uint8_t* link_next = nullptr; // where the next request goes

    std::vector<Link_Destination_Rec> link_destinations;
};

constexpr int32_t Fsuipc_Fs2002 = 6;
constexpr int32_t Fsuipc_Min_Module_Version = 0x19980005;

void Link_Reset(Fsuipc_Rec& link);
bool Link_Open(Fsuipc_Rec& link, int32_t required_sim, Link_Result& result);
void Link_Close(Fsuipc_Rec& link);
// Queues a read of size bytes at offset into destination, which must stay valid and hold
// size bytes until Link_Process returns. A null destination queues the read but drops the
// answer. A negative size doesn't fit (15).
bool Link_Read(Fsuipc_Rec& link, int32_t offset, int32_t size, void* destination,
               Link_Result& result);
// Queues a write of size bytes at offset; the value is copied from source at once.
bool Link_Write(Fsuipc_Rec& link, int32_t offset, int32_t size, const void* source,
                Link_Result& result);
bool Link_Process(Fsuipc_Rec& link, Link_Result& result);

} // namespace quilmark
