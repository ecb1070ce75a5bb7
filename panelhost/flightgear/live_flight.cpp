#include "panelhost/flightgear/live_flight.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstring>
#include <ctime>
#include <thread>

#include "panelhost/base/text.h"
#include "panelhost/flightgear/live_link.h"

namespace panelhost {
namespace {

constexpr int kMostDatagramsPerStep = 1000;
constexpr double kNanosecond = 1e-9;

double Seconds(const timespec& time) {
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * kNanosecond;
}

double ReadS(clockid_t clock) {
    timespec now{};
    clock_gettime(clock, &now);
    return Seconds(now);
}

double NowS() {
    return ReadS(CLOCK_MONOTONIC);
}

// How long before `dayS` a datagram came; 0 for one without a stamp. The kernel stamps by the clock
// of the day alone, which may be set in flight: the link's own times are of a clock that never
// jumps.
double AgeS(msghdr& message, double dayS) {
    for (cmsghdr* each = CMSG_FIRSTHDR(&message); each != nullptr;
         each = CMSG_NXTHDR(&message, each)) {
        if (each->cmsg_level == SOL_SOCKET && each->cmsg_type == SCM_TIMESTAMPNS) {
            timespec stamp{};
            std::memcpy(&stamp, CMSG_DATA(each), sizeof stamp);
            return std::max(dayS - Seconds(stamp), 0.0);
        }
    }
    return 0;
}

std::string FolderOf(const LiveOptions& options) {
    return options.folder.empty() ? ProtocolFolder() : options.folder;
}

bool PrepareFiles(const LiveOptions& options, AutopilotMapping& mapping, std::string& key,
                  std::string& problem) {
    const std::optional<std::string> json = ReadWholeFile(options.mappingPath, kMostMappingBytes);
    if (!json) {
        problem = "cannot read the autopilot's mapping file \"" + options.mappingPath + "\"";
        return false;
    }
    std::string fault;
    const std::optional<AutopilotMapping> read = ReadMapping(*json, fault);
    if (!read) {
        problem = "mapping file \"" + options.mappingPath + "\": " + fault;
        return false;
    }
    mapping = *read;
    return WriteProtocolFiles(FolderOf(options), mapping, key, problem);
}

class LiveFlight : public FlightSource {
  public:
    LiveFlight() = default;
    ~LiveFlight() override {
        if (socket_ >= 0) {
            close(socket_);
        }
    }

    bool Open(const LiveOptions& options, std::string& problem);
    void Step(Ground& ground, World& world, Traffic& traffic, double dtS) override;
    bool ObeysPlacing() const override { return false; }
    std::string Trouble() const override;

  private:
    bool OpenSocket(std::string& problem);
    void Receive();
    void WaitForStep(double dtS);

    LiveOptions options_;
    LiveLink link_;
    int socket_ = -1;
    sockaddr_in simulator_{};
    double dueS_ = 0;
    double steppedS_ = 0;
    std::array<char, kMostPacketBytes + 1> buffer_{};
};

bool LiveFlight::OpenSocket(std::string& problem) {
    simulator_.sin_family = AF_INET;
    simulator_.sin_port = htons(static_cast<std::uint16_t>(options_.ports.port + 1));
    if (inet_pton(AF_INET, options_.ports.host.c_str(), &simulator_.sin_addr) != 1) {
        problem = "the simulator's machine is named by a numeric address, not \"" +
                  options_.ports.host + "\"";
        return false;
    }
    sockaddr_in own{};
    own.sin_family = AF_INET;
    own.sin_port = htons(static_cast<std::uint16_t>(options_.ports.port));
    const bool near = (ntohl(simulator_.sin_addr.s_addr) >> 24U) == 127;
    own.sin_addr.s_addr = htonl(near ? INADDR_LOOPBACK : INADDR_ANY);
    socket_ = socket(AF_INET, SOCK_DGRAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0);
    const int on = 1;
    const int bytes = 1 << 20;
    if (socket_ >= 0) {
        setsockopt(socket_, SOL_SOCKET, SO_TIMESTAMPNS, &on, sizeof on);
        setsockopt(socket_, SOL_SOCKET, SO_RCVBUF, &bytes, sizeof bytes);
    }
    if (socket_ < 0 || bind(socket_, reinterpret_cast<const sockaddr*>(&own), sizeof own) != 0) {
        problem =
            Format("cannot listen on UDP port %d: %s", options_.ports.port, std::strerror(errno));
        return false;
    }
    return true;
}

bool LiveFlight::Open(const LiveOptions& options, std::string& problem) {
    options_ = options;
    AutopilotMapping mapping;
    std::string key;
    if (!PrepareFiles(options, mapping, key, problem)) {
        return false;
    }
    OpenLink(mapping, key, link_);
    return OpenSocket(problem);
}

void LiveFlight::Receive() {
    const double nowS = NowS();
    const double dayS = ReadS(CLOCK_REALTIME);
    for (int i = 0; i < kMostDatagramsPerStep; ++i) {
        sockaddr_in from{};
        alignas(cmsghdr) std::array<char, 256> control{};
        iovec part{buffer_.data(), buffer_.size()};
        msghdr message{};
        message.msg_name = &from;
        message.msg_namelen = sizeof from;
        message.msg_iov = &part;
        message.msg_iovlen = 1;
        message.msg_control = control.data();
        message.msg_controllen = control.size();
        const ssize_t size = recvmsg(socket_, &message, 0);
        if (size < 0) {
            return;
        }
        if (from.sin_addr.s_addr != simulator_.sin_addr.s_addr) {
            ++link_.counts.alien;
            continue;
        }
        Hear(link_, {buffer_.data(), static_cast<std::size_t>(size)}, nowS - AgeS(message, dayS));
    }
}

// Runs on from the last step, and lets go of time that a slow caller has lost.
void LiveFlight::WaitForStep(double dtS) {
    const double nowS = NowS();
    dueS_ = dueS_ + dtS < nowS - 1 ? nowS : dueS_ + dtS;
    if (dueS_ > nowS) {
        std::this_thread::sleep_for(std::chrono::duration<double>(dueS_ - nowS));
    }
}

void LiveFlight::Step(Ground&, World& world, Traffic& traffic, double dtS) {
    if (options_.realTime && dtS > 0) {
        WaitForStep(dtS);
    }
    Receive();
    steppedS_ = NowS();
    const std::string packet = StepLink(link_, steppedS_, world, traffic);
    if (!packet.empty()) {
        sendto(socket_, packet.data(), packet.size(), 0,
               reinterpret_cast<const sockaddr*>(&simulator_), sizeof simulator_);
    }
}

std::string LiveFlight::Trouble() const {
    if (!IsStale(link_, steppedS_)) {
        return "";
    }
    if (link_.counts.taken == 0 && link_.counts.alien + link_.counts.malformed > 0) {
        return "FlightGear was started with other protocol files: start it again";
    }
    return link_.counts.taken == 0 ? "Waiting for FlightGear" : "Link to FlightGear lost";
}

}  // namespace

bool WriteLiveFiles(const LiveOptions& options, std::string& problem) {
    AutopilotMapping mapping;
    std::string key;
    return PrepareFiles(options, mapping, key, problem);
}

std::string LiveStartOptions(const LiveOptions& options) {
    return StartOptions(FolderOf(options), options.ports);
}

std::unique_ptr<FlightSource> MakeLiveFlight(const LiveOptions& options, std::string& problem) {
    auto flight = std::make_unique<LiveFlight>();
    if (!flight->Open(options, problem)) {
        return nullptr;
    }
    return flight;
}

}  // namespace panelhost
