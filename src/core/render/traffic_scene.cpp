#include "render/traffic_scene.h"

#include <algorithm>
#include <cmath>

#include "app/colour_theme.h"
#include "app/friend_names.h"
#include "app/friends.h"
#include "render/aircraft_layer.h"
#include "render/list_numbers.h"
#include "render/sector_layer.h"
#include "render/text.h"
#include "render/traffic_labels.h"

using namespace Qt::StringLiterals;

namespace sky::render {

using namespace drawing;
using network::NetworkData;

geo::LatLon drawing::PointAt(float lat, float lon, double distanceNm, double bearingDeg) {
    const double d = distanceNm / geo::kEarthRadiusNm;
    const double p1 = lat * geo::DegToRad, l1 = lon * geo::DegToRad, t = bearingDeg * geo::DegToRad;
    const double p2 = std::asin(std::sin(p1) * std::cos(d) + std::cos(p1) * std::sin(d) * std::cos(t));
    const double l2 =
        l1 + std::atan2(std::sin(t) * std::sin(d) * std::cos(p1), std::cos(d) - std::sin(p1) * std::sin(p2));
    return {float(p2 / geo::DegToRad), float(l2 / geo::DegToRad)};
}

void drawing::CircleRim(GlApi& gl, float lat, float lon, double radiusNm, int segments) {
    for (int i = 0; i <= segments; ++i) {
        const geo::LatLon p = PointAt(lat, lon, radiusNm, 360.0 * i / segments);
        EmitAt(gl, p.Lat, p.Lon);
    }
}

namespace {

using Kind = TrafficLabel::Kind;

std::vector<int> NetworksOf(int network) {
    return network == 2 ? std::vector<int>{0, 1} : std::vector<int>{network};
}

// Records the traffic lists of lists base + offset from the given networks' tables, in their fixed order.
LabelPlan RecordAll(GlApi& gl, int network, const TrafficInputs& in) {
    const int base = lists::TrafficBase(network);
    const bool comparison = network == 2;
    const std::vector<int> networks = NetworksOf(network);
    const LabelPlan labels = PlanLabels(gl, network, in);
    const auto each = [&](auto draw) {
        for (int n : networks)
            draw(in.Tables[n], StyleFor(n, comparison));
    };
    BuildSymbolList(gl, network, in);
    RecordLabelLists(gl, network, labels, in);
    Record(gl, base + lists::kAirports,
           [&] { each([&](const NetworkData& d, const Style&) { AirportMarkers(gl, d, in); }); });
    Record(gl, base + lists::kInbounds,
           [&] { each([&](const NetworkData& d, const Style&) { InboundLines(gl, d, in); }); });
    gl.DeleteList(lists::kHighlight);
    BuildSectorLists(gl, network, in);
    Record(gl, base + lists::kAtcMarkers,
           [&] { each([&](const NetworkData& d, const Style& s) { ControllerMarkers(gl, d, in, s); }); });
    return labels;
}

// The five texts of a network's row of the client-count panel; its controllers are counted as the
// Companion's stat counts them.
std::array<QString, 5> CountCells(const NetworkData& d, int network) {
    const int atc = std::max(0, d.ConnectedClients - d.ObserverCount - d.PilotCount);
    // "1400+ pilots": the tables were full and dropped some (MaxPilots raises the limit).
    const QString more = d.DroppedPilots > 0 ? u"+"_s : QString();
    const QString moreAtc = d.DroppedControllers > 0 ? u"+"_s : QString();
    return {network::NetworkName(network), u"%1%2 pilots"_s.arg(d.PilotCount).arg(more),
            u"%1%2 ATC"_s.arg(atc).arg(moreAtc), u"%1 obs"_s.arg(d.ObserverCount),
            u"%1 total"_s.arg(std::max<int>(0, d.ConnectedClients))};
}

constexpr int kCountGapPx = 10;
constexpr int kCountRowPx = 14;

// The widths of the panel's columns: each as wide as its widest text.
std::array<int, 5> CountColumns(const GlApi& gl, const network::ClientTables& tables) {
    std::array<int, 5> widths{};
    for (int n = 0; n < network::kNetworkCount; ++n) {
        const auto cells = CountCells(tables[n], n);
        for (size_t i = 0; i < cells.size(); ++i)
            widths[i] = std::max(widths[i], TextWidth(gl, cells[i]));
    }
    return widths;
}

} // namespace

QString LevelText(float altitudeFt) {
    if (altitudeFt >= 10000.0f)
        return u"FL%1"_s.arg(int(std::lround(altitudeFt / 100.0f)), 3, 10, QChar(u'0'));
    return u"%1ft"_s.arg(int(std::lround(altitudeFt)));
}

int SymbolBand(float viewZ) {
    return int(std::lround(std::log(std::clamp(viewZ, 0.3f, 50.0f)) / std::log(1.5)));
}

filter::Visibility VisibilityOf(const TrafficInputs& in) {
    return {in.Filter, in.FriendsOnly, &in.FriendList};
}

bool Shows(const TrafficInputs& in, const network::PilotRecord& pilot) {
    return VisibilityOf(in).Shows(pilot);
}

geo::LatLon DrawnAt(const TrafficInputs& in, int network, int slot) {
    const std::vector<geo::LatLon>* drawn = in.Drawn[size_t(network == 1 ? 1 : 0)];
    if (drawn && slot > 0 && size_t(slot) < drawn->size())
        return (*drawn)[size_t(slot)];
    const network::PilotRecord& p = in.Tables[size_t(network == 1 ? 1 : 0)].Pilots[size_t(slot)];
    return {p.Latitude, p.Longitude};
}

bool Shows(const TrafficInputs& in, const network::ControllerRecord& controller) {
    return VisibilityOf(in).Shows(controller);
}

QString LabelName(const TrafficInputs& in, const QString& callsign, const QString& vid) {
    const QString name = in.FriendNames ? in.FriendNames->Value(vid) : QString();
    return NamedCallsign(callsign, name, in.NamesInstead);
}

LabelPlan BuildTrafficLists(GlApi& gl, int network, const TrafficInputs& in) {
    return RecordAll(gl, network, in);
}

LabelPlan BuildComparisonLists(GlApi& gl, const TrafficInputs& in) {
    return RecordAll(gl, 2, in);
}

LabelPlan BuildPlaneLists(GlApi& gl, int network, const TrafficInputs& in) {
    BuildSymbolList(gl, network, in);
    return BuildLabelLists(gl, network, in);
}

void BuildSymbolList(GlApi& gl, int network, const TrafficInputs& in) {
    const bool comparison = network == 2;
    Record(gl, lists::TrafficBase(network) + lists::kPlanes, [&] {
        for (int n : NetworksOf(network)) {
            AircraftSymbols(gl, lists::SymbolArray(network, n), in.Tables[n], in, StyleFor(n, comparison));
            CrowdMarks(gl, n, in, StyleFor(n, comparison));
        }
    });
}

void MoveSymbols(GlApi& gl, int network, const TrafficInputs& in) {
    for (int n : NetworksOf(network))
        MoveAircraftSymbols(gl, lists::SymbolArray(network, n), in.Tables[n], in);
}

LabelPlan BuildPilotLists(GlApi& gl, int network, const TrafficInputs& in) {
    const LabelPlan labels = BuildPlaneLists(gl, network, in);
    const int base = lists::TrafficBase(network);
    Record(gl, base + lists::kAirports, [&] {
        for (int n : NetworksOf(network))
            AirportMarkers(gl, in.Tables[n], in);
    });
    Record(gl, base + lists::kInbounds, [&] {
        for (int n : NetworksOf(network))
            InboundLines(gl, in.Tables[n], in);
    });
    return labels;
}

void BuildSectorLists(GlApi& gl, int network, const TrafficInputs& in) {
    const int base = lists::TrafficBase(network);
    const bool comparison = network == 2;
    Record(gl, base + lists::kSectorFills, [&] {
        for (int n : NetworksOf(network))
            SectorFills(gl, in.Tables[n], in, StyleFor(n, comparison));
    });
    Record(gl, base + lists::kOutlines, [&] {
        for (int n : NetworksOf(network))
            SectorOutlines(gl, in.Tables[n], in, StyleFor(n, comparison));
    });
}

LabelPlan BuildLabelLists(GlApi& gl, int network, const TrafficInputs& in) {
    LabelPlan labels = PlanLabels(gl, network, in);
    RecordLabelLists(gl, network, labels, in);
    return labels;
}

void DeleteTrafficLists(GlApi& gl, int network) {
    for (int offset = 0; offset < lists::kTrafficListCount; ++offset)
        gl.DeleteList(lists::TrafficBase(network) + offset);
    gl.DeleteList(lists::kClientCount);
}

QString ComparisonStatusText(const network::ClientTables& tables) {
    for (int n = 0; n < network::kNetworkCount; ++n) {
        if (tables[n].ConnectedClients <= 0)
            return u"Missing "_s + network::NetworkName(n) + u" data. No comparison possible."_s;
    }
    return u"Merged data of "_s + network::StampTime(tables[0].UpdateStamp) + u"Z/"_s +
           network::StampTime(tables[1].UpdateStamp) + u"Z displayed"_s;
}

PixelRect ClientCountPanelBox(const GlApi& gl, const network::ClientTables& tables, int width) {
    const std::array<int, 5> columns = CountColumns(gl, tables);
    int total = 0;
    for (int c : columns)
        total += c;
    total += kCountGapPx * int(columns.size() - 1) + 12;
    return {width - 4 - total, 22, total, 2 * kCountRowPx + 5};
}

void BuildClientCountPanel(GlApi& gl, const network::ClientTables& tables, const ColourTable& colours,
                           int width, int height) {
    width = std::max(width, 1);
    height = std::max(height, 1);
    const PixelRect box = ClientCountPanelBox(gl, tables, width);
    const std::array<int, 5> columns = CountColumns(gl, tables);
    gl.DeleteList(lists::kClientCount);
    gl.NewList(lists::kClientCount);
    // An opaque box: the traffic under it does not show through the figures.
    gl.Colour(colours.Red[kSlotWindowBackground], colours.Green[kSlotWindowBackground],
              colours.Blue[kSlotWindowBackground], 1.0f);
    FillOverlayBox(gl, box.X, box.Y, box.Width, box.Height, width, height);
    for (int n = 0; n < network::kNetworkCount; ++n) {
        const int y = height - 36 - kCountRowPx * n;
        gl.Colour(colours.Red[n], colours.Green[n], colours.Blue[n], 1.0f);
        const auto cells = CountCells(tables[n], n);
        int x = box.X + 6;
        for (size_t i = 0; i < cells.size(); ++i) {
            // Figures line up at the right of their column, the network's name at the left.
            const int inset = i == 0 ? 0 : columns[i] - TextWidth(gl, cells[i]);
            gl.RasterPos(OverlayX(x + inset, width), OverlayY(y, height), 0.0f);
            PrintText(gl, cells[i]);
            x += columns[i] + kCountGapPx;
        }
    }
    gl.EndList();
}

} // namespace sky::render
