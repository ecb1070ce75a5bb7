#include "platform/services.h"

extern "C" {
AVQ1_EXPORT avq1::ImportTableRecord ImportTable;
}

namespace avq1 {
namespace {

// Calls one entry of the panel service table; without a table or entry the result is `absent`.
template <typename Result, typename Member, typename... Arguments>
Result CallPanel(Member member, Result absent, Arguments... arguments) {
    PanelServices* const services = ImportTable.panel.services;
    if (services == nullptr || services->*member == nullptr) {
        return absent;
    }
    return (services->*member)(arguments...);
}

template <typename Member, typename... Arguments>
void TellPanel(Member member, Arguments... arguments) {
    PanelServices* const services = ImportTable.panel.services;
    if (services != nullptr && services->*member != nullptr) {
        (services->*member)(arguments...);
    }
}

}  // namespace

void LookupVariable(ModuleVariable& variable) {
    TellPanel(&PanelServices::lookup_var, &variable);
}

void TriggerKeyEvent(std::int32_t event, std::uint32_t value) {
    CallPanel(&PanelServices::trigger_key_event, std::int32_t{0}, event, value);
}

bool PanelWindowShown(std::uint32_t ident) {
    return CallPanel(&PanelServices::panel_window_shown, std::int32_t{0}, ident) != 0;
}

void TogglePanelWindow(std::uint32_t ident) {
    CallPanel(&PanelServices::panel_window_toggle, std::int32_t{0}, ident);
}

void RegisterVariable(void* value, VariableType type, const char* name) {
    TellPanel(&PanelServices::register_var_by_name, value, static_cast<std::int32_t>(type), name);
}

void UnregisterVariable(const char* name) {
    TellPanel(&PanelServices::unregister_var_by_name, name);
}

void InitializeVariableByName(ModuleVariable& variable, const char* name) {
    TellPanel(&PanelServices::initialize_var_by_name, &variable, name);
}

}  // namespace avq1
