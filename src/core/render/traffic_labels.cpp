#include "render/traffic_labels.h"

#include <cmath>

#include <QHash>
#include <QSet>

#include "app/friends.h"
#include "conditions/runways.h"
#include "geo/projection.h"
#include "render/aircraft_layer.h"
#include "render/crowds.h"
#include "render/label_placement.h"
#include "render/list_numbers.h"
#include "render/scene_drawing.h"
#include "render/text.h"
#include "render/traffic_scene.h"

using namespace Qt::StringLiterals;

namespace sky::render {

using namespace drawing;
using network::ControllerRecord;
using network::PilotRecord;

namespace {

// Who comes first when labels compete for room.
enum Priority { kSelected, kFriend, kAreaStation, kAirportStations, kAirborne, kAirport, kOnGround };

using Kind = TrafficLabel::Kind;
using Label = TrafficLabel;

bool OnGround(const PilotRecord& p) {
    return p.GroundSpeed < kGroundSpeedKts;
}

bool Grouped(const TrafficInputs& in, int network, int slot) {
    return in.Crowds && in.Crowds->IsGrouped(network, slot);
}

bool IsSelected(const LabelView* view, int network, bool pilot, int slot) {
    return view && view->Selected && *view->Selected == network::ClientRef{network, pilot, slot};
}

// The letter of an airport station in its airport's shared label.
QChar StationLetter(const QString& callsign) {
    if (callsign.endsWith(u"ATIS"))
        return u'I';
    if (callsign.endsWith(u"_DEL"))
        return u'D';
    if (callsign.endsWith(u"_GND"))
        return u'G';
    if (callsign.endsWith(u"_TWR"))
        return u'T';
    return u'A';
}

void PlaneLabels(std::vector<Label>& labels, int n, const TrafficInputs& in) {
    const network::NetworkData& data = in.Tables[n];
    const bool detailed = in.ViewZ >= kDetailedLabelZoom;
    for (int slot = 1; slot <= data.PilotCount; ++slot) {
        const PilotRecord& p = data.Pilots[size_t(slot)];
        if (!Shows(in, p) || Grouped(in, n, slot))
            continue;
        const geo::LatLon at = DrawnAt(in, n, slot);
        Label label{Kind::Plane, n,         at.Lat, at.Lon, {LabelName(in, p.Callsign, p.VID)},
                    false,       kAirborne, 8,      {},     slot};
        if (detailed)
            label.Lines.append(LevelText(p.Altitude) + u' ' +
                               QString::number(int(std::lround(p.GroundSpeed))) + u"kt"_s);
        // The selection's highlight prints its callsign: one is enough.
        if (IsSelected(in.Labels, n, true, slot))
            continue;
        else if (in.Labels && in.FriendList.Contains(p.VID))
            label.Priority = kFriend;
        else if (OnGround(p)) {
            // Aircraft parked at one airport cannot be told apart until close in.
            if (in.Labels && in.ViewZ < kGroundLabelZoom)
                continue;
            label.Priority = kOnGround;
        }
        labels.push_back(label);
    }
}

void AirportLabels(std::vector<Label>& labels, int n, const TrafficInputs& in, const QSet<QString>& skip) {
    const network::NetworkData& data = in.Tables[n];
    // Every flight labels its two airports; an airport that many flights share is labelled once, which
    // draws the same pixels as labelling it for each of them.
    QSet<QString> labelled;
    const auto add = [&](const QString& code, float lat, float lon) {
        const QString key = code + u'@' + QString::number(lat) + u',' + QString::number(lon);
        if (labelled.contains(key) || skip.contains(code))
            return;
        labelled.insert(key);
        labels.push_back({Kind::Airport, n, lat, lon, {code}, false, kAirport, 3, code});
    };
    for (int slot = 1; slot <= data.PilotCount; ++slot) {
        const PilotRecord& p = data.Pilots[size_t(slot)];
        if (!Shows(in, p))
            continue;
        add(p.DepAirport, p.DepLatitude, p.DepLongitude);
        add(p.DestAirport, p.DestLatitude, p.DestLongitude);
    }
}

// Stations of one network: centres and flight services each with their own bold label; without
// decluttering every other station too, else the stations of one airport share one label
// ("EGLL  D G T A"). Returns the airports that have such a label.
QSet<QString> StationLabels(std::vector<Label>& labels, int n, const TrafficInputs& in) {
    const network::NetworkData& data = in.Tables[n];
    QSet<QString> airports;
    QHash<QString, size_t> groups; // airport -> its label
    for (int slot = 1; slot <= data.ControllerCount; ++slot) {
        const ControllerRecord& s = data.Controllers[size_t(slot)];
        if (s.FacilityType <= 1 || !Shows(in, s))
            continue;
        const bool area = s.FacilityType > network::kFacilityApproach;
        int priority = area ? kAreaStation : kAirportStations;
        // A selected centre's callsign is the highlight's; an airport's label stays with its airport.
        if (area && IsSelected(in.Labels, n, false, slot))
            continue;
        if (IsSelected(in.Labels, n, false, slot))
            priority = kSelected;
        else if (in.Labels && in.FriendList.Contains(s.VID))
            priority = kFriend;
        if (!in.Labels || area) {
            labels.push_back({Kind::Station,
                              n,
                              s.DisplayLatitude,
                              s.DisplayLongitude,
                              {LabelName(in, s.Callsign, s.VID)},
                              area,
                              priority,
                              3,
                              {},
                              0});
            continue;
        }
        const QString airport = s.Callsign.section(u'_', 0, 0);
        const auto group = groups.constFind(airport);
        if (group == groups.cend()) {
            groups.insert(airport, labels.size());
            airports.insert(airport);
            labels.push_back({Kind::Station,
                              n,
                              s.DisplayLatitude,
                              s.DisplayLongitude,
                              {airport + u"  "_s + StationLetter(s.Callsign)},
                              false,
                              priority,
                              4,
                              airport});
            continue;
        }
        Label& label = labels[*group];
        const QChar letter = StationLetter(s.Callsign);
        QString letters = label.Lines[0].mid(airport.size() + 2);
        if (!letters.contains(letter)) {
            letters += u' ' + QString(letter);
            // D G T A I, as a controller reads from the ground up.
            QString sorted;
            for (QChar l : u"DGTAI"_s)
                if (letters.contains(l))
                    sorted += (sorted.isEmpty() ? QString() : u" "_s) + l;
            label.Lines[0] = airport + u"  "_s + sorted;
        }
        label.Priority = std::min(label.Priority, priority);
    }
    // Close in, the runways in use as the airport's ATIS gives them, under its letters.
    for (auto group = groups.cbegin(); in.ViewZ >= kRunwayLabelZoom && group != groups.cend(); ++group) {
        const conditions::RunwaysInUse runways = conditions::AtisOf(data, group.key()).Runways;
        // "rwy 25R" where one list serves both; "arr 25L, dep 25C" says what it is by itself.
        if (!runways.IsEmpty())
            labels[group.value()].Lines.append(
                (runways.Arrival == runways.Departure ? u"rwy "_s : QString()) +
                conditions::RunwaysText(runways, conditions::RunwayWords::Short));
    }
    return airports;
}

// The boxes of the symbols drawn, which labels keep clear of: aircraft and stations.
std::vector<PixelRect> SymbolBoxes(const std::vector<int>& networks, const TrafficInputs& in) {
    const LabelView& v = *in.Labels;
    std::vector<PixelRect> boxes;
    const auto add = [&](float lat, float lon, int radius) {
        if (const auto p = geo::LatLonToScreen(lat, lon, v.WidthPx, v.HeightPx, v.View))
            boxes.push_back({int(p->X) - radius, int(p->Y) - radius, 2 * radius + 1, 2 * radius + 1});
    };
    for (int n : networks) {
        const network::NetworkData& data = in.Tables[n];
        for (int slot = 1; v.Planes && slot <= data.PilotCount; ++slot) {
            const PilotRecord& p = data.Pilots[size_t(slot)];
            if (Shows(in, p) && !Grouped(in, n, slot))
                add(p.Latitude, p.Longitude, 6);
        }
        for (int slot = 1; v.Atc && slot <= data.ControllerCount; ++slot) {
            const ControllerRecord& s = data.Controllers[size_t(slot)];
            if (s.FacilityType > 1 && Shows(in, s))
                add(s.DisplayLatitude, s.DisplayLongitude, 2);
        }
    }
    return boxes;
}

// Where each label goes: decluttered in the label view, else beside its symbol.
std::vector<LabelSpot> Spots(const GlApi& gl, const std::vector<Label>& labels,
                             const std::vector<int>& networks, const TrafficInputs& in) {
    std::vector<LabelSpot> spots(labels.size());
    if (!in.Labels) {
        for (size_t i = 0; i < labels.size(); ++i) {
            const Label& l = labels[i];
            spots[i] = l.What == Kind::Plane
                           ? LabelSpot{true, 9, -3}
                           : (l.What == Kind::Airport ? LabelSpot{true, 4, 4} : LabelSpot{true, 5, 3});
            spots[i].WidthPx = TextWidth(gl, l.Lines.value(0), l.Bold);
            spots[i].HeightPx = kLabelLinePx * int(l.Lines.size());
        }
        return spots;
    }
    const LabelView& v = *in.Labels;
    std::vector<LabelRequest> requests(labels.size());
    for (size_t i = 0; i < labels.size(); ++i) {
        const Label& l = labels[i];
        const auto point = geo::LatLonToScreen(l.Lat, l.Lon, v.WidthPx, v.HeightPx, v.View);
        if (!point) {
            requests[i] = {-1, -1};
            continue;
        }
        int width = 0;
        for (const QString& line : l.Lines)
            width = std::max(width, TextWidth(gl, line, l.Bold));
        // An airport's stations keep their label over the aircraft around it.
        const bool insistent =
            l.Priority == kAirportStations || l.Priority == kSelected || l.Priority == kFriend;
        requests[i] = {point->X,   point->Y,         width,    int(l.Lines.size()),
                       l.Priority, l.SymbolRadiusPx, insistent};
    }
    // The numbers of crowds are text: no label goes over them.
    std::vector<PixelRect> reserved = v.Reserved;
    for (size_t c = 0; v.Planes && in.Crowds && c < in.Crowds->Crowds.size(); ++c) {
        const Crowd& crowd = in.Crowds->Crowds[c];
        if (const auto p = geo::LatLonToScreen(crowd.Lat, crowd.Lon, v.WidthPx, v.HeightPx, v.View)) {
            const PixelRect box = CrowdMarkBox(gl, crowd.Count);
            reserved.push_back({int(p->X) + box.X, int(p->Y) + box.Y, box.Width, box.Height});
        }
    }
    return PlaceLabels(requests, SymbolBoxes(networks, in), reserved, v.WidthPx, v.HeightPx);
}

void Print(GlApi& gl, const Label& l, const LabelSpot& spot) {
    for (qsizetype line = 0; line < l.Lines.size(); ++line) {
        RasterAt(gl, l.Lat, l.Lon);
        gl.BitmapMove(float(spot.Dx), float(spot.Dy - kLabelLinePx * line));
        if (l.Bold)
            PrintBoldText(gl, l.Lines[line]);
        else
            PrintText(gl, l.Lines[line]);
    }
}

// Records a list with the labels of these kinds in the plan, in that order.
void RecordLabels(GlApi& gl, int list, std::initializer_list<Kind> kinds, const LabelPlan& plan,
                  const TrafficInputs& in) {
    const auto colourOf = [&](Kind kind, int n) {
        const Style style = StyleFor(n, plan.Comparison);
        return kind == Kind::Plane ? style.PlaneLabel
                                   : (kind == Kind::Station ? style.AtcLabel : int(kSlotAirports));
    };
    Record(gl, list, [&] {
        if (kinds.size() == 0)
            return;
        // An outline in the background colour keeps a label readable over lines, fills and symbols.
        gl.TextOutline(in.Colours.Red[kSlotScreenBackground], in.Colours.Green[kSlotScreenBackground],
                       in.Colours.Blue[kSlotScreenBackground], 1.0f);
        // One colour at a time, changed only where the kind or the comparison's network changes.
        int coloured = -1;
        for (Kind kind : kinds) {
            for (size_t i = 0; i < plan.Labels.size(); ++i) {
                const Label& l = plan.Labels[i];
                if (l.What != kind || !plan.Spots[i].Shown)
                    continue;
                if (colourOf(kind, l.Network) != coloured) {
                    coloured = colourOf(kind, l.Network);
                    SetColour(gl, in.Colours, coloured, 1.0f);
                }
                Print(gl, l, plan.Spots[i]);
            }
        }
        gl.TextOutline(0.0f, 0.0f, 0.0f, 0.0f);
    });
}
} // namespace

QString LabelPlan::AirportAt(const LabelView& view, double x, double y) const {
    for (size_t i = 0; i < Labels.size(); ++i) {
        const Label& l = Labels[i];
        const LabelSpot& spot = Spots[i];
        if (l.Airport.isEmpty() || !spot.Shown)
            continue;
        const auto p = geo::LatLonToScreen(l.Lat, l.Lon, view.WidthPx, view.HeightPx, view.View);
        if (!p)
            continue;
        const PixelRect box{int(std::lround(p->X)) + spot.Dx,
                            int(std::lround(p->Y)) - spot.Dy - kLabelAscentPx, spot.WidthPx, spot.HeightPx};
        if (box.Contains(int(std::lround(x)), int(std::lround(y))))
            return l.Airport;
    }
    return {};
}

LabelPlan PlanLabels(const GlApi& gl, int network, const TrafficInputs& in) {
    LabelPlan plan;
    plan.Comparison = network == 2;
    plan.Networks = plan.Comparison ? std::vector<int>{0, 1} : std::vector<int>{network};
    const LabelView* v = in.Labels;
    QSet<QString> stationAirports;
    for (int n : plan.Networks) {
        if (!v || (v->Atc && v->AtcLabels))
            stationAirports += StationLabels(plan.Labels, n, in);
        if (!v || (v->Planes && v->PlaneLabels))
            PlaneLabels(plan.Labels, n, in);
        if (!v || (v->Airports && v->AirportLabels))
            AirportLabels(plan.Labels, n, in, v ? stationAirports : QSet<QString>());
    }
    plan.Spots = Spots(gl, plan.Labels, plan.Networks, in);
    return plan;
}

void RecordLabelLists(GlApi& gl, int network, const LabelPlan& plan, const TrafficInputs& in) {
    const int base = lists::TrafficBase(network);
    RecordLabels(gl, base + lists::kPlaneLabels, {Kind::Plane}, plan, in);
    const bool together = in.Labels && in.Labels->Planes && in.Labels->PlaneLabels;
    if (together) {
        RecordLabels(gl, base + lists::kSharedLabels, {Kind::Station, Kind::Airport}, plan, in);
        RecordLabels(gl, base + lists::kAirportLabels, {}, plan, in);
        RecordLabels(gl, base + lists::kAtcLabels, {}, plan, in);
        return;
    }
    RecordLabels(gl, base + lists::kSharedLabels, {}, plan, in);
    RecordLabels(gl, base + lists::kAirportLabels, {Kind::Airport}, plan, in);
    RecordLabels(gl, base + lists::kAtcLabels, {Kind::Station}, plan, in);
}

void RecordPlaneLabels(GlApi& gl, int network, const LabelPlan& plan, const TrafficInputs& in) {
    RecordLabels(gl, lists::TrafficBase(network) + lists::kPlaneLabels, {Kind::Plane}, plan, in);
}

void MoveLabels(LabelPlan& plan, const TrafficInputs& in) {
    for (Label& label : plan.Labels) {
        if (label.What == Kind::Plane && label.Slot > 0) {
            const geo::LatLon at = DrawnAt(in, label.Network, label.Slot);
            label.Lat = at.Lat;
            label.Lon = at.Lon;
        }
    }
}

} // namespace sky::render
