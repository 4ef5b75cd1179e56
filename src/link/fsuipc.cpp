#include "link/fsuipc.h"

#include <algorithm>
#include <cstring>

#include "link/request_list.h"

namespace quilmark {

namespace {

constexpr uint32_t Module_Version_Offset = 0x3304;
constexpr uint32_t Sim_Version_Offset = 0x3308;
constexpr uint32_t Client_Version_Offset = 0x330A;
constexpr uint32_t Sim_Check_Pattern = 0xFADE;
constexpr int Open_Tries = 5;
constexpr int Resends = 9;
constexpr uint32_t Retry_Wait_Ms = 100;

// Whether a record of header bytes and size bytes of data, with the list's closing word
// after it, still fits in the part of the block a list may use.
bool Fits(const Fsuipc_Rec& link, uint32_t header, int32_t size) {
    if (size < 0) {
        return false;
    }
    int64_t used = link.link_next - link.link_view;
    return used + Link_Closing_Word + header + size <= Link_List_Limit;
}

void Empty_Queue(Fsuipc_Rec& link) {
    link.link_next = link.link_view;
    link.link_destinations.clear();
}

void Put_Header(uint8_t* p, uint32_t id, int32_t offset, int32_t size) {
    Put_U32(p, id);
    Put_U32(p + 4, static_cast<uint32_t>(offset));
    Put_U32(p + 8, static_cast<uint32_t>(size));
}

// Copies the answers from the block into the destinations. False at a record the client
// never writes, or one that would reach past the block.
bool Walk_Answers(Fsuipc_Rec& link) {
    const uint8_t* end = link.link_view + Link_Block_Size;
    uint8_t* p = link.link_view;
    while (end - p >= 2) {
        uint16_t id = static_cast<uint16_t>(p[0] | p[1] << 8);
        if (id == 0) {
            return true;
        }
        uint32_t header = id == Link_Read_Id ? Link_Read_Header : Link_Write_Header;
        if ((id != Link_Read_Id && id != Link_Write_Id) || end - p < header) {
            return false;
        }
        uint32_t size = Get_U32(p + 8);
        if (static_cast<uint64_t>(end - p) < header + static_cast<uint64_t>(size)) {
            return false;
        }
        if (id == Link_Read_Id) {
            uint32_t token = Get_U32(p + 12);
            if (size != 0 && token != 0 && token <= link.link_destinations.size()) {
                const Link_Destination_Rec& d = link.link_destinations[token - 1];
                std::memcpy(d.address, p + header, std::min(size, d.size));
            }
        }
        p += header + size;
    }
    return false;
}

} // namespace

void Link_Reset(Fsuipc_Rec& link) {
    link.link_window = 0;
    link.link_message = 0;
    link.link_atom = 0;
    link.link_mapping = 0;
    link.link_view = nullptr;
    link.link_next = nullptr;
    link.link_destinations.clear();
}

bool Link_Open(Fsuipc_Rec& link, int32_t required_sim, Link_Result& result) {
    Link_Transport& sys = *link.transport;
    link.link_module_version = 0;
    link.link_sim_version = 0;
    if (link.link_view != nullptr) {
        result = Link_Result::Already_Open;
        return false;
    }

    bool fallback_class = false;
    link.link_window = sys.Find_Window(Link_Main_Class);
    if (link.link_window == 0) {
        link.link_window = sys.Find_Window(Link_Fallback_Class);
        fallback_class = true;
    }
    if (link.link_window == 0) {
        result = Link_Result::No_Window;
        return false;
    }

    link.link_message = sys.Register_Message(Link_Message_Name);
    if (link.link_message == 0) {
        result = Link_Result::No_Message;
        return false;
    }

    char name[24];
    Form_Block_Name(sys.Current_Process_Id(), name);
    link.link_atom = static_cast<int16_t>(sys.Add_Atom(name));
    if (link.link_atom == 0) {
        result = Link_Result::No_Atom;
        Link_Close(link);
        return false;
    }

    link.link_mapping = sys.Create_Mapping(name, Link_Block_Size);
    if (link.link_mapping == 0 || sys.Last_Error() == Link_Error_Already_Exists) {
        result = Link_Result::No_Mapping;
        Link_Close(link);
        return false;
    }

    link.link_view = sys.Map_View(link.link_mapping);
    if (link.link_view == nullptr) {
        result = Link_Result::No_View;
        Link_Close(link);
        return false;
    }
    Empty_Queue(link);

    // A module that waits for its data (a networked one waits for its server) answers zero
    // versions at first; ask again a few times before judging them.
    for (int attempt = 0; attempt < Open_Tries; ++attempt) {
        if (!Link_Read(link, Module_Version_Offset, 4, &link.link_module_version, result) ||
            !Link_Read(link, Sim_Version_Offset, 4, &link.link_sim_version, result)) {
            Link_Close(link);
            return false;
        }
        if (!Link_Write(link, Client_Version_Offset, 2, &link.link_client_version, result) &&
            attempt == 0) {
            Link_Close(link);
            return false;
        }
        if (!Link_Process(link, result)) {
            Link_Close(link);
            return false;
        }
        sys.Sleep_Ms(Retry_Wait_Ms);
        if (link.link_module_version != 0 && link.link_sim_version != 0) {
            break;
        }
    }

    uint32_t pattern = static_cast<uint32_t>(link.link_sim_version) >> 16;
    if (link.link_module_version < Fsuipc_Min_Module_Version || pattern != Sim_Check_Pattern) {
        result = fallback_class ? Link_Result::Bad_Version_Fallback : Link_Result::Bad_Version;
        Link_Close(link);
        return false;
    }
    link.link_sim_version &= 0xFFFF;

    if (required_sim == 0 || required_sim == link.link_sim_version) {
        result = Link_Result::Ok;
        return true;
    }
    result = Link_Result::Wrong_Simulator;
    Link_Close(link);
    return false;
}

void Link_Close(Fsuipc_Rec& link) {
    link.link_window = 0;
    link.link_message = 0;
    link.link_next = nullptr;
    link.link_destinations.clear();
    if (link.link_atom != 0) {
        link.transport->Delete_Atom(static_cast<uint16_t>(link.link_atom));
        link.link_atom = 0;
    }
    if (link.link_view != nullptr) {
        link.transport->Unmap_View(link.link_view);
        link.link_view = nullptr;
    }
    if (link.link_mapping != 0) {
        link.transport->Close_Handle(link.link_mapping);
        link.link_mapping = 0;
    }
}

bool Link_Read(Fsuipc_Rec& link, int32_t offset, int32_t size, void* destination,
               Link_Result& result) {
    if (link.link_view == nullptr) {
        result = Link_Result::Not_Open;
        return false;
    }
    if (!Fits(link, Link_Read_Header, size)) {
        result = Link_Result::Too_Big;
        return false;
    }
    uint32_t token = 0;
    if (destination != nullptr) {
        link.link_destinations.push_back({destination, static_cast<uint32_t>(size)});
        token = static_cast<uint32_t>(link.link_destinations.size());
    }
    Put_Header(link.link_next, Link_Read_Id, offset, size);
    Put_U32(link.link_next + 12, token);
    link.link_next += Link_Read_Header;
    std::memset(link.link_next, 0, static_cast<size_t>(size));
    link.link_next += size;
    result = Link_Result::Ok;
    return true;
}

bool Link_Write(Fsuipc_Rec& link, int32_t offset, int32_t size, const void* source,
                Link_Result& result) {
    if (link.link_view == nullptr) {
        result = Link_Result::Not_Open;
        return false;
    }
    if (!Fits(link, Link_Write_Header, size)) {
        result = Link_Result::Too_Big;
        return false;
    }
    Put_Header(link.link_next, Link_Write_Id, offset, size);
    link.link_next += Link_Write_Header;
    if (source != nullptr) {
        std::memcpy(link.link_next, source, static_cast<size_t>(size));
    } else {
        std::memset(link.link_next, 0, static_cast<size_t>(size));
    }
    link.link_next += size;
    result = Link_Result::Ok;
    return true;
}

bool Link_Process(Fsuipc_Rec& link, Link_Result& result) {
    if (link.link_view == nullptr) {
        result = Link_Result::Not_Open;
        return false;
    }
    if (link.link_next == link.link_view) {
        result = Link_Result::Queue_Empty;
        return false;
    }
    Put_U32(link.link_next, 0);
    // From here on the queue is empty, whatever follows; the destinations are still needed
    // for the walk below.
    link.link_next = link.link_view;

    Link_Transport& sys = *link.transport;
    // The atom goes in wParam widened with its sign, as a 32-bit client would pass it.
    uint64_t wparam = static_cast<uint64_t>(static_cast<int64_t>(link.link_atom));
    uint64_t answer = 0;
    bool sent = false;
    for (int attempt = 0; attempt <= Resends && !sent; ++attempt) {
        if (attempt > 0) {
            sys.Sleep_Ms(Retry_Wait_Ms);
        }
        sent = sys.Send_Message_Timeout(link.link_window, link.link_message, wparam, 0,
                                        Link_Smto_Block, Link_Send_Timeout_Ms, answer);
    }
    if (!sent) {
        result = sys.Last_Error() == 0 ? Link_Result::No_Answer : Link_Result::Send_Failed;
        Empty_Queue(link);
        return false;
    }
    if (answer != 1) {
        result = Link_Result::Refused;
        Empty_Queue(link);
        return false;
    }

    bool walked = Walk_Answers(link);
    Empty_Queue(link);
    if (!walked) {
        return false;
    }
    result = Link_Result::Ok;
    return true;
}

} // namespace quilmark
