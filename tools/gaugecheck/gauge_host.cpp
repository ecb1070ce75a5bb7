#include "gaugecheck/gauge_host.h"

#include <cstdio>
#include <cstring>

namespace gaugecheck {

Host host;

namespace {

using avq1::ElementHeader;
using avq1::PanelEvent;

constexpr std::size_t kTickVariable = 1;
constexpr std::array kFrameEvents = {PanelEvent::Update, PanelEvent::AfterUpdate, PanelEvent::Draw,
                                     PanelEvent::AfterDraw};
constexpr std::size_t kElementLimit = 64;

avq1::PanelServices services;

// ---- services ----
std::int32_t AVQ1_PANEL_CALL WindowShown(std::uint32_t) {
    ++host.serviceCalls;
    return 0;
}

std::int32_t AVQ1_PANEL_CALL ToggleWindow(std::uint32_t) {
    ++host.serviceCalls;
    return 1;
}

std::int32_t AVQ1_PANEL_CALL TriggerKeyEvent(std::int32_t, std::uint32_t) {
    ++host.serviceCalls;
    ++host.keyEvents;
    return 1;
}

void AVQ1_PANEL_CALL RegisterVariable(void*, std::int32_t, const char*) {
    ++host.serviceCalls;
}

void AVQ1_PANEL_CALL UnregisterVariable(const char*) {
    ++host.serviceCalls;
}

void AVQ1_PANEL_CALL InitializeVariable(avq1::ModuleVariable*) {
    ++host.serviceCalls;
}

void AVQ1_PANEL_CALL InitializeVariableByName(avq1::ModuleVariable* variable, const char*) {
    ++host.serviceCalls;
    variable->address = nullptr;
    variable->value = 0;
}

void AVQ1_PANEL_CALL LookupVariable(avq1::ModuleVariable* variable) {
    ++host.serviceCalls;
    const auto number = static_cast<std::size_t>(variable->number);
    variable->value = number < host.variables.size() ? host.variables[number] : 0;
    variable->type = static_cast<std::int32_t>(avq1::VariableType::Float64);
}

void AVQ1_PANEL_CALL DoNothing() {}

void FillServices() {
    const auto fill = [](auto& entries) {
        for (void*& entry : entries) {
            entry = reinterpret_cast<void*>(DoNothing);
        }
    };
    fill(services.entries0To4);
    fill(services.entries6To28);
    fill(services.entries36To63);
    services.panel_window_shown = WindowShown;
    services.panel_window_toggle = ToggleWindow;
    services.trigger_key_event = TriggerKeyEvent;
    services.register_var_by_name = RegisterVariable;
    services.initialize_var = InitializeVariable;
    services.initialize_var_by_name = InitializeVariableByName;
    services.lookup_var = LookupVariable;
    services.unregister_var_by_name = UnregisterVariable;
}

// ---- texts ----
void OnTextDrawn(void* deviceContext, const char* text, double x, double y, double pixelSize,
                 std::uint32_t argb) {
    for (const auto& placement : host.placements) {
        const DrawingSurface* const surface = SurfaceOf(*placement);
        if (surface != nullptr && surface->deviceContext == deviceContext) {
            placement->drawing.push_back({text, x, y, pixelSize, argb});
        }
    }
}

// ---- placements ----
void MakeImages(ElementCopy& copy, int& missing) {
    const ElementHeader& header = copy.element.header;
    if (header.resourceNumber != 0 &&
        !LoadBitmapResource(host.module, header.resourceNumber, copy.bitmap)) {
        std::printf("bitmap 0x%X is missing\n", static_cast<unsigned>(header.resourceNumber));
        ++missing;
    }
    const bool isSurface =
        (header.imageFlags & avq1::image_flag::kMakeDeviceContext) != 0 && copy.bitmap.width > 0;
    const int scale = isSurface ? host.options.surfaceScale : 1;
    copy.image.width = copy.bitmap.width * scale;
    copy.image.height = copy.bitmap.height * scale;
    copy.element.imageSet[0] = &copy.image;
    copy.element.imageSet[1] = &copy.image;
    if (isSurface && !host.options.bare) {
        copy.surface = MakeDrawingSurface(copy.image.width, copy.image.height);
        copy.element.deviceContext = copy.surface.deviceContext;
    }
}

ElementHeader* CloneElement(Placement& placement, const ElementHeader& source,
                            ElementHeader* previous, int& missing) {
    if (placement.elements.size() >= kElementLimit) {
        return nullptr;
    }
    ElementCopy& copy = *placement.elements.emplace_back(std::make_unique<ElementCopy>());
    std::memcpy(static_cast<void*>(&copy.element), &source, sizeof copy.element);
    copy.element.header.gauge = &placement.header;
    copy.element.header.previous = previous;
    MakeImages(copy, missing);
    if (source.children != nullptr) {
        for (ElementHeader** child = source.children; *child != nullptr; ++child) {
            if (ElementHeader* made =
                    CloneElement(placement, **child, &copy.element.header, missing)) {
                copy.children.push_back(made);
            }
        }
        copy.children.push_back(nullptr);
        copy.element.header.children = copy.children.data();
    }
    return &copy.element.header;
}

}  // namespace

bool ConnectModule(std::string& error) {
    const avq1::LinkageRecord& linkage = *host.module.linkage;
    if (linkage.moduleId != avq1::kLinkageModuleId || linkage.version != avq1::kLinkageVersion ||
        host.module.importTable->panel.key != avq1::kPanelServiceKey) {
        error = "its records are of another kind";
        return false;
    }
    if (!host.options.bare) {
        FillServices();
    }
    host.module.importTable->panel.services = &services;
    ListenForTexts(host.module, OnTextDrawn);
    if (linkage.init != nullptr) {
        linkage.init();
    }
    return true;
}

int PlaceGauges() {
    int missing = 0;
    for (avq1::GaugeHeader* const* gauge = host.module.linkage->gauges; *gauge != nullptr;
         ++gauge) {
        Placement& placement = *host.placements.emplace_back(std::make_unique<Placement>());
        placement.header = **gauge;
        placement.parameters = host.options.parameters;
        placement.header.parameters = placement.parameters.c_str();
        if (placement.header.elements != nullptr && placement.header.elements[0] != nullptr) {
            placement.list[0] =
                CloneElement(placement, *placement.header.elements[0], nullptr, missing);
        }
        placement.header.elements = placement.list.data();
    }
    return missing;
}

void FreePlacements() {
    for (const auto& placement : host.placements) {
        for (const auto& element : placement->elements) {
            FreeDrawingSurface(element->surface);
        }
    }
    host.placements.clear();
}

void Send(Placement& placement, PanelEvent event) {
    if (placement.header.callback == nullptr) {
        return;
    }
    const bool draws = event == PanelEvent::Draw;
    if (draws) {
        placement.drawing.clear();
    }
    placement.header.callback(&placement.header, static_cast<std::int32_t>(event), 1);
    if (draws && !placement.drawing.empty()) {
        placement.texts = placement.drawing;
    }
}

void SendToAll(PanelEvent event) {
    for (const auto& placement : host.placements) {
        Send(*placement, event);
    }
}

void RunFrame() {
    host.variables[kTickVariable] += 1;
    for (const PanelEvent event : kFrameEvents) {
        SendToAll(event);
    }
}

void RunFrame(Placement& placement) {
    host.variables[kTickVariable] += 1;
    for (const PanelEvent event : kFrameEvents) {
        Send(placement, event);
    }
}

std::vector<ClickTarget> ClickTargets(const Placement& placement) {
    std::vector<ClickTarget> targets;
    const avq1::MouseRectangle* rectangle = placement.header.mouseRectangles;
    int parentX = 0;
    int parentY = 0;
    for (; rectangle != nullptr && rectangle->type != avq1::MouseRectangleType::End; ++rectangle) {
        if (rectangle->type == avq1::MouseRectangleType::Parent) {
            parentX = rectangle->box.x;
            parentY = rectangle->box.y;
        }
        if (rectangle->function != nullptr) {
            targets.push_back({parentX + rectangle->box.x + rectangle->box.width / 2,
                               parentY + rectangle->box.y + rectangle->box.height / 2, rectangle});
        }
    }
    return targets;
}

void Click(Placement& placement, const ClickTarget& target) {
    avq1::MouseCallbackData data;
    data.relativePoint = {target.rectangle->box.width / 2, target.rectangle->box.height / 2};
    data.gauge = &placement.header;
    data.rectangle = target.rectangle;
    data.windowPoint = {target.x, target.y};
    target.rectangle->function(&data, avq1::mouse_flag::kLeftSingle);
}

Placement* FindPlacement(const std::string& gauge) {
    for (const auto& placement : host.placements) {
        if (gauge == placement->header.name) {
            return placement.get();
        }
    }
    return nullptr;
}

const DrawingSurface* SurfaceOf(const Placement& placement) {
    for (const auto& element : placement.elements) {
        if (element->surface.deviceContext != nullptr) {
            return &element->surface;
        }
    }
    return nullptr;
}

Picture Compose(const Placement& placement) {
    if (placement.elements.empty()) {
        return {};
    }
    Picture composed = placement.elements.front()->bitmap;
    for (std::size_t i = 1; i < placement.elements.size(); ++i) {
        const ElementCopy& copy = *placement.elements[i];
        const ElementHeader& header = copy.element.header;
        if ((header.imageFlags & avq1::image_flag::kHidden) == 0) {
            const Picture drawn = copy.surface.deviceContext != nullptr
                                      ? CopyDrawingSurface(copy.surface)
                                      : copy.bitmap;
            Overlay(composed, drawn, header.position.x, header.position.y);
        }
    }
    return composed;
}

}  // namespace gaugecheck
