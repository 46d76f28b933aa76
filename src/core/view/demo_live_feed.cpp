#include "view/demo_live_feed.h"

#include <QDateTime>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include "view/aircraft_motion.h"

using namespace Qt::StringLiterals;

namespace sky::view {

DemoLiveFeed::DemoLiveFeed(network::HttpClient& inner, QString address, std::function<qint64()> nowMs,
                           std::function<bool()> live)
    : m_inner(inner), m_address(std::move(address)), m_nowMs(std::move(nowMs)), m_live(std::move(live)) {}

network::FetchResult DemoLiveFeed::FetchIfChanged(const QString& url, const network::Validators& known) {
    if (url != m_address || !m_live())
        return m_inner.FetchIfChanged(url, known);
    if (m_startMs < 0) {
        const network::FetchResult shipped = m_inner.Fetch(url);
        if (!shipped.Ok)
            return shipped;
        m_start = shipped.Body;
        m_startMs = m_nowMs();
    }
    const qint64 step = std::max<qint64>(0, (m_nowMs() - m_startMs) / kStepMs);
    const network::Validators version{u"\"demo-%1\""_s.arg(step), {}};
    if (known.ETag == version.ETag)
        return {true, {}, {}, true, version};
    QJsonObject root = QJsonDocument::fromJson(m_start).object();
    const double flownS = double(step * kStepMs) / 1000.0;
    // The feed's time: the moment of this step, in UTC. Every client logged on as long before it as
    // before the shipped data's time, and every pilot reported at it.
    const QDateTime moment = QDateTime::fromMSecsSinceEpoch(m_startMs + step * kStepMs, Qt::UTC);
    QJsonObject general = root.value(u"general"_s).toObject();
    const QDateTime shipped =
        QDateTime::fromString(general.value(u"update_timestamp"_s).toString(), Qt::ISODate);
    const qint64 shiftS = shipped.isValid() ? shipped.secsTo(moment) : 0;
    const auto shiftLogon = [&](QJsonObject& client) {
        const QDateTime logon = QDateTime::fromString(client.value(u"logon_time"_s).toString(), Qt::ISODate);
        if (logon.isValid())
            client.insert(u"logon_time"_s, logon.addSecs(shiftS).toUTC().toString(Qt::ISODate));
    };
    for (const QString& list : {u"controllers"_s, u"atis"_s}) {
        QJsonArray clients = root.value(list).toArray();
        for (qsizetype i = 0; i < clients.size(); ++i) {
            QJsonObject c = clients[i].toObject();
            shiftLogon(c);
            clients[i] = c;
        }
        root.insert(list, clients);
    }
    QJsonArray pilots = root.value(u"pilots"_s).toArray();
    for (qsizetype i = 0; i < pilots.size(); ++i) {
        QJsonObject p = pilots[i].toObject();
        shiftLogon(p);
        p.insert(u"last_updated"_s, moment.toString(Qt::ISODate));
        pilots[i] = p;
        const double speedKt = p.value(u"groundspeed"_s).toVariant().toDouble();
        if (speedKt <= kMovingKt)
            continue;
        const geo::LatLon at =
            Advanced(float(p.value(u"latitude"_s).toVariant().toDouble()),
                     float(p.value(u"longitude"_s).toVariant().toDouble()),
                     float(p.value(u"heading"_s).toVariant().toDouble()), speedKt * flownS / 3600);
        p.insert(u"latitude"_s, at.Lat);
        p.insert(u"longitude"_s, at.Lon);
        pilots[i] = p;
    }
    root.insert(u"pilots"_s, pilots);
    general.insert(u"update"_s, moment.toString(u"yyyyMMddHHmmss"_s));
    general.insert(u"update_timestamp"_s, moment.toString(Qt::ISODate));
    root.insert(u"general"_s, general);
    return {true, QJsonDocument(root).toJson(QJsonDocument::Compact), {}, false, version};
}

} // namespace sky::view
