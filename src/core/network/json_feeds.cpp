#include "network/json_feeds.h"

#include <numbers>
#include <cmath>

#include <QDateTime>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QStringList>
#include <QTimeZone>

#include "common/numbers.h"
#include "network/client_records.h"

using namespace Qt::StringLiterals;

namespace sky::network {
namespace {

// The layouts' widths; a VATSIM pilot line carries its pilot certificate in three fields beyond (its
// number, the short and the long name), which the text files never had.
constexpr int kVatsimFields = kReportedAtField + 1;
constexpr int kIvaoFields = kReportedAtField + 1;
constexpr double kRadians = std::numbers::pi / 180.0;

// A field's text that cannot shift the fields after it: no separator, no line break.
QString Clean(QString text) {
    for (QChar& c : text) {
        if (c == u':' || c == u'\r' || c == u'\n')
            c = u' ';
    }
    return text;
}

// A JSON value as text, whether the feed sent it as a string or a number.
QString Text(const QJsonValue& value) {
    if (value.isString())
        return Clean(value.toString());
    if (value.isDouble()) {
        const double number = value.toDouble();
        if (!std::isfinite(number))
            return {};
        if (number == std::floor(number) && std::fabs(number) < 1e15)
            return QString::number(qint64(number));
        return QString::number(number, 'g', 10);
    }
    if (value.isBool())
        return value.toBool() ? u"1"_s : u"0"_s;
    return {};
}

// A JSON value as a number, whether sent as a number or as a string; NaN and the like are 0.
double Number(const QJsonValue& value) {
    const double number = value.isString() ? LeadingNumber(value.toString()) : value.toDouble();
    return std::isfinite(number) ? number : 0.0;
}

// A number of the feed as a whole number within low to high, however large or odd the feed sent it.
int Whole(const QJsonValue& value, int low, int high) {
    return int(std::clamp(std::trunc(Number(value)), double(low), double(high)));
}

// A frequency as the text files wrote it, with three decimals ("124.800"); a text is read as a number.
QString Frequency(const QJsonValue& value) {
    const double megahertz = Number(value);
    return megahertz > 0.0 && megahertz < 1000.0 ? QString::number(megahertz, 'f', 3) : Text(value);
}

QString Coordinate(const QJsonValue& value) {
    return QString::number(Number(value), 'f', 6);
}

// A time of the feed as the layout's stamp; read before any cleaning, which would take its colons.
QString Stamp(const QJsonValue& value) {
    return StampFromIso(value.toString());
}

class Line {
public:
    Line(int width, const QString& type) : m_fields(width) { m_fields[3] = type; }
    void Set(int index, const QString& value) {
        if (index >= 0 && index < m_fields.size())
            m_fields[index] = value;
    }
    QString Join() const { return m_fields.join(u':'); }

private:
    QStringList m_fields;
};

// "0130" as hours "01" and minutes "30", the layout's two fields.
void SetHoursMinutes(Line& line, int hoursField, int minutesField, int totalMinutes) {
    totalMinutes = std::clamp(totalMinutes, 0, 99 * 60 + 59);
    line.Set(hoursField, QString::number(totalMinutes / 60));
    line.Set(minutesField, QString::number(totalMinutes % 60));
}

QString HeaderLines(const QString& stamp, int reloadMinutes, int clients) {
    return u"!GENERAL\r\nVERSION = 9\r\nRELOAD = "_s + QString::number(reloadMinutes) + u"\r\nUPDATE = "_s +
           stamp + u"\r\nCONNECTED CLIENTS = "_s + QString::number(clients) + u"\r\n!CLIENTS\r\n"_s;
}

QJsonObject ParseObject(const QByteArray& json, bool& ok) {
    QJsonParseError error{};
    const QJsonDocument document = QJsonDocument::fromJson(json, &error);
    ok = error.error == QJsonParseError::NoError && document.isObject();
    return ok ? document.object() : QJsonObject();
}

QString AtisText(const QJsonValue& lines) {
    QStringList pieces;
    for (const QJsonValue& line : lines.toArray())
        pieces.append(Text(line));
    return pieces.join(u"^§"_s);
}

} // namespace

FeedKind DetectFeed(const QByteArray& body) {
    const QByteArray start = body.left(256).trimmed();
    if (!start.startsWith('{'))
        return FeedKind::Text;
    bool ok = false;
    const QJsonObject root = ParseObject(body, ok);
    if (!ok)
        return FeedKind::Unreadable;
    if (root.contains(u"general"_s) && (root.contains(u"pilots"_s) || root.contains(u"controllers"_s)))
        return FeedKind::VatsimV3;
    // IVAO's clients are an object of lists; VATSIM's layout of 2020 had one array of clients.
    if (root.value(u"clients"_s).isObject())
        return FeedKind::IvaoV2;
    return FeedKind::UnknownJson;
}

QString StampFromIso(const QString& iso) {
    QDateTime moment = QDateTime::fromString(iso.trimmed(), Qt::ISODateWithMs);
    if (!moment.isValid())
        moment = QDateTime::fromString(iso.trimmed(), Qt::ISODate);
    if (!moment.isValid())
        return {};
    return moment.toUTC().toString(u"yyyyMMddHHmmss"_s);
}

QHash<QString, geo::LatLon> ParseVatsimTransceivers(const QByteArray& json) {
    QHash<QString, geo::LatLon> centres;
    QJsonParseError error{};
    const QJsonDocument document = QJsonDocument::fromJson(json, &error);
    if (error.error != QJsonParseError::NoError || !document.isArray())
        return centres;
    for (const QJsonValue& station : document.array()) {
        const QJsonObject object = station.toObject();
        const QString callsign = Text(object.value(u"callsign"_s)).toUpper();
        // The centre on the sphere (the mean of the points' vectors), right across 180 degrees too.
        double x = 0, y = 0, z = 0;
        int count = 0;
        for (const QJsonValue& transceiver : object.value(u"transceivers"_s).toArray()) {
            const QJsonObject t = transceiver.toObject();
            const double lat = Number(t.value(u"latDeg"_s)) * kRadians,
                         lon = Number(t.value(u"lonDeg"_s)) * kRadians;
            x += std::cos(lat) * std::cos(lon);
            y += std::cos(lat) * std::sin(lon);
            z += std::sin(lat);
            ++count;
        }
        const double length = std::sqrt(x * x + y * y + z * z);
        if (!callsign.isEmpty() && count > 0 && length > 1e-9)
            centres.insert(callsign, {ToSingle(std::asin(std::clamp(z / length, -1.0, 1.0)) / kRadians),
                                      ToSingle(std::atan2(y, x) / kRadians)});
    }
    return centres;
}

TranslatedFeed TranslateVatsimV3(const QByteArray& json, const QHash<QString, geo::LatLon>& transceivers) {
    TranslatedFeed feed;
    bool ok = false;
    const QJsonObject root = ParseObject(json, ok);
    const QJsonObject general = root.value(u"general"_s).toObject();
    if (!ok || general.isEmpty())
        return feed;
    feed.UpdateStamp = Text(general.value(u"update"_s)).left(14);
    if (feed.UpdateStamp.size() != 14)
        feed.UpdateStamp = Stamp(general.value(u"update_timestamp"_s));
    feed.ReloadMinutes = std::max<int>(1, ToInt16(Number(general.value(u"reload"_s))));
    // The feed's own names of the pilot certificates.
    QHash<int, std::pair<QString, QString>> certificates;
    for (const QJsonValue& rating : root.value(u"pilot_ratings"_s).toArray()) {
        const QJsonObject r = rating.toObject();
        certificates.insert(Whole(r.value(u"id"_s), -1, 1 << 20),
                            {Text(r.value(u"short_name"_s)), Text(r.value(u"long_name"_s))});
    }
    QStringList lines;
    for (const QJsonValue& value : root.value(u"pilots"_s).toArray()) {
        const QJsonObject p = value.toObject();
        const QJsonObject plan = p.value(u"flight_plan"_s).toObject();
        Line line(kVatsimFields, u"PILOT"_s);
        line.Set(0, Text(p.value(u"callsign"_s)));
        line.Set(1, Text(p.value(u"cid"_s)));
        line.Set(2, Text(p.value(u"name"_s)));
        line.Set(5, Coordinate(p.value(u"latitude"_s)));
        line.Set(6, Coordinate(p.value(u"longitude"_s)));
        line.Set(7, Text(p.value(u"altitude"_s)));
        line.Set(8, Text(p.value(u"groundspeed"_s)));
        line.Set(9, Text(plan.value(u"aircraft_faa"_s)).isEmpty() ? Text(plan.value(u"aircraft"_s))
                                                                  : Text(plan.value(u"aircraft_faa"_s)));
        line.Set(10, Text(plan.value(u"cruise_tas"_s)));
        line.Set(11, Text(plan.value(u"departure"_s)));
        line.Set(12, Text(plan.value(u"altitude"_s)));
        line.Set(13, Text(plan.value(u"arrival"_s)));
        line.Set(14, Text(p.value(u"server"_s)));
        // A pilot certificate is no controller rating: field 16 (the member's controller rating in the
        // text files) stays empty, as the feed gives pilots none.
        if (p.contains(u"pilot_rating"_s)) {
            const int certificate = Whole(p.value(u"pilot_rating"_s), -1, 32767);
            line.Set(42, QString::number(certificate));
            const auto named = certificates.constFind(certificate);
            if (named != certificates.cend()) {
                line.Set(43, named->first);
                line.Set(44, named->second);
            }
        }
        line.Set(17, Text(p.value(u"transponder"_s)));
        line.Set(21, Text(plan.value(u"flight_rules"_s)));
        line.Set(22, Text(plan.value(u"deptime"_s)));
        const QString enroute = Text(plan.value(u"enroute_time"_s));
        if (!enroute.isEmpty()) {
            const int hhmm = Whole(QJsonValue(enroute), 0, 9999);
            SetHoursMinutes(line, 24, 25, hhmm / 100 * 60 + hhmm % 100);
        }
        line.Set(28, Text(plan.value(u"alternate"_s)));
        line.Set(29, Text(plan.value(u"remarks"_s)));
        line.Set(30, Text(plan.value(u"route"_s)));
        line.Set(37, Stamp(p.value(u"logon_time"_s)));
        line.Set(38, Text(p.value(u"heading"_s)));
        line.Set(kReportedAtField, Stamp(p.value(u"last_updated"_s)));
        lines.append(line.Join());
    }
    const auto controllers = [&](const QJsonArray& list) {
        for (const QJsonValue& value : list) {
            const QJsonObject c = value.toObject();
            const QString callsign = Text(c.value(u"callsign"_s));
            Line line(kVatsimFields, u"ATC"_s);
            line.Set(0, callsign);
            line.Set(1, Text(c.value(u"cid"_s)));
            line.Set(2, Text(c.value(u"name"_s)));
            line.Set(4, Text(c.value(u"frequency"_s)));
            const auto position = transceivers.constFind(callsign.toUpper());
            if (position != transceivers.cend()) {
                line.Set(5, QString::number(double(position->Lat), 'f', 6));
                line.Set(6, QString::number(double(position->Lon), 'f', 6));
            }
            line.Set(14, Text(c.value(u"server"_s)));
            line.Set(16, Text(c.value(u"rating"_s)));
            line.Set(18, Text(c.value(u"facility"_s)));
            line.Set(19, Text(c.value(u"visual_range"_s)));
            line.Set(35, AtisText(c.value(u"text_atis"_s)));
            line.Set(37, Stamp(c.value(u"logon_time"_s)));
            lines.append(line.Join());
        }
    };
    controllers(root.value(u"controllers"_s).toArray());
    controllers(root.value(u"atis"_s).toArray());
    // The feed counts every connection, ATIS stations too, as the text files did; the interpreter
    // takes the ATIS stations off again.
    const int clients = Whole(general.value(u"connected_clients"_s), 0, 1 << 30);
    const int counted = clients > 0 ? clients : int(lines.size());
    feed.Text =
        HeaderLines(feed.UpdateStamp, feed.ReloadMinutes, counted) + lines.join(u"\r\n"_s) + u"\r\n"_s;
    feed.Prefiles = ParsePrefiles(root.value(u"prefiles"_s));
    feed.Ok = true;
    return feed;
}

TranslatedFeed TranslateIvaoV2(const QByteArray& json) {
    TranslatedFeed feed;
    bool ok = false;
    const QJsonObject root = ParseObject(json, ok);
    const QJsonObject clients = root.value(u"clients"_s).toObject();
    if (!ok || !root.contains(u"clients"_s))
        return feed;
    feed.UpdateStamp = Stamp(root.value(u"updatedAt"_s));
    feed.ReloadMinutes = 1;
    QStringList lines;
    const auto common = [](Line& line, const QJsonObject& c) {
        const QJsonObject track = c.value(u"lastTrack"_s).toObject();
        line.Set(0, Text(c.value(u"callsign"_s)));
        line.Set(1, Text(c.value(u"userId"_s)));
        line.Set(5, Coordinate(track.value(u"latitude"_s)));
        line.Set(6, Coordinate(track.value(u"longitude"_s)));
        line.Set(14, Text(c.value(u"serverId"_s)));
        line.Set(37, Stamp(c.value(u"createdAt"_s)));
        line.Set(38, Text(c.value(u"softwareTypeId"_s)));
        line.Set(39, Text(c.value(u"softwareVersion"_s)));
        line.Set(41, Text(c.value(u"rating"_s)));
    };
    for (const QJsonValue& value : clients.value(u"pilots"_s).toArray()) {
        const QJsonObject p = value.toObject();
        const QJsonObject track = p.value(u"lastTrack"_s).toObject();
        const QJsonObject plan = p.value(u"flightPlan"_s).toObject();
        Line line(kIvaoFields, u"PILOT"_s);
        common(line, p);
        line.Set(7, Text(track.value(u"altitude"_s)));
        line.Set(8, Text(track.value(u"groundSpeed"_s)));
        line.Set(9, Text(plan.value(u"aircraftId"_s)));
        line.Set(10, Text(plan.value(u"speed"_s)));
        line.Set(11, Text(plan.value(u"departureId"_s)));
        line.Set(12, Text(plan.value(u"level"_s)));
        line.Set(13, Text(plan.value(u"arrivalId"_s)));
        line.Set(17, Text(track.value(u"transponder"_s)));
        line.Set(21, Text(plan.value(u"flightRules"_s)));
        // Times in seconds; a negative one is no time at all.
        const int departure = Whole(plan.value(u"departureTime"_s), -1, 1 << 30);
        if (plan.contains(u"departureTime"_s) && departure >= 0) {
            const int minutes = departure / 60 % (24 * 60);
            line.Set(22,
                     u"%1%2"_s.arg(minutes / 60, 2, 10, QChar(u'0')).arg(minutes % 60, 2, 10, QChar(u'0')));
        }
        const int eet = Whole(plan.value(u"eet"_s), -1, 1 << 30);
        if (plan.contains(u"eet"_s) && eet >= 0)
            SetHoursMinutes(line, 24, 25, eet / 60);
        line.Set(28, Text(plan.value(u"alternativeId"_s)));
        line.Set(29, Text(plan.value(u"remarks"_s)));
        line.Set(30, Text(plan.value(u"route"_s)));
        line.Set(43, Text(plan.value(u"flightType"_s)));
        line.Set(44, Text(plan.value(u"peopleOnBoard"_s)));
        line.Set(45, Text(track.value(u"heading"_s)));
        line.Set(kReportedAtField, Stamp(track.value(u"timestamp"_s)));
        lines.append(line.Join());
    }
    const auto stations = [&](const QJsonArray& list) {
        for (const QJsonValue& value : list) {
            const QJsonObject c = value.toObject();
            const QJsonObject session = c.value(u"atcSession"_s).toObject();
            Line line(kIvaoFields, u"ATC"_s);
            common(line, c);
            line.Set(4, Frequency(session.value(u"frequency"_s)));
            // The visual range, where the feed gives it (its 2021 layout).
            const QJsonValue range = c.value(u"lastTrack"_s).toObject().value(u"distance"_s);
            if (!range.isUndefined() && !range.isNull())
                line.Set(19, QString::number(Whole(range, 0, 9999)));
            line.Set(35, AtisText(c.value(u"atis"_s).toObject().value(u"lines"_s)));
            lines.append(line.Join());
        }
    };
    stations(clients.value(u"atcs"_s).toArray());
    stations(clients.value(u"observers"_s).toArray());
    for (const QJsonValue& value : clients.value(u"followMe"_s).toArray()) {
        Line line(kIvaoFields, u"FOLME"_s);
        common(line, value.toObject());
        lines.append(line.Join());
    }
    // The clients the feed lists, not its count of connections (which holds some it does not list), so
    // the map's figures and stat agree with the lists; the interpreter takes the follow-me cars off.
    const int total = int(lines.size());
    feed.Text = HeaderLines(feed.UpdateStamp, feed.ReloadMinutes, total) + lines.join(u"\r\n"_s) + u"\r\n"_s;
    feed.Ok = true;
    return feed;
}

} // namespace sky::network
