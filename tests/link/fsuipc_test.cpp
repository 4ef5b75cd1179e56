// The FSUIPC client against the in-process fake module.
#include <gtest/gtest.h>

#include <cstring>
#include <functional>
#include <string>
#include <vector>

#include "link/fake_module.h"
#include "link/fsuipc.h"

namespace {

class Fsuipc_Test : public ::testing::Test {
  protected:
    Fsuipc_Test() {
        link.transport = &fake;
        Link_Reset(link);
    }
    void Open() {
        int32_t result = -1;
        ASSERT_TRUE(Link_Open(link, fsuipc_fs2002, result));
        ASSERT_EQ(result, 0);
        fake.sends = fake.exchanges = fake.slept_ms = 0;
    }
    void Expect_Nothing_Held() {
        EXPECT_EQ(link.link_view, nullptr);
        EXPECT_EQ(fake.Atoms_Held(), 0u);
        EXPECT_EQ(fake.Views_Held(), 0u);
    }

    Fake_Module_Transport fake;
    Fsuipc_Rec link;
};

struct Open_Case {
    const char* name;
    std::function<void(Fake_Module_Transport&)> setup;
    int32_t required_sim;
    int32_t result;
};

TEST_F(Fsuipc_Test, OpenGivesEachResultCode) {
    using F = Fake_Module_Transport;
    const Open_Case cases[] = {
        {"FS2002 via UIPCMAIN", [](F&) {}, 6, 0},
        {"FS2002 via FS98MAIN", [](F& f) { f.main_window = false; }, 6, 0},
        {"any simulator", [](F& f) { f.space.Set_U32(0x3308, 0xFADE0008); }, 0, 0},
        {"oldest module accepted", [](F& f) { f.space.Set_U32(0x3304, 0x19980005); }, 6, 0},
        {"no window", [](F& f) { f.main_window = f.fallback_window = false; }, 6, 2},
        {"message refused", [](F& f) { f.refuse_message = true; }, 6, 3},
        {"atom refused", [](F& f) { f.refuse_atom = true; }, 6, 4},
        {"mapping refused", [](F& f) { f.refuse_mapping = true; }, 6, 5},
        {"mapping already exists",
         [](F& f) { f.Create_Mapping("FSASMLIB:IPC:1A2B:1", link_block_size); }, 6, 5},
        {"view refused", [](F& f) { f.refuse_view = true; }, 6, 6},
        {"module too old", [](F& f) { f.space.Set_U32(0x3304, 0x19980004); }, 6, 7},
        {"version compared signed", [](F& f) { f.space.Set_U32(0x3304, 0x80000000); }, 6, 7},
        {"check pattern wrong", [](F& f) { f.space.Set_U32(0x3308, 0xFADF0006); }, 6, 7},
        {"check pattern wrong via FS98MAIN",
         [](F& f) {
             f.main_window = false;
             f.space.Set_U32(0x3308, 0x00000006);
         },
         6, 14},
        {"module too old via FS98MAIN",
         [](F& f) {
             f.main_window = false;
             f.space.Set_U32(0x3304, 0x10000000);
         },
         6, 14},
        {"another simulator", [](F& f) { f.space.Set_U32(0x3308, 0xFADE0007); }, 6, 8},
        {"module answers 0", [](F& f) { f.answer = 0; }, 6, 13},
        {"no answer, system error",
         [](F& f) {
             f.failed_sends = 100;
             f.send_error = 1460;
         },
         6, 12},
        {"no answer, no error", [](F& f) { f.failed_sends = 100; }, 6, 11},
    };
    for (const Open_Case& c : cases) {
        SCOPED_TRACE(c.name);
        Fake_Module_Transport f;
        c.setup(f);
        size_t handles_before = f.Handles_Held();
        Fsuipc_Rec l;
        l.transport = &f;
        Link_Reset(l);
        int32_t result = -1;
        bool ok = Link_Open(l, c.required_sim, result);
        EXPECT_EQ(result, c.result);
        EXPECT_EQ(ok, c.result == 0);
        if (ok) {
            EXPECT_NE(l.link_view, nullptr);
            EXPECT_EQ(l.link_next, l.link_view);
        } else {
            // Whatever the open made, it released.
            EXPECT_EQ(l.link_view, nullptr);
            EXPECT_EQ(l.link_atom, 0);
            EXPECT_EQ(f.Atoms_Held(), 0u);
            EXPECT_EQ(f.Views_Held(), 0u);
            EXPECT_EQ(f.Handles_Held(), handles_before);
        }
    }
}

TEST_F(Fsuipc_Test, OpenKeepsOnlyTheSimulatorCode) {
    Open();
    EXPECT_EQ(link.link_module_version, 0x36200000);
    EXPECT_EQ(link.link_sim_version, 6);
    EXPECT_EQ(fake.windows_asked, std::vector<std::string>{"UIPCMAIN"});
}

TEST(Fsuipc_Block_Name, ProcessIdInUpperCaseHexadecimal) {
    const std::pair<uint32_t, const char*> cases[] = {
        {0x1A2B, "FSASMLIB:IPC:1A2B:1"},
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

TEST_F(Fsuipc_Test, OpenNamesTheBlockByAtomAndSendsTheClientVersion) {
    fake.process_id = 0xBEEF;
    link.link_client_version = 0x0102;
    Open();
    // String atoms start at 0xC000, so the widened atom is negative.
    EXPECT_EQ(link.link_atom, static_cast<int16_t>(0xC000));
    EXPECT_EQ(fake.Atom_Name(0xC000), "FSASMLIB:IPC:BEEF:1");
    uint32_t size = 0;
    EXPECT_EQ(fake.Find_Block(static_cast<uint64_t>(int64_t{link.link_atom}), size),
              link.link_view);
    EXPECT_EQ(size, link_block_size);
    // The open's list: read 0x3304, read 0x3308, write 0x330A, closed.
    ASSERT_EQ(fake.last_list.size(), 16u + 4 + 16 + 4 + 12 + 2 + 4);
    EXPECT_EQ(Get_U32(&fake.last_list[40]), link_write_id);
    EXPECT_EQ(Get_U32(&fake.last_list[44]), 0x330Au);
    EXPECT_EQ(fake.space.written[0x330A], 0x02);
    EXPECT_EQ(fake.space.written[0x330B], 0x01);
}

TEST_F(Fsuipc_Test, OpenOnAnOpenLinkLeavesItOpen) {
    Open();
    uint8_t* view = link.link_view;
    int32_t result = -1;
    EXPECT_FALSE(Link_Open(link, fsuipc_fs2002, result));
    EXPECT_EQ(result, 1);
    EXPECT_EQ(link.link_view, view);
    int32_t lat = 0;
    fake.space.Set_U32(0x0564, 1234);
    EXPECT_TRUE(Link_Read(link, 0x0564, 4, &lat, result) && Link_Process(link, result));
    EXPECT_EQ(lat, 1234);
}

TEST_F(Fsuipc_Test, OpenAsksAgainWhileTheModuleAnswersZeroVersions) {
    struct Case {
        uint32_t zero_exchanges;
        bool ok;
        uint32_t exchanges;
    };
    for (Case c : {Case{0, true, 1}, Case{3, true, 4}, Case{4, true, 5}, Case{5, false, 5}}) {
        SCOPED_TRACE(c.zero_exchanges);
        Fake_Module_Transport f;
        f.zero_version_exchanges = c.zero_exchanges;
        Fsuipc_Rec l;
        l.transport = &f;
        Link_Reset(l);
        int32_t result = -1;
        EXPECT_EQ(Link_Open(l, fsuipc_fs2002, result), c.ok);
        EXPECT_EQ(result, c.ok ? 0 : 7);
        EXPECT_EQ(f.exchanges, c.exchanges);
        EXPECT_EQ(f.slept_ms, 100 * c.exchanges); // the wait follows every try
    }
}

TEST_F(Fsuipc_Test, ClosedLinkRefusesEveryRequest) {
    int32_t value = 0;
    int32_t result = -1;
    EXPECT_FALSE(Link_Read(link, 0x0564, 4, &value, result));
    EXPECT_EQ(result, 9);
    result = -1;
    EXPECT_FALSE(Link_Write(link, 0x0564, 4, &value, result));
    EXPECT_EQ(result, 9);
    result = -1;
    EXPECT_FALSE(Link_Process(link, result));
    EXPECT_EQ(result, 9);
    EXPECT_EQ(fake.sends, 0u);
}

TEST_F(Fsuipc_Test, EmptyQueueSendsNothing) {
    Open();
    int32_t result = -1;
    EXPECT_FALSE(Link_Process(link, result));
    EXPECT_EQ(result, 10);
    EXPECT_EQ(fake.sends, 0u);
}

TEST_F(Fsuipc_Test, RequestsFitUpTo32512Bytes) {
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
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        Fake_Module_Transport f;
        f.space.Set_U32(0x0238, 0xCAFE);
        Fsuipc_Rec l;
        l.transport = &f;
        Link_Reset(l);
        int32_t result = -1;
        ASSERT_TRUE(Link_Open(l, 0, result));
        uint32_t first = 0;
        if (c.first_read >= 0) {
            ASSERT_TRUE(Link_Read(l, 0x0238, c.first_read, &first, result));
        }
        uint8_t* next = l.link_next;
        result = -1;
        bool ok = c.write ? Link_Write(l, 0x4000, c.size, source.data(), result)
                          : Link_Read(l, 0x4000, c.size, nullptr, result);
        EXPECT_EQ(result, c.result);
        EXPECT_EQ(ok, c.result == 0);
        if (!ok) {
            EXPECT_EQ(l.link_next, next); // the queue is unchanged
        }
        if (c.first_read >= 0 || ok) {
            EXPECT_TRUE(Link_Process(l, result));
            EXPECT_EQ(first, c.first_read >= 0 ? 0xCAFEu : 0u);
        }
    }
}

TEST_F(Fsuipc_Test, ProcessDeliversEachReadToItsDestination) {
    Open();
    fake.space.Set_U32(0x0564, 0x11223344);
    fake.space.Set_U32(0x056C, 0xA0B0C0D0);
    fake.space.Set_U16(0x0EC6, 16212);
    fake.space.bytes[0x0100] = 0x77;
    int32_t lat = 0, lon = 0;
    uint16_t altimeter = 0;
    uint8_t byte = 0;
    uint16_t gear = 0xBEEF;
    int32_t result = -1;
    ASSERT_TRUE(Link_Read(link, 0x0564, 4, &lat, result));
    ASSERT_TRUE(Link_Write(link, 0x0BE8, 2, &gear, result));
    ASSERT_TRUE(Link_Read(link, 0x0100, 4, nullptr, result)); // answer dropped
    ASSERT_TRUE(Link_Read(link, 0x056C, 4, &lon, result));
    ASSERT_TRUE(Link_Read(link, 0x0100, 1, &byte, result));
    ASSERT_TRUE(Link_Read(link, 0x0EC6, 2, &altimeter, result));
    ASSERT_TRUE(Link_Process(link, result));
    EXPECT_EQ(result, 0);
    EXPECT_EQ(lat, 0x11223344);
    EXPECT_EQ(static_cast<uint32_t>(lon), 0xA0B0C0D0u);
    EXPECT_EQ(byte, 0x77);
    EXPECT_EQ(altimeter, 16212);
    EXPECT_EQ(fake.space.written[0x0BE8], 0xEF);
    EXPECT_EQ(fake.space.written[0x0BE9], 0xBE);
    EXPECT_EQ(fake.exchanges, 1u);

    // Destinations travel as small tokens, never as (truncated) addresses; no destination
    // stays 0.
    const std::vector<uint8_t>& list = fake.last_list;
    std::vector<uint32_t> tokens;
    for (size_t pos = 0; Get_U32(&list[pos]) != 0;) {
        uint32_t id = Get_U32(&list[pos]);
        if (id == link_read_id) {
            tokens.push_back(Get_U32(&list[pos + 12]));
        }
        pos += (id == link_read_id ? 16 : 12) + Get_U32(&list[pos + 8]);
    }
    EXPECT_EQ(tokens, (std::vector<uint32_t>{1, 0, 2, 3, 4}));
    EXPECT_EQ(link.link_next, link.link_view);
}

TEST_F(Fsuipc_Test, FailedProcessLeavesTheQueueEmpty) {
    struct Case {
        const char* name;
        std::function<void(Fake_Module_Transport&)> setup;
        int32_t result;
    };
    const Case cases[] = {
        {"no answer",
         [](Fake_Module_Transport& f) {
             f.failed_sends = 10;
             f.send_error = 5;
         },
         12},
        {"answer 0", [](Fake_Module_Transport& f) { f.answer = 0; }, 13},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        Fake_Module_Transport f;
        Fsuipc_Rec l;
        l.transport = &f;
        Link_Reset(l);
        int32_t result = -1;
        ASSERT_TRUE(Link_Open(l, 0, result));
        int32_t value = 0;
        ASSERT_TRUE(Link_Read(l, 0x0564, 4, &value, result));
        c.setup(f);
        f.sends = 0;
        EXPECT_FALSE(Link_Process(l, result));
        EXPECT_EQ(result, c.result);
        EXPECT_EQ(l.link_next, l.link_view);
        EXPECT_TRUE(l.link_destinations.empty());
        EXPECT_FALSE(Link_Process(l, result));
        EXPECT_EQ(result, 10);
    }
}

TEST_F(Fsuipc_Test, ProcessSendsAgainUpToNineTimes) {
    struct Case {
        uint32_t failures;
        bool ok;
        uint32_t sends;
        uint32_t slept_ms;
    };
    for (Case c : {Case{1, true, 2, 100}, Case{9, true, 10, 900}, Case{10, false, 10, 900}}) {
        SCOPED_TRACE(c.failures);
        Open();
        fake.failed_sends = c.failures;
        fake.send_error = 1460;
        int32_t value = 0;
        int32_t result = -1;
        ASSERT_TRUE(Link_Read(link, 0x3308, 4, &value, result));
        EXPECT_EQ(Link_Process(link, result), c.ok);
        EXPECT_EQ(result, c.ok ? 0 : 12);
        EXPECT_EQ(fake.sends, c.sends);
        EXPECT_EQ(fake.slept_ms, c.slept_ms);
        EXPECT_EQ(value, c.ok ? static_cast<int32_t>(0xFADE0006) : 0);
        Link_Close(link);
        Link_Reset(link);
    }
}

TEST_F(Fsuipc_Test, UnknownRecordInTheAnswerEndsTheWalk) {
    Open();
    fake.space.Set_U32(0x0564, 41);
    fake.space.Set_U32(0x056C, 42);
    int32_t lat = 0, lon = 0;
    int32_t result = -1;
    ASSERT_TRUE(Link_Read(link, 0x0564, 4, &lat, result));
    ASSERT_TRUE(Link_Read(link, 0x056C, 4, &lon, result));
    fake.garble_answer = true;
    result = 99;
    EXPECT_FALSE(Link_Process(link, result));
    EXPECT_EQ(result, 99); // left as it was
    EXPECT_EQ(lat, 41);
    EXPECT_EQ(lon, 0);
    EXPECT_EQ(link.link_next, link.link_view);
}

TEST_F(Fsuipc_Test, CloseTwiceReleasesOnce) {
    Link_Close(link); // nothing open: nothing happens
    Expect_Nothing_Held();
    Open();
    EXPECT_EQ(fake.Atoms_Held(), 1u);
    Link_Close(link);
    Expect_Nothing_Held();
    EXPECT_EQ(fake.Handles_Held(), 0u);
    Link_Close(link);
    Expect_Nothing_Held();
    // The same name is free again for the next open.
    Open();
    EXPECT_NE(link.link_view, nullptr);
}

} // namespace
