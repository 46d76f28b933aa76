#pragma once

#include <array>
#include <functional>
#include <memory>
#include <vector>

#include <QTimer>
#include <QWidget>

#include "stats/busiest.h"
#include "stats/chart_series.h"
#include "stats/chart_tables.h"

class QLabel;
class QLineEdit;
class QTabWidget;
class QChartView;

namespace sky::view {
class MapSession;
}
namespace sky::store {
class ChartReader;
}

namespace sky::ui {

class ClickableChartView;

// The Statistics window (Ctrl+T, the menu, the Chart buttons): the traffic of both networks over the
// kept hours (a click replays that moment on the map), an airport's arrivals and departures per hour,
// a flight's altitude and ground speed, and the busiest airports and FIRs now (a click opens the
// airport's board or goes to the FIR). What the history holds is read on a thread of its own and
// drawn when it comes; the map never waits. Each chart is saved as a PNG picture and its numbers as
// CSV where the user chooses. runOnMap carries out a call of the session with the map's GL context
// current, then draws the map (and brings it to the front when asked).
class StatisticsWindow final : public QWidget {
public:
    // historyPath: the history file the charts read (empty: none is kept); demo: it holds made-up data.
    StatisticsWindow(view::MapSession& session, const QString& historyPath, bool demo,
                     std::function<void(const std::function<void()>&, bool bringUp)> runOnMap);
    ~StatisticsWindow() override;

    void ShowTraffic();
    void ShowAirport(int network, const QString& airport);
    void ShowFlight(int network, const QString& callsign, const QString& member);
    void ShowBusiest();
    // Counts the kept traffic in the background, so the traffic chart opens at once later.
    void Prepare();

private:
    enum Tab { kTraffic, kAirport, kFlight, kBusiest, kTabs };
    void Present(Tab tab);
    void Refresh(); // reads again what the tab shown draws
    void ReadTraffic();
    void DrawTraffic();
    void ReadAirport();
    void ReadFlight();
    void DrawBusiest();
    void TrafficClicked(QPointF value);
    void MapChanged(); // every second: the map may show other data
    QString Titled(const QString& title) const;
    void Note(QChartView& view, const QString& text);
    void SavePicture();
    void SaveNumbers();

    view::MapSession& m_session;
    bool m_demo;
    std::function<void(const std::function<void()>&, bool)> m_runOnMap;
    std::unique_ptr<store::ChartReader> m_reader; // null without a history
    QTabWidget* m_tabs;
    ClickableChartView* m_traffic;
    QLineEdit* m_airportCode;
    QChartView* m_airport;
    QChartView* m_flight;
    QWidget* m_busiestPage;
    QChartView* m_busiestAirports;
    QChartView* m_busiestFirs;
    QLabel* m_status;
    QTimer m_watch;
    std::array<int, kTabs> m_asked{};               // each tab's latest read; an older answer is dropped
    std::array<stats::ChartTable, kTabs> m_numbers; // what each tab shows, as CSV writes it
    std::vector<stats::SnapshotCount> m_counts;
    QString m_mapData;       // the data the map showed when the charts were drawn
    int m_lateSnapshots = 0; // reads again while the snapshot the map shows is not yet written
    int m_airportNetwork = 0;
    int m_flightNetwork = 0;
    QString m_flightCallsign, m_flightMember;
    std::vector<stats::BusyPlace> m_busyAirports, m_busyFirs;
};

} // namespace sky::ui
