// tests/support/mixed_flows.h - pieces of a unit's flows one after the other in a random order, so
// that each begins in the state that others left: what came of every piece as a checksum, for a
// kept file.
//
// AVQ1_MIXED_FLOWS names a file that gets in words what the checksums are made of: written with and
// without a change, the two files show where the first difference comes from.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <fstream>
#include <random>
#include <span>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "base/text.h"
#include "flightplan/flight_plan.h"
#include "guidance/lnav.h"
#include "simlink/aircraft_state.h"

namespace avq1::test {

inline std::uint32_t Checksum(std::string_view text) {
    std::uint32_t sum = 2166136261U;
    for (const char each : text) {
        sum = (sum ^ static_cast<unsigned char>(each)) * 16777619U;
    }
    return sum;
}

inline std::vector<std::string> WordsOf(const char* keys) {
    std::istringstream words(keys);
    std::vector<std::string> list;
    for (std::string word; words >> word;) {
        list.push_back(word);
    }
    return list;
}

// Some words in a row of some flow, now and then followed by one of the keys.
template <class Flow>
std::vector<std::string> APiece(std::span<const Flow> flows, const std::vector<std::string>& keys,
                                std::mt19937& random) {
    const std::vector<std::string> words = WordsOf(flows[random() % flows.size()].keys);
    const std::size_t first = random() % 3 == 0 ? 0 : random() % words.size();
    const std::size_t end = std::min(words.size(), first + 2 + random() % 5);
    std::vector<std::string> piece(words.begin() + static_cast<std::ptrdiff_t>(first),
                                   words.begin() + static_cast<std::ptrdiff_t>(end));
    if (random() % 2 == 0) {
        piece.push_back(keys[random() % keys.size()]);
    }
    return piece;
}

// The flight goes on: the aircraft somewhere else along the equator's route, in another state.
inline void FlyOn(std::mt19937& random) {
    const auto upTo = [&](unsigned most) { return static_cast<double>(random() % most); };
    aircraft.longitude += upTo(60) / 100;
    aircraft.latitude = (upTo(20) - 10) / 100;
    aircraft.groundSpeedKt = upTo(10) == 0 ? 0 : 100 + upTo(400);
    aircraft.altitudeFt = upTo(36000);
    aircraft.verticalSpeedFpm = upTo(4000) - 2000;
    aircraft.magneticVariation = upTo(40) - 20;
    aircraft.headingMag = upTo(360);
    aircraft.zuluMinute = upTo(60);
    if (random() % 3 == 0 && HasActiveWaypoint()) {
        SetActiveWaypoint(planBook.activeIndex + 1);
    }
}

// Sessions of pieces, each from the beginning of some flow. begin(flow) makes that, look(word,
// out) presses a key and writes what it changed. Before each piece the flight goes on.
template <class Flow, class Begin, class Look>
std::string MixFlows(std::span<const Flow> flows, const char* keys, Begin begin, Look look) {
    constexpr unsigned kSessions = 48;
    constexpr int kPieces = 12;
    const char* const wordsName = std::getenv("AVQ1_MIXED_FLOWS");
    std::ofstream inWords(wordsName != nullptr ? wordsName : "");
    std::string sums;
    for (unsigned session = 1; session <= kSessions; ++session) {
        std::mt19937 random(session);
        const Flow& start = flows[random() % flows.size()];
        begin(start);
        sums += Format("# session %u, begun as: %s\n", session, start.name);
        for (int i = 0; i < kPieces; ++i) {
            std::ostringstream changed;
            std::string typed;
            FlyOn(random);
            for (const std::string& word : APiece(flows, WordsOf(keys), random)) {
                typed += word + ' ';
                look(word, changed);
            }
            sums += typed + Format("%08x\n", Checksum(changed.str()));
            inWords << "# " << session << ": " << typed << '\n' << changed.str();
        }
    }
    return sums;
}

}  // namespace avq1::test
