#include "render/land_layer.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <optional>
#include <vector>

#include "app/colour_theme.h"
#include "geo/geodesy.h"
#include "render/geography.h"
#include "render/gl_api.h"
#include "render/list_numbers.h"

namespace sky::render {
namespace {

constexpr QByteArrayView kMark = "SKYLAND1";
constexpr int kUnitsPerDeg = 10000; // coordinates in the file are in ten-thousandths of a degree

constexpr int Columns(int band) {
    return 360 / kLandBands[size_t(band)].TileDeg;
}

constexpr int Rows(int band) {
    return 180 / kLandBands[size_t(band)].TileDeg;
}

constexpr int FirstOfBand(int band) {
    int first = 0;
    for (int b = 0; b < band; ++b)
        first += Columns(b) * Rows(b);
    return first;
}

static_assert(lists::kLandFirst + FirstOfBand(int(kLandBands.size())) <= lists::kSmallFontBase,
              "the land lists run into the glyph lists");

// The file's bytes read from the front: tags, and numbers of seven bits a byte (low first, the top bit
// set on every byte but the last), signed ones zigzagged (0, -1, 1, -2, ... as 0, 1, 2, 3, ...).
class Reader {
public:
    explicit Reader(QByteArrayView bytes) : m_bytes(bytes) {}

    qsizetype Left() const { return m_bytes.size() - m_at; }

    std::optional<char> Tag() {
        if (Left() < 1)
            return std::nullopt;
        return m_bytes[m_at++];
    }

    // At most 32 bits; anything longer is malformed.
    std::optional<std::uint32_t> Unsigned() {
        std::uint64_t value = 0;
        for (int shift = 0; shift < 35 && Left() > 0; shift += 7) {
            const auto byte = std::uint8_t(m_bytes[m_at++]);
            value |= std::uint64_t(byte & 0x7F) << shift;
            if (!(byte & 0x80))
                return value <= UINT32_MAX ? std::optional<std::uint32_t>(std::uint32_t(value))
                                           : std::nullopt;
        }
        return std::nullopt;
    }

    std::optional<std::int64_t> Signed() {
        const auto value = Unsigned();
        if (!value)
            return std::nullopt;
        return (*value & 1) ? -std::int64_t(*value >> 1) - 1 : std::int64_t(*value >> 1);
    }

private:
    QByteArrayView m_bytes;
    qsizetype m_at = 0;
};

struct Point {
    float X, Y, Z;
    std::array<float, 3> Water; // the globe's colour where the point lies
};

// Records the tiles of land.dat one after another.
class LandRecorder {
public:
    LandRecorder(GlApi& gl, const ColourTable& colours, QByteArrayView bytes, int onlyBand)
        : m_gl(gl), m_colours(colours), m_in(bytes), m_onlyBand(onlyBand) {}

    int Run() {
        bool more = true;
        while (more) {
            const auto tag = m_in.Tag();
            if (tag == 'B')
                more = Band();
            else if (tag == 'G')
                more = Tile();
            else if (tag == 'L' || tag == 'W')
                more = Piece(*tag == 'W');
            else
                more = false;
        }
        EndTile();
        return m_tiles;
    }

private:
    bool Band() {
        EndTile();
        m_band = -1;
        const auto index = m_in.Unsigned(), tolerance = m_in.Unsigned(), tileDeg = m_in.Unsigned();
        if (!index || !tolerance || !tileDeg)
            return false;
        if (*index < kLandBands.size() &&
            std::lround(kLandBands[*index].ToleranceDeg * kUnitsPerDeg) == std::int64_t(*tolerance) &&
            std::int64_t(kLandBands[*index].TileDeg) == std::int64_t(*tileDeg) &&
            (m_onlyBand < 0 || int(*index) == m_onlyBand))
            m_band = int(*index);
        return true;
    }

