// panelhost/panel/placement.h - one placed gauge: its own copy of the header and the element tree.
//
// The module's records are only templates: the same gauge may stand in several windows, so every
// placement owns its header, element lists, images, device contexts and parameter text. Element
// coordinates are pixels of the gauge's background bitmap; surfaces may have a multiple of their
// bitmap's size.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "panelhost/module/resources.h"
#include "panelhost/panel/panel_config.h"
#include "platform/panel_interface.h"

namespace panelhost {

struct SurfaceText {
    std::string text;
    double x = 0;  // surface pixels
    double y = 0;
    double pixelSize = 0;
    std::uint32_t argb = 0;
};

struct ElementCopy {
    avq1::StaticImageElement element;
    std::vector<avq1::ElementHeader*> children;  // closed by a null pointer, empty without
    avq1::ImageRecord finalImage;
    avq1::ImageRecord sourceImage;
    const Picture* bitmap = nullptr;  // of the module's resources; null without
    Picture fitted;  // at its size in the window; empty: to be made, or `shown` has it
    // Surfaces only.
    avq1::PixelDeviceContext context;
    std::vector<std::uint32_t> pixels;  // the module draws here
    Picture shown;                      // the last copy taken for the window
    std::vector<SurfaceText> texts;     // on the shown copy
    std::vector<SurfaceText> newTexts;  // drawn since the copy was taken
    // What the window shows, to find out what changed.
    std::uint32_t composedFlags = 0;
    avq1::PixelPoint composedPlace;
};

struct Placement {
    avq1::GaugeHeader header;
    std::vector<avq1::ElementHeader*> elementList;       // closed by a null pointer
    std::vector<std::unique_ptr<ElementCopy>> elements;  // in drawing order, parents first
    std::string name;
    std::string parameter;
    int index = 0;
    int window = 0;
    int x = 0;  // design coordinates of the window
    int y = 0;
    int width = 0;
    int height = 0;
    int bitmapWidth = 0;  // of the background: the gauge's own coordinates
    int bitmapHeight = 0;
    bool hasScreen = false;  // the module draws on a part of it
};

inline constexpr int kUnknownSide = 100;  // of a gauge without bitmap and size
inline constexpr int kMaxElements = 512;

// Clones `gauge` for `place`; surfaces get `surfaceScale` times their bitmap's size.
std::unique_ptr<Placement> MakePlacement(const avq1::GaugeHeader& gauge,
                                         const GaugePlacement& place,
                                         const ModuleResources& resources, int surfaceScale);

// Gives the placement's surfaces their memory back, or takes it: without surfaces it shows nothing.
void MakeSurfaces(Placement& placement, int surfaceScale);
void FreeSurfaces(Placement& placement);

// The gauge's names of keys; null when the module names none on its background.
const std::vector<KeyName>* KeyNamesOf(const Placement& placement,
                                       const ModuleResources& resources);

}  // namespace panelhost
