// The bridge's frame handling against the fake module, and the bridge transport over a
// loopback connection to it. (The real bridge under Wine: wine_bridge_test.sh.)
#include <gtest/gtest.h>

#include <algorithm>
#include <arpa/inet.h>
#include <atomic>
#include <cstring>
#include <memory>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <thread>
#include <unistd.h>
#include <vector>

#include "link/bridge_server.h"
#include "link/bridge_transport.h"
#include "link/fsuipc.h"
#include "support/fake_module.h"

namespace {

class Memory_Stream : public Byte_Stream {
  public:
    explicit Memory_Stream(std::vector<uint8_t> bytes) : input(std::move(bytes)) {}
    bool Read_Exact(uint8_t* data, size_t size) override {
        if (input.size() - position < size) {
            return false;
        }
        std::memcpy(data, input.data() + position, size);
        position += size;
        return true;
    }
    bool Write_All(const uint8_t* data, size_t size) override {
        output.insert(output.end(), data, data + size);
        return true;
    }
    std::vector<uint8_t> input;
    size_t position = 0;
    std::vector<uint8_t> output;
};

std::vector<uint8_t> Frame(uint32_t magic, uint32_t command, uint32_t length,
                           const std::vector<uint8_t>& payload) {
    return Form_Bridge_Request(command, payload, length, magic);
}

// Window, timeout, and a list of one read of 4 bytes at 0x3308 whose record claims
// record_size bytes, closed.
std::vector<uint8_t> Send_Payload(uint32_t record_size = 4) {
    std::vector<uint8_t> p(bridge_send_prefix + 16 + 4 + 4, 0);
    Put_U32(p.data(), static_cast<uint32_t>(Fake_Module_Transport::main_window_handle));
    Put_U32(p.data() + 4, 2000);
    Put_U32(p.data() + 8, link_read_id);
    Put_U32(p.data() + 12, 0x3308);
    Put_U32(p.data() + 16, record_size);
    Put_U32(p.data() + 20, 77); // the client's destination token, handed back unchanged
    return p;
}

std::vector<uint8_t> Sized(const std::vector<uint8_t>& p) {
    return Frame(bridge_magic, bridge_send_list, static_cast<uint32_t>(p.size()), p);
}

class Bridge_Test : public ::testing::Test {
  protected:
    Bridge_Test() { EXPECT_EQ(Bridge_Open(bridge, fake), Link_Result::ok); }
    ~Bridge_Test() override { Bridge_Close(bridge); }

