#pragma once

#include <QByteArray>
#include <QString>

namespace sky::network {

// The outcome of one fetch: the body, or a failure with the reason for the log.
struct FetchResult {
    bool Ok = false;
    QByteArray Body;
    QString Error;
};

// Fetches an address (http, https or file) and waits for the whole answer or the time-out. Window
// events keep running while it waits, which is why callers guard against starting a second fetch.
class HttpClient {
public:
    virtual ~HttpClient() = default;
    virtual FetchResult Fetch(const QString& url) = 0;
};

} // namespace sky::network
