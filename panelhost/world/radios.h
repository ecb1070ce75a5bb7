// panelhost/world/radios.h - stations on the ground and what the aircraft's receivers hear of them.
//
// Stations come from the simulator folder: avq/navdata/avq_navs.txt (ident name lat lon VOR|other
// frequency), avq/navdata/avq_apts.txt (ident name elevation lat lon ...) for the ground's height,
// and this host's own avq/navdata/ils.txt: "ident frequency lat lon course_true glide_deg
// elevation_ft airport runway [antenna_lat antenna_lon]", position of the runway's threshold, glide
// 0 for none, the antenna taken 1.65 nm along the course when not given; ";" comments.
// A missing file leaves its list empty. VORs all carry a DME. Frequencies are whole numbers:
// hundredths of a MHz, or kHz below 2000.
#pragma once

#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "panelhost/world/world.h"

namespace panelhost {

struct Station {
    std::string ident;
    GeoPoint position;
    bool isVor = false;
};

struct Localizer {
    std::string ident;
    GeoPoint threshold;
    GeoPoint antenna;
    double courseTrue = 0;
    double glideDeg = 0;  // 0: no glideslope
    double elevationFt = 0;
};

struct GroundPoint {
    GeoPoint position;
    double elevationFt = 0;
};

// What the navigation data say of themselves: ";AIRAC cycle : 2309 (07-SEP-2023 to 05-OCT-2023)".
struct DataCycle {
    std::string number;  // empty: they say nothing
    std::string begin;
    std::string end;  // the last day
};

// Whether the world's date is behind the last day; false where that is no date.
bool IsOver(const DataCycle& cycle, const World& world);

struct Ground {
    DataCycle cycle;
    std::unordered_map<int, std::vector<Station>> stations;      // by frequency
    std::unordered_map<int, std::vector<Localizer>> localizers;  // by frequency
    std::vector<GroundPoint> airports;
    std::vector<GroundPoint> nearby;  // of airports, around nearbyCentre
    GeoPoint nearbyCentre;
    bool nearbyValid = false;
};

void ParseStations(std::string_view text, Ground& ground);
void ParseLocalizers(std::string_view text, Ground& ground, std::vector<std::string>& warnings);
void ParseAirports(std::string_view text, Ground& ground);
void LoadGround(const std::string& simFolder, Ground& ground, std::vector<std::string>& warnings);

// Elevation of the nearest airports (to 40 nm), fading to 0 with distance.
double GroundElevationFt(Ground& ground, const GeoPoint& at);

// Sets everything in the world's receivers but frequency and selected course.
// `variation` gives the magnetic variation at a place (a station's own radials).
void UpdateReceivers(const Ground& ground, double (*variation)(const World&, const GeoPoint&),
                     World& world);

}  // namespace panelhost
