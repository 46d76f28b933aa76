#include "statistics_window.h"

#include <QBuffer>
#include <QDateTime>
#include <QDir>
#include <QFileDialog>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QShortcut>
#include <QTabWidget>
#include <QVBoxLayout>

#include "chart_reader.h"
#include "network/client_records.h"
#include "statistics_charts.h"
#include "view/map_session.h"

using namespace Qt::StringLiterals;

namespace sky::ui {
namespace {

const char16_t* const kTabNames[] = {u"traffic", u"airport", u"flight", u"busiest"};

// A shown network's name for titles: "IVAO", "VATSIM" or "IVAO and VATSIM".
QString NetworksName(const std::vector<int>& networks) {
    QStringList names;
    for (int n : networks)
        names.append(network::NetworkName(n));
    return names.join(u" and "_s);
}

// What the map shows, in a line: a change of it draws the charts again.
QString MapData(const view::MapSession& session) {
    const network::ClientTables& t = session.Tables();
    return QString::number(session.Display().ShownNetwork) + u'/' + t[0].UpdateStamp + u'/' +
           t[1].UpdateStamp + u'/' + t[0].LastDownload.toString() + u'/' + t[1].LastDownload.toString();
}

ClickableChartView* NewView(QWidget* parent) {
    auto* view = new ClickableChartView(parent);
    view->setRenderHint(QPainter::Antialiasing);
    view->setMinimumSize(320, 240);
    return view;
}

} // namespace

StatisticsWindow::StatisticsWindow(view::MapSession& session, const QString& historyPath, bool demo,
                                   std::function<void(const std::function<void()>&, bool)> runOnMap)
    : m_session(session), m_demo(demo), m_runOnMap(std::move(runOnMap)) {
    setWindowTitle(demo ? u"Skylantra Statistics - demo data, made up"_s : u"Skylantra Statistics"_s);
    resize(960, 600);
    // Escape closes it, as it closes the map's panels.
    new QShortcut(QKeySequence(Qt::Key_Escape), this, this, &QWidget::close);
    if (!historyPath.isEmpty())
        m_reader = std::make_unique<store::ChartReader>(historyPath);
    m_tabs = new QTabWidget(this);
    m_traffic = NewView(m_tabs);
    m_traffic->Clicked = [this](QPointF value) { TrafficClicked(value); };
    m_traffic->setToolTip(u"Click to show that moment on the map (F9 returns to live data)"_s);
    m_tabs->addTab(m_traffic, u"Traffic"_s);

    auto* airportPage = new QWidget(m_tabs);
    auto* airportLayout = new QVBoxLayout(airportPage);
    auto* airportRow = new QHBoxLayout;
    m_airportCode = new QLineEdit(airportPage);
    m_airportCode->setMaxLength(8);
    m_airportCode->setMaximumWidth(120);
    m_airportCode->setPlaceholderText(u"ICAO code"_s);
    auto* show = new QPushButton(u"Show"_s, airportPage);
    airportRow->addWidget(new QLabel(u"Airport"_s, airportPage));
    airportRow->addWidget(m_airportCode);
    airportRow->addWidget(show);
    airportRow->addStretch();
    airportLayout->addLayout(airportRow);
    m_airport = NewView(airportPage);
    airportLayout->addWidget(m_airport);
    // A code typed in: the airport's movements on the network the map shows.
    const auto typed = [this] {
        m_airportNetwork = m_session.Display().ShownNetwork == 1 ? 1 : 0;
        ReadAirport();
    };
    connect(show, &QPushButton::clicked, this, typed);
    connect(m_airportCode, &QLineEdit::returnPressed, this, typed);
    m_tabs->addTab(airportPage, u"Airport"_s);

    m_flight = NewView(m_tabs);
    m_tabs->addTab(m_flight, u"Flight"_s);

    m_busiestPage = new QWidget(m_tabs);
    auto* busiestLayout = new QHBoxLayout(m_busiestPage);
    m_busiestAirports = NewView(m_busiestPage);
    m_busiestFirs = NewView(m_busiestPage);
    busiestLayout->addWidget(m_busiestAirports);
    busiestLayout->addWidget(m_busiestFirs);
    m_tabs->addTab(m_busiestPage, u"Busiest now"_s);

    m_status = new QLabel(this);
    m_status->setWordWrap(true);
    auto* picture = new QPushButton(u"Save &picture..."_s, this);
    auto* numbers = new QPushButton(u"Save &numbers..."_s, this);
    connect(picture, &QPushButton::clicked, this, [this] { SavePicture(); });
    connect(numbers, &QPushButton::clicked, this, [this] { SaveNumbers(); });
    auto* bottom = new QHBoxLayout;
    bottom->addWidget(m_status, 1);
    bottom->addWidget(picture);
    bottom->addWidget(numbers);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(m_tabs, 1);
    layout->addLayout(bottom);
    connect(m_tabs, &QTabWidget::currentChanged, this, [this] { Refresh(); });
    m_watch.setInterval(1000);
    connect(&m_watch, &QTimer::timeout, this, [this] { MapChanged(); });
    m_watch.start();
}

StatisticsWindow::~StatisticsWindow() = default;

void StatisticsWindow::Present(Tab tab) {
    show();
    raise();
    activateWindow();
    if (m_tabs->currentIndex() != tab)
        m_tabs->setCurrentIndex(tab); // which reads it
    else
        Refresh();
}

void StatisticsWindow::ShowTraffic() {
    Present(kTraffic);
}

void StatisticsWindow::ShowAirport(int network, const QString& airport) {
    m_airportNetwork = network;
    m_airportCode->setText(airport);
    Present(kAirport);
}

void StatisticsWindow::ShowFlight(int network, const QString& callsign, const QString& member) {
    m_flightNetwork = network;
    m_flightCallsign = callsign;
    m_flightMember = member;
    Present(kFlight);
}

void StatisticsWindow::ShowBusiest() {
    Present(kBusiest);
}

void StatisticsWindow::Refresh() {
    m_mapData = MapData(m_session);
    switch (m_tabs->currentIndex()) {
    case kTraffic:
        ReadTraffic();
        break;
    case kAirport:
        ReadAirport();
        break;
    case kFlight:
        ReadFlight();
        break;
    default:
        DrawBusiest();
        break;
    }
}

void StatisticsWindow::MapChanged() {
    if (!isVisible() || MapData(m_session) == m_mapData)
        return;
    if (!m_mapData.isEmpty())
        m_lateSnapshots = 0; // new data, not a read again
    Refresh();
}

QString StatisticsWindow::Titled(const QString& title) const {
    return m_demo ? title + u" - demo data"_s : title;
}

void StatisticsWindow::Note(QChartView& view, const QString& text) {
    ShowChart(view, NoteChart(text, ChartColours::From(m_session.Colours())));
}

void StatisticsWindow::Prepare() {
    if (m_reader && m_counts.empty())
        ReadTraffic();
}

void StatisticsWindow::ReadTraffic() {
    if (!m_reader) {
        Note(*m_traffic, u"Skylantra keeps no history: HistoryHours in skln.ini is 0"_s);
        return;
    }
    const int ask = ++m_asked[kTraffic];
    if (m_counts.empty())
        m_status->setText(u"Reading the history..."_s);
    else if (isVisible())
        DrawTraffic(); // what was read before at once, then what came since
    m_reader->Ask<std::vector<stats::SnapshotCount>>(
        [](store::ChartQueries& queries) { return queries.ClientCounts(); }, this,
        [this, ask](std::vector<stats::SnapshotCount> counts) {
            if (ask != m_asked[kTraffic])
                return;
            m_counts = std::move(counts);
            DrawTraffic();
        });
}

void StatisticsWindow::DrawTraffic() {
    m_numbers[kTraffic] = stats::CountsTable(m_counts);
    if (m_counts.empty()) {
        Note(*m_traffic, u"Nothing is kept yet: each download adds to the history"_s);
        m_status->clear();
        return;
    }
    int shown[2] = {-1, -1};
    for (int n = 0; n < network::kNetworkCount; ++n) {
        const QString& stamp = m_session.Tables()[n].UpdateStamp;
        shown[n] = stamp.isEmpty() ? -1 : stats::ShownSnapshot(m_counts, n, stamp);
    }
    // The history's writer may not have written the newest download yet: read again in a moment.
    const int shownNetwork = m_session.Display().ShownNetwork;
    if (shownNetwork < 2 && shown[shownNetwork] < 0 &&
        !m_session.Tables()[shownNetwork].UpdateStamp.isEmpty() && m_lateSnapshots < 5) {
        ++m_lateSnapshots;
        m_mapData.clear();
    } else {
        m_lateSnapshots = 0;
    }
    ShowChart(*m_traffic, TrafficChart(m_counts, shown, m_session.Display().ShownNetwork,
                                       ChartColours::From(m_session.Colours()),
                                       Titled(u"Pilots and controllers online over the kept hours"_s)));
    m_status->setText(u"%1 kept downloads. A click on the chart shows that moment on the map; F9 there "
                      u"returns to live data."_s.arg(m_counts.size()));
}

void StatisticsWindow::TrafficClicked(QPointF value) {
    const int index = stats::ClickedSnapshot(m_counts, qint64(value.x()), value.y());
    if (index < 0)
        return;
    const stats::SnapshotCount s = m_counts[size_t(index)];
    m_runOnMap([this, s] { m_session.ReplaySnapshot(s.Network, s.SnapshotId); }, false);
    m_mapData = MapData(m_session);
    DrawTraffic();
    m_status->setText(network::NetworkName(s.Network) + u" data of "_s +
                      QDateTime::fromSecsSinceEpoch(s.TakenUtc, Qt::UTC).toString(u"d MMM HHmm"_s) +
                      u"Z on the map; F9 there returns to live data."_s);
}

void StatisticsWindow::ReadAirport() {
    const QString code = m_airportCode->text().trimmed().toUpper();
    const Airport* airport = code.isEmpty() ? nullptr : m_session.Reference().FindAirport(code);
    m_numbers[kAirport] = {};
    if (!airport) {
        Note(*m_airport, code.isEmpty() ? u"Type an airport's ICAO code, or press Chart on its board"_s
                                        : u"No airport "_s + code + u" is known"_s);
        return;
    }
    if (!m_reader) {
        Note(*m_airport, u"Skylantra keeps no history: HistoryHours in skln.ini is 0"_s);
        return;
    }
    const int ask = ++m_asked[kAirport];
    const int network = m_airportNetwork;
    const float lat = airport->Latitude, lon = airport->Longitude;
    const QString title = code + u' ' + airport->Name + u": arrivals and departures per hour, "_s +
                          network::NetworkName(network);
    m_status->setText(u"Reading the history..."_s);
    m_reader->Ask<std::vector<stats::HourMovements>>(
        [network, code, lat, lon](store::ChartQueries& queries) {
            const store::AirportHistory kept = queries.Airport(network, code);
            return stats::MovementsPerHour(kept.Samples, lat, lon, kept.FirstUtc, kept.LastUtc);
        },
        this,
        [this, ask, network, code, title](std::vector<stats::HourMovements> hours) {
            if (ask != m_asked[kAirport])
                return;
            m_numbers[kAirport] = stats::MovementsTable(hours);
            if (hours.empty()) {
                Note(*m_airport, u"Nothing of "_s + network::NetworkName(network) + u" is kept yet"_s);
                m_status->clear();
                return;
            }
            ShowChart(*m_airport,
                      MovementsChart(hours, network, ChartColours::From(m_session.Colours()), Titled(title)));
            m_status->setText(u"As its board counts them: flights within 100 nm bound for "_s + code +
                              u" and coming closer, or from it and moving away; each once."_s);
        });
}

void StatisticsWindow::ReadFlight() {
    m_numbers[kFlight] = {};
    if (m_flightCallsign.isEmpty()) {
        Note(*m_flight, u"Select an aircraft and press Chart in its info box"_s);
        return;
    }
    if (!m_reader) {
        Note(*m_flight, u"Skylantra keeps no history: HistoryHours in skln.ini is 0"_s);
        return;
    }
    const int ask = ++m_asked[kFlight];
    const int network = m_flightNetwork;
    const QString callsign = m_flightCallsign, member = m_flightMember;
    m_status->setText(u"Reading the history..."_s);
    m_reader->Ask<std::vector<stats::ProfilePoint>>(
        [network, callsign, member](store::ChartQueries& queries) {
            return queries.Profile(network, callsign, member);
        },
        this,
        [this, ask, network, callsign, member](std::vector<stats::ProfilePoint> points) {
            if (ask != m_asked[kFlight])
                return;
            m_numbers[kFlight] = stats::ProfileTable(points);
            if (points.empty()) {
                Note(*m_flight, callsign + u" is not in the history"_s);
                m_status->clear();
                return;
            }
            ShowChart(
                *m_flight,
                ProfileChart(stats::ProfilePieces(points), network, ChartColours::From(m_session.Colours()),
                             Titled(callsign + u" (member "_s + member + u", "_s +
                                    network::NetworkName(network) + u"): altitude and ground speed"_s)));
            m_status->setText(u"%1 kept positions of %2."_s.arg(points.size()).arg(callsign));
        });
}

void StatisticsWindow::DrawBusiest() {
    const int shownNetwork = m_session.Display().ShownNetwork;
    const std::vector<int> networks =
        shownNetwork == 2 ? std::vector<int>{0, 1} : std::vector<int>{shownNetwork};
    const view::MapState& state = m_session.State();
    m_busyAirports = stats::BusiestAirports(state.AllTables(), networks, state.Reference);
    m_busyFirs = stats::BusiestFirs(state.AllTables(), networks, state.Outlines, state.Reference);
    m_numbers[kBusiest] = stats::BusiestTable(m_busyAirports, m_busyFirs);
    const ChartColours colours = ChartColours::From(m_session.Colours());
    const QString when = u" now, "_s + NetworksName(networks);
    const auto go = [this](const stats::BusyPlace& place, search::ResultKind kind) {
        search::SearchResult result;
        result.Kind = kind;
        result.Code = place.Code;
        result.Latitude = place.Latitude;
        result.Longitude = place.Longitude;
        m_runOnMap([this, result] { m_session.ChooseSearchResult(result); }, true);
    };
    if (m_busyAirports.empty())
        Note(*m_busiestAirports, u"No traffic on the map: download a network first"_s);
    else
        ShowChart(*m_busiestAirports,
                  BusiestChart(m_busyAirports, colours, Titled(u"Busiest airports"_s + when),
                               u"flights on its board"_s, [this, go](int i) {
                                   go(m_busyAirports[size_t(i)], search::ResultKind::Airport);
                               }));
    if (m_busyFirs.empty())
        Note(*m_busiestFirs, u"No aircraft flying on the map"_s);
    else
        ShowChart(*m_busiestFirs, BusiestChart(m_busyFirs, colours, Titled(u"Busiest FIRs"_s + when),
                                               u"aircraft flying in it"_s, [this, go](int i) {
                                                   go(m_busyFirs[size_t(i)], search::ResultKind::Fir);
                                               }));
    m_status->setText(u"A click on an airport's bar opens its board on the map, on a FIR's goes there."_s);
}

void StatisticsWindow::SavePicture() {
    const int tab = m_tabs->currentIndex();
    const QString path = QFileDialog::getSaveFileName(
        this, u"Save the chart as a picture"_s,
        QDir::home().filePath(u"skylantra-"_s + QString::fromUtf16(kTabNames[tab]) + u".png"_s),
        u"PNG pictures (*.png)"_s);
    if (path.isEmpty())
        return;
    QWidget* shown = tab == kBusiest   ? m_busiestPage
                     : tab == kAirport ? static_cast<QWidget*>(m_airport)
                                       : m_tabs->currentWidget();
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    shown->grab().toImage().save(&buffer, "PNG");
    const WriteResult written = WriteFileAtomically(path, bytes);
    if (!written.Ok)
        QMessageBox::warning(this, u"Skylantra"_s, written.Message);
    else
        m_status->setText(u"Saved "_s + QDir::toNativeSeparators(path));
}

void StatisticsWindow::SaveNumbers() {
    const int tab = m_tabs->currentIndex();
    const QString path = QFileDialog::getSaveFileName(
        this, u"Save the chart's numbers"_s,
        QDir::home().filePath(u"skylantra-"_s + QString::fromUtf16(kTabNames[tab]) + u".csv"_s),
        u"Comma-separated values (*.csv)"_s);
    if (path.isEmpty())
        return;
    const WriteResult written = stats::SaveCsv(path, m_numbers[size_t(tab)]);
    if (!written.Ok)
        QMessageBox::warning(this, u"Skylantra"_s, written.Message);
    else
        m_status->setText(u"Saved "_s + QDir::toNativeSeparators(path));
}

} // namespace sky::ui
