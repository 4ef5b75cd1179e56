#include "link/request_list.h"

#include <cstdio>
#include <cstring>

namespace quilmark {

void Form_Block_Name(uint32_t process_id, char (&name)[24]) {
    std::snprintf(name, sizeof name, "%s:%X:1", Link_Message_Name,
                  static_cast<unsigned>(process_id));
}

uint32_t Get_U32(const uint8_t* p) {
    return static_cast<uint32_t>(p[0]) | static_cast<uint32_t>(p[1]) << 8 |
           static_cast<uint32_t>(p[2]) << 16 | static_cast<uint32_t>(p[3]) << 24;
}

void Put_U32(uint8_t* p, uint32_t v) {
    p[0] = static_cast<uint8_t>(v);
    p[1] = static_cast<uint8_t>(v >> 8);
    p[2] = static_cast<uint8_t>(v >> 16);
    p[3] = static_cast<uint8_t>(v >> 24);
}

namespace {

// Where the record at pos ends, or 0 when it isn't a whole read or write record within
// length. Sizes are compared in 64 bits so that a huge size can't wrap around.
uint64_t Record_End(const uint8_t* data, uint64_t pos, uint64_t length, uint32_t id) {
    uint64_t header = id == Link_Read_Id ? Link_Read_Header : Link_Write_Header;
    if (pos + header > length) {
        return 0;
    }
    uint64_t end = pos + header + Get_U32(data + pos + 8);
    return end <= length ? end : 0;
}

} // namespace

uint32_t Measure_Request_List(const uint8_t* data, uint32_t length) {
    uint64_t pos = 0;
    while (pos + Link_Closing_Word <= length) {
        uint32_t id = Get_U32(data + pos);
        if (id == 0) {
            return static_cast<uint32_t>(pos + Link_Closing_Word);
        }
        if (id != Link_Read_Id && id != Link_Write_Id) {
            return 0;
        }
        uint64_t end = Record_End(data, pos, length, id);
        if (end == 0) {
            return 0;
        }
        pos = end;
    }
    return 0;
}

void Module_Space_Rec::Set_U32(uint32_t offset, uint32_t value) {
    for (uint32_t i = 0; i < 4 && offset + i < bytes.size(); ++i) {
        bytes[offset + i] = static_cast<uint8_t>(value >> (8 * i));
    }
}

void Module_Space_Rec::Set_U16(uint32_t offset, uint16_t value) {
    for (uint32_t i = 0; i < 2 && offset + i < bytes.size(); ++i) {
        bytes[offset + i] = static_cast<uint8_t>(value >> (8 * i));
    }
}

bool Answer_Request_List(uint8_t* block, uint32_t block_size, Module_Space_Rec& space,
                         Module_Tally_Rec& tally) {
    uint64_t pos = 0;
    while (pos + Link_Closing_Word <= block_size) {
        uint32_t id = Get_U32(block + pos);
        if (id == 0) {
            return true;
        }
        if (id != Link_Read_Id && id != Link_Write_Id) {
            return false;
        }
        uint64_t end = Record_End(block, pos, block_size, id);
        if (end == 0) {
            return false;
        }
        uint64_t offset = Get_U32(block + pos + 4);
        uint64_t size = Get_U32(block + pos + 8);
        uint8_t* data = block + pos + (id == Link_Read_Id ? Link_Read_Header : Link_Write_Header);
        for (uint64_t i = 0; i < size; ++i) {
            bool inside = offset + i < space.bytes.size();
            if (id == Link_Read_Id) {
                data[i] = inside ? space.bytes[offset + i] : 0;
            } else if (inside) {
                space.written[offset + i] = data[i];
            }
        }
        ++(id == Link_Read_Id ? tally.reads : tally.writes);
        pos = end;
    }
    return false;
}

} // namespace quilmark
