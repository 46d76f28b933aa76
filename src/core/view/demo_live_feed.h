#pragma once

#include <functional>

#include <QByteArray>
#include <QString>

#include "network/http_client.h"

namespace sky::view {

// The demo's VATSIM data as a live feed made in the process, so the demo moves without a network:
// every 15 s of the run its aircraft faster than 40 kt have flown on along their heading at their
// ground speed, and the feed's stamp is that moment's (its ETag too, so an unchanged feed answers
// "not modified"), as is each pilot's report; logon times move with the stamp. While live is off, and for every other address, the client it wraps answers.
class DemoLiveFeed final : public network::HttpClient {
public:
    DemoLiveFeed(network::HttpClient& inner, QString address, std::function<qint64()> nowMs,
                 std::function<bool()> live);

    network::FetchResult Fetch(const QString& url) override { return FetchIfChanged(url, {}); }
    network::FetchResult FetchIfChanged(const QString& url, const network::Validators& known) override;

    static constexpr qint64 kStepMs = 15000;

private:
    network::HttpClient& m_inner;
    QString m_address;
    std::function<qint64()> m_nowMs;
    std::function<bool()> m_live;
    qint64 m_startMs = -1;
    QByteArray m_start; // the demo data as shipped
};

} // namespace sky::view