    bool Tile() {
        EndTile();
        const auto row = m_in.Unsigned(), column = m_in.Unsigned();
        if (!row || !column)
            return false;
        if (m_band < 0 || *row >= std::uint32_t(Rows(m_band)) || *column >= std::uint32_t(Columns(m_band)))
            return true;
        const int list = LandList(m_band, int(*row), int(*column));
        m_gl.DeleteList(list);
        m_gl.NewList(list);
        m_gl.Begin(Primitive::Triangles);
        m_recording = true;
        m_colour.reset();
        ++m_tiles;
        return true;
    }

    void EndTile() {
        if (!m_recording)
            return;
        m_gl.End();
        m_gl.EndList();
        m_recording = false;
    }

    bool Piece(bool water) {
        // A point takes at least two bytes and a triangle three: larger counts are cut short.
        const auto count = m_in.Unsigned();
        if (!count || *count > m_in.Left() / 2)
            return false;
        m_points.clear();
        bool inRange = true;
        for (std::uint32_t i = 0; i < *count; ++i) {
            const auto dLat = m_in.Signed(), dLon = m_in.Signed();
            if (!dLat || !dLon)
                return false;
            m_lat += *dLat;
            m_lon += *dLon;
            inRange =
                inRange && std::abs(m_lat) <= 90 * kUnitsPerDeg && std::abs(m_lon) <= 180 * kUnitsPerDeg;
            // The points of a tile not recorded are read past, not placed on the globe.
            if (inRange && m_recording)
                m_points.push_back(At(float(m_lat) / kUnitsPerDeg, float(m_lon) / kUnitsPerDeg));
        }
        const auto triangles = m_in.Unsigned();
        if (!triangles || *triangles > m_in.Left() / 3)
            return false;
        std::int64_t corner = 0;
        for (std::uint32_t t = 0; t < *triangles; ++t) {
            std::array<std::int64_t, 3> corners{};
            for (auto& c : corners) {
                const auto step = m_in.Signed();
                if (!step)
                    return false;
                corner += *step;
                c = corner;
            }
            if (m_recording && inRange && std::all_of(corners.begin(), corners.end(), [&](std::int64_t c) {
                    return c >= 0 && c < std::int64_t(m_points.size());
                }))
                Triangle(water, corners);
        }
        return true;
    }

    Point At(float lat, float lon) const {
        Point p{geo::GlobeX(lat, lon), geo::GlobeY(lat, lon), geo::GlobeZ(lat, lon), {}};
        // The globe's bands of 2 degrees take the colour of their southern edge.
        const float south = std::min(88.0f, std::floor((lat + 90.0f) / 2.0f) * 2.0f - 90.0f);
        GradientColour(m_colours, kSlotGlobeEquator, kSlotGlobePoles, south, p.Water.data());
        return p;
    }

    void Triangle(bool water, const std::array<std::int64_t, 3>& corners) {
        const std::array<float, 3> land = {m_colours.Red[kSlotLand], m_colours.Green[kSlotLand],
                                           m_colours.Blue[kSlotLand]};
        for (const std::int64_t corner : corners) {
            const Point& p = m_points[size_t(corner)];
            const std::array<float, 3>& colour = water ? p.Water : land;
            if (colour != m_colour) {
                m_gl.Colour(colour[0], colour[1], colour[2], 1.0f);
                m_colour = colour;
            }
            m_gl.Vertex(p.X, p.Y, p.Z);
        }
    }

