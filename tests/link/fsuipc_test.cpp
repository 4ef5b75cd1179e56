// The FSUIPC client against the in-process fake module.
#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "link/fsuipc.h"
#include "support/fake_module.h"

namespace quilmark {

namespace {

// A client on a fake module of its own; result holds the last call's result code.
struct Client {
    Fake_Module_Transport fake;
    Fsuipc_Rec link;
    Link_Result result = static_cast<Link_Result>(-1);

    Client() {
        link.transport = &fake;
        Link_Reset(link);
    }
    Client(const Client&) = delete;
    bool Open(int32_t sim = Fsuipc_Fs2002) { return Link_Open(link, sim, result); }
    // Opens, then forgets what the open sent.
    void Opened() {
        ASSERT_TRUE(Open()) << Code();
        fake.sends = fake.exchanges = fake.slept_ms = 0;
    }
    bool Read(int32_t offset, int32_t size, void* into) {
        return Link_Read(link, offset, size, into, result);
    }
    bool Process() { return Link_Process(link, result); }
    int32_t Code() const { return static_cast<int32_t>(result); }
    bool Nothing_Held() const {
        return link.link_view == nullptr && fake.Atoms_Held() == 0 && fake.Views_Held() == 0;
    }
};

using Fake_Setup = std::function<void(Fake_Module_Transport&)>;

} // namespace

TEST(Fsuipc, OpenGivesEachResultCodeAndReleasesWhatItMadeOnFailure) {
    using F = Fake_Module_Transport;
    struct Case {
        const char* name;
        Fake_Setup setup;
        int32_t required_sim;
        int32_t result;
    };
    const Case cases[] = {
        {"FS2002 via UIPCMAIN", [](F&) {}, 6, 0},
        {"FS2002 via FS98MAIN", [](F& f) { f.main_window = false; }, 6, 0},
        {"any simulator", [](F& f) { f.space.Set_U32(0x3308, 0xFADE0008); }, 0, 0},
        {"oldest module accepted", [](F& f) { f.space.Set_U32(0x3304, 0x19980005); }, 6, 0},
        {"no window", [](F& f) { f.main_window = f.fallback_window = false; }, 6, 2},
        {"message refused", [](F& f) { f.refuse_message = true; }, 6, 3},
        {"atom refused", [](F& f) { f.refuse_atom = true; }, 6, 4},
        {"mapping refused", [](F& f) { f.refuse_mapping = true; }, 6, 5},
        {"mapping already exists",
         [](F& f) { f.Create_Mapping("FSASMLIB:IPC:1A2B:1", Link_Block_Size); }, 6, 5},
        {"view refused", [](F& f) { f.refuse_view = true; }, 6, 6},
        {"module too old", [](F& f) { f.space.Set_U32(0x3304, 0x19980004); }, 6, 7},
        {"version compared signed", [](F& f) { f.space.Set_U32(0x3304, 0x80000000); }, 6, 7},
        {"check pattern wrong", [](F& f) { f.space.Set_U32(0x3308, 0xFADF0006); }, 6, 7},
        {"check pattern wrong via FS98MAIN",
         [](F& f) { f.main_window = false, f.space.Set_U32(0x3308, 6); }, 6, 14},
        {"another simulator", [](F& f) { f.space.Set_U32(0x3308, 0xFADE0007); }, 6, 8},
        {"module answers 0", [](F& f) { f.answer = 0; }, 6, 13},
        {"no answer, system error", [](F& f) { f.failed_sends = 100, f.send_error = 1460; }, 6, 12},
        {"no answer, no error", [](F& f) { f.failed_sends = 100; }, 6, 11},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        Client client;
        c.setup(client.fake);
        size_t handles_before = client.fake.Handles_Held();
        EXPECT_EQ(client.Open(c.required_sim), c.result == 0);
        EXPECT_EQ(client.Code(), c.result);
        EXPECT_EQ(client.Nothing_Held(), c.result != 0);
        if (c.result == 0) {
            EXPECT_EQ(client.link.link_next, client.link.link_view);
        } else {
            EXPECT_EQ(client.link.link_atom, 0);
            EXPECT_EQ(client.fake.Handles_Held(), handles_before);
        }
    }
}

TEST(Fsuipc, BlockNameHasTheProcessIdInUpperCaseHexadecimal) {
    const std::pair<uint32_t, const char*> cases[] = {
        {0, "FSASMLIB:IPC:0:1"},
        {0x00ABCDEF, "FSASMLIB:IPC:ABCDEF:1"},
        {0xFFFFFFFF, "FSASMLIB:IPC:FFFFFFFF:1"},
    };
    for (const auto& [pid, expected] : cases) {
        char name[24];
        Form_Block_Name(pid, name);
        EXPECT_STREQ(name, expected);
    }
}

TEST(Fsuipc, OpenNamesTheBlockByAtomSendsTheClientVersionAndKeepsTheSimulatorCode) {
    Client c;
    c.fake.process_id = 0xBEEF;
    c.link.link_client_version = 0x0102;
    c.Opened();
    EXPECT_EQ(c.link.link_module_version, 0x36200000);
    EXPECT_EQ(c.link.link_sim_version, 6);
    EXPECT_EQ(c.fake.windows_asked, std::vector<std::string>{"UIPCMAIN"});
    // String atoms start at 0xC000, so the widened atom is negative.
    EXPECT_EQ(c.link.link_atom, static_cast<int16_t>(0xC000));
    EXPECT_EQ(c.fake.Atom_Name(0xC000), "FSASMLIB:IPC:BEEF:1");
    uint32_t size = 0;
    EXPECT_EQ(c.fake.Find_Block(static_cast<uint64_t>(int64_t{c.link.link_atom}), size),
              c.link.link_view);
    EXPECT_EQ(size, Link_Block_Size);
    // The open's list: read 0x3304, read 0x3308, write 0x330A, closed.
    ASSERT_EQ(c.fake.last_list.size(), 16u + 4 + 16 + 4 + 12 + 2 + 4);
    EXPECT_EQ(Get_U32(&c.fake.last_list[40]), Link_Write_Id);
    EXPECT_EQ(Get_U32(&c.fake.last_list[44]), 0x330Au);
    EXPECT_EQ(c.fake.space.written[0x330A], 0x02);
    EXPECT_EQ(c.fake.space.written[0x330B], 0x01);

    // A second open reports 1 and leaves the link working.
    uint8_t* view = c.link.link_view;
    EXPECT_FALSE(c.Open());
    EXPECT_EQ(c.Code(), 1);
    EXPECT_EQ(c.link.link_view, view);
    int32_t lat = 0;
    c.fake.space.Set_U32(0x0564, 1234);
    EXPECT_TRUE(c.Read(0x0564, 4, &lat) && c.Process());
    EXPECT_EQ(lat, 1234);
}

TEST(Fsuipc, OpenAsksAgainWhileTheModuleAnswersZeroVersions) {
    for (uint32_t zero_exchanges : {0u, 4u, 5u}) {
        SCOPED_TRACE(zero_exchanges);
        Client c;
        c.fake.zero_version_exchanges = zero_exchanges;
        bool ok = zero_exchanges < 5;
        EXPECT_EQ(c.Open(), ok);
        EXPECT_EQ(c.Code(), ok ? 0 : 7);
        uint32_t exchanges = std::min(zero_exchanges + 1, 5u);
        EXPECT_EQ(c.fake.exchanges, exchanges);
        EXPECT_EQ(c.fake.slept_ms, 100 * exchanges); // the wait follows every try
    }
}

TEST(Fsuipc, ClosedLinkRefusesEveryRequestAndAnEmptyQueueSendsNothing) {
    Client c;
    int32_t value = 0;
    EXPECT_FALSE(c.Read(0x0564, 4, &value));
    EXPECT_EQ(c.Code(), 9);
    c.result = static_cast<Link_Result>(-1);
    EXPECT_FALSE(Link_Write(c.link, 0x0564, 4, &value, c.result));
    EXPECT_EQ(c.Code(), 9);
    c.result = static_cast<Link_Result>(-1);
    EXPECT_FALSE(c.Process());
    EXPECT_EQ(c.Code(), 9);

    c.Opened();
    EXPECT_FALSE(c.Process());
    EXPECT_EQ(c.Code(), 10);
    EXPECT_EQ(c.fake.sends, 0u);
}

TEST(Fsuipc, RequestsFitUpTo32512Bytes) {
    struct Case {
        const char* name;
        int32_t first_read; // bytes of a read queued first, -1 for none
        bool write;
        int32_t size;
        int32_t result;
    };
    // A list holds its records and the closing word: 32512 - 4 - header for a lone record.
    const Case cases[] = {
        {"read exactly", -1, false, 32492, 0},
        {"read one byte more", -1, false, 32493, 15},
        {"write exactly", -1, true, 32496, 0},
        {"write one byte more", -1, true, 32497, 15},
        {"read after a read, exactly", 4, false, 32472, 0},
        {"read after a read, one more", 4, false, 32473, 15},
        {"negative size", 4, false, -1, 15},
        {"write of a huge size", 4, true, 0x7FFFFFFF, 15},
    };
    std::vector<uint8_t> source(32500, 0x5A);
    for (const Case& k : cases) {
        SCOPED_TRACE(k.name);
        Client c;
        c.fake.space.Set_U32(0x0238, 0xCAFE);
        c.Opened();
        uint32_t first = 0;
        if (k.first_read >= 0) {
            ASSERT_TRUE(c.Read(0x0238, k.first_read, &first));
        }
        uint8_t* next = c.link.link_next;
        bool ok = k.write ? Link_Write(c.link, 0x4000, k.size, source.data(), c.result)
                          : c.Read(0x4000, k.size, nullptr);
        EXPECT_EQ(c.Code(), k.result);
        EXPECT_EQ(ok, k.result == 0);
        if (!ok) {
            EXPECT_EQ(c.link.link_next, next); // the queue is unchanged
        }
        if (k.first_read >= 0 || ok) {
            EXPECT_TRUE(c.Process());
            EXPECT_EQ(first, k.first_read >= 0 ? 0xCAFEu : 0u);
        }
    }
}

TEST(Fsuipc, ProcessDeliversEachReadToItsDestination) {
    Client c;
    c.Opened();
    c.fake.space.Set_U32(0x0564, 0x11223344);
    c.fake.space.Set_U32(0x056C, 0xA0B0C0D0);
    c.fake.space.Set_U16(0x0EC6, 16212);
    c.fake.space.bytes[0x0100] = 0x77;
    int32_t lat = 0, lon = 0;
    uint16_t altimeter = 0;
    uint8_t byte = 0;
    uint16_t gear = 0xBEEF;
    ASSERT_TRUE(c.Read(0x0564, 4, &lat));
    ASSERT_TRUE(Link_Write(c.link, 0x0BE8, 2, &gear, c.result));
    ASSERT_TRUE(c.Read(0x0100, 4, nullptr)); // answer dropped
    ASSERT_TRUE(c.Read(0x056C, 4, &lon));
    ASSERT_TRUE(c.Read(0x0100, 1, &byte));
    ASSERT_TRUE(c.Read(0x0EC6, 2, &altimeter));
    ASSERT_TRUE(c.Process());
    EXPECT_EQ(c.Code(), 0);
    EXPECT_EQ(lat, 0x11223344);
    EXPECT_EQ(static_cast<uint32_t>(lon), 0xA0B0C0D0u);
    EXPECT_EQ(byte, 0x77);
    EXPECT_EQ(altimeter, 16212);
    EXPECT_EQ(c.fake.space.written[0x0BE8], 0xEF);
    EXPECT_EQ(c.fake.space.written[0x0BE9], 0xBE);
    EXPECT_EQ(c.fake.exchanges, 1u);

    // Destinations travel as small tokens, never as (truncated) addresses; no destination
    // stays 0.
    const std::vector<uint8_t>& list = c.fake.last_list;
    std::vector<uint32_t> tokens;
    for (size_t pos = 0; Get_U32(&list[pos]) != 0;) {
        uint32_t id = Get_U32(&list[pos]);
        if (id == Link_Read_Id) {
            tokens.push_back(Get_U32(&list[pos + 12]));
        }
        pos += (id == Link_Read_Id ? 16 : 12) + Get_U32(&list[pos + 8]);
    }
    EXPECT_EQ(tokens, (std::vector<uint32_t>{1, 0, 2, 3, 4}));
    EXPECT_EQ(c.link.link_next, c.link.link_view);
}

TEST(Fsuipc, FailedProcessLeavesTheQueueEmpty) {
    using F = Fake_Module_Transport;
    const std::pair<Fake_Setup, int32_t> cases[] = {
        {[](F& f) { f.failed_sends = 10, f.send_error = 5; }, 12},
        {[](F& f) { f.answer = 0; }, 13},
    };
    for (const auto& [setup, result] : cases) {
        SCOPED_TRACE(result);
        Client c;
        c.Opened();
        int32_t value = 0;
        ASSERT_TRUE(c.Read(0x0564, 4, &value));
        setup(c.fake);
        EXPECT_FALSE(c.Process());
        EXPECT_EQ(c.Code(), result);
        EXPECT_EQ(c.link.link_next, c.link.link_view);
        EXPECT_TRUE(c.link.link_destinations.empty());
        EXPECT_FALSE(c.Process());
        EXPECT_EQ(c.Code(), 10);
    }
}

TEST(Fsuipc, ProcessSendsAgainUpToNineTimes) {
    for (uint32_t failures : {1u, 9u, 10u}) {
        SCOPED_TRACE(failures);
        Client c;
        c.Opened();
        c.fake.failed_sends = failures;
        c.fake.send_error = 1460;
        int32_t value = 0;
        ASSERT_TRUE(c.Read(0x3308, 4, &value));
        bool ok = failures <= 9;
        EXPECT_EQ(c.Process(), ok);
        EXPECT_EQ(c.Code(), ok ? 0 : 12);
        EXPECT_EQ(c.fake.sends, std::min(failures + 1, 10u));
        EXPECT_EQ(c.fake.slept_ms, 100 * std::min(failures, 9u));
        EXPECT_EQ(value, ok ? static_cast<int32_t>(0xFADE0006) : 0);
    }
}

TEST(Fsuipc, UnknownRecordInTheAnswerEndsTheWalk) {
    Client c;
    c.Opened();
    c.fake.space.Set_U32(0x0564, 41);
    c.fake.space.Set_U32(0x056C, 42);
    int32_t lat = 0, lon = 0;
    ASSERT_TRUE(c.Read(0x0564, 4, &lat));
    ASSERT_TRUE(c.Read(0x056C, 4, &lon));
    c.fake.garble_answer = true;
    c.result = static_cast<Link_Result>(99);
    EXPECT_FALSE(c.Process());
    EXPECT_EQ(c.Code(), 99); // left as it was
    EXPECT_EQ(lat, 41);
    EXPECT_EQ(lon, 0);
    EXPECT_EQ(c.link.link_next, c.link.link_view);
}

TEST(Fsuipc, CloseTwiceReleasesOnce) {
    Client c;
    Link_Close(c.link); // nothing open: nothing happens
    EXPECT_TRUE(c.Nothing_Held());
    c.Opened();
    EXPECT_EQ(c.fake.Atoms_Held(), 1u);
    Link_Close(c.link);
    Link_Close(c.link);
    EXPECT_TRUE(c.Nothing_Held());
    EXPECT_EQ(c.fake.Handles_Held(), 0u);
    c.Opened(); // the same name is free again for the next open
}

} // namespace quilmark
