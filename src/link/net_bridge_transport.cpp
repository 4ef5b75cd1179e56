#include "link/net_bridge_transport.h"

#include <arpa/inet.h>
#include <cerrno>
#include <chrono>
#include <cstring>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>
#include <sys/time.h>
#include <thread>
#include <unistd.h>

namespace quilmark {

namespace {

constexpr uint32_t Connect_Wait_Ms = 1000;
constexpr uint32_t Find_Wait_Ms = 2000;
constexpr uint32_t Answer_Margin_Ms = 1000;

class Socket_Stream {
  public:
    explicit Socket_Stream(int socket_fd) : fd(socket_fd) {}
    bool Read_Exact(uint8_t* data, size_t size) {
        while (size > 0) {
            ssize_t got = recv(fd, data, size, 0);
            if (got <= 0) {
                if (got < 0 && errno == EINTR) {
                    continue;
                }
                return false;
            }
            data += got;
            size -= static_cast<size_t>(got);
        }
        return true;
    }
    bool Write_All(const uint8_t* data, size_t size) {
        while (size > 0) {
            ssize_t put = send(fd, data, size, MSG_NOSIGNAL);
            if (put <= 0) {
                if (put < 0 && errno == EINTR) {
                    continue;
                }
                return false;
            }
            data += put;
            size -= static_cast<size_t>(put);
        }
        return true;
    }

  private:
    int fd;
};

void Set_Wait(int fd, int option, uint32_t ms) {
    timeval tv{};
    tv.tv_sec = static_cast<time_t>(ms / 1000);
    tv.tv_usec = static_cast<suseconds_t>((ms % 1000) * 1000);
    setsockopt(fd, SOL_SOCKET, option, &tv, sizeof tv);
}

} // namespace

Bridge_Transport::Bridge_Transport(uint16_t bridge_port) : port(bridge_port) {}

bool Bridge_Transport::Exchange(uint32_t command, const std::vector<uint8_t>& payload,
                                uint32_t wait_ms, Reply_Rec& reply) {
    last_error = 0;
    int fd = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    if (fd < 0) {
        last_error = Bridge_Error_Refused;
        return false;
    }
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(port);
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    Set_Wait(fd, SO_SNDTIMEO, Connect_Wait_Ms);
    Set_Wait(fd, SO_RCVTIMEO, wait_ms);
    int one = 1;
    setsockopt(fd, IPPROTO_TCP, TCP_NODELAY, &one, sizeof one);
    bool ok = false;
    if (connect(fd, reinterpret_cast<sockaddr*>(&address), sizeof address) != 0) {
        last_error = Bridge_Error_Refused;
    } else {
        Socket_Stream stream(fd);
        std::vector<uint8_t> frame =
            Form_Bridge_Request(command, payload, static_cast<uint32_t>(payload.size()));
        uint8_t header[Bridge_Answer_Header];
        if (!stream.Write_All(frame.data(), frame.size()) ||
            !stream.Read_Exact(header, sizeof header)) {
            last_error = Bridge_Error_Timed_Out;
        } else if (Get_U32(header) != Bridge_Magic || Get_U32(header + 16) > Link_Block_Size) {
            last_error = Bridge_Error_Invalid_Data;
        } else {
            reply.status = Get_U32(header + 4);
            reply.value = Get_U32(header + 8);
            reply.error = Get_U32(header + 12);
            reply.data.resize(Get_U32(header + 16));
            ok = stream.Read_Exact(reply.data.data(), reply.data.size());
            if (!ok) {
                last_error = Bridge_Error_Timed_Out;
            }
        }
    }
    close(fd);
    return ok;
}

uint64_t Bridge_Transport::Find_Window(const char* class_name) {
    std::vector<uint8_t> payload(class_name, class_name + std::strlen(class_name));
    Reply_Rec reply;
    if (!Exchange(Bridge_Find_Window, payload, Find_Wait_Ms, reply) || reply.status != 1) {
        return 0;
    }
    return reply.value;
}

uint32_t Bridge_Transport::Current_Process_Id() {
    return static_cast<uint32_t>(getpid());
}

bool Bridge_Transport::Send_Message_Timeout(uint64_t window, uint32_t /*message*/, uint64_t wparam,
                                            int64_t /*lparam*/, uint32_t /*flags*/,
                                            uint32_t timeout_ms, uint64_t& message_result) {
    // The bridge sends its own registered message with its own atom; what travels is the
    // window and the list from the block that this atom names.
    uint32_t size = 0;
    uint8_t* block = Find_Block(wparam, size);
    uint32_t length = block == nullptr ? 0 : Measure_Request_List(block, size);
    if (length == 0) {
        last_error = Bridge_Error_Invalid_Data;
        return false;
    }
    std::vector<uint8_t> payload(Bridge_Send_Prefix);
    Put_U32(payload.data(), static_cast<uint32_t>(window));
    Put_U32(payload.data() + 4, timeout_ms);
    payload.insert(payload.end(), block, block + length);
    Reply_Rec reply;
    if (!Exchange(Bridge_Send_List, payload, timeout_ms + Answer_Margin_Ms, reply)) {
        return false;
    }
    if (reply.status != 1) {
        last_error = reply.error;
        return false;
    }
    if (reply.data.size() != length) {
        last_error = Bridge_Error_Invalid_Data;
        return false;
    }
    std::memcpy(block, reply.data.data(), length);
    message_result = reply.value;
    return true;
}

void Bridge_Transport::Sleep_Ms(uint32_t ms) {
    std::this_thread::sleep_for(std::chrono::milliseconds(ms));
}

} // namespace quilmark
