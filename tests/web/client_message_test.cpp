// Messages of the page: each kind with its fields, and what is refused.
#include "panelhost/web/client_message.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace panelhost {
namespace {

TEST(ClientMessage, FieldsArrive) {
    const ClientMessage down = ParseClientMessage(R"({"t":"down","w":3,"x":12.5,"y":7,"b":2})");
    EXPECT_EQ(down.action, ClientAction::Down);
    EXPECT_EQ(down.window, 3);
    EXPECT_EQ(down.x, 12.5);
    EXPECT_EQ(down.y, 7);
    EXPECT_EQ(down.button, 2);
    EXPECT_EQ(ParseClientMessage(R"({"t":"down","w":3,"x":1,"y":7})").button, 0);

    const ClientMessage set =
        ParseClientMessage(R"({"t":"set","latitude":-42.5,"longitude":71,"windSpeed":30})");
    EXPECT_EQ(set.action, ClientAction::Set);
    EXPECT_EQ(set.latitude, -42.5);
    EXPECT_EQ(set.longitude, 71);
    EXPECT_EQ(set.windSpeedKt, 30);
    EXPECT_FALSE(set.altitudeFt.has_value());
    EXPECT_FALSE(set.windDirectionTrue.has_value());

    const ClientMessage key = ParseClientMessage(R"({"t":"key","scan":30,"vk":65,"down":true})");
    EXPECT_EQ(key.action, ClientAction::Key);
    EXPECT_EQ(key.scanCode, 30);
    EXPECT_EQ(key.virtualKey, 65);
    EXPECT_TRUE(key.on);
    EXPECT_THAT(ParseClientMessage(R"({"t":"watch","windows":[2,0]})").windows,
                testing::ElementsAre(2, 0));
    EXPECT_EQ(ParseClientMessage(R"({"t":"situation","v":3})").number, 3);
    EXPECT_EQ(ParseClientMessage(R"({"t":"event","number":65725,"value":4294967295})").value,
              4294967295.0);
}

TEST(ClientMessage, BadOnesAreRefusedWithAReason) {
    const std::pair<const char*, const char*> rows[] = {
        {"", "not a JSON object"},
        {"{\"t\":\"up\"} {}", "not a JSON object"},
        {"[\"up\"]", "not a JSON object"},
        {R"({"x":1})", "unknown kind"},
        {R"({"t":"UP"})", "unknown kind"},
        {R"({"t":["up"]})", "unknown kind"},
        {R"({"t":"up","w":0})", "unknown field"},
        {R"({"t":"down","w":0,"x":1})", "missing field y"},
        {R"({"t":"down","w":0,"x":"1","y":1})", "field x"},
        {R"({"t":"down","w":1.5,"x":1,"y":1})", "field w"},
        {R"({"t":"down","w":0,"x":-0.1,"y":1})", "field x"},
        {R"({"t":"down","w":0,"x":1,"y":1,"b":3})", "field b"},
        {R"({"t":"rate","v":NaN})", "not a JSON object"},
        {R"({"t":"rate","v":1e400})", "not a JSON object"},
        {R"({"t":"rate","v":65})", "field v"},
        {R"({"t":"rate","v":null})", "field v"},
        {R"({"t":"key","scan":1,"vk":1,"down":1})", "field down"},
        {R"({"t":"set","latitude":10})", "together"},
        {R"({"t":"set","heading":361})", "field heading"},
        {R"({"t":"situation","v":-1})", "field v"},
        {R"({"t":"situation","v":4})", "field v"},
        {R"({"t":"event","number":4294967296,"value":0})", "field number"},
        {R"({"t":"watch","windows":[0,[1]]})", "field windows"},
        {R"({"t":"toggle","ident":-1})", "field ident"}};
    for (const auto& [text, because] : rows) {
        const ClientMessage message = ParseClientMessage(text);
        EXPECT_EQ(message.action, ClientAction::Bad) << text;
        EXPECT_THAT(message.problem, testing::HasSubstr(because)) << text;
    }
}

TEST(ClientMessage, LengthIsBounded) {
    std::string text = R"({"t":"up"})";
    text.resize(kMaxClientMessageBytes, ' ');
    EXPECT_EQ(ParseClientMessage(text).action, ClientAction::Up);
    EXPECT_EQ(ParseClientMessage(text + " ").action, ClientAction::Bad);
    std::string list = R"({"t":"watch","windows":[0)";
    for (int i = 0; i < kMaxWatchedWindows; ++i) {
        list += ",0";
    }
    EXPECT_EQ(ParseClientMessage(list + "]}").action, ClientAction::Bad);
}

}  // namespace
}  // namespace panelhost
