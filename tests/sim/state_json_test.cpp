// JSON on both sides of the board's state: the test support's reader refuses
// what is not JSON, and the board writes valid UTF-8 JSON whatever bytes a
// service name holds (UTF-8 kept, other bytes read as Latin-1).
#include <tuple>

#include "tests/e2e/e2e_support.h"
#include "tests/sim/sim_fixture.h"

namespace simtest {
namespace {

TEST(FlatJsonTest, ReadsJsonAndRefusesAnythingElse) {
    e2e::FlatJson json;
    ASSERT_TRUE(json.Parse("{\"a\":{\"b\":[1,\"x\\u00e9\"]},\"c\":true,\"d\":null}\n"));
    EXPECT_EQ(std::make_tuple("1", "x\xc3\xa9", "true", "null"),
              std::make_tuple(json.Get("a.b.0"), json.Get("a.b.1"), json.Get("c"), json.Get("d")));

    const char* const notJson[] = {
        "", "{", "{\"a\":1,}", "{\"a\" 1}", "{a:1}", "{\"a\":tru}", "{\"a\":1} x", "{\"a\":[1,2}",
        "{\"a\":\"caf\xe9\"}",  // Latin-1 byte: not UTF-8
        "{\"a\":\"x\\q\"}",     // no such escape
        "{\"a\":01}",
    };
    for (const char* text : notJson) EXPECT_FALSE(json.Parse(text)) << text;
}

TEST_F(SimTest, StateIsValidUtf8JsonForAnyServiceName) {
    SetInput("service 1 name=\"Caf\xc3\xa9 \xd0\xa2\xd0\x92\" pcr=0x100\n"
             "video pid=0x100\n"
             "service 2 name=\"Caf\xe9 latin\" pcr=0x200\n"
             "video pid=0x200\n");
    const Handles h = BringUp();
    _AV_SETTING_S s{};
    memcpy(s.service_name, "Gr\xfc\xdf \x01", 6);
    ASSERT_EQ(av_set_config(h.av, &s), 0);

    const std::string text = stbsim::StateJson();
    e2e::FlatJson state;  // a strict JSON reader: UTF-8 only
    ASSERT_TRUE(state.Parse(text)) << text;
    EXPECT_EQ(std::make_tuple("Caf\xc3\xa9 \xd0\xa2\xd0\x92", "Caf\xc3\xa9 latin", "Gr\xc3\xbc\xc3\x9f \x01"),
              std::make_tuple(state.Get("input.services.0.name"), state.Get("input.services.1.name"),
                              state.Get("player.service_name")));
}

}  // namespace
}  // namespace simtest
