// The few socket calls where Winsock and POSIX differ, under one name each, so that the
// bridge's listening side is one source for the Windows bridge and the native tests.
#pragma once

#include <cstdint>

#ifdef _WIN32
// Winsock has to come before windows.h.
#include <winsock2.h>
#include <ws2tcpip.h>
#else
#include <cerrno>
#include <fcntl.h>
#include <netinet/in.h>
#include <sys/select.h>
#include <sys/socket.h>
#include <unistd.h>
#endif

namespace quilmark {

#ifdef _WIN32
using Net_Socket = SOCKET;
using Net_Length = int;
constexpr Net_Socket Net_No_Socket = INVALID_SOCKET;
constexpr int Net_Send_Flags = 0;

inline void Close_Net_Socket(Net_Socket s) {
    closesocket(s);
}
inline bool Set_Net_Nonblocking(Net_Socket s) {
    u_long on = 1;
    return ioctlsocket(s, FIONBIO, &on) == 0;
}
inline int Net_Error() {
    return WSAGetLastError();
}
// The call would have waited, or a signal came first: try again later.
inline bool Net_Would_Block(int error) {
    return error == WSAEWOULDBLOCK || error == WSAEINTR;
}
// select can't watch a socket beyond its set's size; Winsock's set counts sockets, not values.
inline bool Net_Selectable(Net_Socket) {
    return true;
}
#else
using Net_Socket = int;
using Net_Length = socklen_t;
constexpr Net_Socket Net_No_Socket = -1;
constexpr int Net_Send_Flags = MSG_NOSIGNAL;

inline void Close_Net_Socket(Net_Socket s) {
    close(s);
}
inline bool Set_Net_Nonblocking(Net_Socket s) {
    int flags = fcntl(s, F_GETFL, 0);
    return flags >= 0 && fcntl(s, F_SETFL, flags | O_NONBLOCK) == 0;
}
inline int Net_Error() {
    return errno;
}
inline bool Net_Would_Block(int error) {
    return error == EAGAIN || error == EWOULDBLOCK || error == EINTR;
}
inline bool Net_Selectable(Net_Socket s) {
    return s >= 0 && s < FD_SETSIZE;
}
#endif

} // namespace quilmark
