// The shared plans as the program reads them; what they hold was counted and added up apart from
// it.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "avqdata/plan_helpers.h"

namespace avqdata {
namespace {

const std::filesystem::path kPlans = AVQ1_SOURCE_DIR "/../shared/data/flightplans";

std::string ContentsOf(const std::filesystem::path& path) {
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

TEST(SharedPlans, ReadAsTheyWereWritten) {
    if (!std::filesystem::exists(kPlans)) {
        GTEST_SKIP() << "no plans at " << kPlans;
    }
    const struct {
        const char* file;
        const char* types;   // an entry's first letter each
        const char* idents;  // how the list ends
        double latitudeSum;
        double longitudeSum;
    } cases[] = {
        {"fsx/EGAA-EGKK.pln", "AIIIIIIIIA", " TELBA VIDOK EGKK", 530.2926, -30.4913},
        {"fsx/LEPP_LFBP Procs.pln", "AIA", " LEPP BEGUY LFBP", 129.2082, -3.5157},
        {"fsx/ENHD_local_flight.pln", "AWWWWWWWA", " SV007 SV008 ENHD", 531.9409, 54.0009},
        {"fsx/IFR Hamburg - Fuhlsbuettel (EDDH) to Muenchen Franz-Josef Strauss (EDDM).pln",
         "AVNVVVVVA", " DKB NEU EDDM", 453.1141, 99.5878},
        {"fsx/LFPO-FMEE.pln",
         "AIIIIIIIVIIIVIIIIIIIIIVIIIINIIIIIIIIIIIVIIIIIIIIIIIIIIIIIIIVIIIIIIIIIIIIIA",
         " ANVOR UVENA FMEE", 1787.7641, 1853.2439},
        {"fsx/_test_flp_user.pln", "AWWNWWVAAVAA", " BGS 58R 6T4", 401.9052, -1234.9489},
        {"fsx/khwo-fsx.pln", "AWWVNIVWWA", " RW28L3 RW28L KHWO", 251.9393, -809.3731},
        {"fsx/BPRL2_decimal_degrees_AIRPORT_uppercase_BOM.pln", "AWWWWWWWWWWWWAWWWWWWWWWWWWWA",
         " SV024 SV025 PAWG", 1563.3582, -3658.7638},
        {"newer/khwo-msfs2020.pln", "AWWVNIVWWA", " RW28L3 RW28L KHWO", 251.9393, -809.3731},
        {"newer/MSFS EDDH EDDF.PLN", "AWIWIIIIIIIIIIIIVIIIIIIIA", " DF643 DF644 EDDF", 1270.5834,
         239.6610},
        {"fs2004/EGSH-EGBB_flightplandatabase.pln", "AVA", " EGSH MAM EGBB", 157.7802, 0.0875},
        {"fs2004/LSGG-EGMC_fsnavigator_shortform.pln", "AVVVVVA", " BNE DVR EGMC", 344.3072,
         22.1885},
        {"fs2004/ESSA-ESSP_flt_keyform_user_waypoints_degree_sign.flt", "AWWWA", " POI2 POI3 ESSP",
         296.2669, 88.3314},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.file);
        const PlanReading read(ContentsOf(kPlans / c.file));
        const bool namesApproach = std::string(c.file) == "newer/MSFS EDDH EDDF.PLN";
        EXPECT_EQ(read.Said(),
                  namesApproach
                      ? "plan: names the approach 'D07C'; its points are not in the file\n"
                      : "");
        EXPECT_TRUE((" " + read.Idents()).ends_with(c.idents)) << read.Idents();
        std::string types;
        avq1::LatLon sum{0, 0};
        for (const avq1::PlanWaypoint& entry : read.plan.entries) {
            types += entry.type.substr(0, 1);
            sum.latitude += entry.latitude;
            sum.longitude += entry.longitude;
        }
        EXPECT_EQ(types, c.types);
        EXPECT_NEAR(sum.latitude, c.latitudeSum, 1e-4);
        EXPECT_NEAR(sum.longitude, c.longitudeSum, 1e-4);
    }
    EXPECT_FALSE(PlanReading(ContentsOf(kPlans / "other/LIDTLSZS_FSC.pln")).done);
}

}  // namespace
}  // namespace avqdata
