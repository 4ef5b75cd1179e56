#include "support/fake_module.h"

#include <chrono>
#include <cstring>
#include <thread>

namespace quilmark {

namespace {

constexpr uint32_t Error_Not_Enough_Memory = 8;
constexpr uint32_t Error_Invalid_Window_Handle = 1400;

} // namespace

Fake_Module_Transport::Fake_Module_Transport() {
    space.Set_U32(0x3304, 0x36200000); // a version 3.62 module
    space.Set_U32(0x3308, 0xFADE0006); // FS2002
}

uint64_t Fake_Module_Transport::Find_Window(const char* class_name) {
    windows_asked.emplace_back(class_name);
    if (main_window && std::strcmp(class_name, Link_Main_Class) == 0) {
        return Main_Window_Handle;
    }
    if (fallback_window && std::strcmp(class_name, Link_Fallback_Class) == 0) {
        return Fallback_Window_Handle;
    }
    return 0;
}

uint32_t Fake_Module_Transport::Register_Message(const char* name) {
    return refuse_message ? 0 : Local_Kernel_Transport::Register_Message(name);
}

uint16_t Fake_Module_Transport::Add_Atom(const char* name) {
    return refuse_atom ? 0 : Local_Kernel_Transport::Add_Atom(name);
}

uint64_t Fake_Module_Transport::Create_Mapping(const char* name, uint32_t size) {
    if (refuse_mapping) {
        last_error = Error_Not_Enough_Memory;
        return 0;
    }
    return Local_Kernel_Transport::Create_Mapping(name, size);
}

uint8_t* Fake_Module_Transport::Map_View(uint64_t mapping) {
    if (refuse_view) {
        last_error = Error_Not_Enough_Memory;
        return nullptr;
    }
    return Local_Kernel_Transport::Map_View(mapping);
}

bool Fake_Module_Transport::Send_Message_Timeout(uint64_t window, uint32_t message, uint64_t wparam,
                                                 int64_t /*lparam*/, uint32_t /*flags*/,
                                                 uint32_t /*timeout_ms*/,
                                                 uint64_t& message_result) {
    ++sends;
    if (sends <= failed_sends) {
        last_error = send_error;
        return false;
    }
    bool known_window = (window == Main_Window_Handle && main_window) ||
                        (window == Fallback_Window_Handle && fallback_window);
    if (!known_window) {
        last_error = Error_Invalid_Window_Handle;
        return false;
    }
    // A window that doesn't know the message lets it pass to the default handler: 0.
    if (message != Local_Kernel_Transport::Register_Message(Link_Message_Name)) {
        message_result = 0;
        return true;
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(answer_delay_ms));
    message_result = answer;
    uint32_t size = 0;
    uint8_t* block = Find_Block(wparam, size);
    if (block == nullptr) {
        return true;
    }
    ++exchanges;
    uint32_t length = Measure_Request_List(block, size);
    last_list.assign(block, block + length);

    // A module still waiting for its data answers 0 at the version offsets.
    bool waiting = exchanges <= zero_version_exchanges;
    uint8_t versions[8];
    std::memcpy(versions, &space.bytes[0x3304], 8);
    if (waiting) {
        std::memset(&space.bytes[0x3304], 0, 8);
    }
    Module_Tally_Rec tally;
    Answer_Request_List(block, size, space, tally);
    if (waiting) {
        std::memcpy(&space.bytes[0x3304], versions, 8);
    }
    if (garble_answer && length > Link_Closing_Word) {
        uint32_t first_header =
            Get_U32(block) == Link_Read_Id ? Link_Read_Header : Link_Write_Header;
        Put_U32(block + first_header + Get_U32(block + 8), 7);
    }
    return true;
}

} // namespace quilmark
