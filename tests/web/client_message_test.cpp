// Messages of the page: each kind with its fields, and what is refused.
#include "panelhost/web/client_message.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>

#include "panelhost/base/text.h"

namespace panelhost {
namespace {

TEST(ClientMessage, FieldsArrive) {
    ClientMessage got = ParseClientMessage(R"({"t":"down","w":3,"x":12.5,"y":7,"b":2})");
    EXPECT_EQ(got.action, ClientAction::Down);
    EXPECT_THAT((std::array{got.window * 1.0, got.x, got.y, got.button * 1.0}),
                testing::ElementsAre(3, 12.5, 7, 2));

    got = ParseClientMessage(R"({"t":"set","latitude":-42.5,"longitude":71,"windSpeed":30})");
    EXPECT_EQ(got.action, ClientAction::Set);
    EXPECT_THAT((std::array{got.latitude, got.longitude, got.windSpeedKt}),
                testing::ElementsAre(-42.5, 71, 30));
    EXPECT_FALSE(got.altitudeFt.has_value() || got.windDirectionTrue.has_value());

    got = ParseClientMessage(R"({"t":"key","scan":255,"vk":255,"down":true})");
    EXPECT_EQ(got.action, ClientAction::Key);
    EXPECT_THAT((std::array{got.scanCode, got.virtualKey}), testing::ElementsAre(255, 255));
    EXPECT_TRUE(got.on);
    EXPECT_THAT(ParseClientMessage(R"({"t":"watch","windows":[2,0]})").windows,
                testing::ElementsAre(2, 0));
    EXPECT_EQ(ParseClientMessage(R"({"t":"event","number":65725,"value":4294967295})").value,
              4294967295.0);
}

// The ends of each number's range: both are taken, what lies beyond them is not.
TEST(ClientMessage, RangesAreClosed) {
    const struct {
        const char *before, *after;
        double low, high;
    } rows[] = {{R"({"t":"set","longitude":0,"latitude":)", "}", -89.9, 89.9},
                {R"({"t":"set","latitude":0,"longitude":)", "}", -180, 180},
                {R"({"t":"set","altitude":)", "}", -2000, 45000},
                {R"({"t":"set","heading":)", "}", 0, 360},
                {R"({"t":"set","speed":)", "}", 0, 400},
                {R"({"t":"set","windDirection":)", "}", 0, 360},
                {R"({"t":"set","windSpeed":)", "}", 0, 200},
                {R"({"t":"radio","nav1":)", "}", 108, 117.95},
                {R"({"t":"radio","nav2":)", "}", 108, 117.95},
                {R"({"t":"radio","adf":)", "}", 190, 1799},
                {R"({"t":"radio","course1":)", "}", 0, 360},
                {R"({"t":"radio","course2":)", "}", 0, 360},
                {R"({"t":"rate","v":)", "}", 0.25, 64},
                {R"({"t":"turn","gauge":"A","key":"B","steps":)", "}", -50, 50},
                {R"({"t":"toggle","ident":)", "}", 0, 4294967295.0},
                {R"({"t":"event","value":0,"number":)", "}", 0, 2147483647},
                {R"({"t":"event","number":1,"value":)", "}", 0, 4294967295.0},
                {R"({"t":"key","vk":1,"down":true,"scan":)", "}", 0, 255},
                {R"({"t":"key","scan":1,"down":true,"vk":)", "}", 0, 255},
                {R"({"t":"watch","windows":[)", "]}", 0, 1023},
                {R"({"t":"watch","windows":[1],"scales":[)", "]}", 1, 3}};
    for (const auto& row : rows) {
        for (const double value : {row.low, row.high, row.low - 1, row.high + 1}) {
            const std::string text = row.before + Format("%.10g", value) + row.after;
            EXPECT_EQ(ParseClientMessage(text).problem.empty(),
                      value >= row.low && value <= row.high)
                << text;
        }
    }
}

TEST(ClientMessage, BadOnesAreRefusedWithAReason) {
    const std::pair<const char*, std::vector<const char*>> rows[] = {
        {"not a JSON object",
         {"", "{\"t\":\"up\"} {}", "[\"up\"]", R"({"t":"rate","v":NaN})",
          R"({"t":"rate","v":1e400})"}},
        {"unknown kind", {R"({"x":1})", R"({"t":"UP"})", R"({"t":["up"]})"}},
        {"unknown field", {R"({"t":"up","w":0})"}},
        {"missing field y", {R"({"t":"down","w":0,"x":1})"}},
        {"field x",
         {R"({"t":"down","w":0,"x":"1","y":1})", R"({"t":"down","w":0,"x":-0.1,"y":1})"}},
        {"field w", {R"({"t":"down","w":1.5,"x":1,"y":1})"}},
        {"field b", {R"({"t":"down","w":0,"x":1,"y":1,"b":3})"}},
        {"field v",
         {R"({"t":"rate","v":65})", R"({"t":"rate","v":null})", R"({"t":"situation","v":-1})",
          R"({"t":"situation","v":99})"}},
        {"field down", {R"({"t":"key","scan":1,"vk":1,"down":1})"}},
        {"field key",
         {R"({"t":"press","gauge":"A","key":""})", R"({"t":"press","gauge":"A","key":1})"}},
        {"field gauge", {R"({"t":"press","key":"B","gauge":["A"]})"}},
        {"field gauges",
         {R"({"t":"subscribe","gauges":"A"})", R"({"t":"subscribe","gauges":[""]})"}},
        {"field nav1", {R"({"t":"radio","nav1":118})"}},
        {"together", {R"({"t":"set","latitude":10})"}},
        {"field heading", {R"({"t":"set","heading":361})"}},
        {"field number", {R"({"t":"event","number":4294967296,"value":0})"}},
        {"field windows", {R"({"t":"watch","windows":[0,[1]]})"}},
        {"field scales",
         {R"({"t":"watch","windows":[0],"scales":[4]})",
          R"({"t":"watch","windows":[0],"scales":[0]})"}},
        {"as many", {R"({"t":"watch","windows":[0,1],"scales":[3]})"}},
        {"field ident", {R"({"t":"toggle","ident":-1})"}}};
    for (const auto& [because, texts] : rows) {
        for (const char* const text : texts) {
            const ClientMessage message = ParseClientMessage(text);
            EXPECT_EQ(message.action, ClientAction::Bad) << text;
            EXPECT_THAT(message.problem, testing::HasSubstr(because)) << text;
        }
    }
}

TEST(ClientMessage, LengthIsBounded) {
    std::string text = R"({"t":"up"})";
    text.resize(kMaxClientMessageBytes, ' ');
    EXPECT_EQ(ParseClientMessage(text).action, ClientAction::Up);
    EXPECT_EQ(ParseClientMessage(text + " ").problem, "message too long");
    std::string list = R"({"t":"watch","windows":[0)";
    for (int i = 0; i < kMaxWatchedWindows; ++i) {
        list += ",0";
    }
    EXPECT_EQ(ParseClientMessage(list + "]}").action, ClientAction::Bad);
    const auto press = [](std::size_t characters) {
        return ParseClientMessage(R"({"t":"press","key":"A","gauge":")" +
                                  std::string(characters, 'x') + "\"}")
            .action;
    };
    EXPECT_EQ(press(kMaxNameCharacters), ClientAction::PressKey);
    EXPECT_EQ(press(kMaxNameCharacters + 1), ClientAction::Bad);
    std::string names = R"({"t":"subscribe","variables":["a")";
    for (std::size_t i = 1; i < kMaxNames; ++i) {
        names += ",\"b\"";
    }
    EXPECT_EQ(ParseClientMessage(names + "]}").variables.size(), kMaxNames);
    EXPECT_EQ(ParseClientMessage(names + ",\"c\"]}").action, ClientAction::Bad);
}

}  // namespace
}  // namespace panelhost
