// The link's transport on Windows: each operation is the one Win32 call it is named after.
#pragma once

#include "link/link_transport.h"

namespace quilmark {

class Win32_Transport : public Link_Transport {
  public:
    uint64_t Find_Window(const char* class_name) override;
    uint32_t Register_Message(const char* name) override;
    uint16_t Add_Atom(const char* name) override;
    void Delete_Atom(uint16_t atom) override;
    uint64_t Create_Mapping(const char* name, uint32_t size) override;
    uint8_t* Map_View(uint64_t mapping) override;
    void Unmap_View(uint8_t* view) override;
    void Close_Handle(uint64_t handle) override;
    uint32_t Current_Process_Id() override;
    bool Send_Message_Timeout(uint64_t window, uint32_t message, uint64_t wparam, int64_t lparam,
                              uint32_t flags, uint32_t timeout_ms,
                              uint64_t& message_result) override;
    uint32_t Last_Error() override { return last_error; }
    void Sleep_Ms(uint32_t ms) override;

  private:
    // GetLastError taken right after each call, so that nothing in between can change it.
    uint32_t last_error = 0;
};

} // namespace quilmark
