#pragma once

#include <optional>

#include <QDateTime>
#include <QString>
#include <QStringView>

// Texts that the map, the info boxes and the Companion print about positions and times.
namespace sky::geo {

// A position as a pilot reads it: hemisphere, whole degrees (two digits of latitude, three of
// longitude) and minutes to a tenth, e.g. "N50°02.0' E008°34.3'".
QString FormatLatLon(float lat, float lon);

// A time stamp yyyymmddhhmmss (UTC) as the moment it names; nullopt when it is not one.
std::optional<QDateTime> ParseTimeStamp(QStringView stamp);

// The UTC time of a data stamp as hours and minutes with a Z, e.g. "1423Z"; "-" when the stamp cannot
// be read.
QString FormatUtcTime(QStringView updateStamp);

// How long a client has been online at the time of the data: whole minutes from its logon stamp to the
// data's stamp, as "2h 05m". A logon later than the data reads "0h 00m"; "-" when either stamp cannot
// be read.
QString OnlineTime(QStringView logonStamp, QStringView updateStamp);

// Where a pilot reported itself and how long before now: "Reported 12 s ago at N50°02.0' E008°34.3'",
// from two minutes on "Reported 3 min ago at ..."; a report stamped after now is 0 s old; one whose stamp
// cannot be read gives only the position ("Reported at ...").
QString ReportedText(float lat, float lon, QStringView reportStamp, const QDateTime& now);

} // namespace sky::geo
