// The FSUIPC request list: the layout of the shared block that the client fills and the
// module answers in place, with the pieces both ends of the link need.
//
// The block is 32768 bytes of shared memory. Records follow each other from its start,
// each beginning where the last one ended, and a 32-bit 0 closes the list. All fields are
// little-endian u32.
//
//   read record:   id 1, offset, size, destination, then size bytes (zero in the request,
//                  the value in the answer). The module hands destination back unchanged.
//   write record:  id 2, offset, size, then size bytes of the value.
//
// A list may use at most 32512 bytes of the block, its closing word included.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace quilmark {

constexpr uint32_t Link_Block_Size = 0x8000;
constexpr uint32_t Link_List_Limit = 0x7F00;
constexpr uint32_t Link_Read_Id = 1;
constexpr uint32_t Link_Write_Id = 2;
constexpr uint32_t Link_Read_Header = 16;
constexpr uint32_t Link_Write_Header = 12;
constexpr uint32_t Link_Closing_Word = 4;

// Window classes of the module, the registered message, and the message's flags and wait.
constexpr const char* Link_Main_Class = "UIPCMAIN";
constexpr const char* Link_Fallback_Class = "FS98MAIN";
constexpr const char* Link_Message_Name = "FSASMLIB:IPC";
constexpr uint32_t Link_Smto_Block = 1;
constexpr uint32_t Link_Send_Timeout_Ms = 2000;
constexpr uint32_t Link_Error_Already_Exists = 183;

// The name that the atom and the mapping share: "FSASMLIB:IPC:", the process id in upper-case
// hexadecimal without leading zeros, ":1". It always fits the 24 characters of name.
void Form_Block_Name(uint32_t process_id, char (&name)[24]);

uint32_t Get_U32(const uint8_t* p);
void Put_U32(uint8_t* p, uint32_t v);

// Length of a well-formed request list at the start of data, its closing word included, or
// 0 when a record runs past length, the list doesn't close within length, or a record has
// an id other than 1 or 2. Every size is checked against what is left before it is used.
uint32_t Measure_Request_List(const uint8_t* data, uint32_t length);

// The module's side. FSUIPC offsets span 16 bits. Reads are answered from bytes; writes land
// in written and don't change what reads give, since some offsets mean different things in
// the two directions: the client's version written at 0x330A lies inside the check pattern
// read at 0x3308.
struct Module_Space_Rec {
    std::array<uint8_t, 0x10000> bytes{};
    std::array<uint8_t, 0x10000> written{};

    // Little-endian values; bytes past the end of the space are dropped.
    void Set_U32(uint32_t offset, uint32_t value);
    void Set_U16(uint32_t offset, uint16_t value);
};

struct Module_Tally_Rec {
    uint32_t reads = 0;
    uint32_t writes = 0;
};

// Answers the request list in block as the module does: each read gets the bytes of the
// space at its offset (zero past the space's end), each write is stored into written.
// False when a record leaves the block or has an unknown id; records before it stay
// answered.
bool Answer_Request_List(uint8_t* block, uint32_t block_size, Module_Space_Rec& space,
                         Module_Tally_Rec& tally);

} // namespace quilmark
