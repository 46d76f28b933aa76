#include "render/traffic_scene.h"

#include <algorithm>
#include <cmath>

#include <QSet>

#include "app/colour_theme.h"
#include "app/friends.h"
#include "geo/geodesy.h"
#include "geo/text_format.h"
#include "refdata/fir_outlines.h"
#include "render/gl_api.h"
#include "render/list_numbers.h"
#include "render/text.h"

using namespace Qt::StringLiterals;

namespace sky::render {
namespace {

using network::ControllerRecord;
using network::NetworkData;
using network::PilotRecord;

struct Vec3 {
    double X = 0, Y = 0, Z = 0;
    Vec3 operator+(const Vec3& o) const { return {X + o.X, Y + o.Y, Z + o.Z}; }
    Vec3 operator*(double f) const { return {X * f, Y * f, Z * f}; }
};

Vec3 OnGlobe(float lat, float lon) {
    return {geo::GlobeX(lat, lon), geo::GlobeY(lat, lon), geo::GlobeZ(lat, lon)};
}

void Emit(GlApi& gl, const Vec3& v) {
    gl.Vertex(float(v.X), float(v.Y), float(v.Z));
}
void EmitAt(GlApi& gl, float lat, float lon) {
    Emit(gl, OnGlobe(lat, lon));
}

void SetColour(GlApi& gl, const ColourTable& c, int slot, float alpha) {
    gl.Colour(c.Red[slot], c.Green[slot], c.Blue[slot], alpha);
}

void RasterAt(GlApi& gl, float lat, float lon) {
    gl.RasterPos(geo::GlobeX(lat, lon), geo::GlobeY(lat, lon), geo::GlobeZ(lat, lon));
}

// The point at distanceNm and bearingDeg from a centre, on the sphere of the distances.
geo::LatLon PointAt(float lat, float lon, double distanceNm, double bearingDeg) {
    const double d = distanceNm / geo::kEarthRadiusNm;
    const double p1 = lat * geo::DegToRad, l1 = lon * geo::DegToRad, t = bearingDeg * geo::DegToRad;
    const double p2 = std::asin(std::sin(p1) * std::cos(d) + std::cos(p1) * std::sin(d) * std::cos(t));
    const double l2 =
        l1 + std::atan2(std::sin(t) * std::sin(d) * std::cos(p1), std::cos(d) - std::sin(p1) * std::sin(p2));
    return {float(p2 / geo::DegToRad), float(l2 / geo::DegToRad)};
}

constexpr int kCircleSegments = 36;

void CircleRim(GlApi& gl, float lat, float lon, double radiusNm) {
    for (int i = 0; i <= kCircleSegments; ++i) {
        const geo::LatLon p = PointAt(lat, lon, radiusNm, 360.0 * i / kCircleSegments);
        EmitAt(gl, p.Lat, p.Lon);
    }
}

// A disc shaded from its centre colour to its rim colour.
void ShadedDisc(GlApi& gl, const ColourTable& c, float lat, float lon, double radiusNm, int centreSlot,
                int rimSlot) {
    gl.Begin(Primitive::TriangleFan);
    SetColour(gl, c, centreSlot, 0.6f);
    EmitAt(gl, lat, lon);
    SetColour(gl, c, rimSlot, 0.25f);
    CircleRim(gl, lat, lon, radiusNm);
    gl.End();
}

void CircleOutline(GlApi& gl, float lat, float lon, double radiusNm) {
    gl.Begin(Primitive::LineStrip);
    CircleRim(gl, lat, lon, radiusNm);
    gl.End();
}

// Radii of the areas drawn for stations without an outline of their own.
constexpr double kApproachRadiusNm = 30.0;
constexpr double kTowerRadiusNm = 12.0;
constexpr double kGroundRadiusNm = 3.0;
constexpr double kMinimumCentreRadiusNm = 50.0;

// A concave outline filled exactly with one stencil bit: a fan over the ring inverts the bit of every
// pixel covered an odd number of times, which are the pixels inside; then the colour goes where the bit
// is set, clearing it again for the next fill.
void StencilFill(GlApi& gl, const std::vector<geo::LatLon>& ring) {
    gl.ColourMask(false);
    gl.Enable(Capability::StencilTest);
    gl.StencilFunc(StencilTest::Always, 0, 1);
    gl.StencilOp(StencilAction::Keep, StencilAction::Keep, StencilAction::Invert);
    gl.Begin(Primitive::TriangleFan);
    for (const geo::LatLon& p : ring)
        EmitAt(gl, p.Lat, p.Lon);
    gl.End();
    gl.ColourMask(true);
    gl.StencilFunc(StencilTest::Equal, 1, 1);
    gl.StencilOp(StencilAction::Zero, StencilAction::Zero, StencilAction::Zero);
    gl.Begin(Primitive::TriangleFan);
    for (const geo::LatLon& p : ring)
        EmitAt(gl, p.Lat, p.Lon);
    gl.End();
    gl.Disable(Capability::StencilTest);
}

bool IsAreaStation(const ControllerRecord& c) {
    return c.FacilityType > network::kFacilityApproach;
}

double CentreRadiusNm(const ControllerRecord& c) {
    return std::max<double>(c.VisualRange, kMinimumCentreRadiusNm);
}

// Which colours a network's traffic takes: its own theme colours, or the network's colour in the
// comparison of both.
struct Style {
    int PlaneFill = kSlotPlaneFill;
    int PlaneLabel = kSlotPlaneLabel;
    int AtcLabel = kSlotATCLabel;
};

Style StyleFor(int network, bool comparison) {
    if (!comparison)
        return {};
    return {network, network, network};
}

// The aircraft symbol, nose up, in units of its half-length: a fan around the origin fills it.
constexpr float kSymbol[][2] = {{0.00f, 1.00f},   {0.10f, 0.70f},   {0.12f, 0.25f},   {0.95f, -0.10f},
                                {0.95f, -0.25f},  {0.12f, -0.05f},  {0.09f, -0.60f},  {0.38f, -0.85f},
                                {0.38f, -0.98f},  {0.00f, -0.88f},  {-0.38f, -0.98f}, {-0.38f, -0.85f},
                                {-0.09f, -0.60f}, {-0.12f, -0.05f}, {-0.95f, -0.25f}, {-0.95f, -0.10f},
                                {-0.12f, 0.25f},  {-0.10f, 0.70f}};

double SymbolSize(float viewZ) {
    // About 16 pixels long on a 700-pixel window, whatever the zoom band.
    return 0.012 / std::pow(1.5, SymbolBand(viewZ));
}

void AircraftSymbols(GlApi& gl, const NetworkData& data, const TrafficInputs& in, const Style& style) {
    const double size = SymbolSize(in.ViewZ);
    constexpr size_t kCorners = std::size(kSymbol);
    std::vector<Vec3> centres;
    std::vector<Vec3> outlines; // kCorners points per aircraft
    centres.reserve(size_t(data.PilotCount));
    outlines.reserve(size_t(data.PilotCount) * kCorners);
    for (int slot = 1; slot <= data.PilotCount; ++slot) {
        const PilotRecord& p = data.Pilots[slot];
        if (!PassesFriendFilter(in, p.VID))
            continue;
        const double heading = (in.ShowActualHeading ? p.Course : p.Heading) * geo::DegToRad;
        const double lat = p.Latitude * geo::DegToRad, lon = p.Longitude * geo::DegToRad;
        const Vec3 east{std::cos(lon), 0.0, -std::sin(lon)};
        const Vec3 north{-std::sin(lat) * std::sin(lon), std::cos(lat), -std::sin(lat) * std::cos(lon)};
        const Vec3 forward = north * std::cos(heading) + east * std::sin(heading);
        const Vec3 right = east * std::cos(heading) + north * -std::sin(heading);
        const Vec3 centre = OnGlobe(p.Latitude, p.Longitude);
        centres.push_back(centre);
        for (const auto& corner : kSymbol)
            outlines.push_back(centre + right * (corner[0] * size) + forward * (corner[1] * size));
    }
    // All symbols in one primitive each for fill and outline: a triangle from the centre to every edge
    // of the outline fills it, and one segment per edge draws it.
    SetColour(gl, in.Colours, style.PlaneFill, 1.0f);
    gl.Begin(Primitive::Triangles);
    for (size_t plane = 0; plane < centres.size(); ++plane) {
        const Vec3* ring = &outlines[plane * kCorners];
        for (size_t i = 0; i < kCorners; ++i) {
            Emit(gl, centres[plane]);
            Emit(gl, ring[i]);
            Emit(gl, ring[(i + 1) % kCorners]);
        }
    }
    gl.End();
    SetColour(gl, in.Colours, kSlotPlaneBorder, 1.0f);
    gl.Begin(Primitive::Lines);
    for (size_t plane = 0; plane < centres.size(); ++plane) {
        const Vec3* ring = &outlines[plane * kCorners];
        for (size_t i = 0; i < kCorners; ++i) {
            Emit(gl, ring[i]);
            Emit(gl, ring[(i + 1) % kCorners]);
        }
    }
    gl.End();
}

QString LevelText(float altitudeFt) {
    if (altitudeFt >= 10000.0f)
        return u"FL%1"_s.arg(int(std::lround(altitudeFt / 100.0f)), 3, 10, QChar(u'0'));
    return u"%1ft"_s.arg(int(std::lround(altitudeFt)));
}

void AircraftLabels(GlApi& gl, const NetworkData& data, const TrafficInputs& in, const Style& style) {
    SetColour(gl, in.Colours, style.PlaneLabel, 1.0f);
    const bool detailed = in.ViewZ >= kDetailedLabelZoom;
    for (int slot = 1; slot <= data.PilotCount; ++slot) {
        const PilotRecord& p = data.Pilots[slot];
        if (!PassesFriendFilter(in, p.VID))
            continue;
        RasterAt(gl, p.Latitude, p.Longitude);
        gl.BitmapMove(9, -3);
        PrintText(gl, p.Callsign);
        if (detailed) {
            RasterAt(gl, p.Latitude, p.Longitude);
            gl.BitmapMove(9, -14);
            PrintText(gl, LevelText(p.Altitude) + u' ' + QString::number(int(std::lround(p.GroundSpeed))) +
                              u"kt"_s);
        }
    }
}

void AirportMarkers(GlApi& gl, const NetworkData& data, const TrafficInputs& in) {
    SetColour(gl, in.Colours, kSlotAirports, 1.0f);
    gl.Begin(Primitive::Points);
    for (int slot = 1; slot <= data.PilotCount; ++slot) {
        const PilotRecord& p = data.Pilots[slot];
        if (!PassesFriendFilter(in, p.VID))
            continue;
        EmitAt(gl, p.DepLatitude, p.DepLongitude);
        EmitAt(gl, p.DestLatitude, p.DestLongitude);
    }
    gl.End();
}

void AirportLabels(GlApi& gl, const NetworkData& data, const TrafficInputs& in) {
    SetColour(gl, in.Colours, kSlotAirports, 1.0f);
    // Every flight labels its two airports; an airport that many flights share is labelled once, which
    // draws the same pixels as labelling it for each of them.
    QSet<QString> labelled;
    const auto label = [&](const QString& code, float lat, float lon) {
        const QString key = code + u'@' + QString::number(lat) + u',' + QString::number(lon);
        if (labelled.contains(key))
            return;
        labelled.insert(key);
        RasterAt(gl, lat, lon);
        gl.BitmapMove(4, 4);
        PrintText(gl, code);
    };
    for (int slot = 1; slot <= data.PilotCount; ++slot) {
        const PilotRecord& p = data.Pilots[slot];
        if (!PassesFriendFilter(in, p.VID))
            continue;
        label(p.DepAirport, p.DepLatitude, p.DepLongitude);
        label(p.DestAirport, p.DestLatitude, p.DestLongitude);
    }
}

// Inbound lines: from every flight with a known destination that it has not reached yet, along the
// great circle to that destination.
void InboundLines(GlApi& gl, const NetworkData& data, const TrafficInputs& in) {
    SetColour(gl, in.Colours, kSlotAirports, 0.6f);
    gl.Begin(Primitive::Lines);
    for (int slot = 1; slot <= data.PilotCount; ++slot) {
        const PilotRecord& p = data.Pilots[slot];
        if (!PassesFriendFilter(in, p.VID) || (p.DestLatitude == 0.0f && p.DestLongitude == 0.0f))
            continue;
        const float distanceNm = geo::Distance(p.Latitude, p.Longitude, p.DestLatitude, p.DestLongitude);
        if (distanceNm < 2.0f)
            continue;
        // One segment per 2 degrees of arc, so long lines follow the globe.
        const int segments = std::clamp(int(distanceNm / 120.0f), 1, 90);
        const Vec3 a = OnGlobe(p.Latitude, p.Longitude), b = OnGlobe(p.DestLatitude, p.DestLongitude);
        const double omega = std::acos(std::clamp(a.X * b.X + a.Y * b.Y + a.Z * b.Z, -1.0, 1.0));
        Vec3 previous = a;
        for (int i = 1; i <= segments; ++i) {
            const double t = double(i) / segments;
            const Vec3 next = omega < 1e-6 ? b
                                           : a * (std::sin((1 - t) * omega) / std::sin(omega)) +
                                                 b * (std::sin(t * omega) / std::sin(omega));
            Emit(gl, previous);
            Emit(gl, next);
            previous = next;
        }
    }
    gl.End();
}

void SectorFills(GlApi& gl, const NetworkData& data, const TrafficInputs& in) {
    gl.LineWidth(2.0f);
    const ColourTable& c = in.Colours;
    for (int slot = 1; slot <= data.ControllerCount; ++slot) {
        const ControllerRecord& s = data.Controllers[slot];
        if (!IsAreaStation(s) || !PassesFriendFilter(in, s.VID))
            continue;
        const auto outlines = in.Outlines.ForIdentifier(s.Station);
        SetColour(gl, c, kSlotCTRFill, 0.5f);
        if (outlines.empty()) {
            gl.Begin(Primitive::TriangleFan);
            EmitAt(gl, s.DisplayLatitude, s.DisplayLongitude);
            CircleRim(gl, s.DisplayLatitude, s.DisplayLongitude, CentreRadiusNm(s));
            gl.End();
        }
        for (const FirOutline* outline : outlines) {
            for (const auto& ring : outline->Rings)
                StencilFill(gl, ring);
        }
    }
    gl.BlendFunc(BlendFactor::SrcAlpha, BlendFactor::OneMinusSrcAlpha);
    for (int slot = 1; slot <= data.ControllerCount; ++slot) {
        const ControllerRecord& s = data.Controllers[slot];
        if (s.FacilityType == network::kFacilityApproach && PassesFriendFilter(in, s.VID))
            ShadedDisc(gl, c, s.DisplayLatitude, s.DisplayLongitude, kApproachRadiusNm, kSlotAPPFillCenter,
                       kSlotAPPFillOut);
    }
    for (int slot = 1; slot <= data.ControllerCount; ++slot) {
        const ControllerRecord& s = data.Controllers[slot];
        if (s.FacilityType == network::kFacilityTower && PassesFriendFilter(in, s.VID))
            ShadedDisc(gl, c, s.DisplayLatitude, s.DisplayLongitude, kTowerRadiusNm, kSlotTWRFillCenter,
                       kSlotTWRFillOut);
    }
}

void Outlines(GlApi& gl, const NetworkData& data, const TrafficInputs& in) {
    const ColourTable& c = in.Colours;
    gl.BlendFunc(BlendFactor::SrcAlpha, BlendFactor::OneMinusSrcAlpha);
    gl.LineWidth(2.0f);
    SetColour(gl, c, kSlotCTRBorder, 1.0f);
    for (int slot = 1; slot <= data.ControllerCount; ++slot) {
        const ControllerRecord& s = data.Controllers[slot];
        if (!IsAreaStation(s) || !PassesFriendFilter(in, s.VID))
            continue;
        const auto outlines = in.Outlines.ForIdentifier(s.Station);
        if (outlines.empty())
            CircleOutline(gl, s.DisplayLatitude, s.DisplayLongitude, CentreRadiusNm(s));
        for (const FirOutline* outline : outlines) {
            for (const auto& ring : outline->Rings) {
                gl.Begin(Primitive::LineLoop);
                for (const geo::LatLon& p : ring)
                    EmitAt(gl, p.Lat, p.Lon);
                gl.End();
            }
        }
    }
    gl.LineWidth(1.0f);
    struct Kind {
        int Facility;
        int Slot;
        double RadiusNm;
    };
    const Kind kinds[] = {{network::kFacilityApproach, kSlotAPPBorder, kApproachRadiusNm},
                          {network::kFacilityTower, kSlotTWRBorder, kTowerRadiusNm},
                          {network::kFacilityGround, kSlotTWRBorder, kGroundRadiusNm}};
    for (const Kind& kind : kinds) {
        SetColour(gl, c, kind.Slot, 1.0f);
        for (int slot = 1; slot <= data.ControllerCount; ++slot) {
            const ControllerRecord& s = data.Controllers[slot];
            if (s.FacilityType == kind.Facility && PassesFriendFilter(in, s.VID))
                CircleOutline(gl, s.DisplayLatitude, s.DisplayLongitude, kind.RadiusNm);
        }
    }
    // An ATIS is a small diamond beside its airport.
    SetColour(gl, c, kSlotAPPBorder, 1.0f);
    for (int slot = 1; slot <= data.ControllerCount; ++slot) {
        const ControllerRecord& s = data.Controllers[slot];
        if (s.FacilityType != network::kFacilityAtis || !PassesFriendFilter(in, s.VID))
            continue;
        gl.Begin(Primitive::LineLoop);
        for (int corner = 0; corner < 4; ++corner) {
            const geo::LatLon p = PointAt(s.DisplayLatitude, s.DisplayLongitude, 2.0, 45.0 + 90.0 * corner);
            EmitAt(gl, p.Lat, p.Lon);
        }
        gl.End();
    }
}

void ControllerLabels(GlApi& gl, const NetworkData& data, const TrafficInputs& in, const Style& style) {
    SetColour(gl, in.Colours, style.AtcLabel, 1.0f);
    for (int slot = 1; slot <= data.ControllerCount; ++slot) {
        const ControllerRecord& s = data.Controllers[slot];
        if (s.FacilityType <= 1 || !PassesFriendFilter(in, s.VID))
            continue;
        RasterAt(gl, s.DisplayLatitude, s.DisplayLongitude);
        gl.BitmapMove(5, 3);
        if (IsAreaStation(s))
            PrintBoldText(gl, s.Callsign);
        else
            PrintText(gl, s.Callsign);
    }
}

void ControllerMarkers(GlApi& gl, const NetworkData& data, const TrafficInputs& in, const Style& style) {
    SetColour(gl, in.Colours, style.AtcLabel, 1.0f);
    gl.Begin(Primitive::Points);
    for (int slot = 1; slot <= data.ControllerCount; ++slot) {
        const ControllerRecord& s = data.Controllers[slot];
        if (s.FacilityType > 1 && PassesFriendFilter(in, s.VID))
            EmitAt(gl, s.DisplayLatitude, s.DisplayLongitude);
    }
    gl.End();
}

// Records one traffic list of lists base + offset from the given networks' tables.
template <typename Content> void Record(GlApi& gl, int list, Content content) {
    gl.DeleteList(list);
    gl.NewList(list);
    content();
    gl.EndList();
}

void RecordAll(GlApi& gl, int base, const std::vector<int>& networks, const TrafficInputs& in,
               bool comparison) {
    const auto each = [&](auto draw) {
        for (int n : networks)
            draw(in.Tables[n], StyleFor(n, comparison));
    };
    Record(gl, base + lists::kPlanes,
           [&] { each([&](const NetworkData& d, const Style& s) { AircraftSymbols(gl, d, in, s); }); });
    Record(gl, base + lists::kPlaneLabels,
           [&] { each([&](const NetworkData& d, const Style& s) { AircraftLabels(gl, d, in, s); }); });
    Record(gl, base + lists::kAirports,
           [&] { each([&](const NetworkData& d, const Style&) { AirportMarkers(gl, d, in); }); });
    Record(gl, base + lists::kAirportLabels,
           [&] { each([&](const NetworkData& d, const Style&) { AirportLabels(gl, d, in); }); });
    Record(gl, base + lists::kInbounds,
           [&] { each([&](const NetworkData& d, const Style&) { InboundLines(gl, d, in); }); });
    gl.DeleteList(lists::kHighlight);
    Record(gl, base + lists::kSectorFills,
           [&] { each([&](const NetworkData& d, const Style&) { SectorFills(gl, d, in); }); });
    Record(gl, base + lists::kOutlines,
           [&] { each([&](const NetworkData& d, const Style&) { Outlines(gl, d, in); }); });
    Record(gl, base + lists::kAtcLabels,
           [&] { each([&](const NetworkData& d, const Style& s) { ControllerLabels(gl, d, in, s); }); });
    Record(gl, base + lists::kAtcMarkers,
           [&] { each([&](const NetworkData& d, const Style& s) { ControllerMarkers(gl, d, in, s); }); });
}

} // namespace

int SymbolBand(float viewZ) {
    return int(std::lround(std::log(std::clamp(viewZ, 0.3f, 50.0f)) / std::log(1.5)));
}

bool PassesFriendFilter(const TrafficInputs& in, const QString& vid) {
    return !in.FriendsOnly || in.FriendList.Contains(vid);
}

void BuildTrafficLists(GlApi& gl, int network, const TrafficInputs& in) {
    RecordAll(gl, lists::TrafficBase(network), {network}, in, false);
}

void BuildPlaneLists(GlApi& gl, int network, const TrafficInputs& in) {
    const int base = lists::TrafficBase(network);
    const std::vector<int> networks = network == 2 ? std::vector<int>{0, 1} : std::vector<int>{network};
    const bool comparison = network == 2;
    Record(gl, base + lists::kPlanes, [&] {
        for (int n : networks)
            AircraftSymbols(gl, in.Tables[n], in, StyleFor(n, comparison));
    });
    Record(gl, base + lists::kPlaneLabels, [&] {
        for (int n : networks)
            AircraftLabels(gl, in.Tables[n], in, StyleFor(n, comparison));
    });
}

void BuildComparisonLists(GlApi& gl, const TrafficInputs& in) {
    RecordAll(gl, lists::TrafficBase(2), {0, 1}, in, true);
}

QString ComparisonStatusText(const network::ClientTables& tables) {
    for (int n = 0; n < network::kNetworkCount; ++n) {
        if (tables[n].ConnectedClients <= 0)
            return u"Missing "_s + network::NetworkName(n) + u" data. No comparison possible."_s;
    }
    return u"Merged data of "_s + tables[0].UpdateStamp.mid(8, 4) + u"Z/"_s +
           tables[1].UpdateStamp.mid(8, 4) + u"Z displayed"_s;
}

void BuildClientCountPanel(GlApi& gl, const network::ClientTables& tables, const ColourTable& colours,
                           int width, int height) {
    width = std::max(width, 1);
    height = std::max(height, 1);
    gl.DeleteList(lists::kClientCount);
    gl.NewList(lists::kClientCount);
    const int columns[] = {0, 62, 130, 186, 236};
    const int left = width - 300;
    // A translucent box keeps the figures readable over the traffic.
    const float boxLeft = OverlayX(left - 6, width), boxRight = OverlayX(width - 4, width);
    const float boxBottom = OverlayY(height - 36 - 14 - 5, height), boxTop = OverlayY(height - 22, height);
    gl.Colour(colours.Red[kSlotWindowBackground], colours.Green[kSlotWindowBackground],
              colours.Blue[kSlotWindowBackground], 0.7f);
    gl.Begin(Primitive::Quads);
    gl.Vertex(boxLeft, boxBottom, 0.0f);
    gl.Vertex(boxRight, boxBottom, 0.0f);
    gl.Vertex(boxRight, boxTop, 0.0f);
    gl.Vertex(boxLeft, boxTop, 0.0f);
    gl.End();
    for (int n = 0; n < network::kNetworkCount; ++n) {
        const NetworkData& d = tables[n];
        const int y = height - 36 - 14 * n;
        gl.Colour(colours.Red[n], colours.Green[n], colours.Blue[n], 1.0f);
        const QString cells[] = {network::NetworkName(n), u"%1 pilots"_s.arg(d.PilotCount),
                                 u"%1 ATC"_s.arg(d.ControllerCount - d.ObserverCount),
                                 u"%1 obs"_s.arg(d.ObserverCount),
                                 u"%1 total"_s.arg(std::max<int>(0, d.ConnectedClients))};
        for (int i = 0; i < 5; ++i) {
            gl.RasterPos(OverlayX(left + columns[i], width), OverlayY(y, height), 0.0f);
            PrintText(gl, cells[i]);
        }
    }
    gl.EndList();
}

} // namespace sky::render
