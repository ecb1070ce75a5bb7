// The records the panel system reads when it loads the module: the gauge headers with their
// element trees, made once from the gauge table, and Linkage, which lists them.
#include <array>
#include <utility>

#include "host/gauge_table.h"
#include "host/lifecycle.h"
#include "platform/panel_interface.h"

namespace avq1 {
namespace {

constexpr std::uint32_t kGaugeWidthMm = 312;
constexpr std::uint32_t kSurfaceFlags = image_flag::kMakeDeviceContext | image_flag::kBright;

// The deepest tree: a background and eleven knob icons.
constexpr std::size_t kMaxDepth = 12;

// One gauge's records. Each element's children list holds the next one, so element n of the chain
// is the first child of element n-1; every list is closed by a null.
struct GaugeRecords {
    GaugeHeader header;
    std::array<StaticImageElement, kMaxDepth> elements;
    std::array<std::array<ElementHeader*, 2>, kMaxDepth> lists{};
    std::size_t depth = 0;
};

void AppendElement(GaugeRecords& gauge, std::int32_t resource, const PixelPoint& position,
                   std::uint32_t flags) {
    ElementHeader& element = gauge.elements[gauge.depth].header;
    element.resourceNumber = resource;
    element.position = position;
    element.imageFlags = flags;
    gauge.lists[gauge.depth][0] = &element;
    if (gauge.depth > 0) {
        gauge.elements[gauge.depth - 1].header.children = gauge.lists[gauge.depth].data();
    }
    ++gauge.depth;
}

void BuildElements(const GaugeRow& row, GaugeRecords& gauge) {
    AppendElement(gauge, row.background, {}, row.backgroundFlags);
    if (row.surface.resource != 0) {
        const PixelBox& box = row.surface.box;
        AppendElement(gauge, row.surface.resource, {box.x, box.y},
                      kSurfaceFlags | (row.surface.luminous ? image_flag::kLuminous : 0));
    }
    for (const IconRow& icon : row.icons) {
        AppendElement(gauge, icon.resource, {icon.box.x, icon.box.y},
                      image_flag::kHidden | image_flag::kTransparent);
    }
}

template <std::size_t index>
void AVQ1_PANEL_CALL OnGaugeEvent(GaugeHeader* gauge, std::int32_t event, std::uintptr_t) {
    HandleGaugeEvent(GaugeTable()[index], gauge, event);
}

template <std::size_t... index>
std::array<GaugeCallback, kGaugeCount> Callbacks(std::index_sequence<index...>) {
    return {OnGaugeEvent<index>...};
}

void AVQ1_PANEL_CALL DoNothing() {}

void AVQ1_PANEL_CALL Unload() {
    ReleaseModule();
}

LinkageRecord BuildLinkage() {
    static std::array<GaugeRecords, kGaugeCount> gauges;
    const auto callbacks = Callbacks(std::make_index_sequence<kGaugeCount>{});
    LinkageRecord linkage;
    linkage.init = DoNothing;
    linkage.deinit = Unload;
    for (std::size_t i = 0; i < kGaugeCount; ++i) {
        const GaugeRow& row = GaugeTable()[i];
        GaugeRecords& gauge = gauges[i];
        BuildElements(row, gauge);
        gauge.header.name = row.name;
        gauge.header.elements = gauge.lists[0].data();
        gauge.header.widthMm = kGaugeWidthMm;
        gauge.header.mouseRectangles = row.keys != nullptr ? row.keys->rectangles : nullptr;
        gauge.header.callback = row.behaviour != nullptr ? callbacks[i] : nullptr;
        linkage.gauges[i] = &gauge.header;
    }
    return linkage;
}

}  // namespace
}  // namespace avq1

extern "C" {
AVQ1_EXPORT avq1::LinkageRecord Linkage = avq1::BuildLinkage();
}
