// The link with its socket and its files: what FlightGear and the panel host exchange on the
// loopback.
#include "panelhost/flightgear/live_flight.h"

#include <arpa/inet.h>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <thread>

#include "panelhost/base/text.h"
#include "panelhost/flightgear/live_link.h"
#include "panelhost/world/key_events.h"

namespace panelhost {
namespace {

namespace fs = std::filesystem;

// FlightGear's end.
class LiveFlightTest : public testing::Test {
  protected:
    void SetUp() override {
        options_.folder =
            (fs::temp_directory_path() / Format("avq1-live-%d", static_cast<int>(getpid())))
                .string();
        options_.mappingPath = AVQ1_SOURCE_DIR "/demo/flightgear/generic.json";
        options_.ports.port = 20000 + 2 * (static_cast<int>(getpid()) % 10000);
        socket_ = socket(AF_INET, SOCK_DGRAM | SOCK_NONBLOCK, 0);
        const sockaddr_in own = Place(options_.ports.port + 1);
        ASSERT_EQ(bind(socket_, reinterpret_cast<const sockaddr*>(&own), sizeof own), 0);
    }
    void TearDown() override {
        close(socket_);
        fs::remove_all(options_.folder);
    }

    static sockaddr_in Place(int port) {
        sockaddr_in place{};
        place.sin_family = AF_INET;
        place.sin_port = htons(static_cast<std::uint16_t>(port));
        place.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        return place;
    }

    std::string Written(const char* name) const {
        std::ifstream file(options_.folder + "/Protocol/" + name);
        std::ostringstream text;
        text << file.rdbuf();
        return text.str();
    }
    std::string Opening() const {
        const std::string text = Written("avq1-state.xml");
        const std::size_t at = text.find("AVQ1-state-");
        return text.substr(at, text.find(' ', at) - at);
    }

    // A packet of so many bytes at least.
    void Tell(const std::string& opening, double clockS, const char* latitude = "42.5",
              std::size_t size = 0) const {
        std::string text = opening + Format(" %.3f", clockS);
        for (std::size_t i = 0; i < kStateFields; ++i) {
            text += "\t" + std::string(i == At(Told::Latitude) ? latitude : "1");
        }
        if (text.size() + 1 < size) {
            text.append(1, '.').append(size - text.size() - 1, '0');
        }
        text += "\n";
        const sockaddr_in panel = Place(options_.ports.port);
        sendto(socket_, text.data(), text.size(), 0, reinterpret_cast<const sockaddr*>(&panel),
               sizeof panel);
    }
    std::string Heard() const {
        char bytes[2000];
        const ssize_t size = recv(socket_, bytes, sizeof bytes, 0);
        return size > 0 ? std::string(bytes, static_cast<std::size_t>(size)) : "";
    }

