#include "panelhost/session/mouse.h"

#include <algorithm>
#include <cmath>
#include <map>

namespace panelhost {
namespace {

using avq1::MouseRectangle;
using avq1::MouseRectangleType;

namespace flag = avq1::mouse_flag;

constexpr std::uint32_t kPressFlags =
    flag::kLeftSingle | flag::kRightSingle | flag::kMiddleSingle | flag::kDownRepeat;

bool Contains(const avq1::PixelBox& box, double x, double y) {
    return x >= box.x && y >= box.y && x < box.x + box.width && y < box.y + box.height;
}

// A left press also belongs to a rectangle that only repeats; its first call has the repeat flag.
std::uint32_t AcceptedFlag(const MouseRectangle& rectangle, std::uint32_t wanted) {
    if ((rectangle.mouseFlags & wanted) != 0) {
        return wanted;
    }
    const bool repeats = (rectangle.mouseFlags & flag::kDownRepeat) != 0;
    return wanted == flag::kLeftSingle && repeats ? flag::kDownRepeat : 0;
}

void CallModule(HostState& host, int placement, const MouseRectangle& rectangle,
                avq1::PixelPoint relative, avq1::PixelPoint windowPoint, std::uint32_t mouseFlag) {
    host.framesToShow = kFramesShownAfterInput;
    if (rectangle.function != nullptr) {
        avq1::MouseCallbackData data;
        data.relativePoint = relative;
        data.windowPoint = windowPoint;
        data.gauge = &host.placements[static_cast<std::size_t>(placement)]->header;
        data.rectangle = &rectangle;
        rectangle.function(&data, mouseFlag);
    }
    if (rectangle.keyEvent != 0 && mouseFlag != flag::kLeftRelease) {
        ApplyKeyEvent(host, rectangle.keyEvent, 0, true);
    }
}

bool PressOn(HostState& host, const Placement& placement, avq1::PixelPoint windowPoint, double x,
             double y, std::uint32_t wanted) {
    const double gaugeX = (x - placement.x) * placement.bitmapWidth / placement.width;
    const double gaugeY = (y - placement.y) * placement.bitmapHeight / placement.height;
    for (const FlatRectangle& flat : FlattenRectangles(placement.header.mouseRectangles)) {
        const std::uint32_t accepted = AcceptedFlag(*flat.rectangle, wanted);
        if (accepted == 0 || !Contains(flat.box, gaugeX, gaugeY)) {
            continue;
        }
        const avq1::PixelPoint relative{static_cast<std::int32_t>(gaugeX) - flat.box.x,
                                        static_cast<std::int32_t>(gaugeY) - flat.box.y};
        const bool isButton = (wanted & (flag::kWheelUp | flag::kWheelDown)) == 0;
        if (isButton) {
            host.mouse = {true,     placement.index, flat.rectangle,
                          relative, windowPoint,     kFirstRepeatTicks};
        }
        CallModule(host, placement.index, *flat.rectangle, relative, windowPoint, accepted);
        return true;
    }
    return false;
}

// The label whose box has the most in common with a rectangle's; at least half of it.
std::string LabelFor(const std::vector<KeyName>* names, const avq1::PixelBox& box) {
    std::string label;
    double best = 0.5;
    for (const KeyName& name : names != nullptr ? *names : std::vector<KeyName>{}) {
        const double width =
            std::min(name.x + name.width, box.x + box.width) - std::max(name.x, box.x);
        const double height =
            std::min(name.y + name.height, box.y + box.height) - std::max(name.y, box.y);
        const double larger =
            std::max(1.0, std::max(1.0 * name.width * name.height, 1.0 * box.width * box.height));
        const double share = width > 0 && height > 0 ? width * height / larger : 0;
        if (share > best) {
            best = share;
            label = name.label;
        }
    }
    return label;
}

// The label of the smallest key that a point lies on.
std::string LabelAt(const std::vector<KeyName>* names, int x, int y) {
    const KeyName* best = nullptr;
    for (std::size_t i = 0; names != nullptr && i < names->size(); ++i) {
        const KeyName& name = (*names)[i];
        const bool inside = Contains({name.x, name.y, name.width, name.height}, x, y);
        if (inside && (best == nullptr || name.width * name.height < best->width * best->height)) {
            best = &name;
        }
    }
    return best != nullptr ? best->label : "lamp";
}

}  // namespace

std::vector<FlatRectangle> FlattenRectangles(const MouseRectangle* table) {
    std::vector<FlatRectangle> flat;
    std::vector<FlatRectangle> parents;
    for (int row = 0; table != nullptr && row < kMaxMouseRows; ++row, ++table) {
        if (table->type == MouseRectangleType::End) {
            break;
        }
        if (table->type == MouseRectangleType::EndOfParent) {
            if (!parents.empty()) {
                flat.push_back(parents.back());
                parents.pop_back();
            }
            continue;
        }
        const avq1::PixelBox origin = parents.empty() ? avq1::PixelBox{} : parents.back().box;
        FlatRectangle rectangle{table, table->box, true};
        rectangle.box.x += origin.x;
        rectangle.box.y += origin.y;
        if (table->type == MouseRectangleType::Parent) {
            rectangle.isLeaf = false;
            parents.push_back(rectangle);
        } else if (table->type == MouseRectangleType::Child) {
            flat.push_back(rectangle);
        }
    }
    for (; !parents.empty(); parents.pop_back()) {
        flat.push_back(parents.back());
    }
    return flat;
}

bool PressMouse(HostState& host, HostWindow& window, double x, double y, std::uint32_t wanted) {
    const avq1::PixelPoint point{static_cast<std::int32_t>(std::lround(x)),
                                 static_cast<std::int32_t>(std::lround(y))};
    for (auto it = window.placements.rbegin(); it != window.placements.rend(); ++it) {
        const Placement& placement = **it;
        const bool inside = x >= placement.x && y >= placement.y &&
                            x < placement.x + placement.width && y < placement.y + placement.height;
        if (inside && PressOn(host, placement, point, x, y, wanted)) {
            return true;
        }
    }
    return false;
}

void ReleaseMouse(HostState& host) {
    const HeldMouse held = host.mouse;
    host.mouse = HeldMouse{};
    if (held.held && (held.rectangle->mouseFlags & flag::kLeftRelease) != 0) {
        CallModule(host, held.placement, *held.rectangle, held.relativePoint, held.windowPoint,
                   flag::kLeftRelease);
    }
}

void RepeatMouse(HostState& host) {
    HeldMouse& held = host.mouse;
    if (!held.held || (held.rectangle->mouseFlags & flag::kDownRepeat) == 0 ||
        --held.ticksToRepeat > 0) {
        return;
    }
    held.ticksToRepeat = kRepeatTicks;
    const HeldMouse now = held;
    CallModule(host, now.placement, *now.rectangle, now.relativePoint, now.windowPoint,
               flag::kDownRepeat);
}

std::vector<Lamp> ListLamps(const HostState& host, const HostWindow& window) {
    std::vector<Lamp> lamps;
    std::map<std::string, int> counts;
    for (const Placement* placement : window.placements) {
        const std::vector<KeyName>* const names = KeyNamesOf(*placement, host.module.resources);
        // The first part is the gauge's background.
        for (std::size_t i = 1; i < placement->elements.size(); ++i) {
            const ElementCopy& copy = *placement->elements[i];
            const avq1::ElementHeader& header = copy.element.header;
            const bool isSurface = (header.imageFlags & avq1::image_flag::kMakeDeviceContext) != 0;
            if (copy.bitmap == nullptr || isSurface) {
                continue;
            }
            std::string name = LabelAt(names, header.position.x + copy.bitmap->width / 2,
                                       header.position.y + copy.bitmap->height / 2);
            const int count = ++counts[name];
            name += count > 1 ? " " + std::to_string(count) : "";
            lamps.push_back({name, (header.imageFlags & avq1::image_flag::kHidden) == 0});
        }
    }
    return lamps;
}

std::vector<ClickArea> ListClickAreas(const HostState& host, const HostWindow& window) {
    std::vector<ClickArea> areas;
    const int scale = window.picture.scale;
    for (const Placement* placement : window.placements) {
        const std::vector<KeyName>* const names = KeyNamesOf(*placement, host.module.resources);
        const double scaleX = 1.0 * placement->width / placement->bitmapWidth;
        const double scaleY = 1.0 * placement->height / placement->bitmapHeight;
        for (const FlatRectangle& flat : FlattenRectangles(placement->header.mouseRectangles)) {
            const MouseRectangle& rectangle = *flat.rectangle;
            const bool acts = rectangle.function != nullptr || rectangle.keyEvent != 0;
            const std::uint32_t wheel = flag::kWheelUp | flag::kWheelDown;
            if (!acts || (rectangle.mouseFlags & (kPressFlags | wheel)) == 0) {
                continue;
            }
            ClickArea area;
            area.x = (placement->x + flat.box.x * scaleX) * scale;
            area.y = (placement->y + flat.box.y * scaleY) * scale;
            area.width = flat.box.width * scaleX * scale;
            area.height = flat.box.height * scaleY * scale;
            area.cursor = rectangle.cursor;
            area.repeatsWhileHeld = (rectangle.mouseFlags & flag::kDownRepeat) != 0;
            area.takesWheel = (rectangle.mouseFlags & wheel) != 0;
            area.label = LabelFor(names, flat.box);
            area.gauge = placement->name;
            area.placement = placement->index;
            areas.push_back(area);
        }
    }
    return areas;
}

}  // namespace panelhost
