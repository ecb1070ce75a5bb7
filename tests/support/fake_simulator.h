// tests/support/fake_simulator.h - a panel service table in memory: tests set the simulator's
// variables by number and read back the key events, windows and named variables it was sent.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "platform/services.h"

namespace avq1::test {

struct FakeSimulator {
    std::map<std::int32_t, double> variables;
    std::vector<std::pair<std::int32_t, std::uint32_t>> events;
    std::map<std::uint32_t, bool> windows;
    std::map<std::string, void*> named;
    std::vector<std::string> registrationOrder;
    // What other modules publish, by name: address and type. Asked for so many times.
    std::map<std::string, std::pair<void*, VariableType>> foreign;
    int foreignQueries = 0;

    static FakeSimulator& Get() {
        static FakeSimulator simulator;
        return simulator;
    }

    // Puts an empty simulator behind the module's panel service table.
    static FakeSimulator& Install() {
        FakeSimulator& simulator = Get();
        simulator = FakeSimulator{};
        static PanelServices services;
        services.panel_window_shown = [](std::uint32_t ident) -> std::int32_t {
            return Get().windows[ident] ? 1 : 0;
        };
        services.panel_window_toggle = [](std::uint32_t ident) -> std::int32_t {
            Get().windows[ident] = !Get().windows[ident];
            return 1;
        };
        services.trigger_key_event = [](std::int32_t event, std::uint32_t value) -> std::int32_t {
            Get().events.emplace_back(event, value);
            return 1;
        };
        services.register_var_by_name = [](void* value, std::int32_t, const char* name) {
            Get().named[name] = value;
            Get().registrationOrder.emplace_back(name);
        };
        services.unregister_var_by_name = [](const char* name) { Get().named.erase(name); };
        services.initialize_var = [](ModuleVariable*) {};
        services.initialize_var_by_name = [](ModuleVariable* variable, const char* name) {
            ++Get().foreignQueries;
            if (const auto found = Get().foreign.find(name); found != Get().foreign.end()) {
                variable->address = found->second.first;
                variable->type = static_cast<std::int32_t>(found->second.second);
            }
        };
        services.lookup_var = [](ModuleVariable* variable) {
            variable->value = Get().variables[variable->number];
        };
        ImportTable.panel.services = &services;
        return simulator;
    }

    int CountEvents(std::int32_t event) const {
        int count = 0;
        for (const auto& [number, value] : events) {
            count += number == event;
        }
        return count;
    }

    // Places the aircraft in the units the raw variables have.
    void SetPosition(double latitude, double longitude) {
        variables[71] = latitude / 8.998425275459816e-06;
        variables[72] = (longitude < 0 ? longitude + 360.0 : longitude) / 1.278976924368144e-12;
    }
    void SetGroundSpeedKt(double knots) { variables[551] = knots / 0.5924837511331251; }
    void NextTick() { variables[1] += 1; }
};

}  // namespace avq1::test