    LiveOptions options_;
    Ground ground_;
    World world_;
    Traffic traffic_;
    int socket_ = -1;
};

TEST_F(LiveFlightTest, FlightGearIsHeardAndSet) {
    std::string problem;
    const std::unique_ptr<FlightSource> flight = MakeLiveFlight(options_, problem);
    ASSERT_NE(flight, nullptr) << problem;
    EXPECT_FALSE(flight->ObeysPlacing());
    flight->Step(ground_, world_, traffic_, 0.04);
    EXPECT_EQ(flight->Trouble(), "Waiting for FlightGear");
    EXPECT_TRUE(world_.unknown.linkLost);
    Tell("AVQ1-state-0000000000000000", 4);
    flight->Step(ground_, world_, traffic_, 0.04);
    EXPECT_EQ(flight->Trouble(),
              "FlightGear was started with other protocol files: start it again");
    Tell(Opening(), 5);
    flight->Step(ground_, world_, traffic_, 0.04);
    EXPECT_EQ(flight->Trouble(), "");
    EXPECT_EQ(world_.aircraft.position.latitude, 42.5);
    EXPECT_EQ(Heard(), "");
    FindKeyEvent(66042)->apply(world_, 77);
    flight->Step(ground_, world_, traffic_, 0.04);
    EXPECT_EQ(Heard(), "77\n");
    // Shown by when it came, not when it was read; the kernel may be late to stamp datagrams.
    int told = 43;
    do {
        ++told;
        Tell(Opening(), told, Format("%d.5", told).c_str(), kMostPacketBytes);
        Tell(Opening(), told + 0.5, "1.5", kMostPacketBytes + 1);
        std::this_thread::sleep_for(std::chrono::milliseconds(60));
        flight->Step(ground_, world_, traffic_, 0.04);
    } while (told < 70 && world_.aircraft.position.latitude != told + 0.5);
    EXPECT_EQ(world_.aircraft.position.latitude, told + 0.5);
    const std::unique_ptr<FlightSource> second = MakeLiveFlight(options_, problem);
    EXPECT_EQ(second, nullptr);
    EXPECT_NE(problem.find("cannot listen on UDP port"), std::string::npos) << problem;
    options_.ports.host = "simulator.local";
    EXPECT_EQ(MakeLiveFlight(options_, problem), nullptr);
    EXPECT_NE(problem.find("numeric address"), std::string::npos) << problem;
}

TEST_F(LiveFlightTest, OnlyARemoteSimulatorIsListenedForOnEveryAddress) {
    const std::pair<const char*, bool> rows[] = {
        {"127.0.0.1", true}, {"127.0.0.3", true}, {"126.0.0.1", false}, {"192.0.2.1", false}};
    for (const auto& [host, othersAreFree] : rows) {
        options_.ports.host = host;
        std::string problem;
        const std::unique_ptr<FlightSource> flight = MakeLiveFlight(options_, problem);
        ASSERT_NE(flight, nullptr) << problem;
        sockaddr_in other = Place(options_.ports.port);
        other.sin_addr.s_addr = htonl(INADDR_LOOPBACK + 1);
        const int probe = socket(AF_INET, SOCK_DGRAM, 0);
        EXPECT_EQ(bind(probe, reinterpret_cast<const sockaddr*>(&other), sizeof other) == 0,
                  othersAreFree)
            << host;
        close(probe);
    }
}

TEST(LiveFiles, LieWhereTheirUserKeepsHisData) {
    const char* const names[] = {"XDG_DATA_HOME", "HOME"};
    std::string before[2];
    for (int i = 0; i < 2; ++i) {
        before[i] = std::getenv(names[i]) != nullptr ? std::getenv(names[i]) : "";
    }
    setenv("HOME", "/home/pilot", 1);
    setenv("XDG_DATA_HOME", "/data", 1);
    EXPECT_EQ(ProtocolFolder(), "/data/avqpanel/flightgear");
    setenv("XDG_DATA_HOME", "", 1);
    EXPECT_EQ(ProtocolFolder(), "/home/pilot/.local/share/avqpanel/flightgear");
    unsetenv("XDG_DATA_HOME");
    EXPECT_EQ(ProtocolFolder(), "/home/pilot/.local/share/avqpanel/flightgear");
    for (int i = 0; i < 2; ++i) {
        setenv(names[i], before[i].c_str(), 1);
    }
}

TEST_F(LiveFlightTest, TheKeyIsKeptAndTheLineNamesTheFiles) {
    std::string problem;
    ASSERT_TRUE(WriteLiveFiles(options_, problem)) << problem;
    const std::string first = Opening();
    EXPECT_EQ(first.size(), std::string("AVQ1-state-").size() + 16);
    options_.mappingPath = AVQ1_SOURCE_DIR "/demo/flightgear/777.json";
    ASSERT_TRUE(WriteLiveFiles(options_, problem)) << problem;
    EXPECT_EQ(Opening(), first) << "a running FlightGear is heard again";
    EXPECT_NE(Written("avq1-controls.xml").find("lateral-index"), std::string::npos);
    EXPECT_EQ(LiveStartOptions(options_), StartOptions(options_.folder, options_.ports));
    for (const char* const name : {"avq1-state", "avq1-traffic", "avq1-controls"}) {
        EXPECT_TRUE(fs::exists(options_.folder + "/Protocol/" + name + ".xml")) << name;
    }
    options_.mappingPath = options_.folder + "/none.json";
    EXPECT_FALSE(WriteLiveFiles(options_, problem));
    EXPECT_EQ(MakeLiveFlight(options_, problem), nullptr);
    EXPECT_NE(problem.find("none.json"), std::string::npos) << problem;
    std::ofstream(options_.mappingPath) << "[]";
    EXPECT_EQ(MakeLiveFlight(options_, problem), nullptr);
    EXPECT_NE(problem.find("not a JSON object"), std::string::npos) << problem;
}

}  // namespace
}  // namespace panelhost
