#pragma once

#include <functional>
#include <vector>

#include <QChart>
#include <QChartView>
#include <QColor>

#include "app/colour_theme.h"
#include "stats/airport_movements.h"
#include "stats/busiest.h"
#include "stats/chart_series.h"

// The charts of the Statistics window, made with Qt Charts in the colours of the map's theme: each a
// function from the numbers to a chart, so the window only asks, waits and shows.
namespace sky::ui {

// The theme's colours as the charts use them.
struct ChartColours {
    QColor Background, Plot, Text, Grid, Marker;
    QColor Networks[2];
    static ChartColours From(const ColourTable& table);
};

// The traffic of both networks over the kept snapshots: pilots solid, controllers dashed, each network
// in its colour; a mark at the snapshot each network's data on the map come from (shown: its index in
// counts, or -1), a line through the one of the network shown.
QChart* TrafficChart(const std::vector<stats::SnapshotCount>& counts, const int shown[2], int shownNetwork,
                     const ChartColours& colours, const QString& title);
// An airport's arrivals (the network's colour) and departures (the marker's) per hour.
QChart* MovementsChart(const std::vector<stats::HourMovements>& hours, int network,
                       const ChartColours& colours, const QString& title);
// A flight's altitude (the network's colour, feet at the left) and ground speed (the marker's colour,
// knots at the right), a line a piece.
QChart* ProfileChart(const std::vector<std::vector<stats::ProfilePoint>>& pieces, int network,
                     const ChartColours& colours, const QString& title);
// The busiest places as bars, the busiest on top, each network's share in its colour, what is counted
// under them; a click on a bar calls clicked with the place's index.
QChart* BusiestChart(const std::vector<stats::BusyPlace>& places, const ChartColours& colours,
                     const QString& title, const QString& counted, const std::function<void(int)>& clicked);
// A chart with nothing to draw but a line of text (why there is nothing).
QChart* NoteChart(const QString& text, const ChartColours& colours);

// A chart view that tells where it was clicked, in the values of its chart's first series.
class ClickableChartView final : public QChartView {
public:
    explicit ClickableChartView(QWidget* parent = nullptr) : QChartView(parent) {}
    std::function<void(QPointF value)> Clicked;

protected:
    void mouseReleaseEvent(QMouseEvent* event) override;
};

// Puts chart into view, the one it showed before going.
void ShowChart(QChartView& view, QChart* chart);

} // namespace sky::ui
