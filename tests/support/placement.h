// tests/support/placement.h - places a gauge as a panel system does: its own copy of the header and
// of the whole element tree, with pictures in memory for the elements that ask for a device
// context.
#pragma once

#include <cstdint>
#include <deque>
#include <string_view>
#include <vector>

#include "platform/panel_interface.h"

extern "C" avq1::LinkageRecord Linkage;

namespace avq1::test {

inline GaugeHeader* FindGauge(std::string_view name) {
    for (int i = 0; i < kGaugeCount; ++i) {
        if (name == Linkage.gauges[i]->name) {
            return Linkage.gauges[i];
        }
    }
    return nullptr;
}

class Placement {
  public:
    // `surfaceWidth` and `surfaceHeight` size the drawing surface; 0 gives it no device context.
    Placement(std::string_view gauge, const char* parameters, int surfaceWidth = 0,
              int surfaceHeight = 0)
        : header_(*FindGauge(gauge)), width_(surfaceWidth), height_(surfaceHeight) {
        header_.parameters = parameters;
        header_.elements = CloneList(header_.elements, nullptr);
    }

    void Send(PanelEvent event) { Send(static_cast<std::int32_t>(event)); }
    void Send(std::int32_t event) {
        if (header_.callback != nullptr) {
            header_.callback(&header_, event, 1);
        }
    }

    // Clicks at a point of the gauge, through its own mouse table. False when nothing is there.
    bool Click(int x, int y) {
        const MouseRectangle* rectangle = header_.mouseRectangles;
        for (; rectangle != nullptr && rectangle->type != MouseRectangleType::End; ++rectangle) {
            const PixelBox& box = rectangle->box;
            if (rectangle->type != MouseRectangleType::Parent || x < box.x || y < box.y ||
                x >= box.x + box.width || y >= box.y + box.height) {
                continue;
            }
            const MouseRectangle& child = rectangle[1];
            MouseCallbackData data;
            data.relativePoint = {x - box.x, y - box.y};
            data.gauge = &header_;
            data.rectangle = &child;
            child.function(&data, mouse_flag::kLeftSingle);
            return true;
        }
        return false;
    }

    GaugeHeader& header() { return header_; }
    StaticImageElement* Element(int depth) {
        ElementHeader** list = header_.elements;
        for (; list != nullptr && list[0] != nullptr; list = list[0]->children) {
            if (depth-- == 0) {
                return reinterpret_cast<StaticImageElement*>(list[0]);
            }
        }
        return nullptr;
    }
    std::vector<std::uint32_t>& pixels() { return pixels_; }

  private:
    ElementHeader** CloneList(ElementHeader** source, ElementHeader* previous) {
        std::vector<ElementHeader*>& list = lists_.emplace_back();
        for (; source != nullptr && *source != nullptr; ++source) {
            list.push_back(CloneElement(**source, previous));
        }
        list.push_back(nullptr);
        return list.data();
    }

    ElementHeader* CloneElement(const ElementHeader& source, ElementHeader* previous) {
        StaticImageElement& copy =
            elements_.emplace_back(reinterpret_cast<const StaticImageElement&>(source));
        copy.header.gauge = &header_;
        copy.header.previous = previous;
        if ((source.imageFlags & image_flag::kMakeDeviceContext) != 0 && width_ > 0) {
            pixels_.assign(static_cast<std::size_t>(width_) * height_, 0xFF123456);
            context_.width = image_.width = width_;
            context_.height = image_.height = height_;
            context_.bytesPerRow = width_ * 4;
            context_.pixels = pixels_.data();
            copy.imageSet[0] = &image_;
            copy.deviceContext = &context_;
        }
        if (source.children != nullptr) {
            copy.header.children = CloneList(source.children, &copy.header);
        }
        return &copy.header;
    }

    GaugeHeader header_;
    int width_;
    int height_;
    std::deque<std::vector<ElementHeader*>> lists_;  // whose addresses stay
    std::deque<StaticImageElement> elements_;
    std::vector<std::uint32_t> pixels_;
    PixelDeviceContext context_;
    ImageRecord image_;
};

}  // namespace avq1::test
