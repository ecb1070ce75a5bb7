#include "avqdata/plan_verb.h"

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <ostream>

#include "avqdata/cycle.h"
#include "avqdata/os.h"
#include "avqdata/output_file.h"
#include "avqdata/plan_check.h"
#include "avqdata/plan_data.h"
#include "avqdata/plan_exchange.h"
#include "avqdata/plan_table.h"
#include "avqdata/source_file.h"
#include "avqdata/text_tools.h"
#include "base/text.h"

namespace avqdata {
namespace {

std::string CycleOfToday() {
    namespace chrono = std::chrono;
    const chrono::year_month_day today(chrono::floor<chrono::days>(chrono::system_clock::now()));
    const int cycle = CycleOfDate(static_cast<int>(today.year()),
                                  static_cast<int>(static_cast<unsigned>(today.month())),
                                  static_cast<int>(static_cast<unsigned>(today.day())))
                          .value_or(0);
    const std::string number = std::to_string(cycle);
    return std::string(4 - std::min<std::size_t>(number.size(), 4), '0') + number;
}

// The format to write, or null with the reason.
const PlanFormat* ChosenFormat(const PlanRequest& request, std::string& error) {
    const PlanFormat* format =
        request.as.empty() ? FormatOfFileName(request.to) : FormatNamed(request.as);
    if (format == nullptr) {
        error = request.as.empty()
                    ? request.to + ": no format has this extension; there are\n" + PlanFormatList()
                    : request.as + ": is no format; there are\n" + PlanFormatList();
        return nullptr;
    }
    if (!HasExtension(*format, request.to)) {
        error = request.to + ": " + format->name + " wants the extension ." +
                SplitList(format->extensions, ' ').front();
        return nullptr;
    }
    return format;
}

bool Convert(const PlanRequest& request, ExchangePlan& plan, std::ostream& out, std::ostream& err,
             std::string& error) {
    const PlanFormat* const format = ChosenFormat(request, error);
    if (format == nullptr) {
        return false;
    }
    if (!request.cycle.empty() || plan.cycle.empty()) {
        plan.cycle = request.cycle.empty() ? CycleOfToday() : request.cycle;
    }
    std::string text;
    if (!WriteExchangePlan(*format, plan, text, error)) {
        error = request.to + ": not written as " + format->name + ": " + error;
        return false;
    }
    if (!WriteOutputFile(request.to, text, request.force, error)) {
        return false;
    }
    const std::string lost = NotCarried(*format, plan);
    if (!lost.empty()) {
        err << "not carried: " << lost << "\n";
    }
    if (format == &kRtePlanFormat && !request.to.ends_with(".RTE")) {
        err << "the control units list plans whose names end in .RTE, in capitals\n";
    }
    out << request.to << ": "
        << std::count_if(plan.entries.begin(), plan.entries.end(), avq1::HasPosition)
        << " waypoints as " << format->title << "\n";
    return true;
}

// A route in place of a file name, as it is pasted: words, and no such file.
bool IsRouteItself(const std::string& file) {
    std::error_code code;
    return file.find(' ') != std::string::npos && !std::filesystem::exists(PathOf(file), code);
}

bool ReadPlanText(const std::string& file, std::string& text, std::string& error) {
    if (IsRouteItself(file)) {
        text = avq1::ToUpper(file);
        return true;
    }
    return ReadBoundedFile(file, "a flight plan", text, error);
}

}  // namespace

int RunPlan(const PlanRequest& request, std::ostream& out, std::ostream& err) {
    std::string error;
    std::string text;
    ExchangePlan plan;
    Report report;
    report.keepAll = !request.check.empty();
    const PlanFormat* format = nullptr;
    PlanData data;
    const std::string& folder = request.check.empty() ? request.data : request.check;
    const std::string name = IsRouteItself(request.file) ? "route" : BaseName(request.file);
    const bool read =
        (folder.empty() || LoadPlanData(folder, data, error)) &&
        ReadPlanText(request.file, text, error) &&
        ReadExchangePlan(text, name, folder.empty() ? nullptr : &data, plan, format, report, error);
    if (read && !request.check.empty()) {
        CheckPlan(data, plan, name, report);
    }
    PrintCases(report, err);
    if (read && !request.check.empty()) {
        out << name << ": " << report.Count(Topic::Fault) << " faults, "
            << report.Count(Topic::Warning) << " warnings, checked against "
            << (data.cycle.empty() ? "data of no named cycle" : "cycle " + data.cycle) << "\n";
    } else if (read && request.to.empty()) {
        out << PlanTable(plan, *format);
    }
    if (!read || (!request.to.empty() && !Convert(request, plan, out, err, error))) {
        err << "avqdata: " << error << "\n";
        return kPlanFailed;
    }
    return report.Count(Topic::Fault) > 0 ? kPlanFaulty : kPlanDone;
}

std::string PlanFormatList() {
    std::string text;
    for (const PlanFormat* format : kPlanFormats) {
        std::string line = "  " + std::string(format->name);
        line.resize(17, ' ');
        for (const std::string& extension : SplitList(format->extensions, ' ')) {
            line += "." + extension + " ";
        }
        line.resize(35, ' ');
        text += line + format->title +
                (format->read == nullptr    ? " (written only)\n"
                 : format->write == nullptr ? " (read only)\n"
                                            : "\n");
    }
    return text;
}

}  // namespace avqdata
