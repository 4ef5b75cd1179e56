#include "link/bridge_server.h"

#include <algorithm>
#include <cstring>

namespace quilmark {

namespace {

void Put_Answer(std::vector<uint8_t>& answer, uint32_t status, uint32_t value, uint32_t error,
                const uint8_t* data, uint32_t length) {
    answer.assign(Bridge_Answer_Header, 0);
    Put_U32(answer.data(), Bridge_Magic);
    Put_U32(answer.data() + 4, status);
    Put_U32(answer.data() + 8, value);
    Put_U32(answer.data() + 12, error);
    Put_U32(answer.data() + 16, length);
    answer.insert(answer.end(), data, data + length);
}

} // namespace

std::vector<uint8_t> Form_Bridge_Request(uint32_t command, const std::vector<uint8_t>& payload,
                                         uint32_t length, uint32_t magic) {
    std::vector<uint8_t> frame(Bridge_Request_Header);
    Put_U32(frame.data(), magic);
    Put_U32(frame.data() + 4, command);
    Put_U32(frame.data() + 8, length);
    frame.insert(frame.end(), payload.begin(), payload.end());
    return frame;
}

Link_Result Bridge_Open(Bridge_Server_Rec& bridge, Link_Transport& module_side) {
    bridge.module_side = &module_side;
    bridge.message = module_side.Register_Message(Link_Message_Name);
    if (bridge.message == 0) {
        return Link_Result::No_Message;
    }
    char name[24];
    Form_Block_Name(module_side.Current_Process_Id(), name);
    bridge.atom = static_cast<int16_t>(module_side.Add_Atom(name));
    if (bridge.atom == 0) {
        return Link_Result::No_Atom;
    }
    bridge.mapping = module_side.Create_Mapping(name, Link_Block_Size);
    if (bridge.mapping == 0 || module_side.Last_Error() == Link_Error_Already_Exists) {
        Bridge_Close(bridge);
        return Link_Result::No_Mapping;
    }
    bridge.view = module_side.Map_View(bridge.mapping);
    if (bridge.view == nullptr) {
        Bridge_Close(bridge);
        return Link_Result::No_View;
    }
    return Link_Result::Ok;
}
void Bridge_Close(Bridge_Server_Rec& bridge) {
    if (bridge.module_side == nullptr) {
        return;
    }
    if (bridge.atom != 0) {
        bridge.module_side->Delete_Atom(static_cast<uint16_t>(bridge.atom));
        bridge.atom = 0;
    }
    if (bridge.view != nullptr) {
        bridge.module_side->Unmap_View(bridge.view);
        bridge.view = nullptr;
    }
    if (bridge.mapping != 0) {
        bridge.module_side->Close_Handle(bridge.mapping);
        bridge.mapping = 0;
    }
}

bool Check_Bridge_Header(const uint8_t* header, uint32_t& length) {
    uint32_t command = Get_U32(header + 4);
    length = Get_U32(header + 8);
    if (Get_U32(header) != Bridge_Magic) {
        return false;
    }
    if (command == Bridge_Find_Window) {
        return length >= 1 && length <= Bridge_Max_Class_Name;
    }
    if (command == Bridge_Send_List) {
        return length >= Bridge_Send_Prefix + Link_Closing_Word && length <= Bridge_Max_Frame;
    }
    return false;
}

bool Bridge_Answer(Bridge_Server_Rec& bridge, const uint8_t* frame, size_t size,
                   std::vector<uint8_t>& answer) {
    answer.clear();
    uint32_t length = 0;
    if (size < Bridge_Request_Header || !Check_Bridge_Header(frame, length) ||
        size - Bridge_Request_Header != length) {
        return false;
    }
    const uint8_t* payload = frame + Bridge_Request_Header;
    Link_Transport& sys = *bridge.module_side;

    if (Get_U32(frame + 4) == Bridge_Find_Window) {
        char class_name[Bridge_Max_Class_Name + 1] = {};
        std::memcpy(class_name, payload, length);
        if (std::strlen(class_name) != length) {
            return false;
        }
        // Window handles keep their meaning in 32 bits, even between 32- and 64-bit processes.
        auto window = static_cast<uint32_t>(sys.Find_Window(class_name));
        Put_Answer(answer, 1, window, 0, nullptr, 0);
        return true;
    }

    const uint8_t* list = payload + Bridge_Send_Prefix;
    uint32_t list_length = length - Bridge_Send_Prefix;
    if (Measure_Request_List(list, list_length) != list_length) {
        return false;
    }
    uint32_t window = Get_U32(payload);
    uint32_t timeout_ms = std::min(Get_U32(payload + 4), Bridge_Max_Timeout_Ms);
    std::memcpy(bridge.view, list, list_length);
    uint64_t wparam = static_cast<uint64_t>(static_cast<int64_t>(bridge.atom));
    uint64_t result = 0;
    if (sys.Send_Message_Timeout(window, bridge.message, wparam, 0, Link_Smto_Block, timeout_ms,
                                 result)) {
        Put_Answer(answer, 1, static_cast<uint32_t>(result), 0, bridge.view, list_length);
    } else {
        Put_Answer(answer, 0, 0, sys.Last_Error(), nullptr, 0);
    }
    return true;
}

} // namespace quilmark
