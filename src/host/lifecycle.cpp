#include "host/lifecycle.h"

#include <algorithm>
#include <string_view>

#include "base/messages.h"
#include "base/module_state.h"
#include "base/panel_windows.h"
#include "base/redraw.h"
#include "base/sim_folder.h"
#include "flightlog/flight_log.h"
#include "flightplan/plan_files.h"
#include "host/listeners.h"
#include "host/update_frame.h"
#include "navdb/database_cycle.h"
#include "navdb/nav_database.h"
#include "platform/canvas.h"
#include "platform/services.h"
#include "settings/aircraft_performance.h"
#include "settings/settings.h"
#include "simlink/keyboard.h"

namespace avq1 {

std::uintptr_t GdiplusToken = 0;

namespace {

const StateReset resetGraphics([] { GdiplusToken = 0; });

constexpr std::string_view kVirtualCockpit = "VC";
constexpr std::string_view kSecondVirtualCockpit = "VC2";
constexpr std::string_view kOwnWindow = "WN";

// Parameters that say where an instance stands, and so name no aircraft.
constexpr std::string_view kPlacementWords[] = {kVirtualCockpit, kSecondVirtualCockpit, kOwnWindow};

std::string_view ParameterText(const char* parameters) {
    return parameters != nullptr ? std::string_view(parameters) : std::string_view();
}

void Install(const GaugeBehaviour& behaviour) {
    ConnectListeners();
    if (behaviour.takesSimFolder) {
        EnsureSimFolder();
    }
    if (behaviour.onInstall != nullptr) {
        behaviour.onInstall();
    }
}

void EnsureFlightLogStarted() {
    if (FlightLogStarted == 0) {
        FlightLogUpdate(FlightLogMode::StartPass);
    }
}

// The first gauge with a usable parameter fixes the aircraft for as long as the module is loaded.
void TakeAircraft(std::string_view parameters) {
    const bool placement =
        std::ranges::find(kPlacementWords, parameters) != std::end(kPlacementWords);
    if (!AircraftName.empty() || parameters.empty() || placement) {
        return;
    }
    AircraftName = parameters;
    LoadAircraftFile();
    ReadDatabaseCycle();
    if (IsDatabaseExpired()) {
        AppendMessage("NAV DATA OUT OF DATE");
    }
}

// Every gauge asks for the shared loads; what is loaded already is skipped. A load that found no
// airport file is tried again by the next gauge.
void LoadSharedCore(const GaugeBehaviour& behaviour, std::string_view parameters) {
    EnsureSimFolder();
    if (SettingsLoaded == 0) {
        LoadSettings();
        FlightLogUpdate(FlightLogMode::StartPass);
    }
    if (behaviour.loadsNavigation) {
        if (navDatabase.airports.count == 0) {
            LoadNavDatabase();
        }
        if (behaviour.logsAfterLoad) {
            FlightLogUpdate(FlightLogMode::StartPass);
        }
    }
    TakeAircraft(parameters);
    if (behaviour.loadsNavigation && storedPlans.plans.empty()) {
        ListStoredPlans();
    }
}

void ShowIcons(const GaugeRow& row, GaugeHeader* gauge) {
    int depth = row.surface.resource != 0 ? 2 : 1;
    for (const IconRow& icon : row.icons) {
        ElementHeader* element = ElementAtDepth(gauge, depth++);
        if (element == nullptr) {
            return;
        }
        if (icon.shown()) {
            element->imageFlags &= ~image_flag::kHidden;
        } else {
            element->imageFlags |= image_flag::kHidden;
        }
    }
}

// The surface's pixel size is that of its final image; a host that gives none gets the nominal.
DrawTarget TargetOf(const GaugeRow& row, const StaticImageElement& element, DisplayDrawMode mode) {
    DrawTarget target;
    target.deviceContext = element.deviceContext;
    target.mode = mode;
    const ImageRecord* finalImage = element.imageSet[0];
    target.widthPx = finalImage != nullptr ? finalImage->width : row.surface.box.width;
    target.heightPx = finalImage != nullptr ? finalImage->height : row.surface.box.height;
    return target;
}

void DrawSurface(const GaugeRow& row, GaugeHeader* gauge) {
    ElementHeader* surface = ElementAtDepth(gauge, 1);
    if (row.surface.resource == 0 || surface == nullptr) {
        return;
    }
    const auto* element = reinterpret_cast<const StaticImageElement*>(surface);
    if (element->deviceContext != nullptr) {
        const DisplayDrawMode mode = DrawModeFor(*row.behaviour, gauge->parameters);
        if (mode != DisplayDrawMode::Skip) {
            row.behaviour->drawScreen(TargetOf(row, *element, mode));
        }
        if (mode == DisplayDrawMode::Normal && row.behaviour->keepsPicture != nullptr &&
            row.behaviour->keepsPicture()) {
            return;
        }
    }
    surface->imageFlags &= ~image_flag::kOnScreen;
}

void Draw(const GaugeRow& row, GaugeHeader* gauge) {
    const GaugeBehaviour& behaviour = *row.behaviour;
    // A placement that shows nothing takes no typing either.
    if (behaviour.beforeUpdate != nullptr &&
        DrawModeFor(behaviour, gauge->parameters) != DisplayDrawMode::Skip) {
        behaviour.beforeUpdate();
    }
    if (behaviour.updatesFrame) {
        UpdateFrame();
        TakeKeyboardFromUnseenUnit();
    }
    if (behaviour.onPanelDraw != nullptr) {
        behaviour.onPanelDraw();
    }
    if (behaviour.drawScreen != nullptr) {
        DrawSurface(row, gauge);
    }
}

void TakeKeyboard(const GaugeBehaviour& behaviour) {
    if (behaviour.keyboardUser != nullptr && HasKeyboard(*behaviour.keyboardUser)) {
        StopKeyboardEntry();
    }
}

void Kill(const GaugeBehaviour& behaviour) {
    TakeKeyboard(behaviour);
    if (behaviour.onKill != nullptr) {
        behaviour.onKill();
    }
}

// A window that comes or goes brings surfaces whose addresses may be those of others before.
void Connect() {
    RequestUnitRedraw();
    if (GdiplusToken == 0) {
        GdiplusToken = StartDrawingLibrary();
    }
}

void Disconnect(const GaugeBehaviour& behaviour) {
    RequestUnitRedraw();
    TakeKeyboard(behaviour);
    if (behaviour.startsGraphics && GdiplusToken != 0) {
        StopDrawingLibrary(GdiplusToken);
        GdiplusToken = 0;
    }
}

}  // namespace

void ReleaseModule() {
    StopKeyboardEntry();
}

ElementHeader* ElementAtDepth(GaugeHeader* gauge, int depth) {
    ElementHeader** list = gauge->elements;
    for (int level = 0; list != nullptr && list[0] != nullptr; ++level) {
        if (level == depth) {
            return list[0];
        }
        list = list[0]->children;
    }
    return nullptr;
}

DisplayDrawMode DrawModeFor(const GaugeBehaviour& behaviour, const char* parameters) {
    const std::string_view word = ParameterText(parameters);
    DisplayDrawMode mode = DisplayDrawMode::Normal;
    if (behaviour.hiddenWhileMainShows && word == kVirtualCockpit &&
        PanelWindowShown(panel_window::kMainPanel)) {
        mode = DisplayDrawMode::Skip;
    }
    if (behaviour.popupIdent == 0) {
        return mode;
    }
    if (word != kOwnWindow && PanelWindowShown(behaviour.popupIdent)) {
        const bool second = behaviour.secondCockpit && word == kSecondVirtualCockpit;
        mode = second ? DisplayDrawMode::SecondCockpit : DisplayDrawMode::ClearOnly;
    }
    return mode;
}

void HandleGaugeEvent(const GaugeRow& row, GaugeHeader* gauge, std::int32_t event) {
    if (gauge == nullptr || row.behaviour == nullptr) {
        return;
    }
    const GaugeBehaviour& behaviour = *row.behaviour;
    switch (static_cast<PanelEvent>(event)) {
        case PanelEvent::Install:
            return Install(behaviour);
        case PanelEvent::AfterInstall:
            return behaviour.startsFlightLog ? EnsureFlightLogStarted() : void();
        case PanelEvent::Initialise:
            return behaviour.initialises
                       ? LoadSharedCore(behaviour, ParameterText(gauge->parameters))
                       : void();
        case PanelEvent::Update:
            return ShowIcons(row, gauge);
        case PanelEvent::Draw:
            return Draw(row, gauge);
        case PanelEvent::Kill:
            return Kill(behaviour);
        case PanelEvent::ConnectToWindow:
            return behaviour.startsGraphics ? Connect() : void();
        case PanelEvent::DisconnectFromWindow:
            return Disconnect(behaviour);
        default:
            return;
    }
}

}  // namespace avq1
