#include "panelhost/session/services.h"

#include <algorithm>
#include <cstring>

#include "panelhost/base/text.h"
#include "panelhost/world/data_service.h"
#include "panelhost/world/key_events.h"
#include "panelhost/world/variables.h"
#include "platform/traffic_interface.h"

namespace panelhost {
namespace {

using avq1::ModuleVariable;
using avq1::VariableType;

constexpr std::size_t kMaxVariables = 1024;
constexpr std::size_t kMaxTextsPerSurface = 4096;
constexpr std::size_t kMaxTextLength = 256;
constexpr std::int32_t kMaxProfilePoints = 256;

HostState* activeHost = nullptr;

std::int32_t DoNothing() {
    return 0;
}

std::int32_t WindowShown(std::uint32_t ident) {
    HostState* const host = ActiveHost();
    const HostWindow* const window = host != nullptr ? FindWindow(*host, ident) : nullptr;
    return window != nullptr && window->visible ? 1 : 0;
}

std::int32_t WindowToggle(std::uint32_t ident) {
    HostState* const host = ActiveHost();
    const HostWindow* const window = host != nullptr ? FindWindow(*host, ident) : nullptr;
    return window != nullptr && SetVisible(*host, ident, !window->visible) ? 1 : 0;
}

std::int32_t TriggerKeyEvent(std::int32_t event, std::uint32_t value) {
    if (HostState* const host = ActiveHost()) {
        ApplyKeyEvent(*host, event, value, true);
        return 1;
    }
    return 0;
}

RegisteredVariable* FindRegistered(HostState& host, const char* name) {
    const auto found =
        std::find_if(host.variables.begin(), host.variables.end(),
                     [name](const RegisteredVariable& v) { return EqualNoCase(v.name, name); });
    return found == host.variables.end() ? nullptr : &*found;
}

void RegisterVariable(void* value, std::int32_t type, const char* name) {
    HostState* const host = ActiveHost();
    if (host == nullptr || name == nullptr || value == nullptr) {
        return;
    }
    if (RegisteredVariable* const known = FindRegistered(*host, name)) {
        known->type = type;
        known->address = value;
    } else if (host->variables.size() < kMaxVariables) {
        host->variables.push_back({name, type, value});
    }
}

void UnregisterVariable(const char* name) {
    HostState* const host = ActiveHost();
    if (host != nullptr && name != nullptr) {
        std::erase_if(host->variables,
                      [name](const RegisteredVariable& v) { return EqualNoCase(v.name, name); });
    }
}

// What a typed variable holds, in the 8 bytes of a variable record.
double Fetch(std::int32_t type, const void* address) {
    double value = 0;
    switch (static_cast<VariableType>(type)) {
        case VariableType::PointerToUint32: {
            std::uint32_t number = 0;
            std::memcpy(&number, address, sizeof number);
            return number;
        }
        case VariableType::Float64:
        case VariableType::PointerToFloat64:
            std::memcpy(&value, address, sizeof value);
            return value;
        case VariableType::Pointer:
            std::memcpy(&value, &address, sizeof address);
            return value;
    }
    return value;
}

void LookupVariable(ModuleVariable* variable) {
    HostState* const host = ActiveHost();
    if (host == nullptr || variable == nullptr) {
        return;
    }
    variable->previousValue = variable->value;
    if (variable->address != nullptr && variable->number == 0) {
        variable->value = Fetch(variable->type, variable->address);
        return;
    }
    variable->value = ReadNumbered(*host, variable->number).value_or(0);
    variable->type = static_cast<std::int32_t>(VariableType::Float64);
}

// What a traffic module beside the gauge module offers.
void* AVQ1_PANEL_CALL EnterTraffic(std::int32_t interfaceVersion, std::int32_t* result) {
    constexpr std::int32_t kWrongVersion = 2;
    HostState* const host = ActiveHost();
    const bool good = host != nullptr && interfaceVersion == avq1::kTrafficInterfaceVersion;
    if (result != nullptr) {
        *result = good ? 0 : kWrongVersion;
    }
    return good ? &host->traffic.block : nullptr;
}

void InitializeVariableByName(ModuleVariable* variable, const char* name) {
    HostState* const host = ActiveHost();
    if (host == nullptr || variable == nullptr || name == nullptr) {
        return;
    }
    variable->number = 0;
    if (host->options.trafficModule && EqualNoCase(name, avq1::kTrafficVariableName)) {
        variable->address = reinterpret_cast<void*>(&EnterTraffic);
        variable->type = static_cast<std::int32_t>(VariableType::Pointer);
        return;
    }
    const RegisteredVariable* const known = FindRegistered(*host, name);
    variable->address = known != nullptr ? known->address : nullptr;
    variable->type = known != nullptr ? known->type : 0;
    variable->value = known != nullptr ? Fetch(known->type, known->address) : 0;
    variable->previousValue = variable->value;
}

int mainWindow = 0;
int dataServiceWindow = 0;

void* FindWindowOfClass(const char* className) {
    if (className == nullptr) {
        return nullptr;
    }
    if (std::strcmp(className, "UIPCMAIN") == 0) {
        return &dataServiceWindow;
    }
    return std::strcmp(className, "FS98MAIN") == 0 ? &mainWindow : nullptr;
}

std::int64_t SendWindowMessage(void* window, std::uint32_t message, std::uint64_t first,
                               void* second) {
    HostState* const host = ActiveHost();
    if (host == nullptr || window != &dataServiceWindow || message != kDataServiceMessage) {
        return 0;
    }
    return ServeDataRequest(host->world, first, second);
}

std::int32_t ReadKeyboard(std::uint8_t state[256]) {
    constexpr std::int32_t kInputLost = static_cast<std::int32_t>(0x8007001E);
    const HostState* const host = ActiveHost();
    if (host == nullptr || state == nullptr) {
        return kInputLost;
    }
    std::memcpy(state, host->keyboard.scanCodes.data(), host->keyboard.scanCodes.size());
    return 0;
}

std::int32_t KeyState(std::int32_t virtualKey) {
    const HostState* const host = ActiveHost();
    return host != nullptr && virtualKey >= 0 && virtualKey < 256
               ? host->keyboard.virtualKeys[static_cast<std::size_t>(virtualKey)]
               : 0;
}

std::int32_t SetKeyboardHook(avq1::KeyboardHook hook) {
    HostState* const host = ActiveHost();
    if (host == nullptr) {
        return 0;
    }
    host->keyboard.hook = hook;
    return hook != nullptr ? 1 : 0;
}

ElementCopy* SurfaceOf(HostState& host, const void* deviceContext) {
    for (const auto& placement : host.placements) {
        for (const auto& copy : placement->elements) {
            if (&copy->context == deviceContext) {
                return copy.get();
            }
        }
    }
    return nullptr;
}

void TakeVerticalProfile(const avq1::VerticalProfileRecord* record) {
    HostState* const host = ActiveHost();
    if (host == nullptr || record == nullptr || record->size < sizeof *record) {
        return;
    }
    VerticalProfile& profile = host->profile;
    profile.phase = record->phase;
    profile.engaged = record->engaged == 1;
    profile.cruiseAltitudeFt = record->cruiseAltitudeFt;
    profile.targetAltitudeFt = record->targetAltitudeFt;
    profile.pathAltitudeFt = record->pathAltitudeFt;
    profile.points.clear();
    const std::int32_t count =
        record->points == nullptr ? 0 : std::clamp(record->count, 0, kMaxProfilePoints);
    for (std::int32_t i = 0; i < count; ++i) {
        const avq1::VerticalProfilePoint& point = record->points[i];
        profile.points.push_back({{point.name, strnlen(point.name, sizeof point.name)},
                                  static_cast<int>(point.kind),
                                  point.restriction,
                                  point.distanceNm,
                                  point.altitudeFt,
                                  point.restrictionFt});
    }
}

void TextDrawn(void* deviceContext, const char* text, double x, double y, double pixelSize,
               std::uint32_t argb) {
    HostState* const host = ActiveHost();
    ElementCopy* const copy = host != nullptr ? SurfaceOf(*host, deviceContext) : nullptr;
    if (copy == nullptr || text == nullptr || copy->newTexts.size() >= kMaxTextsPerSurface) {
        return;
    }
    const std::string words(Trim(std::string_view(text).substr(0, kMaxTextLength)));
    if (!words.empty()) {
        copy->newTexts.push_back({words, x, y, pixelSize, argb});
    }
}

}  // namespace

HostState* ActiveHost() {
    return activeHost;
}

void SetActiveHost(HostState* host) {
    activeHost = host;
}

avq1::PanelServices* PanelServiceTable() {
    static avq1::PanelServices table;
    void* const nothing = reinterpret_cast<void*>(&DoNothing);
    std::fill(std::begin(table.entries0To4), std::end(table.entries0To4), nothing);
    std::fill(std::begin(table.entries6To28), std::end(table.entries6To28), nothing);
    std::fill(std::begin(table.entries36To63), std::end(table.entries36To63), nothing);
    table.id = avq1::kPanelServiceKey;
    table.version = avq1::kLinkageVersion;
    table.init = [] {};
    table.deinit = [] {};
    table.panel_window_shown = WindowShown;
    table.panel_window_toggle = WindowToggle;
    table.trigger_key_event = TriggerKeyEvent;
    table.register_var_by_name = RegisterVariable;
    table.initialize_var = LookupVariable;
    table.initialize_var_by_name = InitializeVariableByName;
    table.lookup_var = LookupVariable;
    table.unregister_var_by_name = UnregisterVariable;
    return &table;
}

avq1::PlatformServices* PlatformServiceTable() {
    static avq1::PlatformServices table;
    table.size = sizeof table;
    table.find_window = FindWindowOfClass;
    table.send_message = SendWindowMessage;
    table.read_keyboard = ReadKeyboard;
    table.key_state = KeyState;
    table.set_keyboard_hook = SetKeyboardHook;
    table.text_drawn = TextDrawn;
    table.vertical_profile = TakeVerticalProfile;
    return &table;
}

std::optional<double> ReadNumbered(const HostState& host, std::int32_t number) {
    const auto found = host.overrides.find(number);
    return found == host.overrides.end() ? ReadVariable(host.world, number) : found->second;
}

NamedVariable ReadNamed(const RegisteredVariable& variable) {
    NamedVariable named;
    named.name = variable.name;
    if (static_cast<VariableType>(variable.type) == VariableType::Pointer) {
        const char* const text = static_cast<const char*>(variable.address);
        named.isText = true;
        named.text.assign(text, strnlen(text, kMaxTextLength));
    } else {
        named.number = Fetch(variable.type, variable.address);
    }
    return named;
}

std::optional<NamedVariable> ReadNamed(const HostState& host, std::string_view name) {
    for (const RegisteredVariable& variable : host.variables) {
        if (EqualNoCase(variable.name, name)) {
            return ReadNamed(variable);
        }
    }
    return std::nullopt;
}

HostWindow* FindWindow(HostState& host, std::uint32_t ident) {
    for (int i = 0; i < host.panelWindows; ++i) {
        HostWindow* const window = host.windows[static_cast<std::size_t>(i)].get();
        if (window->panel.ident == ident) {
            return window;
        }
    }
    return nullptr;
}

bool IsSeen(const HostState& host, const HostWindow& window) {
    return window.mirrors < 0 ? window.visible
                              : host.windows[static_cast<std::size_t>(window.mirrors)]->visible;
}

bool SetVisible(HostState& host, std::uint32_t ident, bool visible) {
    HostWindow* const window = FindWindow(host, ident);
    if (window != nullptr && window->visible != visible) {
        window->visible = visible;
        host.framesToShow = kFramesShownAfterInput;
        ++window->revision;
    }
    return window != nullptr;
}

void ApplyKeyEvent(HostState& host, std::int32_t number, std::uint32_t value, bool fromModule) {
    const KeyEventRow* const row = FindKeyEvent(number);
    if (row != nullptr) {
        row->apply(host.world, value);
    }
    host.moduleEventCounts[number] += fromModule ? 1 : 0;
    KeyEventRecord record;
    record.serial = ++host.eventSerial;
    record.timeS = host.world.clock.flightTimeS;
    record.number = number;
    record.value = value;
    record.name = row != nullptr ? row->name : "unknown";
    record.fromModule = fromModule;
    host.events.push_back(record);
    if (host.events.size() > kKeptEvents) {
        host.events.pop_front();
    }
}

}  // namespace panelhost
