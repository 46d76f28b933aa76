#include "network/prefiles.h"

#include <QJsonArray>
#include <QJsonObject>

#include "common/json_values.h"

using namespace Qt::StringLiterals;

namespace sky::network {
namespace {

// "0930" as filed; a number the feed sent (930) is brought to four digits. Empty unless hours and
// minutes up to most.
QString Hhmm(const QJsonValue& value, qint64 most) {
    const std::optional<qint64> number = JsonWhole(value, 0, most);
    if (!number || *number % 100 > 59)
        return {};
    return u"%1"_s.arg(*number, 4, 10, QChar(u'0'));
}

QString Code(const QJsonValue& value) {
    return JsonText(value).trimmed().toUpper();
}

} // namespace

std::vector<Prefile> ParsePrefiles(const QJsonValue& prefiles) {
    std::vector<Prefile> list;
    for (const QJsonValue& entry : prefiles.toArray()) {
        if (int(list.size()) >= kMostPrefiles)
            break;
        const QJsonObject p = entry.toObject();
        const QJsonObject plan = p.value(u"flight_plan"_s).toObject();
        const QJsonValue callsign = p.value(u"callsign"_s);
        if (!callsign.isString() || callsign.toString().trimmed().isEmpty() ||
            Code(plan.value(u"departure"_s)).isEmpty())
            continue;
        Prefile f;
        f.Callsign = Code(callsign);
        f.Member = JsonText(p.value(u"cid"_s)).trimmed();
        f.Name = JsonText(p.value(u"name"_s)).trimmed();
        f.FlightRules = JsonText(plan.value(u"flight_rules"_s));
        f.Aircraft = JsonText(plan.value(u"aircraft_faa"_s));
        if (f.Aircraft.isEmpty())
            f.Aircraft = JsonText(plan.value(u"aircraft"_s));
        f.Departure = Code(plan.value(u"departure"_s));
        f.Arrival = Code(plan.value(u"arrival"_s));
        f.Alternate = Code(plan.value(u"alternate"_s));
        f.CruiseSpeed = JsonText(plan.value(u"cruise_tas"_s));
        f.Altitude = JsonText(plan.value(u"altitude"_s));
        f.DepTime = Hhmm(plan.value(u"deptime"_s), 2359);
        f.EnrouteTime = Hhmm(plan.value(u"enroute_time"_s), 9959);
        f.Route = JsonText(plan.value(u"route"_s));
        f.Remarks = JsonText(plan.value(u"remarks"_s));
        list.push_back(std::move(f));
    }
    return list;
}

} // namespace sky::network
