// panelhost/world/flight_source.h - who flies the aircraft: the built-in model, or a simulator that
// runs beside the panel.
//
// A session steps the one it was opened with. Everything it learns goes into the world's records,
// everything it is told it finds there: key events, the data service and the session's commands set
// them, numbered variables and the traffic module read them. So a gauge module sees no difference.
#pragma once

#include <memory>
#include <string>

#include "panelhost/world/radios.h"
#include "panelhost/world/traffic.h"
#include "panelhost/world/world.h"

namespace panelhost {

class FlightSource {
  public:
    FlightSource() = default;
    FlightSource(const FlightSource&) = delete;
    FlightSource& operator=(const FlightSource&) = delete;
    virtual ~FlightSource() = default;

    // Brings world and traffic forward by dtS seconds of panel time. World::unknown says what is
    // not known afterwards.
    virtual void Step(Ground& ground, World& world, Traffic& traffic, double dtS) = 0;
    // Whether the session may place the aircraft, its air and other traffic.
    virtual bool ObeysPlacing() const = 0;
    // Why nothing is heard of the aircraft, one line; empty while all is well.
    virtual std::string Trouble() const = 0;
};

std::unique_ptr<FlightSource> MakeBuiltInFlight();

}  // namespace panelhost
