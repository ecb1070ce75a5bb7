// avqdata/plan_verb.h - `avqdata plan`: shows a flight plan, or writes it in another format.
//
// The plan or what was written goes to `out`, everything else to `err`. Nothing is written over
// an existing file unless asked, and never half a file.
#pragma once

#include <iosfwd>
#include <string>

namespace avqdata {

enum PlanStatus : int {
    kPlanDone = 0,
    kPlanFaulty = 1,  // done, but the file has faults that cost waypoints or positions, or does not
                      // fit the data it was checked against
    kPlanFailed = 2,  // nothing was done
};

struct PlanRequest {
    std::string file = {};  // or a route in words
    std::string to = {};    // empty: show the plan
    std::string as = {};    // a format's name; empty: the extension's format
    std::string cycle =
        {};  // four digits, for formats that name one; empty: the plan's, else today's
    bool force = false;
    std::string data = {};   // a Navdata folder; empty: none
    std::string check = {};  // a Navdata folder to check the plan against; it is the data too
};

int RunPlan(const PlanRequest& request, std::ostream& out, std::ostream& err);

// "pln-xml (.pln) simulator plan, XML form" and so on, for the help text.
std::string PlanFormatList();

}  // namespace avqdata
