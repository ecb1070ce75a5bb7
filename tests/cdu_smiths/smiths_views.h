// tests/cdu_smiths/smiths_views.h - every page of the Smiths-style unit in every state that has
// keys of its own, for tests that walk through all of them.
#pragma once

namespace avq1::test {

// A page in one of its states: the keys that lead there from a flown route, and the lines whose
// keys act whatever has been typed.
struct SmithsView {
    const char* name;
    const char* keys;
    const char* prompts = "";
};

inline constexpr SmithsView kSmithsViews[] = {
    {"IDENT", "INIT_REF L6 L1", "L6 R6"},
    {"POS INIT", "INIT_REF L6 L2", "L6 R6"},
    {"POS INIT, airport", "INIT_REF L6 L2 =KAAA L2", "L6 R6"},
    {"POS REF", "INIT_REF L6 L2 NEXT_PAGE", "L6 R6"},
    {"POS SHIFT", "INIT_REF L6 L2 PREV_PAGE", "L6 R6"},
    {"PERF INIT", "INIT_REF L6 L3", "L6 R6"},
    {"PERF LIMITS", "INIT_REF L6 L3 NEXT_PAGE", "L6 R6"},
    {"TAKEOFF", "INIT_REF L6 L4", "L5 R5 L6 R6"},
    {"APPROACH", "INIT_REF L6 L5", "L6"},
    {"REF DATA", "INIT_REF L6 R1", "L5 L6 R6"},
    {"REF DATA, airport", "INIT_REF L6 R1 =KBBB L2", "L5 L6 R6"},
    {"NAV SUMMARY", "INIT_REF L6 R1 L5", "L6"},
    {"STORED", "INIT_REF L6 R2"},
    {"RTE 1", "RTE", "R6"},
    {"RTE 2", "RTE NEXT_PAGE", "R6"},
    {"LEGS", "LEGS", "R6"},
    {"LEGS 2", "LEGS NEXT_PAGE", "R6"},
    {"RTE DATA", "LEGS R6", "L6"},
    {"DIRECT", "DIR_INTC"},
    {"INTERCEPT", "DIR_INTC L3", "L6"},
    {"HOLD AT", "HOLD L6", "R6"},
    {"SELECT", "LEGS =TWICE L2", "L1 L2 R1 R2 L6"},
    {"DEP ARR", "DEP_ARR"},
    {"DEPARTURES", "DEP_ARR L1", "L6 R6"},
    {"ARRIVALS", "DEP_ARR R1", "L6 R6"},
    {"OTHER", "DEP_ARR =KAAA L6", "L6 R6"},
    {"CLB", "CLB", "L5 L6 R6"},
    {"CRZ", "CRZ", "L6 R6"},
    {"DES", "DES", "R4 R5 R6"},
    {"FORECASTS", "DES R5"},
    {"PROGRESS 1", "PROG", "R6"},
    {"PROGRESS 2", "PROG NEXT_PAGE", "R6"},
    {"RTA", "PROG PREV_PAGE", "L6 R6"},
    {"RTA, waypoint", "PROG PREV_PAGE =FLY L1", "L6 R6"},
    {"NAV STATUS", "PROG R6", "L6 R6"},
    {"NAV OPTIONS", "PROG R6 NEXT_PAGE", "L6"},
    {"FIX", "FIX"},
    {"FIX, fix", "FIX =NEWPT L1"},
    {"HOLD", "HOLD", "L6 R6"},
    {"INDEX", "INIT_REF L6", "L1 L2 L3 L4 L5 R1 R2"},  // the last: it leaves files
};

}  // namespace avq1::test
