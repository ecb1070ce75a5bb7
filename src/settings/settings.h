// settings/settings.h - the user's switches from \avq\avq.cfg, read once, and what the same pass
// decides: the simulator generation.
//
// Numbers without a unit are switches, on at 1. A missing file leaves every default; unknown keys
// are ignored; the last accepted value stands.
// The aircraft file and some unit pages may overwrite values later.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace avq1 {

struct Settings {
    std::int32_t ArmPauseAtTod = 0;
    std::int32_t DecLatLonDisp = 0;
    std::int32_t DispAppPtrnAlts = 0;
    std::int32_t DispETALocalTime = 0;
    std::int32_t DispPrevWpt = 0;
    std::int32_t EadiDualCue = 0;
    std::int32_t EADIHdgTape = 0;
    std::int32_t EhsiStaticHdgPointer = 0;
    std::int32_t ExpandEADI = 0;
    std::int32_t ExpandEADILnav = 0;
    std::string FlightPlansFolder;
    double FlyoverWptChgDist = 1.5;  // nm
    std::int32_t LoadFuelonFlightPlanLoad = 0;
    std::int32_t Lnav1xAtTod = 0;
    std::int32_t LnavOffAtLastWpt = 0;
    std::int32_t LnavSetEnRouteFreqs = 0;
    std::string ParkingFile;
    std::int32_t SetDestLoadTowerViewDist = 0;
    std::int32_t SetSpdOffwhenAPMasterSetOff = 0;
    std::int32_t SetWptBaro = 0;
    std::int32_t ShowTodBodIndicators = 1;
    std::int32_t TcasVertRange = 140;  // hundreds of feet
    std::int32_t VnavOffAtLastWpt = 0;
    std::int32_t VnavOffOnManAltChg = 0;
    std::int32_t VnavSetAlts = 1;
    std::int32_t VnavSetSpd = 1;  // 2: suspended by a manual speed change
    std::int32_t VnavSetSpdOffOnManSpdChg = 0;
    std::string WeightUnit;       // "KGS", anything else means pounds
    double WptChgDist = 3.0;      // nm
    double WptProcChgDist = 2.5;  // nm
};

inline constexpr double kPoundsPerKilogram = 2.20462262;

extern Settings settings;
extern std::int32_t SettingsLoaded;  // 1 once LoadSettings has run
extern std::int32_t SimVersion;      // 9, or 10 for the later simulator generation

// Reads the settings file, then detects the simulator version. Sets SettingsLoaded whatever
// happens.
void LoadSettings();
void DetectSimVersion();

// Applies one settings text to `target` (what LoadSettings does with the file's contents).
void ApplySettingsText(std::string_view text, Settings& target);

// A text value of either file, its blanks restored.
std::string SettingText(std::string_view value);

// Which file a line comes from: the aircraft file may set most of the keys again, not all.
enum class SettingsFile { User, Aircraft };

// Applies one "key=value" to `target`; a key that is unknown or not of this file does nothing.
void ApplySetting(std::string_view key, std::string_view value, SettingsFile file,
                  Settings& target);

}  // namespace avq1
