// A gauge module in one file: writes every event and click down, draws its draw count as a grey
// level and as a text, and carries the bitmaps a real module would.
#include "tests/panelhost/fake/probe_module.h"

#include <array>
#include <cstdio>
#include <cstring>

#include "platform/panel_interface.h"

#ifndef PROBE_LINKAGE_VERSION
#define PROBE_LINKAGE_VERSION 0x800
#endif
#ifndef PROBE_GAUGE_VERSION
#define PROBE_GAUGE_VERSION avq1::kGaugeHeaderVersion
#endif
#define PROBE_EXPORT __attribute__((visibility("default"), used))

using avq1::ElementHeader;
using avq1::GaugeHeader;
using avq1::MouseRectangle;
using avq1::MouseRectangleType;
using avq1::StaticImageElement;

extern "C" {
PROBE_EXPORT avq1::ImportTableRecord ImportTable;
PROBE_EXPORT avq1::PlatformTableRecord PlatformTable;
PROBE_EXPORT ProbeLog probeLog;
}

namespace {

// ---- resources: the section a host reads from the file ----
// A bitmap file of one colour, 24 bits a pixel, below 256 pixels wide and high.
template <int width, int height>
struct __attribute__((packed)) Bmp {
    static constexpr int kRowBytes = (width * 3 + 3) / 4 * 4;
    std::uint8_t bytes[54 + height * kRowBytes] = {'B', 'M'};

