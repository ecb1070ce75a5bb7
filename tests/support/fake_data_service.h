// tests/support/fake_data_service.h - a data service in memory behind the platform table, which
// answers rightly, wrongly, or from some message on no more.
#pragma once

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <map>
#include <vector>

#include "platform/services.h"

namespace avq1::test {

struct FakeDataService {
    std::map<std::uint32_t, std::vector<std::uint8_t>> values;  // by offset
    std::map<std::uint32_t, std::vector<std::uint8_t>> written;
    bool present = true;
    int answers = 1000;  // messages acknowledged before it falls silent
    int messages = 0;
    std::uint64_t mostBytes = 0;
    std::int64_t acknowledgement = 1;
    std::uint32_t spoiledKind = 0;  // records of this kind get their headers overwritten

    static FakeDataService& Get() {
        static FakeDataService service;
        return service;
    }

    template <typename T>
    void Set(std::uint32_t offset, T value) {
        values[offset].resize(sizeof value);
        std::memcpy(values[offset].data(), &value, sizeof value);
    }
    template <typename T>
    T Written(std::uint32_t offset) const {
        T value{};
        const auto found = written.find(offset);
        if (found != written.end() && found->second.size() == sizeof value) {
            std::memcpy(&value, found->second.data(), sizeof value);
        }
        return value;
    }

    static std::int64_t Serve(void*, std::uint32_t message, std::uint64_t size, void* buffer) {
        FakeDataService& service = Get();
        if (message != 1154 || service.answers-- <= 0) {
            return 0;
        }
        ++service.messages;
        service.mostBytes = std::max(service.mostBytes, size);
        auto* at = static_cast<std::uint8_t*>(buffer) + 4;
        std::uint8_t* const end = at + size;
        while (at < end) {
            std::uint32_t head[3];
            std::memcpy(head, at, sizeof head);
            std::uint8_t* const data = at + (head[0] == 1 ? 16 : 12);
            if (head[0] == 1) {
                std::vector<std::uint8_t>& value = service.values[head[1]];
                value.resize(head[2]);
                std::memcpy(data, value.data(), head[2]);
            } else {
                service.written[head[1]].assign(data, data + head[2]);
            }
            if (head[0] == service.spoiledKind) {
                std::memset(at, 0xFF, sizeof head);
            }
            at = data + head[2];
        }
        return service.acknowledgement;
    }

    // Behind `host`, which must outlive it and whose other members stay, or services of its own.
    static FakeDataService& Install(PlatformServices* host = nullptr) {
        FakeDataService& service = Get();
        service = FakeDataService{};
        service.Set<std::uint32_t>(13060, 0x19980005);
        service.Set<std::uint32_t>(13064, 0xFADE0007);
        static PlatformServices own;
        PlatformServices& services = host != nullptr ? *host : own;
        services.size = sizeof services;
        services.find_window = [](const char* name) -> void* {
            return Get().present && std::strcmp(name, "UIPCMAIN") == 0 ? &own : nullptr;
        };
        services.send_message = Serve;
        PlatformTable.services = &services;
        return service;
    }
    static void Remove() { PlatformTable.services = nullptr; }
};

}  // namespace avq1::test
