#pragma once

#include <QNetworkAccessManager>

#include "network/http_client.h"

namespace sky::net {

// The HTTP client of the program, on Qt Network: http, https and file addresses; a transfer time-out;
// a named HTTP proxy ("host:port") when proxy has two characters or more, else the system's proxy
// settings. An answer larger than maxBytes is a failure. Fetch waits in a local event loop, so it
// needs a running application object and keeps window events flowing while it waits.
class QtHttpClient final : public network::HttpClient {
public:
    static constexpr qint64 kDefaultMaxBytes = qint64(64) << 20;

    QtHttpClient(int timeoutMs, const QString& proxy, qint64 maxBytes = kDefaultMaxBytes);

    network::FetchResult Fetch(const QString& url) override;
    void SetTimeout(int timeoutMs) { m_timeoutMs = timeoutMs; }

private:
    QNetworkAccessManager m_manager;
    int m_timeoutMs;
    qint64 m_maxBytes;
};

} // namespace sky::net
