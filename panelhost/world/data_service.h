// panelhost/world/data_service.h - the data service a module reads and writes the aircraft through.
//
// Values stand at byte offsets; a request is a buffer of read and write records that is answered in
// place. An unknown offset reads as zeros, a write to it changes nothing. A request that does not
// hold whole records is refused before anything is changed.
#pragma once

#include <cstdint>

#include "panelhost/world/world.h"

namespace panelhost {

inline constexpr std::uint32_t kDataServiceMessage = 1154;

// `size` counts the bytes of the records, which begin 4 bytes into the buffer. 1 when answered.
std::int64_t ServeDataRequest(World& world, std::uint64_t size, void* buffer);

}  // namespace panelhost
