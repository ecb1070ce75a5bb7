#include "panelhost/panel/placement.h"

namespace panelhost {
namespace {

using avq1::ElementHeader;

struct Cloner {
    Placement& placement;
    const ModuleResources& resources;
    int surfaceScale;
};

const Picture* FindBitmap(const ModuleResources& resources, std::int32_t number) {
    const auto found = resources.bitmaps.find(static_cast<std::uint32_t>(number));
    return found == resources.bitmaps.end() ? nullptr : &found->second;
}

void MakeImages(ElementCopy& copy, int surfaceScale) {
    ElementHeader& header = copy.element.header;
    const int width = copy.bitmap != nullptr ? copy.bitmap->width : 0;
    const int height = copy.bitmap != nullptr ? copy.bitmap->height : 0;
    const bool isSurface =
        (header.imageFlags & avq1::image_flag::kMakeDeviceContext) != 0 && width > 0;
    const int scale = isSurface ? surfaceScale : 1;
    copy.finalImage.width = width * scale;
    copy.finalImage.height = height * scale;
    copy.sourceImage.width = width;
    copy.sourceImage.height = height;
    copy.element.imageSet[0] = &copy.finalImage;
    copy.element.imageSet[1] = &copy.sourceImage;
    copy.element.deviceContext = nullptr;
    if (!isSurface) {
        return;
    }
    const std::size_t count = static_cast<std::size_t>(copy.finalImage.width) *
                              static_cast<std::size_t>(copy.finalImage.height);
    copy.pixels.assign(count, 0);
    copy.shown = {copy.finalImage.width, copy.finalImage.height,
                  std::vector<std::uint32_t>(count, 0)};
    copy.context.width = copy.finalImage.width;
    copy.context.height = copy.finalImage.height;
    copy.context.bytesPerRow = copy.finalImage.width * 4;
    copy.context.pixels = copy.pixels.data();
    copy.element.deviceContext = &copy.context;
    header.imageFlags &= ~avq1::image_flag::kOnScreen;
}

// Copies one element and, after it, its children; null when the tree is too large to be one.
ElementHeader* CloneElement(const ElementHeader* source, ElementHeader* previous, Cloner& cloner) {
    auto& elements = cloner.placement.elements;
    if (source == nullptr || elements.size() >= static_cast<std::size_t>(kMaxElements)) {
        return nullptr;
    }
    elements.push_back(std::make_unique<ElementCopy>());
    ElementCopy& copy = *elements.back();
    if (source->type == avq1::ElementType::StaticImage) {
        copy.element = *reinterpret_cast<const avq1::StaticImageElement*>(source);
    } else {
        copy.element.header = *source;
    }
    ElementHeader& header = copy.element.header;
    header.gauge = &cloner.placement.header;
    header.previous = previous;
    copy.bitmap = FindBitmap(cloner.resources, header.resourceNumber);
    MakeImages(copy, cloner.surfaceScale);
    cloner.placement.hasScreen = cloner.placement.hasScreen || copy.context.pixels != nullptr;
    if (source->children != nullptr) {
        for (ElementHeader** child = source->children; *child != nullptr; ++child) {
            if (ElementHeader* const made = CloneElement(*child, &header, cloner)) {
                copy.children.push_back(made);
            }
        }
        copy.children.push_back(nullptr);
        header.children = copy.children.data();
    }
    return &header;
}

}  // namespace

std::unique_ptr<Placement> MakePlacement(const avq1::GaugeHeader& gauge,
                                         const GaugePlacement& place,
                                         const ModuleResources& resources, int surfaceScale) {
    auto placement = std::make_unique<Placement>();
    placement->header = gauge;
    placement->name = gauge.name;
    placement->parameter = place.parameter;
    Cloner cloner{*placement, resources, surfaceScale};
    if (gauge.elements != nullptr) {
        for (ElementHeader** element = gauge.elements; *element != nullptr; ++element) {
            if (ElementHeader* const made = CloneElement(*element, nullptr, cloner)) {
                placement->elementList.push_back(made);
            }
        }
    }
    placement->elementList.push_back(nullptr);
    const Picture* const background =
        placement->elements.empty() ? nullptr : placement->elements.front()->bitmap;
    const bool hasSize = place.width > 0 && place.height > 0;
    placement->bitmapWidth = background != nullptr ? background->width
                             : hasSize             ? place.width
                                                   : kUnknownSide;
    placement->bitmapHeight = background != nullptr ? background->height
                              : hasSize             ? place.height
                                                    : kUnknownSide;
    placement->x = place.x;
    placement->y = place.y;
    placement->width = place.width > 0 ? place.width : placement->bitmapWidth;
    placement->height = place.height > 0 ? place.height : placement->bitmapHeight;
    avq1::GaugeHeader& header = placement->header;
    header.elements = placement->elementList.data();
    header.position = {placement->x, placement->y};
    header.originalPosition = header.position;
    header.size = {placement->width, placement->height};
    header.parameters = place.parameter.empty() ? nullptr : placement->parameter.c_str();
    return placement;
}

void MakeSurfaces(Placement& placement, int surfaceScale) {
    for (const auto& copy : placement.elements) {
        MakeImages(*copy, surfaceScale);
    }
}

void FreeSurfaces(Placement& placement) {
    for (const auto& copy : placement.elements) {
        copy->context = {};
        copy->pixels = std::vector<std::uint32_t>();  // `{}` would keep the memory
        copy->shown = {};
        copy->fitted = {};
        copy->texts.clear();
        copy->newTexts.clear();
    }
}

const std::vector<KeyName>* KeyNamesOf(const Placement& placement,
                                       const ModuleResources& resources) {
    if (placement.elements.empty()) {
        return nullptr;
    }
    const auto number =
        static_cast<std::uint32_t>(placement.elements.front()->element.header.resourceNumber);
    const auto found = resources.keyNames.find(number);
    return found == resources.keyNames.end() ? nullptr : &found->second;
}

}  // namespace panelhost
