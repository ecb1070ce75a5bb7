// panelhost/session/views.h - windows of the panel file, and views: the host's own copies of what a
// screen can show, each at the scale that screen needs.
//
// A display is something to show: a panel window as it stands on the panel, the same on its own, or
// one gauge of the module. A view is one display at one scale, with its own clones of the gauges
// and its own surfaces. The module never hears of a view as a window: it counts as no pop-up, has
// no ident, and none of the module's windows looks different for it. Views are shared by all who
// want the same, fall asleep when nobody looks (their surfaces are freed), and are kept until the
// end.
#pragma once

#include "panelhost/session/host_state.h"

namespace panelhost {

inline constexpr int kMaxScale = 3;
inline constexpr int kMaxDisplays = 1024;
// Pixels of one view's picture, and of all that are awake: memory is a few times that, in words.
inline constexpr long kMaxViewPixels = 16L << 20;
inline constexpr long kMaxAwakePixels = 48L << 20;

HostWindow& AddWindow(HostState& host, PanelWindow panel, int scale);
void AddPlacement(HostState& host, HostWindow& window, int windowIndex,
                  const avq1::GaugeHeader& gauge, const GaugePlacement& place);
void FitBackground(const Picture& background, HostWindow& window);

// Panel windows as they stand, the same on their own, gauges on their own: always this order.
std::vector<Display> ListDisplays(const HostState& host);
// The index of an awake view of this display, at most `scale` times as large as the panel file has
// it, and smaller than asked where the picture would be too large. A panel window itself serves
// as the view of its own scale. -1: no such display, or too much is shown already.
int OpenView(HostState& host, int display, int scale);
void CloseView(HostState& host, int window);  // puts a view to sleep; a panel window stays
// Makes the sleeping view that flies while no open window has a screen, of a gauge nobody types on
// when there is one. It stays -1 when the module has no screen.
void MakeUnseenScreen(HostState& host);

}  // namespace panelhost
