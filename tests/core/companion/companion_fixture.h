#pragma once

#include <QDateTime>
#include <QStringList>

#include <gtest/gtest.h>

#include "qt_printers.h"
#include "testing/fakes.h"

#include "companion/console.h"
#include "network/download.h"
#include "network/http_client.h"
#include "network/whazzup.h"
#include "network/whazzup_lines.h"
#include "refdata/reference_data.h"

using namespace Qt::StringLiterals;

namespace sky::companion::testing {

class FakeHost : public CompanionHost {
public:
    void CentreOn(float latitude, float longitude, const QString& name) override {
        Centred.append(name);
        Latitude = latitude;
        Longitude = longitude;
    }
    void MarkAirport(float, float, const QString& code) override { Marked.append(code); }
    void OpenProfile(int network, const QString& vid) override {
        Profiles.append(QString::number(network) + u':' + vid);
    }
    void Download(int network) override {
        Downloads.append(network);
        if (OnDownload)
            OnDownload(network);
    }
    QStringList Centred, Marked, Profiles;
    QList<int> Downloads;
    float Latitude = 0, Longitude = 0;
    std::function<void(int)> OnDownload;
};

using sky::testing::FakeHttp;

// A console over a small network of clients, recording what it prints.
class Companion : public ::testing::Test {
protected:
    void SetUp() override {
        m_reference.AddAirports(u"EDDF:Frankfurt am Main Airport:Frankfurt am Main:DE:50.0333:8.5706\n"
                                "KJFK:John F Kennedy:New York:US:40.6394:-73.7793\n"
                                "EGLL:Heathrow:London:GB:51.4707:-0.4599\n"
                                "EDDM:Munich:Munich:DE:48.3538:11.7861\n");
        m_reference.AddFirCentres(u"EDGG:DE:49.5:8.25:Langen\nLON:GB:51.9:-1.5:London\n");
        m_downloads.DownloadIdle = true;
        m_console.SetSink([this](const QString& text) { m_printed.append(text); });
    }

    // Reads a whazzup of the given client lines into network (0 IVAO, 1 VATSIM) and shows it.
    void Load(int network, const QStringList& clients, int connected = -1) {
        network::InterpretWhazzup(network,
                                  network::testing::WhazzupText(clients, u"20261121142305"_s, 2, connected),
                                  m_reference, m_tables[network], m_now);
        m_shown = network;
    }

    QStringList Run(const QString& line) {
        m_printed.clear();
        const auto now = [this] { return m_now; };
        CommandContext context{
            m_tables, m_downloads, m_reference, m_shown, m_host, m_http, u"http://127.0.0.1:9/wx"_s, now, {}};
        m_console.Enter(line, context);
        return m_printed;
    }

    network::ClientTables m_tables;
    network::DownloadState m_downloads;
    ReferenceData m_reference;
    FakeHost m_host;
    FakeHttp m_http;
    CompanionConsole m_console;
    QStringList m_printed;
    int m_shown = 0;
    QDateTime m_now = QDateTime(QDate(2026, 11, 21), QTime(14, 24));
};

} // namespace sky::companion::testing
