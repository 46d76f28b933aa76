#include "network/live_schedule.h"

#include <algorithm>

#include <QHash>

namespace sky::network {

QString FeedStampOf(const QByteArray& body) {
    for (const char* key : {"\"update_timestamp\"", "\"updatedAt\""}) {
        const qsizetype at = body.indexOf(key);
        if (at < 0)
            continue;
        // The value is the next quoted text after the colon; a stamp is short.
        const qsizetype colon = body.indexOf(':', at);
        const qsizetype open = colon < 0 ? -1 : body.indexOf('"', colon);
        const qsizetype close = open < 0 ? -1 : body.indexOf('"', open + 1);
        if (close < 0 || close - open > 64)
            return {};
        return QString::fromLatin1(body.mid(open + 1, close - open - 1));
    }
    return {};
}

void LiveSchedule::SetInterval(int seconds) {
    m_intervalS = std::clamp(seconds, kLiveSecondsMin, kLiveSecondsMax);
}

bool LiveSchedule::Due(int network, qint64 nowMs) const {
    const Net& net = m_nets[size_t(network)];
    return !net.Running && nowMs >= net.NextMs;
}

void LiveSchedule::Started(int network) {
    m_nets[size_t(network)].Running = true;
}

void LiveSchedule::Finished(int network, qint64 nowMs, bool ok) {
    Net& net = m_nets[size_t(network)];
    net.Running = false;
    net.Failures = ok ? 0 : net.Failures + 1;
    const size_t step = size_t(std::min<int>(net.Failures, int(kLiveBackOffSeconds.size()))) - 1;
    net.WaitS = ok ? m_intervalS : kLiveBackOffSeconds[step];
    net.NextMs = nowMs + qint64(net.WaitS) * 1000;
}

void LiveSchedule::Restart(int network) {
    m_nets[size_t(network)].NextMs = 0;
}

bool LiveSchedule::IsNew(int network, const FetchResult& fetched) {
    Net& net = m_nets[size_t(network)];
    if (!fetched.Ok || fetched.NotModified)
        return false;
    if (!fetched.Version.ETag.isEmpty() || !fetched.Version.LastModified.isEmpty())
        net.Known = fetched.Version;
    const QString stamp = FeedStampOf(fetched.Body);
    const size_t hash = stamp.isEmpty() ? qHash(fetched.Body) : 0;
    const bool same = !stamp.isEmpty() ? stamp == net.Stamp : (hash == net.BodyHash && net.Stamp.isEmpty());
    net.Stamp = stamp;
    net.BodyHash = hash;
    return !same;
}

void LiveSchedule::Forget(int network) {
    Net& net = m_nets[size_t(network)];
    net.Stamp.clear();
    net.BodyHash = 0;
    net.Known = {};
}

} // namespace sky::network
