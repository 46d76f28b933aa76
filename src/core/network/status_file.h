#pragma once

#include <array>
#include <cstdint>
#include <functional>

#include <QString>
#include <QStringView>

namespace sky::network {

inline constexpr int kMaxServers = 10;

// What a network's status file says: its plain and compressed data servers (ten of each at most) and
// the address of its member profiles.
struct ServerLists {
    std::array<QString, kMaxServers> ServerUrl;
    std::int16_t ServerCount = 0;
    std::array<QString, kMaxServers> GzServerUrl;
    std::int16_t GzServerCount = 0;
    QString ProfileUrl;
    QString JsonUrl; // the JSON data ("json3="), used when no text server gives data
};

// Reads a status file into servers (after clearing both lists). Each "msg0=" line is handed to
// showMessage as it is met, as plain text. Addresses are taken as written, relative ones resolved
// against baseUrl, so a status file can name the data files beside it. Returns false when the text has
// fewer than five lines and was ignored.
bool ParseStatusFile(QStringView text, const QString& baseUrl, ServerLists& servers,
                     const std::function<void(const QString&)>& showMessage = {});

} // namespace sky::network
