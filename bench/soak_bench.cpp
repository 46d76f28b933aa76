#include <chrono>
#include <vector>

#include <benchmark/benchmark.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <unistd.h>

#include "common/file_io.h"
#include "network/http_client.h"
#include "render/null_gl.h"
#include "view/map_host.h"
#include "view/map_session.h"

using namespace Qt::StringLiterals;

// The map session through a long run of downloads: both demo networks and halves of them in turn, the
// scene built each time, a fake clock three minutes further at each. Memory after the first 50 downloads
// and at the end, and the time of the first and the last 50.
namespace {

class Feeds final : public sky::network::HttpClient {
public:
    sky::network::FetchResult Fetch(const QString& url) override {
        const auto it = Answers.find(url);
        return it == Answers.end() ? sky::network::FetchResult{false, {}, u"no such address"_s}
                                   : sky::network::FetchResult{true, it->second, {}};
    }
    std::map<QString, QByteArray> Answers;
};

class Host final : public sky::view::MapHost {
    void Redraw() override {}
    void ShowCompanion() override {}
    void ShowNetworkMessage(const QString&) override {}
    void EnableAutoDownload(bool) override {}
    void OpenUrl(const QString&) override {}
};

double ResidentMegabytes() {
    QFile statm(u"/proc/self/statm"_s);
    if (!statm.open(QIODevice::ReadOnly))
        return 0;
    return statm.readAll().split(' ').value(1).toDouble() * double(sysconf(_SC_PAGESIZE)) / (1 << 20);
}

// The demo text of a network with its UPDATE line set to stamp; with half, the first half of its clients.
QByteArray Feed(const QByteArray& demo, const QDateTime& stamp, bool half) {
    QList<QByteArray> lines = demo.split('\n');
    QList<QByteArray> kept;
    int clients = 0;
    for (const QByteArray& line : lines) {
        if (line.startsWith("UPDATE"))
            kept.append("UPDATE = " + stamp.toString(u"yyyyMMddhhmmss"_s).toLatin1() + '\r');
        else if (half && line.count(':') > 8 && ++clients % 2 == 0)
            continue;
        else
            kept.append(line);
    }
    return kept.join('\n');
}

void BM_ThousandDownloads(benchmark::State& state) {
    const int downloads = int(state.range(0));
    const QString source = QStringLiteral(SKYLANTRA_SOURCE_DIR);
    const QByteArray demo[2] = {
        sky::ReadWholeFile(source + u"/data/demo/ivao/whazzup.txt"_s).value_or(QByteArray()),
        sky::ReadWholeFile(source + u"/data/demo/vatsim/whazzup.txt"_s).value_or(QByteArray())};
    for (auto _ : state) {
        QTemporaryDir home;
        QDir(home.path()).mkpath(u"data"_s);
        for (const QString& file :
             {u"airports.dat"_s, u"firlist.dat"_s, u"firdisplay.dat"_s, u"coastline.dat"_s})
            QFile::copy(source + u"/data/"_s + file, home.filePath(u"data/"_s + file));
        Feeds http;
        Host host;
        sky::render::NullGl gl;
        QDateTime now(QDate(2026, 11, 21), QTime(0, 0), Qt::UTC);
        sky::network::FeedAddresses feeds;
        for (int n = 0; n < 2; ++n) {
            feeds.Status[size_t(n)] = u"http://feeds.example/%1/status.txt"_s.arg(n);
            http.Answers[feeds.Status[size_t(n)]] = "url0=whazzup.txt\n\n\n\n\n";
        }
        sky::view::MapSession session(sky::Folders::OneFolder(home.path()), sky::Settings{}, sky::Friends{},
                                      gl, host, http, nullptr, feeds);
        session.Downloader().Now = [&now] { return now; };
        session.Downloader().Random = [](int) { return 0; };
        session.StartUp();
        std::vector<double> milliseconds;
        double afterFifty = 0;
        for (int i = 0; i < downloads; ++i) {
            const int network = i % 2;
            now = now.addSecs(180);
            http.Answers[u"http://feeds.example/%1/whazzup.txt"_s.arg(network)] =
                Feed(demo[network], now, (i / 2) % 2);
            const auto begin = std::chrono::steady_clock::now();
            session.Downloader().BtnDownload(network);
            milliseconds.push_back(
                std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - begin).count());
            if (i == 49)
                afterFifty = ResidentMegabytes();
        }
        const auto mean = [&](size_t from, size_t to) {
            double sum = 0;
            for (size_t i = from; i < to; ++i)
                sum += milliseconds[i];
            return sum / double(to - from);
        };
        const size_t count = milliseconds.size();
        state.counters["rss_after_50_MB"] = afterFifty;
        state.counters["rss_end_MB"] = ResidentMegabytes();
        state.counters["rss_growth_MB"] = ResidentMegabytes() - afterFifty;
        state.counters["first_50_ms"] = mean(0, 50);
        state.counters["last_50_ms"] = mean(count - 50, count);
        state.counters["drift_pct"] = 100.0 * (mean(count - 50, count) / mean(0, 50) - 1.0);
    }
}
BENCHMARK(BM_ThousandDownloads)
    ->ArgName("downloads")
    ->Arg(1000)
    ->Arg(100)
    ->Iterations(1)
    ->Unit(benchmark::kSecond);

} // namespace
