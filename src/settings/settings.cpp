#include "settings/settings.h"

#include <algorithm>
#include <iterator>
#include <variant>
#include <vector>

#include "base/module_state.h"
#include "base/sim_folder.h"
#include "base/text.h"
#include "platform/files.h"

namespace avq1 {
namespace {

constexpr std::int32_t kFirstGeneration = 9;
constexpr std::int32_t kLaterGeneration = 10;
constexpr std::size_t kMaxLineLength = 298;
constexpr std::int32_t kLowestTrafficRangeFt = 1000;

const StateReset kReset([] {
    settings = {};
    SettingsLoaded = 0;
    SimVersion = kFirstGeneration;
});

enum class ValueKind {
    Whole,
    WholeAboveZero,     // a value whose whole part is 0 or less leaves the setting alone
    DistanceAboveZero,  // the same, for nautical miles
    OnWhenAboveZero,
    HundredsOfFeet,  // written in feet; below 1000 ft it leaves the setting alone
    Text,
    UpperText,
};

using Member = std::variant<std::int32_t Settings::*, double Settings::*, std::string Settings::*>;

enum class Files { UserOnly, AircraftOnly, Both };

struct SettingRow {
    std::string_view key;
    ValueKind kind;
    Member member;
    Files files;
};

const SettingRow kRows[] = {
    {"ArmPauseAtTod", ValueKind::Whole, &Settings::ArmPauseAtTod, Files::UserOnly},
    {"DecLatLonDisp", ValueKind::WholeAboveZero, &Settings::DecLatLonDisp, Files::UserOnly},
    {"DispAppPtrnAlts", ValueKind::Whole, &Settings::DispAppPtrnAlts, Files::Both},
    {"DispETALocalTime", ValueKind::Whole, &Settings::DispETALocalTime, Files::UserOnly},
    {"DispPrevWpt", ValueKind::Whole, &Settings::DispPrevWpt, Files::Both},
    {"EadiDualCue", ValueKind::Whole, &Settings::EadiDualCue, Files::Both},
    {"EADIHdgTape", ValueKind::Whole, &Settings::EADIHdgTape, Files::Both},
    {"EhsiStaticHdgPointer", ValueKind::Whole, &Settings::EhsiStaticHdgPointer, Files::Both},
    {"ExpandEADI", ValueKind::Whole, &Settings::ExpandEADI, Files::Both},
    {"ExpandEADILnav", ValueKind::Whole, &Settings::ExpandEADILnav, Files::Both},
    {"FlightPlansFolder", ValueKind::Text, &Settings::FlightPlansFolder, Files::UserOnly},
    {"FlyoverWptChgDist", ValueKind::DistanceAboveZero, &Settings::FlyoverWptChgDist, Files::Both},
    {"LoadFuelonFlightPlanLoad", ValueKind::Whole, &Settings::LoadFuelonFlightPlanLoad,
     Files::UserOnly},
    {"Lnav1xAtTod", ValueKind::Whole, &Settings::Lnav1xAtTod, Files::UserOnly},
    // Only an aircraft can switch it off again.
    {"LnavOffAtLastWpt", ValueKind::WholeAboveZero, &Settings::LnavOffAtLastWpt, Files::UserOnly},
    {"LnavOffAtLastWpt", ValueKind::Whole, &Settings::LnavOffAtLastWpt, Files::AircraftOnly},
    {"LnavSetEnRouteFreqs", ValueKind::Whole, &Settings::LnavSetEnRouteFreqs, Files::Both},
    {"ParkingFile", ValueKind::Text, &Settings::ParkingFile, Files::Both},
    {"SetDestLoadTowerViewDist", ValueKind::OnWhenAboveZero, &Settings::SetDestLoadTowerViewDist,
     Files::UserOnly},
    {"SetSpdOffwhenAPMasterSetOff", ValueKind::Whole, &Settings::SetSpdOffwhenAPMasterSetOff,
     Files::Both},
    {"SetWptBaro", ValueKind::Whole, &Settings::SetWptBaro, Files::Both},
    {"ShowTodBodIndicators", ValueKind::Whole, &Settings::ShowTodBodIndicators, Files::Both},
    {"TcasVertRange", ValueKind::HundredsOfFeet, &Settings::TcasVertRange, Files::Both},
    {"VnavOffAtLastWpt", ValueKind::Whole, &Settings::VnavOffAtLastWpt, Files::Both},
    {"VnavOffOnManAltChg", ValueKind::Whole, &Settings::VnavOffOnManAltChg, Files::Both},
    {"VnavSetAlts", ValueKind::Whole, &Settings::VnavSetAlts, Files::Both},
    {"VnavSetSpd", ValueKind::WholeAboveZero, &Settings::VnavSetSpd, Files::Both},
    {"VnavSetSpdOffOnManSpdChg", ValueKind::Whole, &Settings::VnavSetSpdOffOnManSpdChg,
     Files::Both},
    {"WeightUnit", ValueKind::UpperText, &Settings::WeightUnit, Files::Both},
    {"WptChgDist", ValueKind::DistanceAboveZero, &Settings::WptChgDist, Files::Both},
    {"WptProcChgDist", ValueKind::DistanceAboveZero, &Settings::WptProcChgDist, Files::Both},
};

bool Accepts(Files files, SettingsFile file) {
    return files == Files::Both || (files == Files::UserOnly) == (file == SettingsFile::User);
}

void StoreValue(const SettingRow& row, std::string_view value, Settings& target) {
    const std::int32_t whole = ToInteger(value);
    const auto storeWhole = [&](std::int32_t number) {
        target.*std::get<std::int32_t Settings::*>(row.member) = number;
    };
    switch (row.kind) {
        case ValueKind::Whole:
            storeWhole(whole);
            break;
        case ValueKind::WholeAboveZero:
            if (whole > 0) {
                storeWhole(whole);
            }
            break;
        case ValueKind::DistanceAboveZero:
            if (whole > 0) {
                target.*std::get<double Settings::*>(row.member) = ToNumber(value);
            }
            break;
        case ValueKind::OnWhenAboveZero:
            storeWhole(whole > 0 ? 1 : 0);
            break;
        case ValueKind::HundredsOfFeet:
            if (whole >= kLowestTrafficRangeFt) {
                storeWhole(whole / 100);
            }
            break;
        case ValueKind::Text:
            target.*std::get<std::string Settings::*>(row.member) = SettingText(value);
            break;
        case ValueKind::UpperText:
            target.*std::get<std::string Settings::*>(row.member) = ToUpper(SettingText(value));
            break;
    }
}

}  // namespace

Settings settings;
std::int32_t SettingsLoaded = 0;
std::int32_t SimVersion = kFirstGeneration;

// Blanks travel through the file's two-word form as asterisks, so neither character can be told
// from the other in a text.
std::string SettingText(std::string_view value) {
    std::string text(value);
    std::replace(text.begin(), text.end(), '*', ' ');
    return text;
}

void ApplySetting(std::string_view key, std::string_view value, SettingsFile file,
                  Settings& target) {
    for (const SettingRow& row : kRows) {
        if (Accepts(row.files, file) && EqualsIgnoreCase(row.key, key)) {
            StoreValue(row, value, target);
        }
    }
}

void ApplySettingsText(std::string_view text, Settings& target) {
    LineReader lines(text, kMaxLineLength);
    std::string_view line;
    while (lines.Next(line)) {
        std::string_view key;
        std::string_view value;
        if (SplitSetting(line, key, value)) {
            ApplySetting(key, value, SettingsFile::User, target);
        }
    }
}

void LoadSettings() {
    std::string text;
    if (ReadWholeFile(SimPath("\\avq\\avq.cfg"), text)) {
        ApplySettingsText(text, settings);
    }
    SettingsLoaded = 1;
    DetectSimVersion();
}

void DetectSimVersion() {
    static constexpr std::string_view kLaterEntries[] = {"fsx.exe", "ace.exe", "simobjects",
                                                         "Missions"};
    constexpr std::ptrdiff_t kEntriesNeeded = 3;
    std::vector<std::string> names;
    if (!ListFolder(SimFolder.empty() ? "\\" : SimFolder, names)) {
        return;
    }
    const auto found = std::count_if(names.begin(), names.end(), [](const std::string& name) {
        return std::any_of(
            std::begin(kLaterEntries), std::end(kLaterEntries),
            [&name](std::string_view entry) { return EqualsIgnoreCase(entry, name); });
    });
    if (found >= kEntriesNeeded) {
        SimVersion = kLaterGeneration;
    }
}

}  // namespace avq1
