#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <vector>

#include <QDateTime>
#include <QString>

namespace sky::network {

inline constexpr int kNetworkCount = 2; // 0 IVAO, 1 VATSIM
// The tables' default sizes hold today's busiest feeds (a few thousand pilots) with room to spare; the
// settings' MaxPilots and MaxControllers change them (down to the classic 1400 and 700).
inline constexpr int kMaxPilots = 10000;
inline constexpr int kMaxControllers = 3000;
// The field of a pilot line, past every text layout, where the JSON feeds' translation keeps the time of
// the pilot's last position report.
inline constexpr int kReportedAtField = 47;

// The network's name as shown in status texts: "IVAO" or "VATSIM".
QString NetworkName(int network);

// A connected pilot, as read from one PILOT line of a whazzup file.
struct PilotRecord {
    QString Callsign;
    QString VID;
    QString RealName;
    QString HomeBase;
    std::int16_t Rating = 0;
    std::int16_t AdminRating = 0;
    float Latitude = 0.0f;
    float Longitude = 0.0f;
    float Altitude = 0.0f;    // feet, 0 to 100000
    float GroundSpeed = 0.0f; // knots, 0 to 9999
    std::int16_t Heading = 0;
    std::int16_t Course = 0; // to the destination, or from the departure airport
    QString AircraftCode;    // at most four characters, e.g. "B744"
    QString FlightRules;
    QString DepAirport;
    float DepLatitude = 0.0f;
    float DepLongitude = 0.0f;
    QString DestAirport;
    float DestLatitude = 0.0f;
    float DestLongitude = 0.0f;
    QString AltAirport;
    QString Transponder;
    std::int16_t POB = 0;
    QString PlannedAltitude;
    QString CruiseSpeed;
    QString Route;
    QString Remarks;
    QString DepTime;     // "HHMM"
    QString EnrouteTime; // "HHMM"
    QString AircraftType;
    QString FlightType;
    QString TimeConnected; // yyyymmddhhmmss
    // When the pilot last reported its position (yyyymmddhhmmss), where the feed says it (the JSON
    // feeds); empty for the text files, whose positions date from the file's update.
    QString ReportedAt;
    // The stamp of the position shown: the pilot's own report time, else the data's update.
    const QString& ReportStamp(const QString& dataStamp) const {
        return ReportedAt.isEmpty() ? dataStamp : ReportedAt;
    }
    QString Server;
    QString Software;
    // VATSIM's pilot certificate (bit flags: 0 new member, 1 PPL, 3 IR, 7 CMEL, 15 ATPL, 31 FI, 63 FE),
    // which the JSON feed gives and the text files never did; -1 when unknown. The names are the feed's
    // own, where it has a table of them.
    std::int16_t PilotCertificate = -1;
    QString PilotCertificateName;
    QString PilotCertificateLongName;
};

// Facility types of a controller, from the end of its callsign. Below kFacilityAtis is an observer.
enum FacilityType : std::int16_t {
    kFacilityObserver = 0,
    kFacilityAtis = 2,
    kFacilityGround = 3, // delivery or ground
    kFacilityTower = 4,
    kFacilityApproach = 5, // departure or approach
    kFacilityCentre = 6,
    kFacilityFlightService = 7,
};

// A connected controller or observer, as read from one ATC line.
struct ControllerRecord {
    QString Callsign; // upper case
    QString VID;
    QString RealName;
    std::int16_t FacilityType = kFacilityObserver;
    std::int16_t Rating = 0;
    std::int16_t AdminRating = 0;
    QString Station; // the airport or FIR served
    QString AtisMessage;
    QString Frequency;
    float DisplayLatitude = 0.0f; // where the station is drawn
    float DisplayLongitude = 0.0f;
    float Latitude = 0.0f; // where it reported itself
    float Longitude = 0.0f;
    float VisualRange = 0.0f; // nautical miles
    QString TimeConnected;
    QString Server;
    QString Software;
};

// The clients and figures of one network. Slots are numbered from 1 as the counters count; slots above
// a counter hold stale records of earlier downloads and are never read as clients. One slot past the
// largest count exists, so "the slot after the last pilot" is always a valid record. The tables start
// with room for a small feed and grow as a download adds clients, up to the limits, so that a quiet
// network does not hold the memory of the busiest one.
struct NetworkData {
    static constexpr int kFirstSlots = 256;
    NetworkData() : Pilots(kFirstSlots + 2), Controllers(kFirstSlots + 2) {}

    // The most pilots and controllers the tables hold; a full table drops further clients.
    int MaxPilots() const { return m_maxPilots; }
    int MaxControllers() const { return m_maxControllers; }
    // Raises (or lowers) the limits; the counters never exceed them.
    void SetLimits(int maxPilots, int maxControllers) {
        m_maxPilots = std::max(0, maxPilots);
        m_maxControllers = std::max(0, maxControllers);
        ShrinkTo(Pilots, m_maxPilots);
        ShrinkTo(Controllers, m_maxControllers);
        PilotCount = std::int16_t(std::min<int>(PilotCount, m_maxPilots));
        ControllerCount = std::int16_t(std::min<int>(ControllerCount, m_maxControllers));
    }
    // The next slot, counted, with the one past it made to exist; only below the limit.
    PilotRecord& AddPilot() { return Pilots[SlotAdded(Pilots, PilotCount)]; }
    ControllerRecord& AddController() { return Controllers[SlotAdded(Controllers, ControllerCount)]; }

    std::vector<PilotRecord> Pilots;
    std::vector<ControllerRecord> Controllers;
    std::int16_t PilotCount = 0;
    std::int16_t ControllerCount = 0;
    std::int16_t ObserverCount = 0;
    std::int16_t ConnectedClients = 0;
    QString UpdateStamp;
    std::int16_t ReloadMinutes = 0;
    QDateTime LastDownload; // invalid until the first successful interpretation
    // Clients of the last file that found no room in the full tables.
    int DroppedPilots = 0;
    int DroppedControllers = 0;

private:
    template <typename Record> static void ShrinkTo(std::vector<Record>& slots, int limit) {
        if (slots.size() > size_t(limit) + 2) {
            slots.resize(size_t(limit) + 2);
            slots.back() = {}; // a lowered limit leaves the slot past it empty
        }
    }
    template <typename Record> static size_t SlotAdded(std::vector<Record>& slots, std::int16_t& count) {
        ++count;
        if (slots.size() < size_t(count) + 2)
            slots.emplace_back(); // a slot at a time: the vector's own growth keeps this cheap
        return size_t(count);
    }
    int m_maxPilots = kMaxPilots;
    int m_maxControllers = kMaxControllers;
};

using ClientTables = std::array<NetworkData, kNetworkCount>;

// What the last file brought that full tables left out, as the status line says it: e.g. "VATSIM:
// only 1400 of 3900 pilots kept; the Preferences raise the limits"; empty when nothing was left out.
QString LimitNotice(const NetworkData& data, int network);

// One client of a network's tables: a pilot or a controller slot.
struct ClientRef {
    int Network = 0;
    bool IsPilot = true;
    int Slot = 0;
    bool operator==(const ClientRef&) const = default;
};

// Who a client is and where it shows, whichever table it is in.
struct ClientSummary {
    QString Callsign;
    QString VID;
    QString RealName;
    float Latitude = 0.0f; // where it is drawn: a station at its display position
    float Longitude = 0.0f;
};
ClientSummary Summarise(const ClientTables& tables, const ClientRef& client);

// The time of day of a data stamp (yyyymmddhhmmss) as the status texts show it: "1423".
QString StampTime(const QString& updateStamp);

} // namespace sky::network
