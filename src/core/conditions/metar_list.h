#pragma once

#include <functional>

#include <QDateTime>
#include <QHash>
#include <QString>
#include <QStringList>

namespace sky::conditions {

// A station's report as a list of many gives it: the station, when it was observed (UTC) and the
// report itself ("EGLL 231920Z 24012KT 9999 ..."), without a "METAR" or "SPECI" word before it.
struct StationMetar {
    QString Station;
    QDateTime ObservedUtc;
    QString Text;
};

// What a weather service's answer for many stations holds: the newest report of each station, and how
// many lines that were no report were left out.
struct MetarList {
    QHash<QString, StationMetar> Metars; // by station code
    int LeftOut = 0;
};

// Reads an answer listing many stations' reports, one a line: raw reports (a "METAR" or "SPECI" word
// before them allowed), the first field of a comma-separated table's rows, or a cycle file's time lines
// and blank lines between reports. Of one station the newest report is kept (on equal times the later
// line, a correction). A report's day and time are taken in the month of nowUtc, or the one before when
// that would lie more than a day ahead. Lines that are no report (headers, cut lines, bad times) are
// counted in LeftOut; stations that known (the airport table) does not know are dropped uncounted.
MetarList ReadMetarList(const QString& answer, const QDateTime& nowUtc,
                        const std::function<bool(const QString&)>& known);

// The one request for stations: address with "{ids}" replaced by their codes joined by commas; an
// address without it (a whole cycle or cache file) as it stands.
QString MetarListAddress(const QString& address, const QStringList& stations);

} // namespace sky::conditions
