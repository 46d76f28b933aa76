#pragma once

#include <map>

#include <QStringList>

#include "network/http_client.h"
#include "view/map_host.h"

namespace sky::testing {

// An HTTP client that answers from a table of addresses and remembers what was asked.
class FakeHttp : public network::HttpClient {
public:
    network::FetchResult Fetch(const QString& url) override {
        Requests.append(url);
        const auto it = Answers.find(url);
        if (it == Answers.end())
            return {false, {}, QStringLiteral("no such address")};
        return {true, it->second, {}};
    }
    std::map<QString, QByteArray> Answers;
    QStringList Requests;
};

// The window around a map session, recording what the session asked of it.
class FakeMapHost : public view::MapHost {
public:
    void Redraw() override { ++Redraws; }
    void ShowCompanion() override {}
    void ShowNetworkMessage(const QString& text) override { Messages.append(text); }
    void EnableAutoDownload(bool enabled) override { AutoDownload = enabled; }
    void OpenUrl(const QString& address) override { Opened.append(address); }
    QStringList Opened;
    QStringList Messages;
    int Redraws = 0;
    bool AutoDownload = false;
};

} // namespace sky::testing
