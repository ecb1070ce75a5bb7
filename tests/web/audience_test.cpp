// Who watches what: drawn once for all who want the same, told in design pixels, let go when gone.
#include "panelhost/web/audience.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <nlohmann/json.hpp>

#include "tests/panelhost/host_fixture.h"

namespace panelhost {
namespace {

using Json = nlohmann::json;
using testing::ElementsAre;

constexpr const char* kPanel =
    "[Window Titles]\nWindow00=Main\n"
    "[Window00]\nsize_mm=200,100\nident=0\ngauge01=probe!PROBE, 10,20\n"
    "[Window01]\nsize_mm=40,30\nident=4001\nvisible=0\ngauge00=probe!PROBE, 0,0\n";
enum : int { kMain, kPopUp, kMainAlone, kPopUpAlone, kGauge };

struct FakeClient : Outlet {
    Watcher watcher;
    std::vector<Json> messages;
    std::vector<SharedText> pictures;

    FakeClient() { watcher.outlet = this; }
    void Send(bool binary, SharedText bytes) override {
        if (binary) {
            pictures.push_back(std::move(bytes));
        } else {
            messages.push_back(Json::parse(*bytes));
        }
    }
    Json Last(const std::string& kind) const {
        for (auto it = messages.rbegin(); it != messages.rend(); ++it) {
            if ((*it)["t"] == kind) {
                return *it;
            }
        }
        return {};
    }
};

class AudienceTest : public HostTest {
  protected:
    void SetUp() override {
        HostTest::SetUp();
        ASSERT_TRUE(Open(kPanel)) << session_.error();
        OpenAudience(session_, audience_);
        for (FakeClient* client : {&one_, &two_}) {
            Join(audience_, client->watcher);
        }
    }
    void TearDown() override {
        for (FakeClient* client : {&one_, &two_}) {
            Leave(audience_, client->watcher);
        }
        HostTest::TearDown();
    }
    bool Say(FakeClient& client, const std::string& text) {
        const ClientMessage message = ParseClientMessage(text);
        EXPECT_EQ(message.problem, "");
        return ObeyMessage(audience_, client.watcher, message);
    }
    void Frames(int count) {
        for (int i = 0; i < count; ++i) {
            RunFrame(audience_, 1, 0.04, nowS_ += 0.04);
        }
    }

