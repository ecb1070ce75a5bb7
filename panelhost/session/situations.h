// panelhost/session/situations.h - named places and states of the aircraft, for looking at
// displays.
//
// One row a situation: position, altitude, speed, radios, autopilot and traffic. The page's menu
// and the script command `situation` both apply a row through the Session's own commands. What the
// module has engaged stays engaged; the wind and the fuel stay as they are.
#pragma once

#include <span>
#include <string_view>

#include "panelhost/session/session.h"

namespace panelhost {

enum class SituationHold { None, Heading, Approach };

struct Situation {
    const char* name;   // one word, for scripts
    const char* title;  // for the menu
    double latitude;
    double longitude;
    double altitudeFt;  // below the ground: standing on it
    double headingTrue;
    double indicatedAirspeedKt;
    int nav1Frequency;  // hundredths of a MHz
    int nav1CourseTrue;
    int nav2Frequency;
    int adfKhz;
    bool autopilot;
    SituationHold hold;
    const char* traffic = "";  // scene of other aircraft, where the folder has it
};

std::span<const Situation> Situations();
const Situation* FindSituation(std::string_view name);  // null: no such row
void ApplySituation(Session& session, const Situation& situation);

}  // namespace panelhost
