#include <algorithm>
#include <array>

#include "base/text.h"
#include "navdb/navdata_text.h"
#include "navdb/procedures.h"
#include "navdb/section_index.h"

namespace avq1 {
namespace {

constexpr std::size_t kMaxFields = 10;
using Fields = std::array<std::string_view, kMaxFields>;

// What a procedure file's line is to its reader.
enum class LineKind { BlockEnd, Blank, Record };

// Walks the first section of an airport; `onLine` gets each line's kind and fields. A last BlockEnd
// closes the section.
template <typename OnLine>
void ReadSectionLines(std::string_view text, std::string_view airportIdent, OnLine onLine) {
    LineReader lines(text, kNavdataLineLength);
    std::string_view line;
    Fields fields;
    bool inSection = false;
    while (lines.Next(line)) {
        const char first = line.empty() ? '\0' : line.front();
        if (first == '[' && inSection) {
            break;
        }
        if (!inSection) {
            inSection = first == '[' && SectionIdent(line) == airportIdent;
        } else if (first == '*' || first == ';') {
            onLine(LineKind::BlockEnd, fields);
        } else {
            const bool blank = SplitWords(line, fields) == 0;
            onLine(blank ? LineKind::Blank : LineKind::Record, fields);
        }
    }
    if (inSection) {
        onLine(LineKind::BlockEnd, fields);
    }
}

// The latest of the name, appended when there is none; null when the table is full. Two procedures
// of one name keep their legs apart: legs belong to the header above them.
Procedure* FindOrAppend(std::vector<Procedure>& table, std::size_t capacity,
                        std::string_view name) {
    const auto found = std::find_if(table.rbegin(), table.rend(),
                                    [&](const Procedure& p) { return p.name == name; });
    if (found != table.rend()) {
        return &*found;
    }
    if (table.size() >= capacity) {
        return nullptr;
    }
    table.emplace_back().name = name;
    return &table.back();
}

void AppendHeader(const Fields& fields, std::vector<Procedure>& table, std::size_t capacity) {
    if (table.size() < capacity) {
        Procedure& procedure = table.emplace_back();
        procedure.name = fields[1];
        procedure.headerText = fields[2];
        procedure.runways = fields[3];
    }
}

void MarkCommon(ProcedureLeg& leg) {
    leg.qualifier = leg.fix;
    leg.mark = kCommonMark;
}

// Appends the leg of a SID or STAR line ("BXK1.RW07L FIX text1 text2 lat long FO"). Null when there
// is no room for it.
Procedure* AppendLeg(const Fields& fields, std::vector<Procedure>& table, std::size_t capacity) {
    const std::size_t point = fields[0].find('.');
    Procedure* procedure = FindOrAppend(table, capacity, fields[0].substr(0, point));
    if (procedure == nullptr || procedure->legs.size() >= kProcedureLegCapacity) {
        return nullptr;
    }
    ProcedureLeg& leg = procedure->legs.emplace_back();
    if (point != std::string_view::npos) {
        leg.qualifier = fields[0].substr(point + 1);
    }
    leg.fix = fields[1];
    leg.text1 = fields[2];
    leg.text2 = fields[3];
    leg.latitude = ToNumber(fields[4]);
    leg.longitude = ToNumber(fields[5]);
    leg.flyover = fields[6] == "FO" ? 1 : 0;
    return procedure;
}

// Transitions of a departure leave from its last leg without one.
void MarkDepartureJunction(Procedure& procedure) {
    const std::size_t count = procedure.legs.size();
    if (count >= 2 && !procedure.legs[count - 1].qualifier.empty() &&
        procedure.legs[count - 2].qualifier.empty()) {
        MarkCommon(procedure.legs[count - 2]);
    }
}

void EndDepartureBlock(Procedure& procedure) {
    const bool hasTransitions =
        std::any_of(procedure.legs.begin(), procedure.legs.end(),
                    [](const ProcedureLeg& leg) { return !leg.qualifier.empty(); });
    if (!hasTransitions && !procedure.legs.empty()) {
        MarkCommon(procedure.legs.back());
    }
}

// Three ways of writing that there is nothing.
std::string_view WithoutPlaceholder(std::string_view field) {
    return field == "-" || field == "--" || field == "---" ? std::string_view{} : field;
}

// A field may give a character by its code; a code of 0 is none.
std::string CharacterOfCode(std::string_view field) {
    const auto code = static_cast<unsigned char>(TruncateToInteger(ToNumber(field)));
    return code == 0 ? std::string() : std::string(1, static_cast<char>(code));
}

// What the role field says: a role, or the name of a transition. An initial approach fix is the
// transition that begins at it.
void SetRole(ProcedureLeg& leg, std::string_view field) {
    if (field == "IAF") {
        leg.role = field;
        leg.qualifier = leg.fix;
    } else if (field == "FAF" || field == "MAF") {
        leg.role = field;
    } else {
        leg.role = field == "IAF*" ? field : std::string_view{};
        leg.qualifier = field;
    }
}

void AppendApproachLeg(const Fields& fields, AirportProcedures& target) {
    const std::string_view name = WithoutPlaceholder(fields[0]);
    std::vector<std::string>& groups = target.approachGroups;
    if (std::find(groups.begin(), groups.end(), fields[1]) == groups.end() &&
        groups.size() < kApproachGroupCapacity) {
        groups.emplace_back(fields[1]);
    }
    Procedure* approach = FindOrAppend(target.approaches, kApproachCapacity, name);
    if (approach == nullptr || approach->legs.size() >= kProcedureLegCapacity) {
        return;
    }
    ProcedureLeg& leg = approach->legs.emplace_back();
    leg.group = fields[1];
    leg.fix = fields[2];
    SetRole(leg, WithoutPlaceholder(fields[3]));
    leg.text1 = fields[4];
    leg.text2 = name;
    leg.latitude = ToNumber(fields[5]);
    leg.longitude = ToNumber(fields[6]);
    leg.text3 = CharacterOfCode(fields[7]);
    leg.text4 = CharacterOfCode(fields[8]);
    leg.flyover = fields[9] == "FO" ? 1 : 0;
}

}  // namespace

void ReadSids(std::string_view text, std::string_view airportIdent, std::vector<Procedure>& table) {
    table.clear();
    Procedure* current = nullptr;  // of the last leg line
    ReadSectionLines(text, airportIdent, [&](LineKind kind, const Fields& fields) {
        if (kind == LineKind::BlockEnd && current != nullptr) {
            EndDepartureBlock(*current);
            current = nullptr;
        } else if (kind == LineKind::Record && fields[0] == "T") {
            AppendHeader(fields, table, kSidCapacity);
            current = nullptr;
        } else if (kind == LineKind::Record) {
            current = AppendLeg(fields, table, kSidCapacity);
            if (current != nullptr) {
                MarkDepartureJunction(*current);
            }
        }
    });
}

void ReadStars(std::string_view text, std::string_view airportIdent,
               std::vector<Procedure>& table) {
    table.clear();
    ReadSectionLines(text, airportIdent, [&](LineKind kind, const Fields& fields) {
        if (kind != LineKind::Record) {
            return;
        }
        if (fields[0] == "T") {
            AppendHeader(fields, table, kStarCapacity);
            return;
        }
        Procedure* procedure = AppendLeg(fields, table, kStarCapacity);
        if (procedure != nullptr && fields[0].find('.') == std::string_view::npos) {
            MarkCommon(procedure->legs.back());
        }
    });
}

void ReadApproaches(std::string_view text, std::string_view airportIdent,
                    AirportProcedures& target) {
    target.approaches.clear();
    target.approachGroups.clear();
    ReadSectionLines(text, airportIdent, [&](LineKind kind, const Fields& fields) {
        if (kind == LineKind::Record) {
            AppendApproachLeg(fields, target);
        }
    });
}

}  // namespace avq1
