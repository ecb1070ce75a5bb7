// avqdata/plan_helpers.h - plans as texts, read and written as the program does it.
#pragma once

#include <string>
#include <string_view>

#include "avqdata/folder.h"
#include "avqdata/plan_data.h"
#include "avqdata/plan_exchange.h"
#include "base/text.h"

namespace avqdata {

struct PlanReading {
    ExchangePlan plan;
    const PlanFormat* format = nullptr;
    Report report;
    std::string error;
    bool done = false;

    explicit PlanReading(std::string_view text, const PlanData* data = nullptr) {
        done = ReadExchangePlan(text, "plan", data, plan, format, report, error);
    }
    // All that is said of the file, a line each.
    std::string Said() const {
        std::string said = error.empty() ? "" : error + "\n";
        for (const ReportEntry& entry : report.entries) {
            for (const std::string& oneCase : entry.cases) {
                said += oneCase + "\n";
            }
        }
        return said;
    }
    std::string Idents() const {
        std::string idents;
        for (const avq1::PlanWaypoint& entry : plan.entries) {
            idents += (idents.empty() ? "" : " ") + entry.ident;
        }
        return idents;
    }
};

// "37000 0 0: AAAA/APT/// MID/VOR/113.70/L12/" - cruise, fuel, reserve; identifier, type,
// frequency, airway and procedure.
inline std::string ShowRoute(const ExchangePlan& plan) {
    std::string text =
        avq1::Format("%d %g %g:", plan.cruiseAltitudeFt, plan.fuelTotal, plan.reserveFuel);
    for (const avq1::PlanWaypoint& entry : plan.entries) {
        text += " " + entry.ident + "/" + entry.type + "/" + entry.frequency + "/" + entry.via +
                "/" + entry.procedure;
    }
    return text;
}

// Runway, procedure and transition of the departure; of the arrival these and the approach.
inline std::string ShowChoices(const ExchangePlan& plan) {
    const TerminalChoice& from = plan.departure;
    const TerminalChoice& to = plan.arrival;
    return from.runway + "/" + from.procedure + "/" + from.transition + " " + to.runway + "/" +
           to.procedure + "/" + to.transition + "/" + to.approach + "/" + to.approachTransition;
}

// North along the meridian of 8 degrees from AAAA to BBBB, a degree a fix. DUP and TWICE are there
// twice, ONLYL also beside its airway, PAN is a station and a fix, QB and QF a beacon and a VOR.
// L12 and T9 cross at CROSS.
inline PlanData SamplePlanData() {
    FolderTexts texts;
    texts[kNavaidFile] =
        ";AIRAC cycle : 2309 (07-SEP-2023 to 05-OCT-2023)\n"
        "MID MIDDLE 52.00000 8.00000 VOR 113.70\nPAN PANTHER 55.00000 8.00000 NDB 365\n"
        "QB BESIDE 56.00000 8.00000 NDB 301\nQB BESIDE 56.00000 8.00100 VOR 112.00\n"
        "QF FAR 56.00000 8.00000 NDB 302\nQF FAR 56.00000 9.50000 VOR 112.10\n";
    texts[kFixFile] =
        "DUP DUP 51.00000 8.00000\nDUP DUP 10.00000 100.00000\nALPHA ALPHA 53.00000 8.00000\n"
        "CROSS CROSS 54.00000 8.00000\nPAN PAN -40.00000 8.00000\nSIDPT SIDPT 50.50000 8.00000\n"
        "STARP STARP 57.50000 8.00000\nONLYL ONLYL 54.50000 8.00000\n"
        "TWICE TWICE 49.00000 8.00000\nTWICE TWICE 52.50000 8.00000\n";
    texts[kAirportFile] =
        "AAAA A_Airport 300 50.00000 8.00000 23_9000_50.010000_8.010000_230.0_---_---_230.0\n"
        "BBBB B_Airport 500 58.00000 8.00000 07C_9000_58.010000_7.990000_70.0_---_---_70.0\n";
    texts[kAirwayFile] =
        "L12 0010 MID 52.00000 8.00000\nL12 0020 ALPHA 53.00000 8.00000\n"
        "L12 0030 CROSS 54.00000 8.00000\nL12 0040 ONLYL 54.50000 8.50000\n"
        "T9 0010 WESTF 54.00000 7.00000\nT9 0020 CROSS 54.00000 8.00000\n"
        "T9 0030 PAN 55.00000 8.00000\n";
    Report ignored;
    PlanData data = PlanDataOf(ParseFolder(texts, ignored));
    data.procedureTexts[kSids] =
        "[AAAA]\nT SIDP1A --- 23\nSIDP1A SIDPT 2000A 23 50.50000 8.00000 ---\n"
        "SIDP1A.MID MID --- --- 52.00000 8.00000 ---\n"
        "SIDP1A.DUP DUP --- --- 51.00000 8.00000 ---\n;\n";
    data.procedureTexts[kStars] =
        "[BBBB]\nT STAR2B --- 07C\nSTAR2B.PAN PAN --- --- 55.00000 8.00000 ---\n"
        "STAR2B STARP 5000A 07C 57.50000 8.00000 ---\n;\n";
    data.procedureTexts[kApproaches] =
        "[BBBB]\n07C ILSZ STARP IAF 4000A 57.50000 8.00000 0 0 ---\n"
        "07C ILSZ FINAL FAF 2000A 57.80000 7.80000 0 0 ---\n"
        "07C ILSZ RW07C MAF 550 58.01000 7.99000 0 0 FO\n"
        "07C ILSZ MISSD MAF 3000A 58.30000 8.50000 0 0 ---\n;\n";
    return data;
}

struct PlanWriting {
    std::string text;
    std::string error;
    bool done = false;

    PlanWriting(std::string_view formatName, const ExchangePlan& plan) {
        done = WriteExchangePlan(*FormatNamed(formatName), plan, text, error);
    }
};

}  // namespace avqdata
