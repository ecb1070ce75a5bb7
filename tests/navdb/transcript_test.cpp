// What the readers of the navigation files make of their lines, and what is found in them
// (transcript.txt).
#include <gtest/gtest.h>

#include <sstream>
#include <string>

#include "base/module_state.h"
#include "base/text.h"
#include "navdb/airport_detail.h"
#include "navdb/airways.h"
#include "navdb/boundaries.h"
#include "navdb/database_cycle.h"
#include "navdb/nav_database.h"
#include "navdb/procedures.h"
#include "support/fake_simulator.h"
#include "support/temp_sim_folder.h"
#include "support/transcript.h"

namespace avq1 {
namespace {

using test::Words;

// "NAME: FIX(qualifier)role* latitude ...": what the junction rules made of a procedure's legs.
std::string Show(const std::vector<Procedure>& table) {
    std::string text;
    for (const Procedure& procedure : table) {
        text += procedure.name + " '" + procedure.headerText + "' '" + procedure.runways + "':";
        for (const ProcedureLeg& leg : procedure.legs) {
            text += " " + leg.fix + (leg.qualifier.empty() ? "" : "(" + leg.qualifier + ")") +
                    leg.role + leg.mark;
            const std::string rest =
                leg.text1 + "|" + leg.text2 + "|" + leg.text3 + "|" + leg.text4;
            text += rest == "|||" ? "" : "<" + rest + ">";
            text += leg.latitude != 0 || leg.flyover != 0
                        ? Format("@%g/%g/%d", leg.latitude, leg.longitude, leg.flyover)
                        : "";
        }
        text += '\n';
    }
    return text.empty() ? "none" : text;
}

// Sections around it show where one begins and ends.
template <void (*read)(std::string_view, std::string_view, std::vector<Procedure>&)>
std::string Procedures(const std::string& lines) {
    std::vector<Procedure> table;
    read("[KAAA]\nX1 XXX\n[KBOS]\n" + lines, "KBOS", table);
    return Show(table);
}

std::string Approaches(const std::string& lines) {
    AirportProcedures read;
    ReadApproaches("[KBOS]\n" + lines, "KBOS", read);
    std::string groups = "groups";
    for (const std::string& group : read.approachGroups) {
        groups += " " + group;
    }
    return groups + '\n' + Show(read.approaches);
}

// Until the entry fix is found all lines of the name count, then those up to another airway's.
std::string AirwayOf(const std::string& nameAndEntry) {
    const std::string text =
        "; J1 0 SSSS 1 1\nJ1 10 AAAA 1 1\n; inside\nJ1 20 BBBB 2 2\n\n  J1 30 CCCC 3 3\r\n"
        "J10 10 AAAA 1 1\nJ1 40 DDDD 4 4\n  V3 1 EEEE 5 5\nJ2 1 EEEE 5 5 " +
        std::string(200 - 14, ' ') + "J1 50 FFFF 6 6\n;J1 2 CCCC 3 3\nV3 2 GGGG 7 7\n";
    const std::size_t comma = nameAndEntry.find(',');
    const AirwayLookup lookup =
        ReadAirway(text, nameAndEntry.substr(0, comma), nameAndEntry.substr(comma + 1));
    std::string now = "'" + lookup.text + "'" +
                      Format(" %d %d %d:", lookup.entryIndex, lookup.exitIndex, lookup.entryPage);
    for (std::int32_t i = 1; i <= lookup.fixes.count; ++i) {
        const FoundPoint& fix = lookup.fixes[i];
        now += Format(" %s/%s/%g/%g", fix.name.c_str(), fix.ident.c_str(), fix.latitude,
                      fix.longitude);
    }
    return now;
}

std::string BoundariesOf(const std::string& lines) {
    std::vector<AtcBoundary> items;
    ReadAtcBoundaries(lines, items);
    std::string text;
    for (const AtcBoundary& item : items) {
        text += Format("%s %s %zu %g/%g; ", item.ident.c_str(), item.name.c_str(),
                       item.points.size(), item.label.latitude, item.label.longitude);
    }
    return text;
}

std::string RunwayOf(const std::string& token) {
    const Runway runway = ParseRunwayToken(token);
    return Format("%s|%g|%g|%g|%g|%s|%s|%g|%g", runway.ident.c_str(), double(runway.length),
                  runway.latitude, runway.longitude, double(runway.heading), runway.field6.c_str(),
                  runway.field7.c_str(), double(runway.field8), double(runway.reciprocalHeading));
}

std::string CycleOf(const std::string& file) {
    const test::TempSimFolder folder;
    folder.Write("avq/Navdata/avq_navs.txt", file);
    DatabaseCycle = DatabaseValidity = "";
    ReadDatabaseCycle();
    return "'" + DatabaseCycle + "' '" + DatabaseValidity + "'";
}

// "SEP07OCT05/23 2023 279": the data's validity; the simulator's year and day of the year.
std::string AgeOf(const std::string& validityAndDate) {
    const Words words = test::WordsOf(validityAndDate);
    test::FakeSimulator::Install().variables = {{9, std::stod(words.at(1))},
                                                {8, std::stod(words.at(2))}};
    DatabaseValidity = words[0];
    return IsDatabaseExpired() ? "expired" : "not expired";
}

// "ABC VOR 10.5": identifier, kind ("-" for any) and latitude.
std::string NavaidOf(const std::string& query) {
    const test::TempSimFolder folder;
    folder.Write("avq/Navdata/avq_navs.txt",
                 "ABC A 10.9 1 NDB 300\nABC B 10.1 2 VOR 113\nABD C -0.5 3 VOR 114\n"
                 "BBC D 20.5 4 NDB 301\nBBC E -20.5 5 VOR 115\nZZZ F 0.5 6 VOR 116\n"
                 "ABC G 50 7 VOR 117\n");
    LoadNavDatabase();
    const Words words = test::WordsOf(query);
    const std::string kind = words.at(1) == "-" ? "" : words[1];
    return Format("%d of %d groups", FindNavaid(words[0], kind, std::stod(words.at(2))),
                  navDatabase.letterGroupCount);
}

struct Reader {
    const char* name;
    std::string (*read)(const std::string& text);
};

const Reader kReaders[] = {
    {"sids ", Procedures<ReadSids>},
    {"stars ", Procedures<ReadStars>},
    {"approaches ", Approaches},
    {"airway ", AirwayOf},
    {"boundaries ", BoundariesOf},
    {"runway ", RunwayOf},
    {"cycle ", CycleOf},
    {"age ", AgeOf},
    {"navaid ", NavaidOf},
};

TEST(NavdbTranscript, ReadsAsItDidWhenLastLookedAt) {
    test::ExpectTranscript("navdb/transcript.txt", [](const std::string& command) {
        ResetModuleState();
        for (const Reader& reader : kReaders) {
            if (const std::string_view name = reader.name; command.starts_with(name)) {
                return reader.read(test::Unescaped(command.substr(name.size())));
            }
        }
        ADD_FAILURE() << command;
        return std::string();
    });
    ResetModuleState();
}

}  // namespace
}  // namespace avq1
