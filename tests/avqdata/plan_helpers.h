// avqdata/plan_helpers.h - plans as texts, read and written as the program does it.
#pragma once

#include <string>
#include <string_view>

#include "avqdata/plan_exchange.h"

namespace avqdata {

struct PlanReading {
    ExchangePlan plan;
    const PlanFormat* format = nullptr;
    Report report;
    std::string error;
    bool done = false;

    explicit PlanReading(std::string_view text, std::string_view name = "plan") {
        done = ReadExchangePlan(text, name, plan, format, report, error);
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

struct PlanWriting {
    std::string text;
    std::string error;
    bool done = false;

    PlanWriting(std::string_view formatName, const ExchangePlan& plan) {
        done = WriteExchangePlan(*FormatNamed(formatName), plan, text, error);
    }
};

}  // namespace avqdata
