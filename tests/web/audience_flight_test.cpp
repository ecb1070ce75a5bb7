// The real module flown over the socket's messages: what a pilot does there has the same effect
// whoever watches meanwhile.
#include <cmath>

#include "panelhost/base/text.h"
#include "panelhost/web/audience.h"
#include "support/leak_suppressions.h"
#include "tests/panelhost/host_fixture.h"

namespace panelhost {
namespace {

struct Sink : Outlet {
    Watcher watcher;
    Sink() { watcher.outlet = this; }
    void Send(bool, SharedText) override {}
};

// At which frame a pilot says what: LNAV off, a turn by the heading knob, another page of the unit,
// every window closed, LNAV on again.
struct Spoken {
    int frame;
    const char* text;
};
constexpr Spoken kPilot[] = {
    {20, R"({"t":"press","gauge":"LNAV","key":"LNAV"})"},
    {40, R"({"t":"turn","gauge":"EFS50_EHSI_CNTR","key":"HDG","steps":25})"},
    {90, R"({"t":"press","gauge":"MCU","key":"LEGS"})"},
    {120, R"({"t":"toggle","ident":0})"},
    {200, R"({"t":"press","gauge":"LNAV","key":"LNAV"})"},
};
constexpr const char* kWatch = R"({"t":"watch","windows":[0,13,34],"scales":[1,1,2]})";

class AudienceFlightTest : public HostTest {
  protected:
    void SetUp() override {
        HostTest::SetUp();
        CopyDemo();
    }
    // The flight with the pilot alone, or with pages that come, go and show all they get.
    std::string Flown(bool watched) {
        EXPECT_TRUE(session_.Open(options_)) << session_.error();
        StartDemo();
        Audience audience;
        Sink pilot;
        Sink page;
        OpenAudience(session_, audience);
        Join(audience, pilot.watcher);
        Join(audience, page.watcher);
        const auto say = [&audience](Sink& from, const char* text) {
            EXPECT_TRUE(ObeyMessage(audience, from.watcher, ParseClientMessage(text))) << text;
        };
        std::string trace;
        for (int frame = 0; frame < 400; ++frame) {
            if (watched && frame % 90 == 15) {
                say(page, kWatch);
            } else if (watched && frame % 90 == 75) {
                say(page, R"({"t":"watch","windows":[]})");
            }
            for (const Spoken& spoken : kPilot) {
                if (spoken.frame == frame) {
                    say(pilot, spoken.text);
                    Glance(audience);
                }
            }
            RunFrame(audience, 1, 0.04, 100 + 0.04 * frame);
            for (WatchedDisplay& display : page.watcher.displays) {
                display.picturesUnshown = 0;
            }
            const SessionStatus status = session_.Status();
            trace += Format("%.17g %.17g %.17g %d\n", status.latitude, status.longitude,
                            status.bankRightDeg,
                            static_cast<int>(session_.FindVariable("avq_lnav_mode")->number));
        }
        Leave(audience, page.watcher);
        Leave(audience, pilot.watcher);
        session_.Close();
        return trace;
    }
};

TEST_F(AudienceFlightTest, WhatAPilotSaysHasTheSameEffectWhoeverWatches) {
    const std::string alone = Flown(false);
    const std::vector<std::string_view> lines = Lines(alone);
    EXPECT_TRUE(lines[10].ends_with(" 1"));
    EXPECT_TRUE(lines[100].ends_with(" 0"));
    EXPECT_GT(std::fabs(*ToNumber(SplitOn(lines[100], ' ')[2])), 5) << "it turns";
    EXPECT_TRUE(lines[390].ends_with(" 1")) << "LNAV engages with every window closed";
    EXPECT_TRUE(Flown(true) == alone);
}

}  // namespace
}  // namespace panelhost
