#include "cdu/fields.h"

#include <algorithm>

#include "flightplan/flight_plan.h"

namespace avq1 {
namespace {

bool IsVisible(const FieldRow& field) {
    return field.visible == nullptr || field.visible(field);
}

}  // namespace

std::string_view TextOf(EntryResult result) {
    switch (result) {
        case EntryResult::InvalidEntry:
            return "INVALID ENTRY";
        case EntryResult::InvalidDelete:
            return "INVALID DELETE";
        case EntryResult::NotInDatabase:
            return "NOT IN DATABASE";
        case EntryResult::NoActiveRoute:
            return "NO ACTIVE ROUTE";
        case EntryResult::PlanFull:
            return kPlanFullMessage;
        case EntryResult::None:
        case EntryResult::Accepted:
            break;
    }
    return {};
}

void DrawFields(std::span<const FieldRow> fields, Screen& screen) {
    for (const FieldRow& field : fields) {
        if (!IsVisible(field)) {
            continue;
        }
        screen.PutText(field.labelStyle, field.labelAt, UnitText(field.label));
        if (field.show != nullptr) {
            UnitText value;
            field.show(field, value);
            screen.PutText(field.style, field.valueAt, value);
        }
    }
}

const FieldRow* FieldOfLine(std::span<const FieldRow> fields, std::int32_t line) {
    const auto found = std::ranges::find_if(fields, [line](const FieldRow& field) {
        return line != 0 && field.line == line && IsVisible(field);
    });
    return found == fields.end() ? nullptr : &*found;
}

FieldOutcome PressField(const FieldRow& field, const PilotEntry& entry) {
    if (entry.deleting) {
        return {field.erase != nullptr ? field.erase(field) : EntryResult::InvalidDelete};
    }
    if (!entry.text.empty() && !field.isPrompt) {
        const EntryResult result =
            field.enter != nullptr ? field.enter(field, entry.text) : EntryResult::InvalidEntry;
        return {result};
    }
    FieldOutcome outcome;
    if (field.press != nullptr) {
        outcome.result = field.press(field);
    }
    if (outcome.result == EntryResult::None || outcome.result == EntryResult::Accepted) {
        outcome.opens = field.opens;
    }
    return outcome;
}

}  // namespace avq1
