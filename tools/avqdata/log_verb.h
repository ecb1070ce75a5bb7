// avqdata/log_verb.h - `avqdata log`: lists the flights of Flight.log, shows the one in fpl.log,
// and writes either in another form.
//
// What was asked for goes to `out`, everything else to `err`. Nothing is written over an existing
// file unless asked.
#pragma once

#include <iosfwd>
#include <string>

namespace avqdata {

enum LogStatus : int {
    kLogDone = 0,
    kLogFaulty = 1,  // done, but lines of the file were left out
    kLogFailed = 2,  // nothing was done
};

struct LogRequest {
    std::string source;    // a log, or a folder with Flight.log
    std::string to;        // .csv, .kml or .per; empty: show it
    std::string plan;      // the flight's plan, whose route a .kml follows
    std::string aircraft;  // of a list: only its flights
    bool force = false;
};

int RunLog(const LogRequest& request, std::ostream& out, std::ostream& err);

}  // namespace avqdata
