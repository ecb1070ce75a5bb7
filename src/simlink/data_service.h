// simlink/data_service.h - client of the external data service inside the simulator process, which
// offers the simulator's state as numbered byte offsets.
//
// Callers open, queue records, process once and close within one function; while closed nothing is
// kept. Calls tell an error, None on success. A record that does not fit is dropped and the
// others are still sent. Panel thread only; the service has answered when DsProcess returns.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace avq1 {

enum class DsError : std::int32_t {
    None = 0,
    AlreadyOpen = 1,
    NoService = 2,
    NoBuffer = 6,  // none, or below 32 bytes
    WrongVersion = 7,
    WrongSimulator = 8,
    NotOpen = 9,
    NothingQueued = 10,
    NotAcknowledged = 13,
    BufferFull = 15,
};

inline constexpr std::int32_t kAnySimulator = 0;

// Shared by all uses.
extern std::array<std::byte, 1024> dsBuffer;

// The buffer is the caller's and must live until DsClose; at most 32512 bytes of it are used.
DsError DsOpen(std::int32_t simulatorWanted, void* buffer, std::size_t size);

// The destination is filled by DsProcess and must live until then, or until DsClose.
DsError DsRead(std::uint32_t offset, std::size_t size, void* destination);
DsError DsWrite(std::uint32_t offset, std::size_t size, const void* source);
// Sends what is queued and delivers what was read. What the service did not acknowledge stays
// queued. An answer whose records differ from those sent is delivered up to the first that does.
DsError DsProcess();
void DsClose();

// What the aircraft weighs without its fuel, in pounds.
struct AircraftWeights {
    double zeroFuelLb = 0;
    double payloadLb = 0;  // summed over at most 61 stations
};

// False, with the weights untouched, when the service does not answer.
bool ReadAircraftWeights(AircraftWeights& weights);

}  // namespace avq1