    Audience audience_;
    FakeClient one_;
    FakeClient two_;
    double nowS_ = 100;
};

TEST_F(AudienceTest, ADisplayIsDrawnOnceForAllWhoWantTheSame) {
    EXPECT_EQ(one_.Last("hello")["displays"].size(), 3U);
    ASSERT_TRUE(Say(one_, R"({"t":"watch","windows":[0,4],"scales":[2,3]})"));
    ASSERT_TRUE(Say(two_, R"({"t":"watch","windows":[4],"scales":[3]})"));
    Frames(4);
    ASSERT_EQ(one_.pictures.size(), 4U);
    ASSERT_EQ(two_.pictures.size(), 2U);
    EXPECT_EQ(two_.pictures[0], one_.pictures[1]) << "encoded once";
    EXPECT_EQ(two_.pictures[1], one_.pictures[3]);
    EXPECT_THAT(one_.pictures[0]->substr(0, 4), std::string("\2\10\0\0", 4));
    EXPECT_THAT(one_.pictures[1]->substr(0, 4), std::string("\3\10\4\0", 4));
    EXPECT_EQ(audience_.feeds.size(), 2U);
    Frames(20);
    EXPECT_EQ(one_.pictures.size(), 4U) << "no third one before the first is shown";
    ASSERT_TRUE(Say(two_, R"({"t":"painted","w":4})"));
    Frames(4);
    EXPECT_EQ(two_.pictures.size(), 3U);
    ASSERT_TRUE(Say(two_, R"({"t":"watch","windows":[]})"));
    ASSERT_TRUE(Say(two_, R"({"t":"painted","w":4})"));
    Frames(4);
    EXPECT_EQ(two_.pictures.size(), 3U);
}

TEST_F(AudienceTest, EveryFrameIsAPictureForWhoShowsThem) {
    ASSERT_TRUE(Say(one_, R"({"t":"watch","windows":[4],"scales":[1]})"));
    for (int frame = 0; frame < 25; ++frame) {
        Frames(1);
        ASSERT_TRUE(Say(one_, R"({"t":"painted","w":4})"));
    }
    EXPECT_EQ(one_.pictures.size(), 25U);
    for (int surplus = 0; surplus < 3; ++surplus) {  // what was never sent cannot be shown
        ASSERT_TRUE(Say(one_, R"({"t":"painted","w":4})"));
    }
    Frames(10);
    EXPECT_EQ(one_.pictures.size(), 27U);
}

TEST_F(AudienceTest, PlacesAreDesignPixelsAtEveryScale) {
    ASSERT_TRUE(Say(one_, R"({"t":"watch","windows":[0],"scales":[1]})"));
    ASSERT_TRUE(Say(two_, R"({"t":"watch","windows":[0],"scales":[3]})"));
    Frames(2);
    const Json areas = one_.Last("areas")["areas"];
    EXPECT_EQ(areas[0]["x"], 12);
    for (const char* field : {"x", "y", "width", "height", "label"}) {
        EXPECT_EQ(areas[0][field], two_.Last("areas")["areas"][0][field]) << field;
    }
    EXPECT_EQ(one_.Last("texts")["texts"][0][1], 24) << "drawn at 2 of the surface's own pixels";
    EXPECT_EQ(two_.Last("texts")["texts"][0][1], 22.7);
    EXPECT_EQ(one_.Last("texts")["texts"][0][2], 29);
    EXPECT_EQ(two_.Last("texts")["texts"][0][2], 28.3);
    for (FakeClient* client : {&one_, &two_}) {
        ASSERT_TRUE(Say(*client, R"({"t":"down","w":0,"x":13,"y":25})"));
        ASSERT_TRUE(Say(*client, R"({"t":"up"})"));
        const std::vector<ProbeRecord> clicks = Clicks();
        const ProbeRecord press = clicks.at(clicks.size() - 2);
        EXPECT_THAT((std::array{press.x, press.y}), ElementsAre(1, 2));
        EXPECT_EQ(clicks.back().flags, avq1::mouse_flag::kLeftRelease);
    }
    const std::size_t before = Clicks().size();
    ASSERT_TRUE(Say(one_, R"({"t":"wheel","w":0,"x":13,"y":25,"up":true})"));
    EXPECT_EQ(Clicks().size(), before + 1);
    ASSERT_TRUE(Say(one_, R"({"t":"down","w":4,"x":3,"y":5})"));
    EXPECT_EQ(Clicks().size(), before + 1) << "a display it does not watch";
}

TEST_F(AudienceTest, WhoWatchesNothingCostsNothingAndIsForgottenAfterAWhile) {
    ASSERT_TRUE(Say(one_, R"({"t":"watch","windows":[4],"scales":[2]})"));
    Frames(2);
    const int view = audience_.feeds[0]->view;
    EXPECT_NE(session_.Picture(view).pixels, nullptr);
    ASSERT_TRUE(Say(one_, R"({"t":"watch","windows":[]})"));
    Frames(100);
    EXPECT_EQ(audience_.feeds.size(), 1U) << "a page loaded anew finds it";
    EXPECT_NE(session_.Picture(view).pixels, nullptr);
    Frames(50);
    EXPECT_TRUE(audience_.feeds.empty());
    EXPECT_EQ(session_.Picture(view).pixels, nullptr);
}

TEST_F(AudienceTest, WhatIsNotThereEndsTheConnection) {
    for (const char* text : {R"({"t":"watch","windows":[5]})", R"({"t":"painted","w":5})",
                             R"({"t":"down","w":1000,"x":1,"y":1})"}) {
        EXPECT_FALSE(Say(one_, text)) << text;
    }
    EXPECT_TRUE(Say(one_, R"({"t":"down","w":1,"x":1,"y":1})")) << "closed, but there";
}

TEST_F(AudienceTest, WhoLeavesLetsGoOfPointerAndKeys) {
    ASSERT_TRUE(Say(one_, R"({"t":"down","w":0,"x":13,"y":25})"));
    ASSERT_TRUE(Say(two_, R"({"t":"up"})"));
    EXPECT_NE(Clicks().back().flags, avq1::mouse_flag::kLeftRelease) << "not the other's to let go";
    Leave(audience_, one_.watcher);
    EXPECT_EQ(Clicks().back().flags, avq1::mouse_flag::kLeftRelease);
    for (FakeClient* client : {&one_, &two_}) {  // only what it still holds
        ASSERT_TRUE(Say(*client, R"({"t":"key","scan":30,"vk":65,"down":true})"));
        ASSERT_TRUE(Say(one_, R"({"t":"keysup"})"));
        EXPECT_EQ(Services().key_state(65) != 0, client == &two_);
    }
    Join(audience_, one_.watcher);
    ASSERT_TRUE(Say(one_, R"({"t":"subscribe","gauges":["PROBE"]})"));
    Leave(audience_, one_.watcher);
    EXPECT_NE(Services().key_state(65), 0) << "the other's key";
    Frames(150);
    EXPECT_TRUE(audience_.feeds.empty());
    EXPECT_EQ(two_.Last("status")["paused"], false);
    ASSERT_TRUE(Say(two_, R"({"t":"pause","on":true})"));
    Frames(6);
    EXPECT_EQ(two_.Last("status")["paused"], true);
}

TEST_F(AudienceTest, OnlyWhatIsNamedIsSet) {
    using S = SessionStatus;
    const struct {
        const char* field;
        double S::*value;
        double set;
    } rows[] = {{"altitude", &S::altitudeFt, 9000},
                {"heading", &S::headingTrue, 123},
                {"speed", &S::indicatedAirspeedKt, 210},
                {"windDirection", &S::windDirectionTrue, 77},
                {"windSpeed", &S::windSpeedKt, 33}};
    for (const auto& row : rows) {
        const SessionStatus before = session_.Status();
        ASSERT_TRUE(Say(one_, Json({{"t", "set"}, {row.field, row.set}}).dump()));
        const SessionStatus after = session_.Status();
        for (const auto& other : rows) {
            EXPECT_EQ(after.*other.value, &other == &row ? row.set : before.*other.value)
                << row.field << " and " << other.field;
        }
    }
    ASSERT_TRUE(Say(one_, R"({"t":"set","latitude":12.5,"longitude":-34.5})"));
    EXPECT_EQ(session_.Status().latitude, 12.5);
    EXPECT_EQ(session_.Status().longitude, -34.5);
    EXPECT_EQ(session_.Status().altitudeFt, 9000);
}

TEST_F(AudienceTest, WhatIsPressedIsShownBeforeTheNextFrame) {
    ASSERT_TRUE(Say(one_, R"({"t":"watch","windows":[4],"scales":[1]})"));
    Frames(4);
    ASSERT_TRUE(Say(one_, R"({"t":"painted","w":4})"));
    EXPECT_FALSE(audience_.touched) << "looking touches nothing";
    ASSERT_TRUE(Say(one_, R"({"t":"down","w":4,"x":3,"y":5})"));
    ASSERT_TRUE(audience_.touched);
    const std::size_t pictures = one_.pictures.size();
    const double timeS = session_.Status().panelTimeS;
    Glance(audience_);
    EXPECT_EQ(one_.pictures.size(), pictures + 1);
    EXPECT_EQ(one_.Last("texts")["texts"][0][0], "drawn 5");
    EXPECT_EQ(session_.Status().panelTimeS, timeS);
    EXPECT_FALSE(audience_.touched);
    for (int frame = 0; frame < 3; ++frame) {  // what it asks for may be done a frame or two later
        Frames(1);
        EXPECT_EQ(one_.Last("texts")["texts"][0][0], "drawn " + std::to_string(6 + frame));
    }
    one_.messages.clear();
    Frames(12);
    EXPECT_LE(std::ranges::count_if(one_.messages, [](const Json& m) { return m["t"] == "texts"; }),
              3)
        << "a few times a second";
}

TEST_F(AudienceTest, GaugesAndKeysAreReachedByName) {
    EXPECT_TRUE(Say(one_, R"({"t":"press","gauge":"probe","key":"line key 1"})"));
    const std::vector<ProbeRecord> pressed = Clicks();
    ASSERT_EQ(pressed.size(), 2U);
    EXPECT_EQ(pressed[0].flags, avq1::mouse_flag::kLeftSingle);
    EXPECT_EQ(pressed[1].flags, avq1::mouse_flag::kLeftRelease);
    EXPECT_TRUE(Say(one_, R"({"t":"hold","gauge":"PROBE","key":"LINE KEY 1"})"));
    Frames(12);
    EXPECT_EQ(Clicks().back().flags, avq1::mouse_flag::kDownRepeat);
    EXPECT_TRUE(Say(one_, R"({"t":"release"})"));
    EXPECT_EQ(Clicks().back().flags, avq1::mouse_flag::kLeftRelease);
    const std::size_t before = Clicks().size();
    EXPECT_TRUE(Say(one_, R"({"t":"turn","gauge":"PROBE","key":"LINE KEY 1","steps":3})"));
    ASSERT_EQ(Clicks().size(), before + 3);
    EXPECT_EQ(Clicks().back().flags, avq1::mouse_flag::kWheelUp);
    const double bug = session_.Status().autopilot.headingBugMag;
    EXPECT_TRUE(Say(one_, R"({"t":"turn","gauge":"PROBE","key":"#2","steps":-2})"));
    EXPECT_EQ(session_.Status().autopilot.headingBugMag, bug + 2)
        << "clicks where no wheel is taken";
    EXPECT_TRUE(one_.Last("error").is_null());
    Frames(100);
    EXPECT_EQ(audience_.feeds.size(), 1U) << "kept for the next key";
    Frames(50);
    EXPECT_TRUE(audience_.feeds.empty());
    for (const char* text : {R"({"t":"press","gauge":"NONE","key":"A"})",
                             R"({"t":"press","gauge":"PROBE","key":"#3"})",
                             R"({"t":"subscribe","gauges":["NONE"]})"}) {
        one_.messages.clear();
        EXPECT_TRUE(Say(one_, text)) << "no reason to end the connection";
        EXPECT_TRUE(one_.Last("error").is_object()) << text;
    }
}

TEST_F(AudienceTest, SubscribersAreToldWhatChanges) {
    EXPECT_TRUE(Say(one_, R"({"t":"subscribe","gauges":["PROBE"],"variables":["#107","none"],)"
                          R"("events":true})"));
    Frames(2);
    EXPECT_EQ(one_.Last("gauge")["lines"], Json::array({"drawn 2"}));
    EXPECT_EQ(one_.Last("gauge")["lamps"], Json({{"HOLD", false}}));
    EXPECT_EQ(one_.Last("values")["values"]["none"], Json());
    EXPECT_TRUE(one_.pictures.empty());
    one_.messages.clear();
    EXPECT_TRUE(Say(two_, R"({"t":"press","gauge":"PROBE","key":"#2"})"));
    EXPECT_TRUE(Say(two_, R"({"t":"press","gauge":"PROBE","key":"LINE KEY 1"})"));
    Frames(1);
    EXPECT_EQ(one_.Last("events")["events"][0]["name"], "HEADING_BUG_INC");
    EXPECT_EQ(one_.Last("values")["values"].size(), 1U);
    EXPECT_EQ(one_.Last("gauge")["lamps"]["HOLD"], true);
    one_.messages.clear();
    Frames(1);
    EXPECT_TRUE(one_.Last("events").is_null());
    EXPECT_TRUE(one_.Last("values").is_null());
    one_.messages.clear();
    EXPECT_TRUE(Say(two_, R"({"t":"subscribe","gauges":["PROBE","PROBE"]})"));
    Frames(1);
    EXPECT_EQ(two_.Last("gauge"), one_.Last("gauge"));
    EXPECT_EQ(std::ranges::count_if(two_.messages, [](const Json& m) { return m["t"] == "gauge"; }),
              1)
        << "named twice, told once";
    EXPECT_TRUE(Say(one_, R"({"t":"subscribe"})"));
    one_.messages.clear();
    Frames(4);
    EXPECT_TRUE(one_.Last("gauge").is_null());
}

TEST_F(AudienceTest, WhoOnlyLooksTouchesNothing) {
    one_.watcher.mayTouch = false;
    for (const char* text :
         {R"({"t":"down","w":0,"x":13,"y":25})", R"({"t":"pause","on":true})",
          R"({"t":"press","gauge":"PROBE","key":"#1"})", R"({"t":"radio","nav1":110})",
          R"({"t":"key","scan":30,"vk":65,"down":true})", R"({"t":"toggle","ident":4001})",
          R"({"t":"wheel","w":0,"x":13,"y":25,"up":true})", R"({"t":"rate","v":4})",
          R"({"t":"event","number":65879,"value":0})", R"({"t":"situation","v":0})",
          R"({"t":"set","altitude":9000})", R"({"t":"turn","gauge":"PROBE","key":"#1","steps":1})",
          R"({"t":"hold","gauge":"PROBE","key":"#1"})"}) {
        one_.messages.clear();
        EXPECT_TRUE(Say(one_, text)) << text;
        EXPECT_EQ(one_.Last("error")["problem"], "look only") << text;
    }
    EXPECT_TRUE(Clicks().empty());
    EXPECT_TRUE(session_.Status().lastEvents.empty());
    EXPECT_FALSE(audience_.touched);
    one_.messages.clear();
    EXPECT_TRUE(Say(one_, R"({"t":"watch","windows":[0]})"));
    EXPECT_TRUE(Say(one_, R"({"t":"subscribe","gauges":["PROBE"]})"));
    Frames(1);
    EXPECT_EQ(one_.pictures.size(), 1U);
    EXPECT_TRUE(one_.Last("error").is_null());
}

TEST_F(AudienceTest, PlainRequestsAnswerAndAct) {
    struct Row {
        const char* method;
        const char* path;
        const char* body;
        bool mayTouch;
        unsigned status;
        const char* holds;
    };
    const Row rows[] = {
        {"GET", "gauges", "", true, 200, R"({"gauge":"PROBE","title":"Main"})"},
        {"GET", "gauges/Probe", "", false, 200, R"("key":"LINE KEY 1")"},
        {"GET", "gauges/Probe", "", false, 200, R"("lines":["drawn)"},
        {"GET", "gauges/NONE", "", true, 404, "no such gauge"},
        {"GET", "status", "", false, 200, R"("t":"status")"},
        {"GET", "variables/107", "", false, 200, R"("name":"#107")"},
        {"GET", "variables/#107", "", false, 200, R"("value":)"},
        {"GET", "variables/none", "", false, 404, "no such variable"},
        {"GET", "variables/999999999999", "", false, 404, "no such variable"},
        {"GET", "do", "", true, 404, "no such address"},
        {"POST", "gauges", "", true, 404, "only"},
        {"POST", "do", R"({"t":"pause","on":true})", false, 403, "look only"},
        {"POST", "do", R"({"t":"pause","on":true})", true, 200, "done"},
        {"POST", "do", R"({"t":"radio","nav1":110.95,"nav2":108.1,"adf":1234,"course2":7})", true,
         200, "done"},
        {"POST", "do", R"({"t":"press","gauge":"PROBE","key":"x"})", true, 409, "no key"},
        {"POST", "do", R"({"t":"painted","w":0})", true, 400, "WebSocket"},
        {"POST", "do", R"({"t":"wheel","w":0,"x":1,"y":1,"up":true})", true, 200, "done"},
        {"POST", "do", R"({"t":"wheel","w":1000,"x":1,"y":1,"up":true})", true, 409, "no such"},
        {"POST", "do", "{", true, 400, "not a JSON object"},
        {"POST", "do", R"({"t":"turn","gauge":"A","key":"B","steps":51})", true, 400, "steps"}};
    for (const Row& row : rows) {
        const ApiReply reply =
            AnswerApi(audience_, row.method, row.path, row.body, row.mayTouch, nowS_);
        EXPECT_EQ(reply.status, row.status) << row.path << row.body;
        EXPECT_THAT(reply.json, testing::HasSubstr(row.holds)) << row.path << row.body;
    }
    const SessionStatus status = session_.Status();
    EXPECT_TRUE(status.paused);
    EXPECT_THAT((std::array{status.nav1.frequencyMhz, status.nav2.frequencyMhz,
                            status.adf.frequencyMhz * 1000}),
                testing::Pointwise(testing::DoubleNear(1e-6), {110.95, 108.1, 1234.0}));
}

// Five pages and more than there is time to draw: which displays each frame draws.
TEST_F(AudienceTest, WithoutTimeForAllEveryAddressGetsItsTurns) {
    std::vector<FakeClient> crowd(3);
    one_.watcher.peer = "a";
    two_.watcher.peer = "b";
    ASSERT_TRUE(Say(one_, R"({"t":"watch","windows":[4],"scales":[1]})"));
    ASSERT_TRUE(Say(two_, R"({"t":"watch","windows":[0,2,3,4],"scales":[2,2,2,2]})"));
    for (FakeClient& client : crowd) {
        client.watcher.peer = "b";
        Join(audience_, client.watcher);
        ASSERT_TRUE(Say(client, R"({"t":"watch","windows":[0,2,3,4],"scales":[3,3,3,3]})"));
    }
    const auto drawn = [this](double pixels) {
        std::map<std::string, int> counts;
        for (int frame = 0; frame < 40; ++frame) {
            audience_.pixelsAFrame = pixels;
            Frames(1);
            for (const auto& feed : audience_.feeds) {
                counts[std::to_string(feed->display) + "x" + std::to_string(feed->scale)] +=
                    feed->isDrawn ? 1 : 0;
            }
        }
        EXPECT_EQ(audience_.isOverloaded, pixels < 1e6);
        return counts;
    };
    drawn(1e6);
    EXPECT_EQ(session_.Texts(audience_.feeds[0]->view)[0].text, "drawn 40");
    auto counts = drawn(200000);
    EXPECT_GE(counts["4x1"], 38) << "the one display of an address, nearly always";
    for (const char* feed : {"0x2", "2x2", "3x2", "4x2", "0x3", "2x3", "3x3", "4x3"}) {
        EXPECT_GE(counts[feed], 1) << feed;
    }
    const std::size_t pictures = one_.pictures.size();
    const std::string text = session_.Texts(audience_.feeds[0]->view)[0].text;
    Glance(audience_);
    EXPECT_EQ(session_.Texts(audience_.feeds[0]->view)[0].text, text);
    EXPECT_EQ(one_.pictures.size(), pictures) << "nothing between frames while they are too short";
    for (FakeClient& client : crowd) {
        Leave(audience_, client.watcher);
    }
}

TEST(Turns, AFrameIsGivenWhatThePastOnesHadTimeFor) {
    constexpr double kMany = 5 * kLeastPixelsAFrame;
    const struct {
        double pixels, drawn, tookS, next;
    } rows[] = {{kMany, kMany, 0.03, 1.1 * kMany},
                {kMany, kMany, 0.06, kMany / 2},
                {kMany, kMany / 2, 0.03001, kMany / 2 * 0.03 / 0.03001},
                {kMany, 100 * kMany, 0.06, kMany},
                {kMany, 0, 0.06, kLeastPixelsAFrame},
                {kMany, kMany, 5, kLeastPixelsAFrame},
                {1e9, 0, 0.01, 1U << 28U}};
    for (const auto& row : rows) {
        EXPECT_DOUBLE_EQ(NextPixelsAFrame(row.pixels, row.drawn, row.tookS), row.next) << row.tookS;
    }
}

TEST_F(AudienceTest, AnAddressLeavesOthersAThirdOfWhatMayBeShown) {
    session_.Close();
    for (FakeClient* client : {&one_, &two_}) {
        Leave(audience_, client->watcher);
    }
    audience_ = {};
    ASSERT_TRUE(
        Open("[Window00]\nsize_mm=1100,1100\nident=0\n[Window01]\nsize_mm=1100,1100\n"
             "ident=1\n[Window02]\nsize_mm=1100,1100\nident=2\n"
             "[Window03]\nsize_mm=1100,1100\nident=3\n"));
    OpenAudience(session_, audience_);
    FakeClient other;
    for (FakeClient* client : {&one_, &two_, &other}) {
        client->watcher.peer = client == &other ? "b" : "a";
        Join(audience_, client->watcher);
    }
    const auto scales = [](const FakeClient& client) {
        std::vector<int> list;
        for (const WatchedDisplay& display : client.watcher.displays) {
            if (display.feed) {
                list.push_back(display.feed->info.scale);
            }
        }
        return list;
    };
    constexpr const char* kThree = R"({"t":"watch","windows":[4,5,6],"scales":[3,3,3]})";
    for (int again = 0; again < 2; ++again) {  // its own displays do not stand in its way
        ASSERT_TRUE(Say(one_, kThree));
        EXPECT_THAT(scales(one_), ElementsAre(3, 3, 3));
    }
    ASSERT_TRUE(Say(two_, R"({"t":"watch","windows":[7],"scales":[3]})"));
    EXPECT_THAT(scales(two_), ElementsAre(1)) << "the same address";
    ASSERT_TRUE(Say(other, R"({"t":"watch","windows":[7],"scales":[3]})"));
    EXPECT_THAT(scales(other), ElementsAre(3));
    Leave(audience_, other.watcher);
}

TEST_F(AudienceTest, WindowsThatOpenAreTold) {
    ASSERT_TRUE(Say(one_, R"({"t":"toggle","ident":4001})"));
    Frames(1);
    EXPECT_EQ(two_.Last("window")["w"], 1);
    EXPECT_EQ(two_.Last("window")["visible"], true);
    ASSERT_TRUE(Say(two_, R"({"t":"watch","windows":[1],"scales":[2]})"));
    Frames(1);
    EXPECT_EQ(two_.pictures.size(), 1U);
}

// Rows in order: what the file holds, and what both pages are then told of it.
TEST_F(AudienceTest, TheFlightLogIsToldOnceAndThenWhatIsNew) {
    const struct {
        const char *file, *told;  // empty: nothing
        bool more;
    } rows[] = {
        {"A\n", "A\n", true},
        {"A\n", "", false},
        {"A\nB\nC\n", "B\nC\n", true},
        {"D\nB\nC\nE\n", "D\nB\nC\nE\n", false},
        {"D\nB\nC\nE\nF\n", "F\n", true},
    };
    std::filesystem::create_directories(folder_ / "avq/FlightLog");
    for (const auto& row : rows) {
        SCOPED_TRACE(row.file);
        WriteFile("avq/FlightLog/fpl.log", row.file);
        for (FakeClient* client : {&one_, &two_}) {
            client->messages.clear();
        }
        Frames(50);
        for (FakeClient* client : {&one_, &two_}) {
            std::vector<Json> logs;
            std::ranges::copy_if(client->messages, std::back_inserter(logs),
                                 [](const Json& message) { return message["t"] == "log"; });
            ASSERT_EQ(logs.size(), *row.told == '\0' ? 0U : 1U);
            if (!logs.empty()) {
                EXPECT_EQ(logs[0]["lines"], row.told);
                EXPECT_EQ(logs[0]["more"], row.more);
            }
        }
    }
}

}  // namespace
}  // namespace panelhost
