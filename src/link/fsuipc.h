// The FSUIPC client. FSUIPC runs inside the simulator and offers the simulator's state as a
// table of numbered offsets. The client queues read and write requests in a shared block
// (see request_list.h), sends them with one blocking window message, and copies the answers
// into the caller's variables.
//
// Every operation returns true for success and leaves a result code in result:
//    0 success
//    1 the link is already open                          Link_Open
//    2 no module window of either class                  Link_Open
//    3 the message can't be registered                   Link_Open
//    4 the atom can't be added                           Link_Open
//    5 the mapping can't be created, or already exists   Link_Open
//    6 the view can't be mapped                          Link_Open
//    7 version or check pattern wrong, via UIPCMAIN      Link_Open
//    8 not the simulator asked for                       Link_Open
//    9 the link isn't open                               Link_Read, Link_Write, Link_Process
//   10 the queue is empty                                Link_Process
//   11 no answer in time, no system error                Link_Process
//   12 no answer, with a system error                    Link_Process
//   13 the module answered something other than 1        Link_Process
//   14 version or check pattern wrong, via FS98MAIN      Link_Open
//   15 the request doesn't fit in the block              Link_Read, Link_Write
//
// Calling order: Link_Reset, Link_Open, rounds of Link_Read / Link_Write then Link_Process,
// Link_Close. A caller that gets false from Link_Read, Link_Write or Link_Process closes.
#pragma once

#include <cstdint>
#include <vector>

#include "link/link_transport.h"

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

constexpr int32_t fsuipc_fs2002 = 6;
constexpr int32_t fsuipc_min_module_version = 0x19980005;

void Link_Reset(Fsuipc_Rec& link);
bool Link_Open(Fsuipc_Rec& link, int32_t required_sim, int32_t& result);
void Link_Close(Fsuipc_Rec& link);
// Queues a read of size bytes at offset into destination, which must stay valid and hold
// size bytes until Link_Process returns. A null destination queues the read but drops the
// answer. A negative size doesn't fit (15).
bool Link_Read(Fsuipc_Rec& link, int32_t offset, int32_t size, void* destination, int32_t& result);
// Queues a write of size bytes at offset; the value is copied from source at once.
bool Link_Write(Fsuipc_Rec& link, int32_t offset, int32_t size, const void* source,
                int32_t& result);
bool Link_Process(Fsuipc_Rec& link, int32_t& result);
