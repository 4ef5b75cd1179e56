// A stand-in for the FSUIPC module, for testing the link under Wine: a window of class
// "UIPCMAIN" (or the class given with --class) that answers the registered message by
// reading the request list from the block that the atom in wParam names, answering it from
// a table, and returning 1. It prints one line when it is ready and one per list answered.
#include <windows.h>

#include <cstdio>
#include <cstring>

#include "link/request_list.h"
#include "mock_table.h"

namespace quilmark {

namespace {

UINT ipc_message = 0;
Module_Space_Rec space;
unsigned long lists_answered = 0;

LRESULT Answer_Message(WPARAM wparam) {
    char name[64] = {};
    if (GlobalGetAtomNameA(static_cast<ATOM>(wparam & 0xFFFF), name, sizeof name) == 0) {
        std::printf("mock module: unknown atom\n");
        return 0;
    }
    HANDLE mapping = OpenFileMappingA(FILE_MAP_WRITE, FALSE, name);
    if (mapping == nullptr) {
        std::printf("mock module: no mapping named %s\n", name);
        return 0;
    }
    auto* block = static_cast<uint8_t*>(MapViewOfFile(mapping, FILE_MAP_WRITE, 0, 0, 0));
    LRESULT result = 0;
    if (block != nullptr) {
        Module_Tally_Rec tally;
        result = Answer_Request_List(block, Link_Block_Size, space, tally) ? 1 : 0;
        ++lists_answered;
        std::printf("mock module: list %lu from %s: %u reads, %u writes\n", lists_answered, name,
                    tally.reads, tally.writes);
        UnmapViewOfFile(block);
    }
    CloseHandle(mapping);
    return result;
}

LRESULT CALLBACK Window_Proc(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
    if (message == ipc_message && ipc_message != 0) {
        return Answer_Message(wparam);
    }
    if (message == WM_DESTROY) {
        PostQuitMessage(0);
        return 0;
    }
    return DefWindowProcA(window, message, wparam, lparam);
}

} // namespace

} // namespace quilmark

int main(int argc, char** argv) {
    using namespace quilmark;
    std::setvbuf(stdout, nullptr, _IONBF, 0);
    const char* class_name = Link_Main_Class;
    if (argc == 3 && std::strcmp(argv[1], "--class") == 0) {
        class_name = argv[2];
    }
    for (const Mock_Value_Rec& v : Mock_Table) {
        if (v.size == 2) {
            space.Set_U16(v.offset, static_cast<uint16_t>(v.value));
        } else {
            space.Set_U32(v.offset, v.value);
        }
    }

    WNDCLASSA window_class{};
    window_class.lpfnWndProc = Window_Proc;
    window_class.hInstance = GetModuleHandleA(nullptr);
    window_class.lpszClassName = class_name;
    ipc_message = RegisterWindowMessageA(Link_Message_Name);
    HWND window = nullptr;
    if (RegisterClassA(&window_class) != 0) {
        window = CreateWindowExA(0, class_name, "Quilmark mock module", WS_OVERLAPPEDWINDOW, 0, 0,
                                 100, 100, nullptr, nullptr, window_class.hInstance, nullptr);
    }
    if (window == nullptr || ipc_message == 0) {
        std::printf("mock module: cannot create a window (error %lu)\n", GetLastError());
        return 3;
    }
    std::printf("mock module ready: class %s\n", class_name);

    MSG msg;
    while (GetMessageA(&msg, nullptr, 0, 0) > 0) {
        TranslateMessage(&msg);
        DispatchMessageA(&msg);
    }
    return 0;
}
