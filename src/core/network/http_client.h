#pragma once

#include <QByteArray>
#include <QString>

namespace sky::network {

// What a server said of the version of an answer it sent: its ETag and Last-Modified headers, as sent;
// empty when it sent none. Handed back on the next fetch, they let the server answer "not modified".
struct Validators {
    QString ETag;
    QString LastModified;
};

// The outcome of one fetch: the body, or a failure with the reason for the log. A conditional fetch
// whose copy is still current ends Ok with NotModified and no body.
struct FetchResult {
    bool Ok = false;
    QByteArray Body;
    QString Error;
    bool NotModified = false;
    Validators Version = {}; // of the answer received
};

// Fetches an address (http, https or file) and waits for the whole answer or the time-out. Window
// events keep running while it waits, which is why callers guard against starting a second fetch.
class HttpClient {
public:
    virtual ~HttpClient() = default;
    virtual FetchResult Fetch(const QString& url) = 0;
    // The same, asking the server to answer "not modified" (If-None-Match, If-Modified-Since) when
    // the version known is still its own. A client that cannot ask fetches the whole answer.
    virtual FetchResult FetchIfChanged(const QString& url, const Validators& known) {
        (void)known;
        return Fetch(url);
    }
};

} // namespace sky::network
