// gaugecheck/gauge_host.h - the panel system's side of the records: a service table, one placement
// of every gauge with its own copy of the header and element tree, events and clicks.
//
// One host a process. Variables are a table by number; what a module looks up that is not in it
// reads 0. Nothing flies: the values stand until they are set anew.
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "gaugecheck/os.h"
#include "gaugecheck/picture.h"
#include "platform/panel_interface.h"

namespace gaugecheck {

struct DrawnText {
    std::string text;
    double x = 0;
    double y = 0;
    double pixelSize = 0;
    std::uint32_t argb = 0;
};

struct ElementCopy {
    avq1::StaticImageElement element;
    avq1::ImageRecord image;
    Picture bitmap;
    DrawingSurface surface;
    std::vector<avq1::ElementHeader*> children;
};

struct Placement {
    avq1::GaugeHeader header;
    std::string parameters;
    std::vector<std::unique_ptr<ElementCopy>> elements;  // parents before children
    std::array<avq1::ElementHeader*, 2> list{};
    std::vector<DrawnText> texts;    // of the last draw that drew any
    std::vector<DrawnText> drawing;  // of the draw under way
};

struct HostOptions {
    std::string parameters;  // of every gauge
    bool bare = false;       // no device contexts, and every service left out
    int surfaceScale = 1;
};

struct Host {
    LoadedModule module;
    HostOptions options;
    std::vector<std::unique_ptr<Placement>> placements;
    std::array<double, 1024> variables{};
    std::uint64_t serviceCalls = 0;
    std::uint64_t keyEvents = 0;
};

extern Host host;

// Checks the records and fills the import table. False with the reason in `error`.
bool ConnectModule(std::string& error);
// A placement of every gauge in the module's own order; how many bitmaps were not found.
int PlaceGauges();
void FreePlacements();

void Send(Placement& placement, avq1::PanelEvent event);
void SendToAll(avq1::PanelEvent event);
// One tick of the simulator: update and draw events for every placement.
void RunFrame();
// The same for one placement alone.
void RunFrame(Placement& placement);

struct ClickTarget {
    int x = 0;  // centre, gauge pixels
    int y = 0;
    const avq1::MouseRectangle* rectangle = nullptr;
};
std::vector<ClickTarget> ClickTargets(const Placement& placement);
void Click(Placement& placement, const ClickTarget& target);

Placement* FindPlacement(const std::string& gauge);
const DrawingSurface* SurfaceOf(const Placement& placement);  // null without one
Picture Compose(const Placement& placement);

}  // namespace gaugecheck
