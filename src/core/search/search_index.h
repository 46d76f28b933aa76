#pragma once

#include <vector>

#include <QSet>
#include <QString>
#include <QStringList>

#include "filter/traffic_filter.h"
#include "network/client_records.h"
#include "network/prefiles.h"

namespace sky {
class KeyedLines;
class ReferenceData;
} // namespace sky

namespace sky::search {

// What a search result stands for: a client of a network, an airport, a FIR, or a flight VATSIM's
// members filed before connecting (its line marked "prefiled").
enum class ResultKind { Client, Airport, Fir, Prefile };

struct SearchResult {
    ResultKind Kind = ResultKind::Client;
    network::ClientRef Client; // a client's table slot
    QString Code;              // the callsign, the airport's ICAO code or the FIR's identifier
    QString Text;              // the line shown: "DLH4AB  Jane Roe  EDDF-KJFK"
    int Network = -1;          // a client's network (its colour); -1 for places
    float Latitude = 0.0f;
    float Longitude = 0.0f;
};

// Everything a search finds: the clients of the networks shown, and the airports and FIRs of the
// reference data. Matching ignores case and accents; results come best first: a callsign as typed, then
// callsigns that begin with it, member numbers and airport (ICAO or IATA) or FIR codes as typed, codes
// that begin with it, then names, airports and cities and FIR names whose words begin with the words
// typed (whole words first), then callsigns that hold it. Among equals, airports in use by the traffic
// come first, then shorter lines, then in order of the alphabet.
class SearchIndex {
public:
    // The airports and FIRs; once, as they never change.
    void SetPlaces(const ReferenceData& reference);
    // The clients of these networks (0, 1, or both) that the map shows; again after every change of
    // the data, the filter or the friends' names, by which friends are found too.
    void SetClients(const network::ClientTables& tables, const std::vector<int>& networks,
                    const filter::Visibility& shown = {}, const KeyedLines* names = nullptr);
    // VATSIM's prefiles (none: pass an empty list), found like its clients, placed at their departure.
    void SetPrefiles(const std::vector<network::Prefile>& prefiles, const ReferenceData& reference);

    std::vector<SearchResult> Find(const QString& query, int limit = 12) const;
    int Size() const { return int(m_clients.size() + m_prefiles.size() + m_places.size()); }

private:
    struct Entry {
        SearchResult Result;
        QString Key;      // the folded callsign or code
        QString OtherKey; // the member number or IATA code
        QString Folded;   // the name, city or FIR name folded: its words one blank apart
    };

    std::vector<Entry> m_clients;
    std::vector<Entry> m_prefiles;
    std::vector<Entry> m_places;
    QSet<QString> m_busyAirports; // in use by the clients' flight plans
};

} // namespace sky::search
