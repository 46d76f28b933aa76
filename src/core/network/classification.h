#pragma once

#include <cstdint>

#include <QString>
#include <QStringView>

namespace sky::network {

struct PilotRecord;

// The facility a controller's callsign names by its last four characters: "ATIS", "_DEL"/"_GND",
// "_TWR", "_DEP"/"_APP", "_CTR", "_FSS"; anything else is an observer.
std::int16_t FacilityFromCallsign(QStringView callsign);

// The short code of a pilot's rating ("SFO" ... "CSC"); IVAO only, empty elsewhere and for unknown
// ratings.
QString PilotRatingText(int network, int rating);

// A VATSIM pilot's certificate as "IR, Instrument Rating": the feed's own names where it gave them,
// else the network's; empty when the feed gave none (the text files never did).
QString PilotCertificateText(const PilotRecord& pilot);

// The short code of a controller's rating: IVAO "S1" ... "I3", VATSIM "OBS" ... "INS+"; empty for
// ratings outside 0 to 10.
QString ControllerRatingText(int network, int rating);

// Where a flight stands, judged from its speed, altitude and distances to its airports:
// "Boarding", "Departing", "Climbing", "En route", "Descending", "Approach", "Landed", "On blocks",
// "Diverted" or "Unknown".
QString FlightStatus(const PilotRecord& pilot);

// A planned altitude as filed ("FL350", "F350", "35000", "A045", "S1130", "M0900") in feet; 0 when it
// cannot be read.
double PlannedAltitudeFt(QStringView planned);

} // namespace sky::network