    GlApi& m_gl;
    const ColourTable& m_colours;
    Reader m_in;
    int m_onlyBand = -1; // the one band to record, or -1 for all
    int m_band = -1;
    bool m_recording = false;
    int m_tiles = 0;
    std::int64_t m_lat = 0, m_lon = 0; // the last point read, in file units
    std::vector<Point> m_points;       // of the current piece
    std::optional<std::array<float, 3>> m_colour;
};

// A tile as a cap of the sphere: its centre and the angle from it that holds all of the tile.
struct TileCap {
    std::array<double, 3> Centre;
    double RadiusDeg;
};

// The globe's radius on screen: its viewport is a square of twice the window's height.
double GlobeRadiusPx(const geo::ViewState& view, int heightPx) {
    return double(view.ViewZ) * heightPx;
}

std::array<double, 3> UnitVector(double latDeg, double lonDeg) {
    return {geo::GlobeX(float(latDeg), float(lonDeg)), geo::GlobeY(float(latDeg), float(lonDeg)),
            geo::GlobeZ(float(latDeg), float(lonDeg))};
}

double AngleDeg(const std::array<double, 3>& a, const std::array<double, 3>& b) {
    const double dot = std::clamp(a[0] * b[0] + a[1] * b[1] + a[2] * b[2], -1.0, 1.0);
    return std::acos(dot) / geo::DegToRad;
}

const std::vector<TileCap>& Caps(int band) {
    static const auto caps = [] {
        std::array<std::vector<TileCap>, kLandBands.size()> all;
        for (int b = 0; b < int(kLandBands.size()); ++b) {
            const int size = kLandBands[size_t(b)].TileDeg;
            for (int row = 0; row < Rows(b); ++row)
                for (int column = 0; column < Columns(b); ++column) {
                    const double south = -90.0 + row * size, west = -180.0 + column * size;
                    const auto centre = UnitVector(south + size / 2.0, west + size / 2.0);
                    double radius = 0.0;
                    for (const double lat : {south, south + size / 2.0, south + size})
                        for (const double lon : {west, west + size / 2.0, west + size})
                            radius = std::max(radius, AngleDeg(centre, UnitVector(lat, lon)));
                    all[size_t(b)].push_back({centre, radius + 0.5});
                }
        }
        return all;
    }();
    return caps[size_t(band)];
}

} // namespace

int LandListCount() {
    return FirstOfBand(int(kLandBands.size()));
}

int LandList(int band, int row, int column) {
    return lists::kLandFirst + FirstOfBand(band) + row * Columns(band) + column;
}

int BuildLand(GlApi& gl, QByteArrayView bytes, const ColourTable& colours, int onlyBand) {
    if (!bytes.startsWith(kMark))
        return 0;
    return LandRecorder(gl, colours, bytes.sliced(kMark.size()), onlyBand).Run();
}

void LandLists::Reset(QByteArray bytes) {
    m_bytes = std::move(bytes);
    m_recorded.fill(false);
}

void LandLists::Need(GlApi& gl, const ColourTable& colours, const geo::ViewState& view, int heightPx) {
    const int band = LandBandFor(GlobeRadiusPx(view, heightPx));
    if (m_bytes.isEmpty() || m_recorded[size_t(band)])
        return;
    BuildLand(gl, m_bytes, colours, band);
    m_recorded[size_t(band)] = true;
}

int LandBandFor(double radiusPx) {
    const int last = int(kLandBands.size()) - 1;
    for (int band = 0; band < last; ++band)
        if (kLandBands[size_t(band)].ToleranceDeg * geo::DegToRad * radiusPx <= 1.0)
            return band;
    return last;
}

void DrawLand(GlApi& gl, const geo::ViewState& view, int widthPx, int heightPx) {
    const double radiusPx = GlobeRadiusPx(view, heightPx);
    if (!(radiusPx > 0.0))
        return;
    const int band = LandBandFor(radiusPx);
    // A point at an angle a from the view's centre shows radius * sin(a) pixels from the window's
    // middle; the near half of the globe at most.
    const double reachPx = std::hypot(double(widthPx), double(heightPx)) / 2.0;
    const double seenDeg = reachPx >= radiusPx ? 90.0 : std::asin(reachPx / radiusPx) / geo::DegToRad;
    const auto centre = UnitVector(-view.ViewY, view.ViewX);
    gl.Disable(Capability::Blend);
    const std::vector<TileCap>& caps = Caps(band);
    for (size_t tile = 0; tile < caps.size(); ++tile) {
        const int list = lists::kLandFirst + FirstOfBand(band) + int(tile);
        if (AngleDeg(centre, caps[tile].Centre) <= seenDeg + caps[tile].RadiusDeg && gl.IsList(list))
            gl.CallList(list);
    }
    gl.Enable(Capability::Blend);
}

} // namespace sky::render
