// What FlightGear once sent, told to the link again: an approach to San Francisco with its own 737
// taking off there. Recorded by `./avq flightgear-test --record FILE`; a line is the second of the
// panel host's clock at which a packet came, a blank, and the packet. recorded.txt keeps what the
// numbered variables and the traffic module read every five seconds, and what was sent.
#include <gtest/gtest.h>
#include <zlib.h>

#include <cmath>
#include <map>

#include "panelhost/base/text.h"
#include "panelhost/flightgear/live_link.h"
#include "panelhost/world/variables.h"
#include "support/kept_file.h"

namespace panelhost {
namespace {

constexpr double kFrameS = 0.04;
constexpr double kMarkS = 5;

struct Arrival {
    double arrivalS = 0;
    std::string packet = {};
};

std::vector<Arrival> Recording() {
    std::vector<Arrival> arrivals;
    std::vector<char> line(2 * kMostPacketBytes);
    gzFile file = gzopen(AVQ1_SOURCE_DIR "/tests/flightgear/flight.packets.gz", "rb");
    EXPECT_NE(file, nullptr);
    while (file != nullptr && gzgets(file, line.data(), static_cast<int>(line.size())) != nullptr) {
        const std::string text = line.data();
        const std::size_t blank = text.find(' ');
        arrivals.push_back({std::stod(text), text.substr(blank + 1)});
    }
    gzclose(file);
    return arrivals;
}

std::string KeyOf(const std::vector<Arrival>& arrivals) {
    const std::string opening = OpeningOf(kStateKind, "");
    for (const Arrival& each : arrivals) {
        if (each.packet.starts_with(opening)) {
            return each.packet.substr(opening.size(), each.packet.find(' ') - opening.size());
        }
    }
    return "";
}

AutopilotMapping GenericMapping() {
    std::string problem;
    const auto json = ReadWholeFile(AVQ1_SOURCE_DIR "/demo/flightgear/generic.json", 65536);
    return ReadMapping(json.value_or(""), problem).value_or(AutopilotMapping{});
}

// The flight told to a link of its own, frame by frame.
class Replay {
  public:
    explicit Replay(const std::vector<Arrival>& arrivals) : nowS_(arrivals.front().arrivalS) {
        OpenLink(GenericMapping(), KeyOf(arrivals), link_);
        startS_ = nowS_;
    }

    void Tell(const Arrival& each) {
        while (nowS_ + kFrameS <= each.arrivalS) {
            Frame();
        }
        Hear(link_, each.packet, each.arrivalS);
    }
    // What each mark read that the one before did not, and every packet sent.
    std::string text() const { return text_; }
    const LiveLink& link() const { return link_; }

  private:
    void Frame() {
        nowS_ += kFrameS;
        const std::string sent = StepLink(link_, nowS_, world_, traffic_);
        if (!sent.empty()) {
            text_ += Format("%.2f sends %s", nowS_ - startS_, sent.c_str());
        }
        if (nowS_ - startS_ >= markS_) {
            Mark();
            markS_ += kMarkS;
        }
    }

    void Mark() {
        text_ += Format("# %.0f s\n", markS_);
        int count = 0;
        const VariableRow* const rows = VariableTable(count);
        for (int i = 0; i < count; ++i) {
            const double value = ReadVariable(world_, rows[i].number).value_or(0);
            const std::string line = Format("%d %s: %.6g\n", rows[i].number, rows[i].name, value);
            if (read_[rows[i].number] != line) {
                read_[rows[i].number] = line;
                text_ += line;
            }
        }
        text_ +=
            "heard " + world_.nav1.ident + " " + world_.nav2.ident + " " + world_.adf.ident + "\n";
        for (int i = 0; i < traffic_.block.count; ++i) {
            const auto& record = *traffic_.block.records[i];
            text_ += Format("traffic %.2f nm, flags %u\n", record.rangeNm, record.flags);
        }
    }

    LiveLink link_;
    World world_;
    Traffic traffic_;
    double nowS_ = 0;
    double startS_ = 0;
    double markS_ = kMarkS;
    std::map<int, std::string> read_;
    std::string text_;
};

TEST(RecordedFlight, ReadsAsItDid) {
    const std::vector<Arrival> arrivals = Recording();
    ASSERT_GT(arrivals.size(), 500U);
    Replay replay(arrivals);
    for (const Arrival& each : arrivals) {
        replay.Tell(each);
    }
    EXPECT_EQ(replay.link().counts.taken, arrivals.size());
    avq1::test::ExpectAsKept(replay.text(), "flightgear/recorded.txt");
}

TEST(RecordedFlight, HostilePacketsBetweenChangeNothing) {
    std::vector<Arrival> arrivals = Recording();
    arrivals.resize(500);  // a quarter of a minute tells all
    Replay clean(arrivals);
    Replay disturbed(arrivals);
    for (std::size_t i = 0; i < arrivals.size(); ++i) {
        clean.Tell(arrivals[i]);
        disturbed.Tell(arrivals[i]);
        Arrival other = arrivals[i];
        switch (i % 4) {
            case 0:  // again
                break;
            case 1:  // an old one
                other.packet = arrivals[i / 2].packet;
                break;
            case 2:  // cut off
                other.packet.resize(other.packet.size() / 2);
                break;
            default:  // of somebody else
                other.packet[12] = other.packet[12] == '0' ? '1' : '0';
                break;
        }
        disturbed.Tell(other);
    }
    EXPECT_EQ(disturbed.link().counts.taken, arrivals.size());
    EXPECT_EQ(disturbed.text(), clean.text());
}

}  // namespace
}  // namespace panelhost
