// The bridge's frame handling and its listening side against the fake module, and the bridge
// transport over loopback to it. (The real bridge under Wine: wine_bridge_test.sh.)
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <thread>
#include <vector>

#include "link/bridge_server.h"
#include "link/fsuipc.h"
#include "link/net_bridge_transport.h"
#include "support/bridge_probe.h"
#include "support/fake_module.h"
#include "support/running_bridge.h"

namespace quilmark {

namespace {

std::vector<uint8_t> Frame(uint32_t magic, uint32_t command, uint32_t length,
                           const std::vector<uint8_t>& payload) {
    return Form_Bridge_Request(command, payload, length, magic);
}

// Window, timeout, and a list of one record, closed: a read of 4 bytes at 0x3308 whose
// record claims record_size bytes, or a write of 2 bytes at 0x330A.
std::vector<uint8_t> Send_Payload(uint32_t record_size = 4, bool write = false) {
    std::vector<uint8_t> p(Bridge_Send_Prefix, 0);
    Put_U32(p.data(), static_cast<uint32_t>(Fake_Module_Transport::Main_Window_Handle));
    Put_U32(p.data() + 4, 2000);
    uint32_t header = write ? Link_Write_Header : Link_Read_Header;
    p.resize(Bridge_Send_Prefix + header + (write ? 2 : 4) + Link_Closing_Word);
    uint8_t* record = p.data() + Bridge_Send_Prefix;
    Put_U32(record, write ? Link_Write_Id : Link_Read_Id);
    Put_U32(record + 4, write ? 0x330A : 0x3308);
    Put_U32(record + 8, write ? 2 : record_size);
    if (write) {
        record[12] = 0x34;
    } else {
        Put_U32(record + 12, 77); // the client's destination token, handed back unchanged
    }
    return p;
}

std::vector<uint8_t> Sized(const std::vector<uint8_t>& p) {
    return Frame(Bridge_Magic, Bridge_Send_List, static_cast<uint32_t>(p.size()), p);
}

class Bridge_Test : public ::testing::Test {
  protected:
    Bridge_Test() { EXPECT_EQ(Bridge_Open(bridge, fake), Link_Result::Ok); }
    ~Bridge_Test() override { Bridge_Close(bridge); }

    std::vector<uint8_t> Answer(const std::vector<uint8_t>& frame, bool sound = true) {
        std::vector<uint8_t> answer;
        EXPECT_EQ(Bridge_Answer(bridge, frame.data(), frame.size(), answer), sound);
        return answer;
    }

    Fake_Module_Transport fake;
    Bridge_Server_Rec bridge;
};

TEST_F(Bridge_Test, MalformedFramesGetNoAnswerAndReachNothing) {
    std::vector<uint8_t> sound = Send_Payload();
    auto length = static_cast<uint32_t>(sound.size());
    std::vector<uint8_t> padded = sound;
    padded.insert(padded.end(), 4, 0);
    std::vector<uint8_t> huge(Bridge_Max_Frame + 1, 0);
    const std::pair<const char*, std::vector<uint8_t>> cases[] = {
        {"wrong magic", Frame(0x51424D51, Bridge_Send_List, length, sound)},
        {"unknown command", Frame(Bridge_Magic, 3, length, sound)},
        {"length over the block",
         Frame(Bridge_Magic, Bridge_Send_List, Bridge_Max_Frame + 1, huge)},
        {"length far over the block", Frame(Bridge_Magic, Bridge_Send_List, 0xFFFFFFF0u, huge)},
        {"list shorter than the frame", Sized(padded)},
        {"frame shorter than the list", Frame(Bridge_Magic, Bridge_Send_List, length - 4, sound)},
        {"record past the frame", Sized(Send_Payload(40000))},
        {"record size wrapping around", Sized(Send_Payload(0xFFFFFFF8))},
        {"too short for a list",
         Frame(Bridge_Magic, Bridge_Send_List, 8, {1, 0, 0, 0, 0, 0, 0, 0})},
        {"class name too long", Frame(Bridge_Magic, Bridge_Find_Window, 65, huge)},
        {"empty class name", Frame(Bridge_Magic, Bridge_Find_Window, 0, {})},
        {"class name with a zero", Frame(Bridge_Magic, Bridge_Find_Window, 3, {'A', 0, 'B'})},
        {"fewer bytes than the header says", Frame(Bridge_Magic, Bridge_Send_List, length, {1})},
        {"part of a header", {0x51, 0x4D}},
    };
    for (const auto& [name, bytes] : cases) {
        SCOPED_TRACE(name);
        std::fill(bridge.view, bridge.view + Link_Block_Size, 0xEE);
        EXPECT_TRUE(Answer(bytes, false).empty());
        EXPECT_EQ(fake.sends, 0u);
        EXPECT_TRUE(std::all_of(bridge.view, bridge.view + Link_Block_Size,
                                [](uint8_t b) { return b == 0xEE; }));
    }
    Answer(Sized(sound)); // and the next sound frame is answered
}

// (The values through the bridge, and no bridge at all: the tool's link tests.)
TEST(Bridge_Loop, ATricklingClientIsDroppedAtTheFrameDeadlineWhileOthersAreServed) {
    Fake_Module_Transport fake;
    Bridge_Limits_Rec limits;
    limits.frame_deadline_ms = 1000;
    Running_Bridge server(fake, limits);
    // A sound request, one byte every 100 ms: it would be whole after 2 s.
    const Hold_Up_Rec r = Try_To_Hold_Up(server.Port(), 100, 100);
    EXPECT_EQ(r.trickled, 0); // closed, with no answer
    EXPECT_GE(r.dropped_s, 1.0);
    EXPECT_LT(r.dropped_s, 1.9); // before its last byte
    EXPECT_TRUE(r.served);
    EXPECT_LT(r.served_s, r.dropped_s); // while the trickler held its connection
    EXPECT_EQ(r.burst_answered, Hold_Up_Rec::Burst_Clients);
    server.Stop();
    EXPECT_EQ(server.Count(Bridge_Outcome::Too_Slow), 1u);
}

TEST(Bridge_Loop, ARequestWhoseClientHasGoneNeverReachesTheModule) {
    Fake_Module_Transport fake;
    fake.answer_delay_ms = 300; // the module is busy with the first request meanwhile
    Running_Bridge server(fake);
    long first = 0;
    std::thread asking(
        [&] { first = Send_And_Collect(server.Port(), Sized(Send_Payload()), false); });
    std::this_thread::sleep_for(std::chrono::milliseconds(100));
    // A write, and the client gives up at once.
    Send_And_Collect(server.Port(), Sized(Send_Payload(0, true)), false, 0, -1);
    asking.join();
    EXPECT_GT(first, 0);
    std::this_thread::sleep_for(std::chrono::milliseconds(100));
    server.Stop();
    EXPECT_EQ(fake.exchanges, 1u);
    EXPECT_EQ(fake.space.written[0x330A], 0);
    EXPECT_EQ(server.Count(Bridge_Outcome::Client_Gone), 1u);
}

} // namespace

} // namespace quilmark
