#include "fuzz_targets.h"

#include "alerts/watch_list.h"
#include "app/colour_theme.h"
#include "app/friends.h"
#include "app/ini_file.h"
#include "app/settings.h"
#include "coming/answer_cache.h"
#include "coming/coming_lists.h"
#include "common/file_io.h"
#include "common/json_values.h"
#include "common/text_codec.h"
#include "companion/console.h"
#include "conditions/flight_category.h"
#include "conditions/metar_list.h"
#include "conditions/runways.h"
#include "network/download.h"
#include "network/gunzip.h"
#include "network/http_client.h"
#include "network/json_feeds.h"
#include "network/status_file.h"
#include "network/whazzup.h"
#include "refdata/navaids.h"
#include "refdata/reference_data.h"
#include "route/route_resolver.h"
#include "search/search_index.h"

using namespace Qt::StringLiterals;

namespace sky::fuzz {
namespace {

QByteArray Bytes(const std::uint8_t* data, std::size_t size) {
    return QByteArray(reinterpret_cast<const char*>(data), qsizetype(size));
}
QString Text(const std::uint8_t* data, std::size_t size) {
    return DecodeText(Bytes(data, size)).Text;
}

const QString kData = QStringLiteral(SKYLANTRA_SOURCE_DIR) + u"/data"_s;

const ReferenceData& Reference() {
    static const ReferenceData reference = ReferenceData::Load(kData);
    return reference;
}

// Both demo feeds, read once: what the Companion and the search answer from.
const network::ClientTables& DemoTables() {
    static const network::ClientTables tables = [] {
        network::ClientTables t;
        const char* files[] = {"/demo/ivao/whazzup.txt", "/demo/vatsim/whazzup.txt"};
        for (int n = 0; n < 2; ++n) {
            const QByteArray bytes =
                ReadWholeFile(kData + QString::fromLatin1(files[n])).value_or(QByteArray());
            network::InterpretWhazzup(n, DecodeText(bytes).Text, Reference(), t[n], {});
        }
        return t;
    }();
    return tables;
}

class NoHost final : public companion::CompanionHost {
    void CentreOn(float, float, const QString&) override {}
    void MarkAirport(float, float, const QString&) override {}
    void OpenProfile(int, const QString&) override {}
    void Download(int) override {}
};

class NoNetwork final : public network::HttpClient {
    network::FetchResult Fetch(const QString&) override { return {false, {}, u"offline"_s}; }
};

} // namespace

void Whazzup(const std::uint8_t* data, std::size_t size) {
    if (size == 0)
        return;
    network::NetworkData tables;
    network::InterpretWhazzup(data[0] & 1, Text(data + 1, size - 1), Reference(), tables, {});
}

void JsonFeeds(const std::uint8_t* data, std::size_t size) {
    const QByteArray body = Bytes(data, size);
    network::DetectFeed(body);
    const network::TranslatedFeed feeds[] = {
        network::TranslateIvaoV2(body),
        network::TranslateVatsimV3(body, network::ParseVatsimTransceivers(body))};
    for (int n = 0; n < 2; ++n) {
        if (!feeds[n].Ok)
            continue;
        network::NetworkData tables;
        network::InterpretWhazzup(n, feeds[n].Text, Reference(), tables, {});
    }
}

void StatusFile(const std::uint8_t* data, std::size_t size) {
    network::ServerLists servers;
    network::ParseStatusFile(Text(data, size), u"http://status.example/feed/"_s, servers,
                             [](const QString&) {});
}

void Gunzip(const std::uint8_t* data, std::size_t size) {
    network::GunzipBytes(Bytes(data, size), qint64(1) << 20);
}

void SettingsFiles(const std::uint8_t* data, std::size_t size) {
    const QByteArray bytes = Bytes(data, size);
    const IniFile ini = IniFile::FromBytes(bytes);
    ReadSettings(ini, ScreenMetrics{});
    const QString text = DecodeText(bytes).Text;
    ColourTable colours = DefaultColourTable();
    int slot = 0;
    for (QStringView line : QStringView(text).split(u'\n'))
        ParseColour(line, slot++ % ColourTable::kSlots, colours);
    Friends::Parse(text);
    alerts::WatchList::Parse(text);
}

void Companion(const std::uint8_t* data, std::size_t size) {
    NoHost host;
    NoNetwork http;
    network::ClientTables tables = DemoTables();
    network::DownloadState downloads;
    downloads.DownloadIdle = true;
    companion::CompanionConsole console;
    const QDateTime now(QDate(2026, 11, 21), QTime(14, 30), Qt::UTC);
    const auto clock = [now] { return now; };
    companion::CommandContext context{
        tables, downloads, Reference(), size > 0 ? data[0] % 3 : 0, host, http, u"http://weather.example"_s,
        clock,  {}};
    const QStringList lines = Text(data, size).split(u'\n');
    for (qsizetype i = 0; i < lines.size() && i < 20; ++i) {
        const QString line = lines[i].trimmed();
        if (!line.isEmpty())
            console.ReadText(line, context);
    }
}

void Route(const std::uint8_t* data, std::size_t size) {
    static const Navaids navaids = Navaids::Load(kData);
    const QStringList words = Text(data, size).split(u' ');
    route::ResolveRoute(words.value(0), words.value(1), words.mid(2).join(u' '), Reference(), navaids);
    for (const QString& word : words)
        route::ParseRouteCoordinate(word);
}

void Search(const std::uint8_t* data, std::size_t size) {
    static const search::SearchIndex index = [] {
        search::SearchIndex i;
        i.SetPlaces(Reference());
        i.SetClients(DemoTables(), {0, 1});
        return i;
    }();
    index.Find(Text(data, size));
}

void Coming(const std::uint8_t* data, std::size_t size) {
    const QByteArray body = Bytes(data, size);
    coming::ParseBookings(body);
    coming::ParseEvents(body);
    if (const auto kept = coming::ReadCache(body))
        coming::ParseEvents(kept->Body);
    ServiceTime(Text(data, size));
}

void Weather(const std::uint8_t* data, std::size_t size) {
    const QString text = Text(data, size);
    const QDateTime now(QDate(2026, 3, 1), QTime(0, 30), Qt::UTC); // the month before is short
    for (const conditions::StationMetar& metar : conditions::ReadMetarList(text, now, {}).Metars)
        conditions::CategoryOf(conditions::ReadConditions(metar.Text));
    conditions::ParseRunways(text, u"EDDF"_s);
}

Target TargetNamed(const QString& name) {
    const std::pair<const char16_t*, Target> targets[] = {
        {u"whazzup", Whazzup}, {u"json_feeds", JsonFeeds},   {u"status_file", StatusFile},
        {u"gunzip", Gunzip},   {u"settings", SettingsFiles}, {u"companion", Companion},
        {u"route", Route},     {u"search", Search},          {u"coming", Coming},
        {u"weather", Weather},
    };
    for (const auto& [known, target] : targets)
        if (name == QStringView(known))
            return target;
    return nullptr;
}

} // namespace sky::fuzz
