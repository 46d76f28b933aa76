#include "render/night_layer.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <vector>

#include "render/list_numbers.h"
#include "render/scene_drawing.h"

namespace sky::render {

using namespace drawing;

namespace {

// Rings round the point opposite the sun, by their angle from the sun: the twilight band finely, the
// rest of the night coarsely (its shade is even).
const std::vector<double>& RingAngles() {
    static const std::vector<double> angles = [] {
        std::vector<double> a = {90.0, 91.5, 93.0, 94.5, 96.0};
        for (double angle = 102.0; angle < 180.0; angle += 6.0)
            a.push_back(angle);
        return a;
    }();
    return angles;
}

constexpr int kSegments = 72;

float AlphaAt(double angleFromSunDeg) {
    return kNightAlpha * float(std::clamp((angleFromSunDeg - 90.0) / 6.0, 0.0, 1.0));
}

} // namespace

void BuildNight(GlApi& gl, geo::LatLon subsolar) {
    constexpr double kRad = std::numbers::pi / 180.0;
    // A frame at the sun's point: its direction, and two directions square to it.
    const geo::Vec3 sun = geo::OnGlobe(subsolar.Lat, subsolar.Lon).Normalised();
    const geo::Vec3 helper = std::abs(sun.Y) < 0.9 ? geo::Vec3{0, 1, 0} : geo::Vec3{1, 0, 0};
    const geo::Vec3 u = sun.Cross(helper).Normalised();
    const geo::Vec3 v = sun.Cross(u);
    const auto at = [&](double angleDeg, int segment) {
        const double a = angleDeg * kRad, b = 2.0 * std::numbers::pi * segment / kSegments;
        return sun * std::cos(a) + (u * std::cos(b) + v * std::sin(b)) * std::sin(a);
    };
    const std::vector<double>& rings = RingAngles();
    Record(gl, lists::kNight, [&] {
        gl.Begin(Primitive::Triangles);
        for (size_t r = 0; r < rings.size(); ++r) {
            const double inner = rings[r], outer = r + 1 < rings.size() ? rings[r + 1] : 180.0;
            for (int s = 0; s < kSegments; ++s) {
                const geo::Vec3 corners[4] = {at(inner, s), at(inner, s + 1), at(outer, s + 1), at(outer, s)};
                const float alphas[4] = {AlphaAt(inner), AlphaAt(inner), AlphaAt(outer), AlphaAt(outer)};
                for (int corner : {0, 1, 2, 0, 2, 3}) {
                    gl.Colour(0.0f, 0.0f, 0.0f, alphas[corner]);
                    Emit(gl, corners[corner]);
                }
            }
        }
        gl.End();
    });
}

} // namespace sky::render
