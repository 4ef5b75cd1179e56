#include "link/bridge_server.h"

#include <algorithm>
#include <cstring>

namespace {

void Put_Answer(std::vector<uint8_t>& answer, uint32_t status, uint32_t value, uint32_t error,
                const uint8_t* data, uint32_t length) {
    answer.assign(bridge_answer_header, 0);
    Put_U32(answer.data(), bridge_magic);
    Put_U32(answer.data() + 4, status);
    Put_U32(answer.data() + 8, value);
    Put_U32(answer.data() + 12, error);
    Put_U32(answer.data() + 16, length);
    answer.insert(answer.end(), data, data + length);
}

} // namespace

std::vector<uint8_t> Form_Bridge_Request(uint32_t command, const std::vector<uint8_t>& payload,
                                         uint32_t length, uint32_t magic) {
    std::vector<uint8_t> frame(bridge_request_header);
    Put_U32(frame.data(), magic);
    Put_U32(frame.data() + 4, command);
    Put_U32(frame.data() + 8, length);
    frame.insert(frame.end(), payload.begin(), payload.end());
    return frame;
}

Link_Result Bridge_Open(Bridge_Server_Rec& bridge, Link_Transport& module_side) {
    bridge.module_side = &module_side;
    bridge.message = module_side.Register_Message(link_message_name);
    if (bridge.message == 0) {
        return Link_Result::no_message;
    }
    char name[24];
    Form_Block_Name(module_side.Current_Process_Id(), name);
    bridge.atom = static_cast<int16_t>(module_side.Add_Atom(name));
    if (bridge.atom == 0) {
        return Link_Result::no_atom;
    }
    bridge.mapping = module_side.Create_Mapping(name, link_block_size);
    if (bridge.mapping == 0 || module_side.Last_Error() == link_error_already_exists) {
        Bridge_Close(bridge);
        return Link_Result::no_mapping;
    }
    bridge.view = module_side.Map_View(bridge.mapping);
    if (bridge.view == nullptr) {
        Bridge_Close(bridge);
        return Link_Result::no_view;
    }
    return Link_Result::ok;
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
    if (Get_U32(header) != bridge_magic) {
        return false;
    }
    if (command == bridge_find_window) {
        return length >= 1 && length <= bridge_max_class_name;
    }
    if (command == bridge_send_list) {
        return length >= bridge_send_prefix + link_closing_word && length <= bridge_max_frame;
    }
    return false;
}

bool Bridge_Answer(Bridge_Server_Rec& bridge, const uint8_t* frame, size_t size,
                   std::vector<uint8_t>& answer) {
    answer.clear();
    uint32_t length = 0;
    if (size < bridge_request_header || !Check_Bridge_Header(frame, length) ||
        size - bridge_request_header != length) {
        return false;
    }
    const uint8_t* payload = frame + bridge_request_header;
    Link_Transport& sys = *bridge.module_side;

    if (Get_U32(frame + 4) == bridge_find_window) {
        char class_name[bridge_max_class_name + 1] = {};
        std::memcpy(class_name, payload, length);
        if (std::strlen(class_name) != length) {
            return false;
        }
        // Window handles keep their meaning in 32 bits, even between 32- and 64-bit processes.
        auto window = static_cast<uint32_t>(sys.Find_Window(class_name));
        Put_Answer(answer, 1, window, 0, nullptr, 0);
        return true;
    }

    const uint8_t* list = payload + bridge_send_prefix;
    uint32_t list_length = length - bridge_send_prefix;
    if (Measure_Request_List(list, list_length) != list_length) {
        return false;
    }
    uint32_t window = Get_U32(payload);
    uint32_t timeout_ms = std::min(Get_U32(payload + 4), bridge_max_timeout_ms);
    std::memcpy(bridge.view, list, list_length);
    uint64_t wparam = static_cast<uint64_t>(static_cast<int64_t>(bridge.atom));
    uint64_t result = 0;
    if (sys.Send_Message_Timeout(window, bridge.message, wparam, 0, link_smto_block, timeout_ms,
                                 result)) {
        Put_Answer(answer, 1, static_cast<uint32_t>(result), 0, bridge.view, list_length);
    } else {
        Put_Answer(answer, 0, 0, sys.Last_Error(), nullptr, 0);
    }
    return true;
}
