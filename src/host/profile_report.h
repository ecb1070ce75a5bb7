// host/profile_report.h - what a host may draw of the vertical guidance.
#pragma once

namespace avq1 {

// Tells the host the profile that is planned ahead of the aircraft, once a simulator second, when
// it listens. Step of the per-frame update; allocates nothing.
void TellVerticalProfile();

}  // namespace avq1
