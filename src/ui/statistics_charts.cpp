#include "statistics_charts.h"

#include <algorithm>

#include <QBarCategoryAxis>
#include <QBarSeries>
#include <QBarSet>
#include <QCategoryAxis>
#include <QDateTime>
#include <QHorizontalStackedBarSeries>
#include <QLegendMarker>
#include <QLineSeries>
#include <QMouseEvent>
#include <QScatterSeries>
#include <QValueAxis>

#include "network/client_records.h"

using namespace Qt::StringLiterals;

namespace sky::ui {
namespace {

QColor Slot(const ColourTable& t, int slot) {
    return QColor::fromRgbF(t.Red[size_t(slot)], t.Green[size_t(slot)], t.Blue[size_t(slot)]);
}

QChart* NewChart(const ChartColours& c, const QString& title) {
    auto* chart = new QChart;
    chart->setAnimationOptions(QChart::NoAnimation);
    chart->setBackgroundBrush(c.Background);
    chart->setBackgroundRoundness(0);
    chart->setPlotAreaBackgroundBrush(c.Plot);
    chart->setPlotAreaBackgroundVisible(true);
    chart->setTitle(title);
    chart->setTitleBrush(c.Text);
    chart->legend()->setLabelColor(c.Text);
    chart->legend()->setAlignment(Qt::AlignBottom);
    return chart;
}

void Style(QAbstractAxis* axis, const ChartColours& c, const QString& title = {}) {
    axis->setLabelsColor(c.Text);
    axis->setLinePenColor(c.Text);
    axis->setGridLineColor(c.Grid);
    axis->setTitleBrush(c.Text);
    axis->setTitleText(title);
}

// A whole number of units on an axis from 0 to a little above most.
QValueAxis* CountAxis(double most, const ChartColours& c, const QString& title) {
    auto* axis = new QValueAxis;
    axis->setRange(0, std::max(1.0, most * 1.1));
    axis->setLabelFormat(u"%d"_s);
    axis->applyNiceNumbers();
    Style(axis, c, title);
    return axis;
}

// Times as the map writes them ("1400Z"), with the day of the month before them ("21/1400Z") on a span
// of a day or more, where the same time comes twice.
QString TimeLabel(qint64 utc, bool withDay) {
    const QDateTime t = QDateTime::fromSecsSinceEpoch(utc, Qt::UTC);
    return (withDay ? t.toString(u"d/"_s) : QString()) + t.toString(u"HHmm"_s) + u'Z';
}

// An hour's bar by its hour, "14"; with the day, "21/14", where an hour would come twice (more than a
// day of them).
QStringList HourLabels(const std::vector<stats::HourMovements>& hours) {
    const bool withDay = hours.size() > 24;
    QStringList labels;
    for (const stats::HourMovements& h : hours)
        labels.append(
            QDateTime::fromSecsSinceEpoch(h.HourUtc, Qt::UTC).toString(withDay ? u"d/HH"_s : u"HH"_s));
    return labels;
}

// The time axis of seconds since 1970 from first to last, a label on each whole step of a few hours.
QCategoryAxis* TimeAxis(qint64 first, qint64 last, const ChartColours& c) {
    auto* axis = new QCategoryAxis;
    last = std::max(last, first + 60);
    axis->setRange(double(first), double(last));
    axis->setStartValue(double(first));
    axis->setLabelsPosition(QCategoryAxis::AxisLabelsPositionOnValue);
    const qint64 steps[] = {900, 1800, 3600, 7200, 10800, 21600, 43200, 86400};
    qint64 step = steps[std::size(steps) - 1];
    for (qint64 s : steps) {
        if ((last - first) / s <= 10) {
            step = s;
            break;
        }
    }
    const bool withDay = last - first >= 20 * 3600;
    for (qint64 t = (first + step - 1) / step * step; t <= last; t += step)
        axis->append(TimeLabel(t, withDay), double(t));
    Style(axis, c, u"UTC"_s);
    return axis;
}

void Attach(QChart* chart, QAbstractSeries* series, QAbstractAxis* x, QAbstractAxis* y) {
    chart->addSeries(series);
    series->attachAxis(x);
    series->attachAxis(y);
}

QLineSeries* Line(const QString& name, const QColor& colour, Qt::PenStyle style, qreal width) {
    auto* series = new QLineSeries;
    series->setName(name);
    QPen pen(colour, width, style);
    series->setPen(pen);
    return series;
}

void HideFromLegend(QChart* chart, QAbstractSeries* series) {
    for (QLegendMarker* marker : chart->legend()->markers(series))
        marker->setVisible(false);
}

} // namespace

ChartColours ChartColours::From(const ColourTable& t) {
    ChartColours c;
    c.Background = Slot(t, kSlotWindowBackground);
    c.Plot = Slot(t, kSlotScreenBackground);
    c.Text = Slot(t, kSlotScreenBorder);
    c.Grid = Slot(t, kSlotWindowShading);
    c.Grid.setAlphaF(0.45f);
    c.Marker = Slot(t, kSlotHighlight);
    c.Networks[0] = Slot(t, kSlotIVAO);
    c.Networks[1] = Slot(t, kSlotVATSIM);
    return c;
}

QChart* TrafficChart(const std::vector<stats::SnapshotCount>& counts, const int shown[2], int shownNetwork,
                     const ChartColours& c, const QString& title) {
    QChart* chart = NewChart(c, title);
    qint64 first = counts.front().TakenUtc, last = counts.front().TakenUtc;
    int most = 0;
    for (const stats::SnapshotCount& s : counts) {
        first = std::min(first, s.TakenUtc);
        last = std::max(last, s.TakenUtc);
        most = std::max({most, s.Pilots, s.Controllers});
    }
    QCategoryAxis* x = TimeAxis(first, last, c);
    QValueAxis* y = CountAxis(most, c, u"online"_s);
    chart->addAxis(x, Qt::AlignBottom);
    chart->addAxis(y, Qt::AlignLeft);
    for (int n = 0; n < network::kNetworkCount; ++n) {
        QLineSeries* pilots = Line(network::NetworkName(n) + u" pilots"_s, c.Networks[n], Qt::SolidLine, 2);
        QLineSeries* controllers =
            Line(network::NetworkName(n) + u" controllers"_s, c.Networks[n], Qt::DashLine, 2);
        for (const stats::SnapshotCount& s : counts) {
            if (s.Network != n)
                continue;
            pilots->append(double(s.TakenUtc), s.Pilots);
            controllers->append(double(s.TakenUtc), s.Controllers);
        }
        if (pilots->count() == 0) {
            delete pilots;
            delete controllers;
            continue;
        }
        Attach(chart, pilots, x, y);
        Attach(chart, controllers, x, y);
    }
    // The moments the map shows: a mark on each network's pilots, a line through the shown network's.
    for (int n = 0; n < network::kNetworkCount; ++n) {
        if (shown[n] < 0 || size_t(shown[n]) >= counts.size())
            continue;
        const stats::SnapshotCount& s = counts[size_t(shown[n])];
        auto* mark = new QScatterSeries;
        mark->setName(u"on the map"_s);
        mark->setColor(c.Marker);
        mark->setBorderColor(c.Networks[n]);
        mark->setMarkerSize(11);
        mark->append(double(s.TakenUtc), s.Pilots);
        Attach(chart, mark, x, y);
        if (n != shownNetwork)
            HideFromLegend(chart, mark);
        if (n == shownNetwork) {
            QLineSeries* line = Line(QString(), c.Marker, Qt::DotLine, 1);
            line->append(double(s.TakenUtc), 0);
            line->append(double(s.TakenUtc), y->max());
            Attach(chart, line, x, y);
            HideFromLegend(chart, line);
        }
    }
    return chart;
}

QChart* MovementsChart(const std::vector<stats::HourMovements>& hours, int network, const ChartColours& c,
                       const QString& title) {
    QChart* chart = NewChart(c, title);
    auto* arrivals = new QBarSet(u"Arrivals"_s);
    auto* departures = new QBarSet(u"Departures"_s);
    arrivals->setColor(c.Networks[network == 1 ? 1 : 0]);
    departures->setColor(c.Marker);
    arrivals->setBorderColor(c.Plot);
    departures->setBorderColor(c.Plot);
    QStringList labels;
    int most = 0;
    for (const stats::HourMovements& h : hours) {
        *arrivals << h.Arrivals;
        *departures << h.Departures;
        most = std::max({most, h.Arrivals, h.Departures});
    }
    labels = HourLabels(hours);
    auto* series = new QBarSeries;
    series->append(arrivals);
    series->append(departures);
    chart->addSeries(series);
    auto* x = new QBarCategoryAxis;
    x->append(labels);
    Style(x, c, u"hour (UTC)"_s);
    if (labels.size() > 24)
        x->setLabelsAngle(-90); // "21/14" is wider than a bar
    QValueAxis* y = CountAxis(most, c, u"movements"_s);
    chart->addAxis(x, Qt::AlignBottom);
    chart->addAxis(y, Qt::AlignLeft);
    series->attachAxis(x);
    series->attachAxis(y);
    return chart;
}

QChart* ProfileChart(const std::vector<std::vector<stats::ProfilePoint>>& pieces, int network,
                     const ChartColours& c, const QString& title) {
    QChart* chart = NewChart(c, title);
    const qint64 first = pieces.front().front().TakenUtc, last = pieces.back().back().TakenUtc;
    int highest = 0, fastest = 0;
    for (const auto& piece : pieces)
        for (const stats::ProfilePoint& p : piece) {
            highest = std::max(highest, p.AltitudeFt);
            fastest = std::max(fastest, p.SpeedKt);
        }
    QCategoryAxis* x = TimeAxis(first, last, c);
    QValueAxis* feet = CountAxis(std::max(highest, 1000), c, u"altitude (ft)"_s);
    QValueAxis* knots = CountAxis(std::max(fastest, 100), c, u"ground speed (kt)"_s);
    chart->addAxis(x, Qt::AlignBottom);
    chart->addAxis(feet, Qt::AlignLeft);
    chart->addAxis(knots, Qt::AlignRight);
    knots->setGridLineVisible(false);
    for (size_t i = 0; i < pieces.size(); ++i) {
        QLineSeries* altitude = Line(u"Altitude"_s, c.Networks[network == 1 ? 1 : 0], Qt::SolidLine, 2);
        QLineSeries* speed = Line(u"Ground speed"_s, c.Marker, Qt::SolidLine, 2);
        for (const stats::ProfilePoint& p : pieces[i]) {
            altitude->append(double(p.TakenUtc), p.AltitudeFt);
            speed->append(double(p.TakenUtc), p.SpeedKt);
        }
        Attach(chart, altitude, x, feet);
        Attach(chart, speed, x, knots);
        if (i > 0) { // one name in the legend for all pieces
            HideFromLegend(chart, altitude);
            HideFromLegend(chart, speed);
        }
    }
    return chart;
}

QChart* BusiestChart(const std::vector<stats::BusyPlace>& places, const ChartColours& c, const QString& title,
                     const QString& counted, const std::function<void(int)>& clicked) {
    QChart* chart = NewChart(c, title);
    auto* series = new QHorizontalStackedBarSeries;
    QStringList labels;
    int most = 0;
    for (int n = 0; n < network::kNetworkCount; ++n) {
        if (std::none_of(places.begin(), places.end(),
                         [n](const stats::BusyPlace& p) { return p.Counts[size_t(n)] > 0; }))
            continue;
        auto* set = new QBarSet(network::NetworkName(n));
        set->setColor(c.Networks[n]);
        set->setBorderColor(c.Plot);
        for (auto p = places.rbegin(); p != places.rend(); ++p) // the busiest at the top
            *set << p->Counts[size_t(n)];
        series->append(set);
        QObject::connect(set, &QBarSet::clicked, chart,
                         [clicked, count = int(places.size())](int index) { clicked(count - 1 - index); });
    }
    for (auto p = places.rbegin(); p != places.rend(); ++p) {
        labels.append(p->Code + (p->Name.isEmpty() ? QString() : u"  "_s + p->Name.left(22)));
        most = std::max(most, p->Total());
    }
    chart->addSeries(series);
    auto* y = new QBarCategoryAxis;
    y->append(labels);
    Style(y, c);
    y->setGridLineVisible(false);
    QValueAxis* x = CountAxis(most, c, counted);
    chart->addAxis(y, Qt::AlignLeft);
    chart->addAxis(x, Qt::AlignBottom);
    series->attachAxis(y);
    series->attachAxis(x);
    return chart;
}

QChart* NoteChart(const QString& text, const ChartColours& c) {
    QChart* chart = NewChart(c, text);
    chart->legend()->hide();
    return chart;
}

void ClickableChartView::mouseReleaseEvent(QMouseEvent* event) {
    QChartView::mouseReleaseEvent(event);
    if (event->button() != Qt::LeftButton || !Clicked || !chart() || chart()->series().isEmpty())
        return;
    const QPointF at = chart()->mapFromScene(mapToScene(event->position().toPoint()));
    if (chart()->plotArea().contains(at))
        Clicked(chart()->mapToValue(at, chart()->series().first()));
}

void ShowChart(QChartView& view, QChart* chart) {
    QChart* old = view.chart();
    view.setChart(chart);
    delete old;
}

} // namespace sky::ui
