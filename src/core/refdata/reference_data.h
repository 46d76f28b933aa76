#pragma once

#include <QHash>
#include <QString>
#include <QStringView>

namespace sky {

// One line of data/airports.dat: ICAO:Name:City:CountryCode:Latitude:Longitude:IATA (the IATA code may
// be empty or missing). The position is kept as its text too, because the airport position lookup
// answers in text.
struct Airport {
    QString Icao;
    QString Name;
    QString City;
    QString CountryCode;
    QString LatitudeText;
    QString LongitudeText;
    float Latitude = 0.0f;
    float Longitude = 0.0f;
    QString Iata;
};

// One line of data/firlist.dat: Identifier:CountryCode:CentreLatitude:CentreLongitude:Name.
struct FirCentre {
    QString Identifier;
    QString CountryCode;
    QString Name;
    float Latitude = 0.0f;
    float Longitude = 0.0f;
};

// The airports and FIR centres the parsers and the Companion look things up in. Keys ignore case:
// users and some feeds write airport codes in lower case.
class ReferenceData {
public:
    // Reads airports.dat and firlist.dat from dataFolder; a missing file leaves its table empty.
    static ReferenceData Load(const QString& dataFolder);
    // The same from file contents; malformed lines (too few fields) are skipped.
    void AddAirports(QStringView text);
    void AddFirCentres(QStringView text);

    const Airport* FindAirport(QStringView code) const;
    const FirCentre* FindFirCentre(QStringView identifier) const;
    bool HasAirport(QStringView code) const { return FindAirport(code) != nullptr; }
    bool HasFirCentre(QStringView identifier) const { return FindFirCentre(identifier) != nullptr; }

    // The airport position lookup: "lat:lon" as written in the file, or "0:0" when unknown.
    QString AirportPosition(QStringView code) const;

    const QHash<QString, Airport>& Airports() const { return m_airports; }
    const QHash<QString, FirCentre>& FirCentres() const { return m_firCentres; }

private:
    QHash<QString, Airport> m_airports;
    QHash<QString, FirCentre> m_firCentres;
};

} // namespace sky
