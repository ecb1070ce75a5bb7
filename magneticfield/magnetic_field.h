// magneticfield/magnetic_field.h - the earth's magnetic field by the World Magnetic Model 2025:
// what a compass shows where no source tells the variation.
//
// Positions are geodetic degrees (WGS 84), north and east positive; heights kilometres above the
// ellipsoid; dates years with their fraction. The model is good from 2025.0 to 2030.0; other dates
// are computed by the same yearly change, from 2010 to 2035, beyond which that of the bound counts.
// Pure functions, from any thread.
#pragma once

namespace magneticfield {

inline constexpr double kModelEpoch = 2025.0;

// nT, along true north, true east and down.
struct FieldVector {
    double northNt = 0;
    double eastNt = 0;
    double downNt = 0;
};

FieldVector FieldAt(double latitude, double longitude, double heightKm, double year);

// The angle from true to magnetic north at the ground, degrees, east positive, in (-180, 180]. At
// the poles themselves it is that of the meridian of the given longitude.
double Variation(double latitude, double longitude, double year);

}  // namespace magneticfield
