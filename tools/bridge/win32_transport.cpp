#include "win32_transport.h"

#include <windows.h>

namespace quilmark {

namespace {

HWND As_Window(uint64_t window) {
    return reinterpret_cast<HWND>(static_cast<uintptr_t>(window));
}
HANDLE As_Handle(uint64_t handle) {
    return reinterpret_cast<HANDLE>(static_cast<uintptr_t>(handle));
}

} // namespace

uint64_t Win32_Transport::Find_Window(const char* class_name) {
    HWND window = FindWindowExA(nullptr, nullptr, class_name, nullptr);
    last_error = GetLastError();
    return reinterpret_cast<uintptr_t>(window);
}

uint32_t Win32_Transport::Register_Message(const char* name) {
    UINT message = RegisterWindowMessageA(name);
    last_error = GetLastError();
    return message;
}

uint16_t Win32_Transport::Add_Atom(const char* name) {
    ATOM atom = GlobalAddAtomA(name);
    last_error = GetLastError();
    return atom;
}

void Win32_Transport::Delete_Atom(uint16_t atom) {
    GlobalDeleteAtom(atom);
    last_error = GetLastError();
}

uint64_t Win32_Transport::Create_Mapping(const char* name, uint32_t size) {
    SetLastError(0);
    HANDLE mapping =
        CreateFileMappingA(INVALID_HANDLE_VALUE, nullptr, PAGE_READWRITE, 0, size, name);
    last_error = GetLastError();
    return reinterpret_cast<uintptr_t>(mapping);
}

uint8_t* Win32_Transport::Map_View(uint64_t mapping) {
    void* view = MapViewOfFile(As_Handle(mapping), FILE_MAP_WRITE, 0, 0, 0);
    last_error = GetLastError();
    return static_cast<uint8_t*>(view);
}

void Win32_Transport::Unmap_View(uint8_t* view) {
    UnmapViewOfFile(view);
    last_error = GetLastError();
}

void Win32_Transport::Close_Handle(uint64_t handle) {
    CloseHandle(As_Handle(handle));
    last_error = GetLastError();
}

uint32_t Win32_Transport::Current_Process_Id() {
    return GetCurrentProcessId();
}

bool Win32_Transport::Send_Message_Timeout(uint64_t window, uint32_t message, uint64_t wparam,
                                           int64_t lparam, uint32_t flags, uint32_t timeout_ms,
                                           uint64_t& message_result) {
    DWORD_PTR answer = 0;
    SetLastError(0);
    LRESULT sent = SendMessageTimeoutA(As_Window(window), message, static_cast<WPARAM>(wparam),
                                       static_cast<LPARAM>(lparam), flags, timeout_ms, &answer);
    last_error = GetLastError();
    message_result = answer;
    return sent != 0;
}

void Win32_Transport::Sleep_Ms(uint32_t ms) {
    Sleep(ms);
}

} // namespace quilmark
