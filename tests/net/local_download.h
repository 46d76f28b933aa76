#pragma once

#include <functional>

#include <QDateTime>
#include <QTemporaryDir>

#include "network/download.h"
#include "qt_http_client.h"
#include "refdata/reference_data.h"
#include "testing/fakes.h"

namespace sky::net {

// IVAO's download through the real HTTP client into tables of its own, from the status file State
// names; each run an hour after the last, so no reload interval stands in the way.
struct LocalDownload {
    network::DownloadOutcome Run(bool textForce = false, bool randomServer = false) {
        Now = Now.addSecs(3600);
        State.DownloadIdle = true;
        const auto now = [this] { return Now; };
        const std::function<int(int)> firstServer = [](int) { return 0; };
        network::DownloadContext context{
            State,     Tables, Reference,
            Client,    View,   Home.filePath(QStringLiteral("data")),
            textForce, now,    randomServer ? std::function<int(int)>() : firstServer};
        return network::DownloadNetwork(context, 0);
    }

    QTemporaryDir Home;
    QtHttpClient Client{5000, QStringLiteral("0")};
    network::DownloadState State;
    network::ClientTables Tables;
    ReferenceData Reference;
    testing::RecordingDownloadView View;
    QDateTime Now = QDateTime(QDate(2026, 11, 21), QTime(15, 0));
};

} // namespace sky::net
