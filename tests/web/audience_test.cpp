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
    ASSERT_EQ(one_.pictures.size(), 2U);
    ASSERT_EQ(two_.pictures.size(), 1U);
    EXPECT_EQ(two_.pictures[0], one_.pictures[1]) << "encoded once";
    EXPECT_THAT(one_.pictures[0]->substr(0, 4), std::string("\2\1\0\0", 4));
    EXPECT_THAT(one_.pictures[1]->substr(0, 4), std::string("\3\1\4\0", 4));
    EXPECT_EQ(audience_.feeds.size(), 2U);
    Frames(20);
    EXPECT_EQ(one_.pictures.size(), 2U) << "no second one before the first is shown";
    ASSERT_TRUE(Say(two_, R"({"t":"painted","w":4})"));
    Frames(4);
    EXPECT_EQ(two_.pictures.size(), 2U);
    ASSERT_TRUE(Say(two_, R"({"t":"watch","windows":[]})"));
    ASSERT_TRUE(Say(two_, R"({"t":"painted","w":4})"));
    Frames(4);
    EXPECT_EQ(two_.pictures.size(), 2U);
}

TEST_F(AudienceTest, PlacesAreDesignPixelsAtEveryScale) {
    ASSERT_TRUE(Say(one_, R"({"t":"watch","windows":[0],"scales":[1]})"));
    ASSERT_TRUE(Say(two_, R"({"t":"watch","windows":[0],"scales":[3]})"));
    Frames(2);
    const Json areas = one_.Last("areas")["areas"];
    EXPECT_EQ(areas[0]["x"], 12);
    EXPECT_EQ(areas, two_.Last("areas")["areas"]);
    EXPECT_EQ(one_.Last("texts")["texts"][0][1], two_.Last("texts")["texts"][0][1]);
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
    Frames(10);
    EXPECT_EQ(two_.Last("status")["paused"], false);
    ASSERT_TRUE(Say(two_, R"({"t":"pause","on":true})"));
    Frames(6);
    EXPECT_EQ(two_.Last("status")["paused"], true);
}

TEST_F(AudienceTest, WindowsThatOpenAreTold) {
    ASSERT_TRUE(Say(one_, R"({"t":"toggle","ident":4001})"));
    Frames(1);
    EXPECT_EQ(two_.Last("window")["w"], 1);
    EXPECT_EQ(two_.Last("window")["visible"], true);
    ASSERT_TRUE(Say(two_, R"({"t":"watch","windows":[1],"scales":[2]})"));
    Frames(2);
    EXPECT_EQ(two_.pictures.size(), 1U);
}

}  // namespace
}  // namespace panelhost
