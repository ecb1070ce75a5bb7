// host/update_frame.h - the per-frame update: the one pass over the shared core per simulator tick.
//
// Every display and unit gauge calls it from its draw event; the first call of a tick does the
// work, the others return at once.
#pragma once

namespace avq1 {

void UpdateFrame();

}  // namespace avq1