    Fake_Module_Transport fake;
    Bridge_Server_Rec bridge;
};

TEST_F(Bridge_Test, AnswersASoundFrame) {
    Memory_Stream find(
        Frame(bridge_magic, bridge_find_window, 8, {'U', 'I', 'P', 'C', 'M', 'A', 'I', 'N'}));
    EXPECT_EQ(Bridge_Serve(bridge, find), Bridge_Outcome::answered);
    ASSERT_EQ(find.output.size(), bridge_answer_header);
    EXPECT_EQ(Get_U32(find.output.data() + 4), 1u);
    EXPECT_EQ(Get_U32(find.output.data() + 8), Fake_Module_Transport::main_window_handle);

    std::vector<uint8_t> payload = Send_Payload();
    Memory_Stream send(Sized(payload));
    EXPECT_EQ(Bridge_Serve(bridge, send), Bridge_Outcome::answered);
    ASSERT_EQ(send.output.size(), bridge_answer_header + payload.size() - bridge_send_prefix);
    const uint8_t* answer = send.output.data();
    EXPECT_EQ(Get_U32(answer + 4), 1u);   // sent
    EXPECT_EQ(Get_U32(answer + 8), 1u);   // the module's result
    EXPECT_EQ(Get_U32(answer + 16), 24u); // the list's length
    EXPECT_EQ(Get_U32(answer + bridge_answer_header + 12), 77u);
    EXPECT_EQ(Get_U32(answer + bridge_answer_header + 16), 0xFADE0006u);
    EXPECT_EQ(fake.exchanges, 1u);

    // A send that fails answers the error, without the list.
    fake.failed_sends = fake.sends + 1;
    fake.send_error = 1460;
    Memory_Stream failed(Sized(payload));
    EXPECT_EQ(Bridge_Serve(bridge, failed), Bridge_Outcome::answered);
    ASSERT_EQ(failed.output.size(), bridge_answer_header);
    EXPECT_EQ(Get_U32(failed.output.data() + 4), 0u);
    EXPECT_EQ(Get_U32(failed.output.data() + 12), 1460u);
}

TEST_F(Bridge_Test, MalformedFramesGetNoAnswerAndReachNothing) {
    std::vector<uint8_t> sound = Send_Payload();
    auto length = static_cast<uint32_t>(sound.size());
    std::vector<uint8_t> padded = sound;
    padded.insert(padded.end(), 4, 0);
    std::vector<uint8_t> huge(bridge_max_frame + 1, 0);
    const std::pair<const char*, std::vector<uint8_t>> cases[] = {
        {"wrong magic", Frame(0x51424D51, bridge_send_list, length, sound)},
        {"unknown command", Frame(bridge_magic, 3, length, sound)},
        // Checked before a byte of the payload is read: the whole payload is there.
        {"length over the block",
         Frame(bridge_magic, bridge_send_list, bridge_max_frame + 1, huge)},
        {"length far over the block", Frame(bridge_magic, bridge_send_list, 0xFFFFFFF0u, huge)},
        {"list shorter than the frame", Sized(padded)},
        {"frame shorter than the list", Frame(bridge_magic, bridge_send_list, length - 4, sound)},
        {"record past the frame", Sized(Send_Payload(40000))},
        {"record size wrapping around", Sized(Send_Payload(0xFFFFFFF8))},
        {"too short for a list",
         Frame(bridge_magic, bridge_send_list, 8, {1, 0, 0, 0, 0, 0, 0, 0})},
        {"class name too long", Frame(bridge_magic, bridge_find_window, 65, huge)},
        {"empty class name", Frame(bridge_magic, bridge_find_window, 0, {})},
        {"class name with a zero", Frame(bridge_magic, bridge_find_window, 3, {'A', 0, 'B'})},
        {"closed half way", Frame(bridge_magic, bridge_send_list, length, {1, 0, 0})},
        {"closed in the header", {0x51, 0x4D}},
    };
    for (const auto& [name, bytes] : cases) {
        SCOPED_TRACE(name);
        std::fill(bridge.view, bridge.view + link_block_size, 0xEE);
        Memory_Stream stream(bytes);
        EXPECT_NE(Bridge_Serve(bridge, stream), Bridge_Outcome::answered);
        EXPECT_TRUE(stream.output.empty());
        EXPECT_EQ(fake.sends, 0u);
        EXPECT_TRUE(std::all_of(bridge.view, bridge.view + link_block_size,
                                [](uint8_t b) { return b == 0xEE; }));
    }
    // And the next sound frame is answered.
    Memory_Stream send(Sized(sound));
    EXPECT_EQ(Bridge_Serve(bridge, send), Bridge_Outcome::answered);
}

// A loopback server in a thread, serving each connection with Bridge_Serve.
class Loopback_Bridge {
  public:
    explicit Loopback_Bridge(Bridge_Server_Rec& bridge) {
        listener = socket(AF_INET, SOCK_STREAM, 0);
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        socklen_t size = sizeof address;
        bind(listener, reinterpret_cast<sockaddr*>(&address), sizeof address);
        listen(listener, 4);
        getsockname(listener, reinterpret_cast<sockaddr*>(&address), &size);
        port = ntohs(address.sin_port);
        server = std::thread([this, &bridge] {
            while (!stopping) {
                pollfd p{listener, POLLIN, 0};
                if (poll(&p, 1, 50) <= 0) {
                    continue;
                }
                int peer = accept(listener, nullptr, nullptr);
                Peer_Stream stream(peer);
                Bridge_Serve(bridge, stream);
                close(peer);
            }
        });
    }
    ~Loopback_Bridge() {
        stopping = true;
        server.join();
        close(listener);
    }
    uint16_t port = 0;

  private:
    class Peer_Stream : public Byte_Stream {
      public:
        explicit Peer_Stream(int peer_fd) : fd(peer_fd) {}
        bool Read_Exact(uint8_t* data, size_t size) override {
            return recv(fd, data, size, MSG_WAITALL) == static_cast<ssize_t>(size);
        }
        bool Write_All(const uint8_t* data, size_t size) override {
            return send(fd, data, size, MSG_NOSIGNAL) == static_cast<ssize_t>(size);
        }

      private:
        int fd;
    };
    int listener = -1;
    std::atomic<bool> stopping{false};
    std::thread server;
};

TEST_F(Bridge_Test, ClientReachesTheModuleThroughTheBridgeAndNoBridgeMeansNoWindow) {
    fake.space.Set_U32(0x0564, 5719983);
    fake.space.Set_U16(0x0EC6, 16212);
    auto server = std::make_unique<Loopback_Bridge>(bridge);
    Bridge_Transport transport(server->port);
    Fsuipc_Rec link;
    link.transport = &transport;
    Link_Reset(link);
    Link_Result result = Link_Result::ok;
    ASSERT_TRUE(Link_Open(link, fsuipc_fs2002, result)) << static_cast<int>(result);
    int32_t lat = 0;
    uint16_t altimeter = 0;
    ASSERT_TRUE(Link_Read(link, 0x0564, 4, &lat, result));
    ASSERT_TRUE(Link_Read(link, 0x0EC6, 2, &altimeter, result));
    ASSERT_TRUE(Link_Process(link, result));
    EXPECT_EQ(lat, 5719983);
    EXPECT_EQ(altimeter, 16212);
    EXPECT_EQ(fake.space.written[0x330A], 0); // the client's version went through
    Link_Close(link);
    EXPECT_EQ(transport.Atoms_Held(), 0u);

    server.reset(); // nothing listens on the port any more
    Link_Reset(link);
    EXPECT_FALSE(Link_Open(link, fsuipc_fs2002, result));
    EXPECT_EQ(result, Link_Result::no_window);
    EXPECT_EQ(transport.Atoms_Held(), 0u);
}

} // namespace
