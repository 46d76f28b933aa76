#include "render/line_detail.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace sky::render {
namespace {

constexpr float kAlwaysDrawn = std::numeric_limits<float>::max();

bool SamePlace(const LineDetail::Vertex& a, const LineDetail::Vertex& b) {
    return a.X == b.X && a.Y == b.Y && a.Z == b.Z;
}

// The distance of p from the segment from a to b.
double DistanceFromSegment(const LineDetail::Vertex& p, const LineDetail::Vertex& a,
                           const LineDetail::Vertex& b) {
    const double abX = b.X - a.X, abY = b.Y - a.Y, abZ = b.Z - a.Z;
    const double apX = p.X - a.X, apY = p.Y - a.Y, apZ = p.Z - a.Z;
    const double length2 = abX * abX + abY * abY + abZ * abZ;
    const double t = length2 > 0 ? std::clamp((abX * apX + abY * apY + abZ * apZ) / length2, 0.0, 1.0) : 0.0;
    const double dX = apX - t * abX, dY = apY - t * abY, dZ = apZ - t * abZ;
    return std::sqrt(dX * dX + dY * dY + dZ * dZ);
}

} // namespace

void LineDetail::AddSegment(const Vertex& from, const Vertex& to) {
    ++m_segments;
    if (m_points.empty() || !SamePlace(m_points.back(), from)) {
        m_starts.push_back(std::uint32_t(m_points.size()));
        Vertex start = from;
        start.R = to.R, start.G = to.G, start.B = to.B, start.A = to.A;
        m_points.push_back(start);
    }
    m_points.push_back(to);
}

void LineDetail::Finish() {
    m_deviation.assign(m_points.size(), kAlwaysDrawn);
    for (std::size_t i = 0; i < m_starts.size(); ++i) {
        const std::size_t end = i + 1 < m_starts.size() ? m_starts[i + 1] : m_points.size();
        RankPolyline(m_starts[i], end - 1);
    }
    m_step = -1;
    m_indices.clear();
}

void LineDetail::RankPolyline(std::size_t first, std::size_t last) {
    struct Span {
        std::size_t From, To;
        float Limit;
    };
    std::vector<Span> spans{{first, last, kAlwaysDrawn}};
    while (!spans.empty()) {
        const Span span = spans.back();
        spans.pop_back();
        if (span.To <= span.From + 1)
            continue;
        double farthest = -1.0;
        std::size_t at = span.From + 1;
        for (std::size_t k = span.From + 1; k < span.To; ++k) {
            const double d = DistanceFromSegment(m_points[k], m_points[span.From], m_points[span.To]);
            if (d > farthest) {
                farthest = d;
                at = k;
            }
        }
        // A point is never worth more than the point whose place it depends on.
        const float deviation = std::min(float(farthest), span.Limit);
        m_deviation[at] = deviation;
        spans.push_back({span.From, at, deviation});
        spans.push_back({at, span.To, deviation});
    }
}

const std::vector<std::uint32_t>& LineDetail::Segments(double tolerance) {
    // Steps of a factor of two; below 2^-30 (or for no tolerance) every point.
    const int step = tolerance > std::ldexp(1.0, -30) ? int(std::floor(std::log2(tolerance))) : -31;
    if (step == m_step)
        return m_indices;
    m_step = step;
    const float drop = step > -31 ? float(std::ldexp(1.0, step)) : -1.0f;
    m_indices.clear();
    for (std::size_t i = 0; i < m_starts.size(); ++i) {
        const std::size_t end = i + 1 < m_starts.size() ? m_starts[i + 1] : m_points.size();
        std::uint32_t previous = m_starts[i];
        for (std::size_t k = m_starts[i] + 1; k < end; ++k) {
            if (m_deviation[k] <= drop)
                continue;
            m_indices.push_back(previous);
            m_indices.push_back(std::uint32_t(k));
            previous = std::uint32_t(k);
        }
    }
    return m_indices;
}

} // namespace sky::render
