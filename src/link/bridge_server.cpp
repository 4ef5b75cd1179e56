#include "link/bridge_server.h"

#include <algorithm>
#include <cstring>

namespace {

bool Answer(Byte_Stream& stream, uint32_t status, uint32_t value, uint32_t error,
            const uint8_t* data, uint32_t length) {
    uint8_t header[bridge_answer_header];
    Put_U32(header, bridge_magic);
    Put_U32(header + 4, status);
    Put_U32(header + 8, value);
    Put_U32(header + 12, error);
    Put_U32(header + 16, length);
    return stream.Write_All(header, sizeof header) &&
           (length == 0 || stream.Write_All(data, length));
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
    bridge.frame.assign(bridge_max_frame, 0);
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

Bridge_Outcome Bridge_Serve(Bridge_Server_Rec& bridge, Byte_Stream& stream) {
    uint8_t header[bridge_request_header];
    if (!stream.Read_Exact(header, sizeof header)) {
        return Bridge_Outcome::no_request;
    }
    uint32_t command = Get_U32(header + 4);
    uint32_t length = Get_U32(header + 8);
    bool fits = false;
    if (Get_U32(header) != bridge_magic) {
        fits = false;
    } else if (command == bridge_find_window) {
        fits = length >= 1 && length <= bridge_max_class_name;
    } else if (command == bridge_send_list) {
        fits = length >= bridge_send_prefix + link_closing_word && length <= bridge_max_frame;
    }
    if (!fits || !stream.Read_Exact(bridge.frame.data(), length)) {
        return Bridge_Outcome::malformed;
    }
    Link_Transport& sys = *bridge.module_side;

    if (command == bridge_find_window) {
        char class_name[bridge_max_class_name + 1] = {};
        std::memcpy(class_name, bridge.frame.data(), length);
        if (std::strlen(class_name) != length) {
            return Bridge_Outcome::malformed;
        }
        // Window handles keep their meaning in 32 bits, even between 32- and 64-bit processes.
        auto window = static_cast<uint32_t>(sys.Find_Window(class_name));
        return Answer(stream, 1, window, 0, nullptr, 0) ? Bridge_Outcome::answered
                                                        : Bridge_Outcome::answer_lost;
    }

    const uint8_t* list = bridge.frame.data() + bridge_send_prefix;
    uint32_t list_length = length - bridge_send_prefix;
    if (Measure_Request_List(list, list_length) != list_length) {
        return Bridge_Outcome::malformed;
    }
    uint32_t window = Get_U32(bridge.frame.data());
    uint32_t timeout_ms = std::min(Get_U32(bridge.frame.data() + 4), bridge_max_timeout_ms);
    std::memcpy(bridge.view, list, list_length);
    uint64_t wparam = static_cast<uint64_t>(static_cast<int64_t>(bridge.atom));
    uint64_t result = 0;
    bool sent = sys.Send_Message_Timeout(window, bridge.message, wparam, 0, link_smto_block,
                                         timeout_ms, result);
    bool delivered =
        sent ? Answer(stream, 1, static_cast<uint32_t>(result), 0, bridge.view, list_length)
             : Answer(stream, 0, 0, sys.Last_Error(), nullptr, 0);
    return delivered ? Bridge_Outcome::answered : Bridge_Outcome::answer_lost;
}
