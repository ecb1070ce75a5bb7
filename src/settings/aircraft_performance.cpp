#include "settings/aircraft_performance.h"

#include <variant>

#include "base/module_state.h"
#include "base/sim_folder.h"
#include "base/text.h"
#include "platform/files.h"
#include "settings/performance_tables.h"
#include "settings/settings.h"

namespace avq1 {
namespace {

constexpr std::size_t kMaxLineLength = 300;

const StateReset kReset([] {
    AircraftName.clear();
    performance = {};
});

enum class ValueKind {
    Whole,
    WholeAboveZero,  // a value of 0 or less leaves the default
    Real,
    RealToWhole,
    ClimbTas,   // a speed raised by the indicated-to-true rule at 13000 ft, cut to whole knots
    CruiseTas,  // the same at 15000 ft
    Minutes,    // 0 becomes 1
    Thrust,     // pounds, or thousands of pounds
    Text,
    CommaList,  // kept between commas
};

using Member = std::variant<std::int32_t AircraftPerformance::*, double AircraftPerformance::*,
                            std::string AircraftPerformance::*>;

struct AircraftRow {
    std::string_view key;
    ValueKind kind;
    Member member;
};

using Performance = AircraftPerformance;

// A key with two rows sets two values. The keys shared with the settings file have their rows
// there.
const AircraftRow kRows[] = {
    {"ClimbTas", ValueKind::ClimbTas, &Performance::climbIas},
    {"CruiseTas", ValueKind::CruiseTas, &Performance::cruiseIas},
    {"DescentTas", ValueKind::ClimbTas, &Performance::descentIas},
    {"ClimbIas", ValueKind::RealToWhole, &Performance::climbIas},
    {"ClimbRate", ValueKind::RealToWhole, &Performance::climbRate},
    {"CruiseIas", ValueKind::RealToWhole, &Performance::cruiseIas},
    {"DescentRate", ValueKind::Real, &Performance::descentRate},
    {"DescentIas", ValueKind::RealToWhole, &Performance::descentIas},
    {"DescentIas", ValueKind::RealToWhole, &Performance::holdIas},
    {"BestHoldIas", ValueKind::RealToWhole, &Performance::holdIas},
    {"FPA", ValueKind::Real, &Performance::flightPathAngleDeg},
    {"HoldLegMins", ValueKind::Minutes, &Performance::holdLegMinutes},
    {"ModelId", ValueKind::Text, &Performance::modelId},
    {"EngThrust", ValueKind::Thrust, &Performance::engineThrust},
    {"ClimbIasMin", ValueKind::Real, &Performance::climbIasMin},
    {"ClimbIasMax", ValueKind::Real, &Performance::climbIasMax},
    {"CruiseIasMin", ValueKind::Real, &Performance::cruiseIasMin},
    {"CruiseIasMax", ValueKind::Real, &Performance::cruiseIasMax},
    {"DescentIasMin", ValueKind::Real, &Performance::descentIasMin},
    {"DescentIasMax", ValueKind::Real, &Performance::descentIasMax},
    {"V1", ValueKind::Whole, &Performance::v1},
    {"VR", ValueKind::Whole, &Performance::vr},
    {"V2", ValueKind::Whole, &Performance::v2},
    {"TOFLAPS", ValueKind::Whole, &Performance::takeoffFlaps},
    {"TOFLAPSRANGE", ValueKind::CommaList, &Performance::takeoffFlapsRange},
    {"LDGFLAPS", ValueKind::Whole, &Performance::landingFlaps},
    {"APPRFLAPSMIN", ValueKind::Text, &Performance::approachFlapsMin},
    {"APPRFLAPSMID", ValueKind::Text, &Performance::approachFlapsMid},
    {"APPRFLAPSMAX", ValueKind::Text, &Performance::approachFlapsMax},
    {"VREFMIN", ValueKind::Whole, &Performance::vrefMin},
    {"VREFMID", ValueKind::Whole, &Performance::vrefMid},
    {"VREFMAX", ValueKind::Whole, &Performance::vrefMax},
    {"VREF", ValueKind::Whole, &Performance::vref},
    {"CostIndex", ValueKind::Whole, &Performance::costIndex},
    {"MaxCruise", ValueKind::Whole, &Performance::maxCruiseAltitude},
    {"MinVnavIas", ValueKind::Real, &Performance::minVnavIas},
    {"ClbSpdRest", ValueKind::Real, &Performance::climbSpeedRestriction},
    {"ClbAltRest", ValueKind::Real, &Performance::climbRestrictionAltitude},
    {"DescSpdRest", ValueKind::Real, &Performance::descentSpeedRestriction},
    {"DescAltRest", ValueKind::Real, &Performance::descentRestrictionAltitude},
    {"PerformanceData", ValueKind::Text, &Performance::performanceData},
    {"VnavSetSpdRestDist", ValueKind::WholeAboveZero, &Performance::vnavSpeedDistanceNm},
    {"ShowFloatingTodBodIndicators", ValueKind::Whole, &Performance::showFloatingTodBod},
};

std::int32_t ThousandsOfPounds(std::int32_t thrust) {
    constexpr std::int32_t kMostThousands = 1000;
    return thrust > kMostThousands ? thrust / 1000 : thrust;
}

void StoreValue(const AircraftRow& row, std::string_view value, AircraftPerformance& target) {
    const auto storeWhole = [&](std::int32_t number) {
        target.*std::get<std::int32_t Performance::*>(row.member) = number;
    };
    const auto storeReal = [&](double number) {
        target.*std::get<double Performance::*>(row.member) = number;
    };
    const auto storeText = [&](std::string text) {
        target.*std::get<std::string Performance::*>(row.member) = std::move(text);
    };
    switch (row.kind) {
        case ValueKind::Whole:
            storeWhole(ToInteger(value));
            break;
        case ValueKind::WholeAboveZero:
            if (ToInteger(value) > 0) {
                storeWhole(ToInteger(value));
            }
            break;
        case ValueKind::Real:
            storeReal(ToNumber(value));
            break;
        case ValueKind::RealToWhole:
            storeWhole(TruncateToInteger(ToNumber(value)));
            break;
        case ValueKind::ClimbTas:
            storeWhole(TruncateToInteger(ToNumber(value) * (1 + 0.015 * 13)));
            break;
        case ValueKind::CruiseTas:
            storeWhole(TruncateToInteger(ToNumber(value) * (1 + 0.015 * 15)));
            break;
        case ValueKind::Minutes:
            storeReal(ToNumber(value) == 0 ? 1.0 : ToNumber(value));
            break;
        case ValueKind::Thrust:
            storeWhole(ThousandsOfPounds(ToInteger(value)));
            break;
        case ValueKind::Text:
            storeText(SettingText(value));
            break;
        case ValueKind::CommaList:
            storeText("," + SettingText(value) + ",");
            break;
    }
}

}  // namespace

AircraftPerformance performance;
std::string AircraftName;

void ApplyAircraftText(std::string_view text, AircraftPerformance& target) {
    LineReader lines(text, kMaxLineLength);
    std::string_view line;
    while (lines.Next(line)) {
        std::string_view key;
        std::string_view value;
        if (!SplitSetting(line, key, value)) {
            continue;
        }
        for (const AircraftRow& row : kRows) {
            if (EqualsIgnoreCase(row.key, key)) {
                StoreValue(row, value, target);
            }
        }
        ApplySetting(key, value, SettingsFile::Aircraft, settings);
    }
}

void DeriveMachLimits(AircraftPerformance& target) {
    target.climbMachMin = IndicatedToMach(target.climbIasMin, kSpeedLimitAltitudeFt);
    target.climbMachMax = IndicatedToMach(target.climbIasMax, kSpeedLimitAltitudeFt);
    target.cruiseMachMin = IndicatedToMach(target.cruiseIasMin, kSpeedLimitAltitudeFt);
    target.cruiseMachMax = IndicatedToMach(target.cruiseIasMax, kSpeedLimitAltitudeFt);
    target.descentMachMin = IndicatedToMach(target.descentIasMin, kSpeedLimitAltitudeFt);
    target.descentMachMax = IndicatedToMach(target.descentIasMax, kSpeedLimitAltitudeFt);
}

std::int32_t EconomySpeed(double leastIas, double greatestIas, std::int32_t costIndex) {
    return TruncateToInteger(leastIas + (greatestIas - leastIas) * 0.005 * costIndex);
}

void DeriveSpeeds(AircraftPerformance& target) {
    if (target.costIndex >= 0) {
        target.climbIas = EconomySpeed(target.climbIasMin, target.climbIasMax, target.costIndex);
        target.cruiseIas = EconomySpeed(target.cruiseIasMin, target.cruiseIasMax, target.costIndex);
        target.descentIas =
            EconomySpeed(target.descentIasMin, target.descentIasMax, target.costIndex);
    }
    target.climbMach = IndicatedToMach(target.climbIas, kClimbSpeedAltitudeFt);
    target.cruiseMach = IndicatedToMach(target.cruiseIas, kCruiseSpeedAltitudeFt);
    target.descentMach = IndicatedToMach(target.descentIas, kCruiseSpeedAltitudeFt);
    target.climbTas = IndicatedToTrue(target.climbIas, kClimbSpeedAltitudeFt);
    target.descentTas = IndicatedToTrue(target.descentIas, kClimbSpeedAltitudeFt);
}

void LoadAircraftFile() {
    std::string text;
    if (!ReadWholeFile(SimPath("\\avq\\Aircraft\\") + AircraftName + ".cfg", text)) {
        return;
    }
    ApplyAircraftText(text, performance);
    DeriveMachLimits(performance);
    if (!performance.performanceData.empty()) {
        LoadPerformanceTables();
    }
    DeriveSpeeds(performance);
}

}  // namespace avq1
