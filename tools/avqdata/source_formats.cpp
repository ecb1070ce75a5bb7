#include "avqdata/source_formats.h"

#include <algorithm>
#include <filesystem>
#include <iterator>
#include <system_error>

#include "avqdata/os.h"

namespace avqdata {

const std::array<SourceFormat, 5> kSourceFormats{{
    {"ourairports", "DIR", "OurAirports",
     "airports and runways of the world, navaids: airports.csv, runways.csv, navaids.csv",
     "ourairports.com/data", "public domain", SourceKind::OurAirports, SourceKind::OurNavaids,
     ImportOurAirports, Coverage::Whole},
    {"xplane", "DIR", "X-Plane or FlightGear",
     "the whole world: nav.dat 810 or 1100, fix.dat 600 or 1101, awy.dat 640 or 1100, apt.dat 1000 "
     "or 1100, each also as earth_*.dat to 1200; procedures as CIFP/ICAO.dat",
     "the simulator's folder, or its Custom Data with another vendor's cycle; FlightGear's data "
     "folder",
     "GPL, or the vendor's: for yourself, do not pass the result on", SourceKind::XplaneNavaids,
     SourceKind::XplaneProcedures, ImportXplane, Coverage::Whole},
    {"nasr", "DIR", "FAA NASR",
     "navaids, fixes, airways, airports and runways of the United States: NAV_BASE, FIX_BASE, "
     "AWY_SEG or AWY_SEG_ALT, APT_BASE, APT_RWY, APT_RWY_END as CSV",
     "faa.gov, 28 Day NASR Subscription: the zip as it comes", "public domain",
     SourceKind::NasrNavaids, SourceKind::NasrRunwayEnds, ImportNasr, Coverage::Partial},
    {"cifp", "FILE", "FAA CIFP",
     "departures, arrivals, approaches of the United States, with the runways, localizers, "
     "navaids, waypoints, airways and airspaces they need (ARINC 424-18)",
     "faa.gov, Coded Instrument Flight Procedures: the zip as it comes, or FAACIFP18 out of it",
     "public domain", SourceKind::Cifp, SourceKind::Cifp, ImportCifp, Coverage::Partial},
    {"airspace", "FILE", "Airspaces", "boundaries for the map, as GeoJSON polygons or OpenAir",
     "the FAA's open data portal, soaring clubs, openAIP", "the file's", SourceKind::GeoJson,
     SourceKind::OpenAir, ImportAirspace, Coverage::Partial},
}};

namespace {

bool IsOf(const SourceFormat& format, SourceKind kind) {
    return kind >= format.first && kind <= format.last;
}

}  // namespace

const SourceFormat& FormatOf(SourceKind kind) {
    return *std::find_if(kSourceFormats.begin(), kSourceFormats.end(),
                         [&](const SourceFormat& format) { return IsOf(format, kind); });
}

SourceFiles FilesOf(const SourceFormat& format, const SourceFiles& files) {
    SourceFiles chosen;
    std::copy_if(files.begin(), files.end(), std::back_inserter(chosen),
                 [&](const FoundFile& file) { return IsOf(format, file.kind); });
    return chosen;
}

bool FindFilesOf(const SourceFormat& format, const std::string& path, SourceFiles& files,
                 std::string& error) {
    FoundSources found;
    std::vector<std::string> unused;
    if (!FindSources(path, found, error)) {
        return false;
    }
    files = ChooseFiles(FilesOf(format, found.files), unused);
    std::error_code code;
    const bool isFile = std::filesystem::is_regular_file(PathOf(path), code);
    if (files.empty() && isFile && found.refused.empty() && found.files.empty() &&
        std::string_view(format.argument) == "FILE") {
        files.push_back({format.last, path, 0});  // its reader says what is wrong with it
    }
    if (!files.empty() && found.refused.empty()) {
        return true;
    }
    error = found.refused.empty()
                ? path + ": holds nothing of " + format.title + ": " + format.gives
                : found.refused.front();
    return false;
}

}  // namespace avqdata
