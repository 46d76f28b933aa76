#include "view/measure_control.h"

#include <cmath>

#include "render/measure_line.h"
#include "view/map_state.h"
#include "view/pointer_control.h"
#include "view/scene_control.h"

using namespace Qt::StringLiterals;

namespace sky::view {
namespace {

constexpr double kPickRadiusPx = 12.0;
constexpr double kKmPerNm = 1.852;
constexpr float kMovingKts = 40.0f;

QString Duration(double hours) {
    const long long minutes = std::llround(hours * 60.0);
    if (minutes < 60)
        return QString::number(minutes) + u" min"_s;
    return u"%1h %2m"_s.arg(minutes / 60).arg(minutes % 60, 2, 10, QChar(u'0'));
}

} // namespace

QStringList MeasureFigures(const MeasureLine& line) {
    const geo::LatLon a = line.From.Where, b = line.To.Where;
    const float nm = geo::Distance(a.Lat, a.Lon, b.Lat, b.Lon);
    int course = geo::Course(a.Lat, a.Lon, b.Lat, b.Lon);
    if (course < 0)
        course += 360;
    QStringList figures{QString::number(nm, 'f', 2) + u" nm  "_s + QString::number(nm * kKmPerNm, 'f', 2) +
                            u" km"_s,
                        u"course %1° true"_s.arg(course, 3, 10, QChar(u'0'))};
    for (const MeasureEnd* end : {&line.From, &line.To}) {
        if (end->GroundSpeedKts && *end->GroundSpeedKts >= kMovingKts) {
            figures.append(Duration(nm / *end->GroundSpeedKts) + u" at "_s +
                           QString::number(std::lround(*end->GroundSpeedKts)) + u" kt"_s);
            break;
        }
    }
    return figures;
}

MeasureControl::MeasureControl(MapState& state, SceneControl& scene, render::GlApi& gl,
                               const PointerControl& pointer)
    : m_state(state), m_scene(scene), m_gl(gl), m_pointer(pointer) {}

std::optional<MeasureEnd> MeasureControl::EndAt(double x, double y) const {
    const MapState& s = m_state;
    if (const auto client = m_pointer.ClientAt(x, y, kPickRadiusPx)) {
        const network::NetworkData& data = s.AllTables()[client->Network];
        if (client->IsPilot) {
            const network::PilotRecord& p = data.Pilots[size_t(client->Slot)];
            return MeasureEnd{{p.Latitude, p.Longitude}, p.Callsign, p.GroundSpeed};
        }
        // Where the station reported itself, as dist measures it; where it is drawn when it did not say.
        const network::ControllerRecord& c = data.Controllers[size_t(client->Slot)];
        const bool reported = c.Latitude != 0.0f || c.Longitude != 0.0f;
        return MeasureEnd{reported ? geo::LatLon{c.Latitude, c.Longitude}
                                   : geo::LatLon{c.DisplayLatitude, c.DisplayLongitude},
                          c.Callsign, std::nullopt};
    }
    const auto place = geo::ScreenToLatLon(x, y, s.WidthPx, s.HeightPx, s.View);
    if (!place)
        return std::nullopt;
    return MeasureEnd{*place, QString(), std::nullopt};
}

bool MeasureControl::Begin(double x, double y) {
    const std::optional<MeasureEnd> from = EndAt(x, y);
    if (!from)
        return false;
    m_state.Measure = MeasureLine{*from, *from};
    Record();
    return true;
}

void MeasureControl::Follow(double x, double y) {
    if (!m_state.Measure)
        return;
    const std::optional<MeasureEnd> to = EndAt(x, y);
    if (!to)
        return; // beside the globe the far end stays where it was
    m_state.Measure->To = *to;
    Record();
}

void MeasureControl::Record() {
    const MeasureLine& line = *m_state.Measure;
    const QStringList figures = MeasureFigures(line);
    QString ends;
    if (!line.From.Callsign.isEmpty() || !line.To.Callsign.isEmpty())
        ends = (line.From.Callsign.isEmpty() ? u"point"_s : line.From.Callsign) + u" - "_s +
               (line.To.Callsign.isEmpty() ? u"point"_s : line.To.Callsign) + u": "_s;
    render::BuildMeasureLine(m_gl, m_state.Colours, {line.From.Where, line.To.Where, figures});
    m_scene.SetStatus(u"Measured "_s + ends + figures.join(u", "_s));
    m_scene.Redraw();
}

void MeasureControl::RecordAgain() {
    if (m_state.Measure)
        render::BuildMeasureLine(
            m_gl, m_state.Colours,
            {m_state.Measure->From.Where, m_state.Measure->To.Where, MeasureFigures(*m_state.Measure)});
}

bool MeasureControl::Clear() {
    if (!m_state.Measure)
        return false;
    m_state.Measure.reset();
    render::DeleteMeasureLine(m_gl);
    m_scene.SetStatus(u"Measuring line cleared"_s);
    m_scene.Redraw();
    return true;
}

} // namespace sky::view
