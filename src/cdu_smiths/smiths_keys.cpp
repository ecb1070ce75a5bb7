#include "cdu_smiths/smiths_keys.h"

namespace avq1 {
namespace {

constexpr std::int32_t kUnitWindowIdent = 4012;

}  // namespace

const std::array<KeyArea, kSmithsKeyCount> kSmithsKeys = {{
    // function and paging keys
    {"INIT\nREF", {51, 298, 44, 30}},
    {"RTE", {104, 298, 44, 30}},
    {"CLB", {153, 298, 44, 30}},
    {"CRZ", {206, 298, 44, 30}},
    {"DES", {258, 298, 44, 30}},
    {"DIR\nINTC", {51, 338, 44, 30}},
    {"LEGS", {104, 338, 44, 30}},
    {"DEP\nARR", {153, 338, 44, 30}},
    {"HOLD", {206, 338, 44, 30}},
    {"PROG", {258, 338, 44, 30}},
    {"EXEC", {318, 338, 44, 30}},
    {"FIX", {104, 377, 44, 30}},
    {"PREV\nPAGE", {51, 418, 46, 34}},
    {"NEXT\nPAGE", {104, 418, 46, 34}},
    // line select keys L1 to L6, R1 to R6
    {"Line select 1 left", {7, 68, 46, 34}, nullptr, 0, KeyArt::LineKey},
    {"Line select 2 left", {7, 100, 46, 34}, nullptr, 0, KeyArt::LineKey},
    {"Line select 3 left", {7, 132, 46, 34}, nullptr, 0, KeyArt::LineKey},
    {"Line select 4 left", {7, 165, 46, 34}, nullptr, 0, KeyArt::LineKey},
    {"Line select 5 left", {7, 197, 46, 34}, nullptr, 0, KeyArt::LineKey},
    {"Line select 6 left", {7, 230, 46, 34}, nullptr, 0, KeyArt::LineKey},
    {"Line select 1 right", {379, 68, 46, 34}, nullptr, 0, KeyArt::LineKey},
    {"Line select 2 right", {379, 100, 46, 34}, nullptr, 0, KeyArt::LineKey},
    {"Line select 3 right", {379, 132, 46, 34}, nullptr, 0, KeyArt::LineKey},
    {"Line select 4 right", {379, 165, 46, 34}, nullptr, 0, KeyArt::LineKey},
    {"Line select 5 right", {379, 197, 46, 34}, nullptr, 0, KeyArt::LineKey},
    {"Line select 6 right", {379, 230, 46, 34}, nullptr, 0, KeyArt::LineKey},
    // letters
    {"A", {172, 381, 36, 36}},
    {"B", {212, 381, 36, 36}},
    {"C", {252, 381, 36, 36}},
    {"D", {293, 381, 36, 36}},
    {"E", {332, 381, 36, 36}},
    {"F", {172, 422, 36, 36}},
    {"G", {212, 422, 36, 36}},
    {"H", {252, 422, 36, 36}},
    {"I", {293, 422, 36, 36}},
    {"J", {332, 422, 36, 36}},
    {"K", {172, 461, 36, 36}},
    {"L", {212, 461, 36, 36}},
    {"M", {252, 461, 36, 36}},
    {"N", {293, 461, 36, 36}},
    {"O", {332, 461, 36, 36}},
    {"P", {172, 502, 36, 36}},
    {"Q", {212, 502, 36, 36}},
    {"R", {252, 502, 36, 36}},
    {"S", {293, 502, 36, 36}},
    {"T", {332, 502, 36, 36}},
    {"U", {172, 542, 36, 36}},
    {"V", {212, 542, 36, 36}},
    {"W", {252, 542, 36, 36}},
    {"X", {293, 542, 36, 36}},
    {"Y", {332, 542, 36, 36}},
    {"Z", {172, 582, 36, 36}},
    // editing keys
    {"SP", {212, 582, 34, 34}},
    {"DEL", {252, 582, 36, 34}},
    {"/", {293, 582, 34, 34}},
    {"CLR", {332, 582, 34, 34}, nullptr, 0, KeyArt::Cap, true},
    // digits, point and sign
    {"1", {51, 461, 34, 34}},
    {"2", {90, 461, 34, 34}},
    {"3", {130, 461, 34, 34}},
    {"4", {51, 502, 34, 34}},
    {"5", {90, 502, 34, 34}},
    {"6", {130, 502, 34, 34}},
    {"7", {51, 542, 34, 34}},
    {"8", {90, 542, 34, 34}},
    {"9", {130, 542, 34, 34}},
    {".", {51, 582, 34, 34}},
    {"0", {90, 582, 34, 34}},
    {"+/-", {130, 582, 34, 34}},
    // the screen's centre
    {"Unit window", {160, 100, 92, 92}, ToggleKeyWindow, kUnitWindowIdent, KeyArt::None},
}};

}  // namespace avq1
