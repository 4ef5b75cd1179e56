// What the FSUIPC client needs of the system to reach the module: the few window-manager and
// kernel calls of the Windows connection, one operation each. The Win32 transport makes
// exactly these calls; the bridge transport carries the block to a Windows process that
// makes them; the fake module answers in the same process.
//
// Handles and windows are opaque non-zero numbers, 0 meaning none. Last_Error tells the
// system error of the latest call that failed, as GetLastError would right after it.
#pragma once

#include <cstdint>

namespace quilmark {

class Link_Transport {
  public:
    virtual ~Link_Transport() = default;

    // FindWindowExA with no parent and no child: the first top-level window of that class.
    virtual uint64_t Find_Window(const char* class_name) = 0;
    // RegisterWindowMessageA; 0 on failure.
    virtual uint32_t Register_Message(const char* name) = 0;
    // GlobalAddAtomA and GlobalDeleteAtom; an atom of 0 is a failure.
    virtual uint16_t Add_Atom(const char* name) = 0;
    virtual void Delete_Atom(uint16_t atom) = 0;
    // CreateFileMappingA on the paging file, read-write, of size bytes. A mapping that
    // already existed under that name is returned all the same, with Last_Error 183.
    virtual uint64_t Create_Mapping(const char* name, uint32_t size) = 0;
    // MapViewOfFile of the whole mapping for writing; nullptr on failure.
    virtual uint8_t* Map_View(uint64_t mapping) = 0;
    virtual void Unmap_View(uint8_t* view) = 0;
    virtual void Close_Handle(uint64_t handle) = 0;
    virtual uint32_t Current_Process_Id() = 0;
    // SendMessageTimeoutA; false when the message wasn't delivered or answered in time.
    virtual bool Send_Message_Timeout(uint64_t window, uint32_t message, uint64_t wparam,
                                      int64_t lparam, uint32_t flags, uint32_t timeout_ms,
                                      uint64_t& message_result) = 0;
    virtual uint32_t Last_Error() = 0;
    virtual void Sleep_Ms(uint32_t ms) = 0;
};

} // namespace quilmark