    constexpr Bmp(std::uint8_t red, std::uint8_t green, std::uint8_t blue) {
        bytes[10] = 54;  // where the rows begin
        bytes[14] = 40;  // the header's size
        bytes[18] = width;
        bytes[22] = height;
        bytes[26] = 1;
        bytes[28] = 24;
        for (int y = 0; y < height; ++y) {
            for (int x = 0; x < width; ++x) {
                std::uint8_t* const pixel = bytes + 54 + y * kRowBytes + 3 * x;
                pixel[0] = blue;
                pixel[1] = green;
                pixel[2] = red;
            }
        }
    }
};

struct __attribute__((packed)) Row {
    std::uint32_t number, kind, offset, size;
};

struct __attribute__((packed)) Resources {
    char magic[4] = {'A', 'V', 'Q', 'R'};
    std::uint32_t version = 1;
    std::uint32_t count = 4;
    Row rows[4] = {};
    Bmp<kProbeWidth, kProbeHeight> panel{10, 20, 200};
    Bmp<kProbeSurfaceWidth, kProbeSurfaceHeight> surface{0, 0, 0};
    Bmp<4, 4> icon{0, 255, 0};
    // The icon lies on two keys, the smaller one in the middle of the list.
    char names[74] =
        "0 20 20 12 WIDE\n0 22 9 8 HOLD\n0 20 20 11 BROAD\n2 3 6 6 LINE KEY 1\n20 22 9";
};

constexpr Resources MakeResources() {
    Resources all;
    // The icon's top row in the file's bottom-up order is its last one: black, so see-through.
    for (int i = 0; i < all.icon.kRowBytes; ++i) {
        *(std::end(all.icon.bytes) - 1 - i) = 0;
    }
    all.rows[0] = {0x100, 2, offsetof(Resources, panel), sizeof all.panel};
    all.rows[1] = {0x101, 2, offsetof(Resources, surface), sizeof all.surface};
    all.rows[2] = {0x102, 2, offsetof(Resources, icon), sizeof all.icon};
    all.rows[3] = {0x100, 256, offsetof(Resources, names), 65};
    return all;
}

__attribute__((section(".avq_res"), used)) const Resources kResources = MakeResources();

// ---- gauges ----
void Write(const ProbeRecord& record) {
    if (probeLog.count < static_cast<int>(std::size(probeLog.records))) {
        probeLog.records[probeLog.count++] = record;
    }
}

const avq1::PanelServices* Panel() {
    return ImportTable.panel.services;
}

void DrawSurface(GaugeHeader* gauge) {
    ElementHeader* const surface = gauge->elements[0]->children[0];
    auto* const image = reinterpret_cast<StaticImageElement*>(surface);
    auto* const context = static_cast<avq1::PixelDeviceContext*>(image->deviceContext);
    if (context == nullptr) {
        return;
    }
    gauge->userArea[0] += 1;
    const auto level = static_cast<std::uint32_t>(gauge->userArea[0]) & 0xFFU;
    for (int i = 0; i < context->width * context->height; ++i) {
        context->pixels[i] = 0xFF000000U | level << 16U | level << 8U | level;
    }
    char text[32];
    std::snprintf(text, sizeof text, "drawn %d", static_cast<int>(gauge->userArea[0]));
    if (PlatformTable.services != nullptr) {
        PlatformTable.services->text_drawn(context, text, 2, 1, 8, 0xFFFFFFFF);
    }
    surface->imageFlags &= ~avq1::image_flag::kOnScreen;
}

void OnEvent(GaugeHeader* gauge, std::int32_t event, std::uintptr_t extra) {
    Write({ProbeRecord::Event, gauge, event, extra, 0, 0, 0});
    if (event == static_cast<std::int32_t>(avq1::PanelEvent::Draw)) {
        DrawSurface(gauge);
    }
}

std::uint32_t serverNumber = 42;
double serverDistance = 12.5;
char serverText[16] = "INIT";

void OnServerEvent(GaugeHeader* gauge, std::int32_t event, std::uintptr_t extra) {
    Write({ProbeRecord::Event, gauge, event, extra, 0, 0, 0});
    if (event == 2) {
        Panel()->register_var_by_name(serverText, 38, "probe_text");
        Panel()->register_var_by_name(&serverNumber, 39, "probe_number");
        Panel()->register_var_by_name(&serverDistance, 41, "probe_distance");
    } else if (event == 12) {
        Panel()->unregister_var_by_name("probe_text");
    }
}

std::int32_t OnClick(avq1::MouseCallbackData* data, std::uint32_t flags) {
    Write({ProbeRecord::Mouse, data->gauge, 0, 0, flags, data->relativePoint.x,
           data->relativePoint.y});
    if (flags == avq1::mouse_flag::kRightSingle) {
        Panel()->panel_window_toggle(4001);
    }
    // The icon stands two levels below the background and is shown by a click.
    data->gauge->elements[0]->children[0]->children[0]->imageFlags &= ~avq1::image_flag::kHidden;
    return 0;
}

namespace flag = avq1::mouse_flag;

const MouseRectangle kRectangles[] = {
    {.type = MouseRectangleType::Parent, .box = {2, 3, 6, 6}},
    {.type = MouseRectangleType::Child,
     .box = {0, 0, 6, 6},
     .mouseFlags = flag::kLeftSingle | flag::kRightSingle | flag::kDownRepeat | flag::kLeftRelease |
                   flag::kWheelUp,
     .function = OnClick},
    {.type = MouseRectangleType::EndOfParent, .box = {}},
    {.type = MouseRectangleType::Parent, .box = {20, 20, 10, 10}},
    {.type = MouseRectangleType::Child,
     .box = {2, 2, 4, 4},
     .mouseFlags = flag::kLeftSingle,
     .keyEvent = 65879},
    {.type = MouseRectangleType::EndOfParent, .box = {}},
    {.type = MouseRectangleType::End, .box = {}}};

StaticImageElement MakeElement(std::int32_t resource, avq1::PixelPoint place, std::uint32_t flags,
                               ElementHeader** children) {
    StaticImageElement element;
    element.header.resourceNumber = resource;
    element.header.position = place;
    element.header.imageFlags = flags;
    element.header.children = children;
    return element;
}

StaticImageElement icon = MakeElement(
    0x102, {1, 24}, avq1::image_flag::kTransparent | avq1::image_flag::kHidden, nullptr);
ElementHeader* surfaceChildren[] = {&icon.header, nullptr};
StaticImageElement surface = MakeElement(0x101, {kProbeSurfaceX, kProbeSurfaceY},
                                         avq1::image_flag::kMakeDeviceContext, surfaceChildren);
ElementHeader* panelChildren[] = {&surface.header, nullptr};
StaticImageElement panel = MakeElement(0x100, {0, 0}, 0, panelChildren);
ElementHeader* probeElements[] = {&panel.header, nullptr};
StaticImageElement nothing;
ElementHeader* serverElements[] = {&nothing.header, nullptr};

GaugeHeader MakeGauge(const char* name, ElementHeader** elements, avq1::GaugeCallback callback,
                      const MouseRectangle* rectangles) {
    GaugeHeader gauge;
    gauge.version = PROBE_GAUGE_VERSION;
    gauge.name = name;
    gauge.elements = elements;
    gauge.callback = callback;
    gauge.mouseRectangles = rectangles;
    return gauge;
}

GaugeHeader probeGauge = MakeGauge("PROBE", probeElements, OnEvent, kRectangles);
GaugeHeader serverGauge = MakeGauge("SERVER", serverElements, OnServerEvent, nullptr);

}  // namespace

extern "C" {
PROBE_EXPORT avq1::LinkageRecord Linkage{
    avq1::kLinkageModuleId, [] { ++probeLog.initCalls; }, [] { ++probeLog.deinitCalls; }, 0, 0,
    PROBE_LINKAGE_VERSION,  {&probeGauge, &serverGauge}};
}
