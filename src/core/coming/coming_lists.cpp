#include "coming/coming_lists.h"

#include <algorithm>

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include "common/json_values.h"

using namespace Qt::StringLiterals;

namespace sky::coming {
namespace {

// The document of an answer, or why it is none.
QJsonDocument Document(const QByteArray& json, QString& problem) {
    QJsonParseError error{};
    const QJsonDocument document = QJsonDocument::fromJson(json, &error);
    if (error.error != QJsonParseError::NoError) {
        const QByteArray start = json.left(512).trimmed().toLower();
        problem =
            start.startsWith('<') ? u"the answer is a web page, not JSON"_s : u"the answer is no JSON"_s;
        return {};
    }
    return document;
}

// A text field that must be a text; empty when it is missing or another kind of value.
QString TextOnly(const QJsonObject& object, const QString& key) {
    const QJsonValue value = object.value(key);
    return value.isString() ? JsonText(value).trimmed() : QString();
}

template <typename Item> void Keep(ParsedList<Item>& list, std::vector<Item> items, int most) {
    // Soonest first; a list longer than the limit keeps what starts first.
    std::stable_sort(items.begin(), items.end(),
                     [](const Item& a, const Item& b) { return a.Start < b.Start; });
    if (int(items.size()) > most)
        items.resize(size_t(most));
    list.Items = std::move(items);
    list.Ok = true;
}

} // namespace

ParsedList<Booking> ParseBookings(const QByteArray& json) {
    ParsedList<Booking> list;
    const QJsonDocument document = Document(json, list.Problem);
    if (!list.Problem.isEmpty())
        return list;
    if (!document.isArray()) {
        list.Problem = u"the answer is no list of bookings"_s;
        return list;
    }
    const QJsonArray entries = document.array();
    list.Entries = int(entries.size());
    std::vector<Booking> items;
    for (const QJsonValue& entry : entries) {
        const QJsonObject b = entry.toObject();
        Booking booking;
        booking.Callsign = TextOnly(b, u"callsign"_s).toUpper();
        const auto start = ServiceTime(JsonText(b.value(u"start"_s)));
        const auto end = ServiceTime(JsonText(b.value(u"end"_s)));
        if (booking.Callsign.isEmpty() || booking.Callsign.contains(u' ') || !start || !end ||
            *end <= *start) {
            ++list.LeftOut;
            continue;
        }
        booking.Start = *start;
        booking.End = *end;
        booking.Id = JsonWhole(b.value(u"id"_s), 0, qint64(1) << 52).value_or(0);
        booking.Member = JsonText(b.value(u"cid"_s)).trimmed();
        booking.Type = TextOnly(b, u"type"_s).toLower();
        booking.Division = TextOnly(b, u"division"_s);
        booking.Subdivision = TextOnly(b, u"subdivision"_s);
        items.push_back(std::move(booking));
    }
    Keep(list, std::move(items), kMostBookings);
    return list;
}

ParsedList<Event> ParseEvents(const QByteArray& json) {
    ParsedList<Event> list;
    const QJsonDocument document = Document(json, list.Problem);
    if (!list.Problem.isEmpty())
        return list;
    const QJsonValue data = document.object().value(u"data"_s);
    if (!document.isObject() || !data.isArray()) {
        list.Problem = u"the answer is no list of events"_s;
        return list;
    }
    const QJsonArray entries = data.toArray();
    list.Entries = int(entries.size());
    std::vector<Event> items;
    for (const QJsonValue& entry : entries) {
        const QJsonObject e = entry.toObject();
        Event event;
        event.Name = TextOnly(e, u"name"_s);
        const auto start = ServiceTime(JsonText(e.value(u"start_time"_s)));
        const auto end = ServiceTime(JsonText(e.value(u"end_time"_s)));
        if (event.Name.isEmpty() || !start || !end || *end <= *start) {
            ++list.LeftOut;
            continue;
        }
        event.Start = *start;
        event.End = *end;
        event.Id = JsonWhole(e.value(u"id"_s), 0, qint64(1) << 52).value_or(0);
        for (const QJsonValue& airport : e.value(u"airports"_s).toArray()) {
            const QString icao = TextOnly(airport.toObject(), u"icao"_s).toUpper();
            if (!icao.isEmpty() && !event.Airports.contains(icao))
                event.Airports.append(icao);
        }
        for (const QJsonValue& route : e.value(u"routes"_s).toArray()) {
            const QJsonObject r = route.toObject();
            event.Routes.push_back({TextOnly(r, u"departure"_s).toUpper(),
                                    TextOnly(r, u"arrival"_s).toUpper(), TextOnly(r, u"route"_s)});
        }
        event.Banner = TextOnly(e, u"banner"_s);
        event.Link = TextOnly(e, u"link"_s);
        items.push_back(std::move(event));
    }
    Keep(list, std::move(items), kMostEvents);
    return list;
}

} // namespace sky::coming
