#include "network/classification.h"

#include <array>

#include "common/numbers.h"
#include "geo/geodesy.h"
#include "network/client_records.h"

using namespace Qt::StringLiterals;

namespace sky::network {

std::int16_t FacilityFromCallsign(QStringView callsign) {
    const QStringView ending = callsign.last(std::min<qsizetype>(4, callsign.size()));
    if (ending == u"ATIS")
        return kFacilityAtis;
    if (ending == u"_DEL" || ending == u"_GND")
        return kFacilityGround;
    if (ending == u"_TWR")
        return kFacilityTower;
    if (ending == u"_DEP" || ending == u"_APP")
        return kFacilityApproach;
    if (ending == u"_CTR")
        return kFacilityCentre;
    if (ending == u"_FSS")
        return kFacilityFlightService;
    return kFacilityObserver;
}

QString PilotRatingText(int network, int rating) {
    static const std::array<const char16_t*, 11> codes = {u"",   u"",    u"SFO", u"FFO", u"C",  u"FC",
                                                          u"SC", u"SFC", u"CC",  u"CFC", u"CSC"};
    if (network != 0 || rating < 0 || rating > 10)
        return {};
    return QString::fromUtf16(codes[rating]);
}

QString PilotCertificateText(const PilotRecord& pilot) {
    struct Named {
        int Flags;
        const char16_t* Short;
        const char16_t* Long;
    };
    static const Named kCertificates[] = {{0, u"P0", u"New member"},
                                          {1, u"PPL", u"Private Pilot Licence"},
                                          {3, u"IR", u"Instrument Rating"},
                                          {7, u"CMEL", u"Commercial Multi-Engine Licence"},
                                          {15, u"ATPL", u"Airline Transport Pilot Licence"},
                                          {31, u"FI", u"Flight Instructor"},
                                          {63, u"FE", u"Flight Examiner"}};
    if (pilot.PilotCertificate < 0)
        return {};
    QString shortName = pilot.PilotCertificateName, longName = pilot.PilotCertificateLongName;
    for (const Named& named : kCertificates) {
        if (named.Flags == pilot.PilotCertificate && shortName.isEmpty() && longName.isEmpty()) {
            shortName = QString::fromUtf16(named.Short);
            longName = QString::fromUtf16(named.Long);
        }
    }
    if (shortName.isEmpty() && longName.isEmpty())
        return u"certificate %1"_s.arg(pilot.PilotCertificate);
    return longName.isEmpty() || longName == shortName ? shortName : shortName + u", "_s + longName;
}

QString ControllerRatingText(int network, int rating) {
    static const std::array<const char16_t*, 11> ivao = {u"",   u"",   u"S1", u"S2", u"S3", u"C1",
                                                         u"C2", u"C3", u"I1", u"I2", u"I3"};
    static const std::array<const char16_t*, 11> vatsim = {u"OBS",  u"OBS",  u"STU", u"STU+", u"STU+", u"CTR",
                                                           u"CTR+", u"CTR+", u"INS", u"INS+", u"INS+"};
    if (rating < 0 || rating > 10)
        return {};
    return QString::fromUtf16(network == 0 ? ivao[rating] : vatsim[rating]);
}

double PlannedAltitudeFt(QStringView planned) {
    planned = planned.trimmed();
    if (planned.isEmpty())
        return 0.0;
    const QChar unit = planned[0].toUpper();
    if (unit == u'F' && planned.size() > 1 && planned[1].toUpper() == u'L')
        return LeadingNumber(planned.sliced(2)) * 100.0; // FL350
    if (unit == u'F' || unit == u'A')
        return LeadingNumber(planned.sliced(1)) * 100.0; // F350, A045: hundreds of feet
    if (unit == u'S')
        return LeadingNumber(planned.sliced(1)) * 10.0 * 3.28084; // S1130: tens of metres
    if (unit == u'M')
        return LeadingNumber(planned.sliced(1)) * 3.28084; // M0900: metres
    const double value = LeadingNumber(planned);
    // "350" on its own is a flight level; "35000" is feet.
    return value > 0.0 && value < 1000.0 ? value * 100.0 : value;
}

namespace {

// Thresholds of the flight status, as a controller would judge a radar return.
constexpr float kTaxiSpeedKts = 40.0f;     // below: on the ground
constexpr float kParkedSpeedKts = 5.0f;    // below, on the ground: standing at the gate
constexpr float kAirportRadiusNm = 10.0f;  // within: at that airport
constexpr float kApproachRadiusNm = 40.0f; // within, airborne: on approach to the destination
constexpr double kCruiseShare = 0.9;       // above this share of the planned level: cruising
// Without a planned level: climbing near the departure, descending near the destination.
constexpr float kClimbRadiusNm = 100.0f;
constexpr float kDescentRadiusNm = 150.0f;
constexpr float kLowAltitudeFt = 10000.0f;

bool Known(float latitude, float longitude) {
    return latitude != 0.0f || longitude != 0.0f;
}

} // namespace

QString FlightStatus(const PilotRecord& p) {
    const bool depKnown = Known(p.DepLatitude, p.DepLongitude);
    const bool destKnown = Known(p.DestLatitude, p.DestLongitude);
    if (!depKnown && !destKnown)
        return u"Unknown"_s;
    const float toDep =
        depKnown ? geo::Distance(p.Latitude, p.Longitude, p.DepLatitude, p.DepLongitude) : 0.0f;
    const float toDest =
        destKnown ? geo::Distance(p.Latitude, p.Longitude, p.DestLatitude, p.DestLongitude) : 0.0f;
    const bool atDep = depKnown && toDep < kAirportRadiusNm;
    const bool atDest = destKnown && toDest < kAirportRadiusNm;

    if (p.GroundSpeed < kTaxiSpeedKts) {
        const bool parked = p.GroundSpeed < kParkedSpeedKts;
        if (atDest)
            return parked ? u"On blocks"_s : u"Landed"_s;
        if (atDep)
            return parked ? u"Boarding"_s : u"Departing"_s;
        // On the ground away from both airports of the plan.
        return depKnown && destKnown ? u"Diverted"_s : u"Unknown"_s;
    }
    if (atDep && !atDest)
        return u"Departing"_s;
    if (destKnown && toDest < kApproachRadiusNm)
        return u"Approach"_s;
    const double cruiseFt = PlannedAltitudeFt(p.PlannedAltitude);
    const bool nearerDeparture = depKnown && (!destKnown || toDep < toDest);
    if (cruiseFt > 0.0) {
        if (p.Altitude >= cruiseFt * kCruiseShare)
            return u"En route"_s;
        return nearerDeparture ? u"Climbing"_s : u"Descending"_s;
    }
    if (p.Altitude < kLowAltitudeFt && nearerDeparture && toDep < kClimbRadiusNm)
        return u"Climbing"_s;
    if (destKnown && toDest < kDescentRadiusNm)
        return u"Descending"_s;
    return u"En route"_s;
}

} // namespace sky::network
