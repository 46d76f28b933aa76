#pragma once

#include <functional>

#include <QDateTime>
#include <QString>
#include <QStringList>

#include "network/client_records.h"

namespace sky {
class ReferenceData;
}
namespace sky::network {
class HttpClient;
struct DownloadState;
} // namespace sky::network

namespace sky::companion {

// What the Companion's commands may ask of the map.
class CompanionHost {
public:
    virtual ~CompanionHost() = default;
    // Turns the map to face the point at zoom 16, closes any panel and says "Centered on " + name.
    virtual void CentreOn(float latitude, float longitude, const QString& name) = 0;
    // Marks an airport on the map (the highlight list) with its code.
    virtual void MarkAirport(float latitude, float longitude, const QString& code) = 0;
    virtual void OpenProfile(int network, const QString& vid) = 0;
    // The map's download button for one network; returns when the download has ended.
    virtual void Download(int network) = 0;
    // "watch", "watch PATTERN" or "unwatch PATTERN": the lines of the answer.
    virtual QStringList Watch(const QString& line) {
        (void)line;
        return {};
    }
};

// Everything a command reads or uses, handed over by the console for one command.
struct CommandContext {
    const network::ClientTables& Tables;
    network::DownloadState& Downloads;
    const ReferenceData& Reference;
    int ShownNetwork = 0;
    CompanionHost& Host;
    network::HttpClient& Http;
    QString WeatherServer; // the address before "/data/..." of the station files
    std::function<QDateTime()> Now;
    std::function<void(const QString&)> AddText;
    bool Live = false; // the networks followed live: answers about a pilot say how old its position is

    const network::NetworkData& Shown() const { return Tables[ShownNetwork == 1 ? 1 : 0]; }
};

inline const QString kCrLf = QStringLiteral("\r\n");

} // namespace sky::companion
