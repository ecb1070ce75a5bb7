#include "displays/map/map_names.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <initializer_list>
#include <optional>

#include "displays/map/map_layers.h"
#include "geometry/geometry.h"

namespace avq1 {
namespace {

constexpr CanvasFont kIdentFont{"Arial", 9};
constexpr double kStepPx = 6;       // a required name moves away by this much at a time
constexpr double kFarthestPx = 24;  // farther away it would not be told whose name it is
constexpr double kBesidePx = 8;     // beyond this its symbol is told by a line

std::vector<MapName> kept;

// Right, left, below, above.
std::array<CanvasPoint, 6> PlacesBeside(const CanvasPoint& symbol, double halfWidth,
                                        const CanvasSize& size) {
    const double right = symbol.x + halfWidth + 1;
    const double left = symbol.x - halfWidth - 1 - size.width;
    const double above = symbol.y - size.height;
    const double middle = symbol.x - size.width / 2;
    return {{{right, above},
             {right, symbol.y},
             {left, above},
             {left, symbol.y},
             {middle, symbol.y + halfWidth + 1},
             {middle, above - halfWidth - 1}}};
}

// The first place at this distance from the symbol that is inside and free of both.
template <class Inside>
std::optional<TextBox> FreePlace(const MapName& name, double away, const CanvasSize& size,
                                 const TextBoxes& taken, Inside inside) {
    for (const CanvasPoint& place : PlacesBeside(name.at, away, size)) {
        const TextBox box{place.x, place.y, size.width, size.height};
        if (inside(box) && taken.IsFree(box)) {
            return box;
        }
    }
    return std::nullopt;
}

std::optional<TextBox> PlaceWhereFree(const MapFrame& frame, const MapName& name,
                                      const CanvasSize& size) {
    return FreePlace(name, name.halfWidth, size, frame.texts,
                     [&](const TextBox& box) { return InsideNames(frame, box); });
}

// Beside the symbol or a little away, else so over what is not of the route.
std::optional<TextBox> RequiredPlace(const MapFrame& frame, const TextBoxes& required,
                                     const MapName& name, const CanvasSize& size) {
    for (const TextBoxes* const taken :
         std::initializer_list<const TextBoxes*>{&frame.texts, &required}) {
        for (double away = name.halfWidth; away <= kFarthestPx; away += kStepPx) {
            const auto box = FreePlace(name, away, size, *taken, [&](const TextBox& place) {
                return InsideMap(frame, place) && frame.fixedTexts.IsFree(place);
            });
            if (box) {
                return box;
            }
        }
    }
    return std::nullopt;
}

// From the symbol to the nearest point of a name that does not stand beside it.
void DrawLeader(const MapFrame& frame, const MapName& name, const TextBox& box) {
    const CanvasPoint end{std::clamp(name.at.x, box.x, box.x + box.width),
                          std::clamp(name.at.y, box.y, box.y + box.height)};
    const double length = std::hypot(end.x - name.at.x, end.y - name.at.y);
    if (length <= name.halfWidth + kBesidePx) {
        return;
    }
    const double start = name.halfWidth / length;
    frame.surface.canvas().DrawLine({name.argb, 0.7}, name.at.x + start * (end.x - name.at.x),
                                    name.at.y + start * (end.y - name.at.y), end.x, end.y);
}

}  // namespace

bool InsideNames(const MapFrame& frame, const TextBox& box) {
    return InsideCircle(frame, frame.namesRadius, box) && InsideMap(frame, box);
}

void TakeFixedPlace(const MapFrame& frame, const TextBox& box) {
    frame.fixedTexts.Take(box);
    frame.texts.Take(box);
}

void AddMapName(const MapFrame& frame, const MapName& name) {
    constexpr double kOwnPlacePx = 3;  // what of a symbol a name must not cover
    frame.texts.Take(
        {name.at.x - kOwnPlacePx, name.at.y - kOwnPlacePx, 2 * kOwnPlacePx, 2 * kOwnPlacePx});
    frame.names.push_back(name);
}

bool StandsOnMap(const MapFrame& frame, std::string_view ident, double latitude, double longitude) {
    constexpr double kSameDeg = 1.0 / 60;
    const double sameLongitudeDeg = kSameDeg / std::max(std::cos(latitude * kDegToRad), 0.01);
    return std::any_of(frame.names.begin(), frame.names.end(), [&](const MapName& name) {
        return std::abs(name.latitude - latitude) < kSameDeg &&
               std::abs(name.longitude - longitude) < sameLongitudeDeg && name.ident == ident;
    });
}

void DrawMapNames(const MapFrame& frame, NameRank rank) {
    TextBoxes required;  // places of this rank's names alone
    for (const MapName& name : frame.names) {
        if (name.rank != rank || name.ident.empty()) {
            continue;
        }
        const CanvasSize size = frame.surface.canvas().MeasureText(name.ident, kIdentFont);
        const auto box = rank == NameRank::Required ? RequiredPlace(frame, required, name, size)
                                                    : PlaceWhereFree(frame, name, size);
        if (!box) {
            continue;
        }
        frame.texts.Take(*box);
        required.Take(*box);
        if (rank == NameRank::Required) {
            DrawLeader(frame, name, *box);
        }
        frame.surface.Text(name.ident, kIdentFont, name.argb, box->x, box->y);
    }
}

std::vector<MapName>& EmptyMapNames() {
    kept.clear();
    return kept;
}

}  // namespace avq1
