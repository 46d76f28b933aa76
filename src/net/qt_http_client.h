#pragma once

#include <QNetworkAccessManager>

#include "network/http_client.h"

namespace sky::net {

// The HTTP client of the program, on Qt Network: http, https and file addresses; a named HTTP proxy
// ("host:port") when proxy has two characters or more, else the system's proxy settings.
//
// What a server cannot do to it: keep it waiting (a fetch ends when nothing arrives for the time-out,
// and in any case after four times the time-out, so a byte a second does not hold it), fill the
// memory (the answer is read as it arrives and refused at maxBytes), send it round in circles (at
// most five redirects), send it elsewhere (a redirect goes to http or https only, never from https to
// http), or pass off a certificate that does not verify (a failure, never ignored).
//
// Fetch waits in a local event loop, so it needs a running application object and keeps window
// events flowing while it waits.
class QtHttpClient final : public network::HttpClient {
public:
    static constexpr qint64 kDefaultMaxBytes = qint64(64) << 20;
    static constexpr int kMostRedirects = 5;

    QtHttpClient(int timeoutMs, const QString& proxy, qint64 maxBytes = kDefaultMaxBytes);

    network::FetchResult Fetch(const QString& url) override { return Get(url, {}); }
    // Sends the validators known as If-None-Match and If-Modified-Since; a 304 answer is NotModified.
    network::FetchResult FetchIfChanged(const QString& url, const network::Validators& known) override {
        return Get(url, known);
    }
    void SetTimeout(int timeoutMs) { m_timeoutMs = timeoutMs; }

private:
    network::FetchResult Get(const QString& url, const network::Validators& known);

    QNetworkAccessManager m_manager;
    int m_timeoutMs;
    qint64 m_maxBytes;
};

} // namespace sky::net
