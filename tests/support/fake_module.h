// An FSUIPC module inside the test process. It answers the client's message the way the
// real module does: it takes the atom from wParam, finds the block by the atom's name,
// walks the request list, answers each read from its table of offsets and stores each
// write there. Knobs make it misbehave in the ways a real link can.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "link/local_kernel.h"
#include "link/request_list.h"

namespace quilmark {

class Fake_Module_Transport : public Local_Kernel_Transport {
  public:
    // The module's state: a well-behaved FSUIPC in FS2002 unless a test changes it.
    Module_Space_Rec space;
    bool main_window = true;     // a window of class "UIPCMAIN"
    bool fallback_window = true; // a window of class "FS98MAIN"
    uint32_t process_id = 0x1A2B;

    // Misbehaviour.
    bool refuse_message = false;         // RegisterWindowMessageA gives 0
    bool refuse_atom = false;            // GlobalAddAtomA gives 0
    bool refuse_mapping = false;         // CreateFileMappingA gives no handle
    bool refuse_view = false;            // MapViewOfFile gives no view
    uint32_t failed_sends = 0;           // this many sends fail before one gets through
    uint32_t send_error = 0;             // GetLastError after a failed send
    uint64_t answer = 1;                 // the message's result
    uint32_t zero_version_exchanges = 0; // exchanges that still answer 0 at 0x3304, 0x3308
    bool garble_answer = false;          // the module scribbles an unknown id over the 2nd record
    uint32_t answer_delay_ms = 0;        // real time each answered send takes

    // What happened.
    uint32_t sends = 0;     // sends attempted
    uint32_t exchanges = 0; // lists answered
    uint32_t slept_ms = 0;
    std::vector<std::string> windows_asked;
    std::vector<uint8_t> last_list; // the list as the module found it, before answering

    Fake_Module_Transport();

    uint64_t Find_Window(const char* class_name) override;
    uint32_t Register_Message(const char* name) override;
    uint16_t Add_Atom(const char* name) override;
    uint64_t Create_Mapping(const char* name, uint32_t size) override;
    uint8_t* Map_View(uint64_t mapping) override;
    uint32_t Current_Process_Id() override { return process_id; }
    bool Send_Message_Timeout(uint64_t window, uint32_t message, uint64_t wparam, int64_t lparam,
                              uint32_t flags, uint32_t timeout_ms,
                              uint64_t& message_result) override;
    void Sleep_Ms(uint32_t ms) override { slept_ms += ms; }

    static constexpr uint64_t Main_Window_Handle = 0x10010;
    static constexpr uint64_t Fallback_Window_Handle = 0x20020;
};

} // namespace quilmark
