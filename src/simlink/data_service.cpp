#include "simlink/data_service.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <vector>

#include "base/module_state.h"
#include "platform/services.h"

namespace avq1 {

std::array<std::byte, 1024> dsBuffer;

namespace {

constexpr std::size_t kWordSize = 4;
constexpr std::size_t kLeastSize = 32;
constexpr std::size_t kMostSize = 32512;
constexpr std::size_t kReadHeaderSize = 16;
constexpr std::size_t kWriteHeaderSize = 12;
constexpr std::size_t kEndRoom = 8;  // kept free behind the records
constexpr std::uint32_t kReadKind = 1;
constexpr std::uint32_t kWriteKind = 2;
constexpr std::uint32_t kMessage = 1154;
constexpr std::uint32_t kVersionOffset = 13060;
constexpr std::uint32_t kIdentityOffset = 13064;
constexpr std::uint32_t kClientVersionOffset = 13066;
constexpr std::uint16_t kClientVersion = 0x04B0;
constexpr std::uint32_t kLeastVersion = 0x19980005;
constexpr std::uint32_t kIdentityMark = 0xFADE;

// The service may be any program's: what was queued is kept here, and the answer read by it.
struct QueuedRecord {
    std::size_t at = 0;  // in the buffer
    std::uint32_t kind = 0;
    std::size_t size = 0;
    void* destination = nullptr;  // of a read
};

struct Client {
    void* window = nullptr;
    std::byte* buffer = nullptr;
    std::size_t capacity = 0;
    std::size_t used = 0;
    std::uint32_t version = 0;
    std::uint32_t identity = 0;
    std::vector<QueuedRecord> records;
};

Client client;

const StateReset resetDataService([] { client = Client{}; });

void PutWord(std::size_t at, std::uint32_t word) {
    std::memcpy(client.buffer + at, &word, sizeof word);
}

std::uint32_t WordAt(std::size_t at) {
    std::uint32_t word = 0;
    std::memcpy(&word, client.buffer + at, sizeof word);
    return word;
}

void EmptyQueue() {
    client.used = kWordSize;
    client.records.clear();
}

DsError CheckRoom(std::size_t headerSize, std::size_t size) {
    if (client.window == nullptr) {
        return DsError::NotOpen;
    }
    const std::size_t overhead = client.used + headerSize + kEndRoom;
    return overhead > client.capacity || size > client.capacity - overhead ? DsError::BufferFull
                                                                           : DsError::None;
}

// The low half of an address is all the format has room for.
std::uint32_t AddressWord(const void* address) {
    return static_cast<std::uint32_t>(reinterpret_cast<std::uintptr_t>(address));
}

// Behind a record that is no longer what was sent nothing can be trusted.
void DeliverReads() {
    for (const QueuedRecord& record : client.records) {
        if (WordAt(record.at) != record.kind || WordAt(record.at + 2 * kWordSize) != record.size) {
            return;
        }
        if (record.kind == kReadKind) {
            std::memcpy(record.destination, client.buffer + record.at + kReadHeaderSize,
                        record.size);
        }
    }
}

DsError Introduce(std::int32_t simulatorWanted) {
    const DsError versionRead = DsRead(kVersionOffset, kWordSize, &client.version);
    const DsError identityRead = DsRead(kIdentityOffset, kWordSize, &client.identity);
    if (versionRead != DsError::None || identityRead != DsError::None) {
        return DsError::BufferFull;
    }
    DsWrite(kClientVersionOffset, sizeof kClientVersion, &kClientVersion);
    if (const DsError error = DsProcess(); error != DsError::None) {
        return error;
    }
    if (client.version < kLeastVersion || client.identity >> 16 != kIdentityMark) {
        return DsError::WrongVersion;
    }
    client.identity &= 0xFFFF;
    const bool accepted = simulatorWanted == kAnySimulator ||
                          client.identity == static_cast<std::uint32_t>(simulatorWanted);
    return accepted ? DsError::None : DsError::WrongSimulator;
}

}  // namespace

DsError DsOpen(std::int32_t simulatorWanted, void* buffer, std::size_t size) {
    if (client.window != nullptr) {
        return DsError::AlreadyOpen;
    }
    if (buffer == nullptr || size < kLeastSize) {
        return DsError::NoBuffer;
    }
    void* const window = FindWindowByClass("UIPCMAIN");
    if (window == nullptr) {
        return DsError::NoService;
    }
    client.window = window;
    client.buffer = static_cast<std::byte*>(buffer);
    client.capacity = std::min(size, kMostSize);
    EmptyQueue();
    const DsError error = Introduce(simulatorWanted);
    if (error != DsError::None) {
        DsClose();
    }
    return error;
}

DsError DsRead(std::uint32_t offset, std::size_t size, void* destination) {
    if (const DsError error = CheckRoom(kReadHeaderSize, size); error != DsError::None) {
        return error;
    }
    client.records.push_back({client.used, kReadKind, size, destination});
    for (const std::uint32_t word :
         {kReadKind, offset, static_cast<std::uint32_t>(size), AddressWord(destination)}) {
        PutWord(client.used, word);
        client.used += kWordSize;
    }
    std::fill_n(client.buffer + client.used, size, std::byte{0});
    client.used += size;
    return DsError::None;
}

DsError DsWrite(std::uint32_t offset, std::size_t size, const void* source) {
    if (const DsError error = CheckRoom(kWriteHeaderSize, size); error != DsError::None) {
        return error;
    }
    client.records.push_back({client.used, kWriteKind, size, nullptr});
    for (const std::uint32_t word : {kWriteKind, offset, static_cast<std::uint32_t>(size)}) {
        PutWord(client.used, word);
        client.used += kWordSize;
    }
    std::memcpy(client.buffer + client.used, source, size);
    client.used += size;
    return DsError::None;
}

DsError DsProcess() {
    if (client.window == nullptr) {
        return DsError::NotOpen;
    }
    if (client.used <= kWordSize) {
        return DsError::NothingQueued;
    }
    PutWord(client.used, 0);
    PutWord(0, AddressWord(reinterpret_cast<const void*>(&DsProcess)));
    if (SendWindowMessage(client.window, kMessage, client.used - kWordSize, client.buffer) != 1) {
        return DsError::NotAcknowledged;
    }
    DeliverReads();
    EmptyQueue();
    return DsError::None;
}

void DsClose() {
    client = Client{};
}

bool ReadAircraftWeights(AircraftWeights& weights) {
    constexpr std::uint32_t kZeroFuelOffset = 0x3BFC;  // pounds x 256
    constexpr std::uint32_t kStationsOffset = 0x13FC;
    constexpr std::uint32_t kFirstStationOffset = 0x1400;
    constexpr std::uint32_t kStationSize = 48;
    constexpr std::int32_t kMostStations = 61;
    if (DsOpen(kAnySimulator, dsBuffer.data(), dsBuffer.size()) != DsError::None) {
        return false;
    }
    std::int32_t zeroFuel = 0;
    std::int32_t stations = 0;
    std::array<double, kMostStations> station{};
    DsRead(kZeroFuelOffset, sizeof zeroFuel, &zeroFuel);
    DsRead(kStationsOffset, sizeof stations, &stations);
    bool answered = DsProcess() == DsError::None;
    const std::int32_t count = std::clamp(stations, 0, kMostStations);
    // Sixty-one stations do not fit into the buffer: what is queued is sent when it is full.
    for (std::int32_t k = 0; k < count && answered; ++k) {
        const std::uint32_t offset =
            kFirstStationOffset + kStationSize * static_cast<std::uint32_t>(k);
        double* const destination = &station[static_cast<std::size_t>(k)];
        if (DsRead(offset, sizeof *destination, destination) == DsError::BufferFull) {
            answered = DsProcess() == DsError::None &&
                       DsRead(offset, sizeof *destination, destination) == DsError::None;
        }
    }
    if (answered && count > 0) {
        answered = DsProcess() == DsError::None;
    }
    DsClose();
    if (!answered) {
        return false;
    }
    weights.zeroFuelLb = zeroFuel / 256.0;
    weights.payloadLb = 0;
    for (const double pounds : station) {
        weights.payloadLb += std::isfinite(pounds) ? pounds : 0;
    }
    return true;
}

}  // namespace avq1
