// The link's transport on Linux: the simulator runs under Wine, where a native program can't
// send it a window message, so quilmark-bridge.exe, started in the simulator's prefix, does
// it for us. Window lookups and the request list travel to the bridge over a loopback TCP
// connection (see bridge_server.h); the atom and the mapping are kept here, and the bridge
// uses its own to hand the list to the module.
//
// With no bridge listening no window is found, so Link_Open reports No_Window as it does with
// no simulator running; Last_Error then tells the two apart (10061, the connection refused).
#pragma once

#include <cstdint>
#include <vector>

#include "link/bridge_server.h"
#include "link/local_kernel.h"

namespace quilmark {

// System errors as the Windows side would name them, so that Link_Process tells a missing
// bridge (a failed send with an error, Send_Failed) from a silent one.
constexpr uint32_t Bridge_Error_Refused = 10061;   // WSAECONNREFUSED: nothing listens
constexpr uint32_t Bridge_Error_Timed_Out = 10060; // WSAETIMEDOUT: no whole answer in time
constexpr uint32_t Bridge_Error_Invalid_Data = 13; // ERROR_INVALID_DATA: not a bridge's answer

class Bridge_Transport : public Local_Kernel_Transport {
  public:
    explicit Bridge_Transport(uint16_t bridge_port = Bridge_Default_Port);

    uint64_t Find_Window(const char* class_name) override;
    uint32_t Current_Process_Id() override;
    bool Send_Message_Timeout(uint64_t window, uint32_t message, uint64_t wparam, int64_t lparam,
                              uint32_t flags, uint32_t timeout_ms,
                              uint64_t& message_result) override;
    void Sleep_Ms(uint32_t ms) override;

  private:
    struct Reply_Rec {
        uint32_t status = 0;
        uint32_t value = 0;
        uint32_t error = 0;
        std::vector<uint8_t> data;
    };
    // Sends one frame and takes the answer. False, with last_error set, when the bridge
    // can't be reached or answers nothing sound within wait_ms.
    bool Exchange(uint32_t command, const std::vector<uint8_t>& payload, uint32_t wait_ms,
                  Reply_Rec& reply);

    uint16_t port;
};

} // namespace quilmark
