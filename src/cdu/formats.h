// cdu/formats.h - how the units write values that several pages show.
//
// Each of these rounds once, to what it shows, so that a value never reads "60" minutes or "000"
// degrees. A text of a value that is not finite is dashes of the field's width.
#pragma once

#include "cdu/unit_text.h"
#include "geometry/geometry.h"

namespace avq1 {

// A course or bearing as it is shown: whole degrees 1 to 360.
double WholeCourse(double courseDeg);

struct WholeTime {
    double hours = 0;
    double minutes = 0;
};
// Rounded as one time, so that 59.7 minutes become the next hour; not below 0.
WholeTime WholeMinutes(double hours, double minutes);

// "-----" and "- - - - -": a value that is not set.
UnitText Dashes(int count);
UnitText SpacedDashes(int count);

// "  431" or "12.5": a number in a field of `width` characters.
UnitText NumberText(double value, int width, int decimals = 0);

// "067": a course, bearing, heading or track.
UnitText CourseText(double courseDeg);

// "L 012": an amount to one side, negative to the left.
UnitText SideText(double amount, char left, char right);

// "01:07", hours and minutes.
UnitText HoursMinutesText(double hours, double minutes);

// "1407.3" for a time of day in hours: hours, minutes and tenths of a minute, within one day.
UnitText ClockTenthsText(double hours);

// "FL180" above the transition altitude, " 5000" up to it; feet.
UnitText AltitudeText(double altitudeFt, double transitionAltitudeFt);

// "090/  12": whole degrees and whole nm.
UnitText BearingDistanceText(double bearingDeg, double distanceNm);

// "N47:30:00 W122:15:00", seconds truncated.
UnitText PositionTextOf(const LatLon& position);

}  // namespace avq1
