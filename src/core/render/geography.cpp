#include "render/geography.h"

#include <cmath>

#include <QDir>

#include "app/colour_theme.h"
#include "common/file_io.h"
#include "common/numbers.h"
#include "common/text_codec.h"
#include "geo/geodesy.h"
#include "render/gl_api.h"
#include "render/list_numbers.h"

using namespace Qt::StringLiterals;

namespace sky::render {
namespace {

void GlobeVertex(GlApi& gl, float lat, float lon) {
    gl.Vertex(geo::GlobeX(lat, lon), geo::GlobeY(lat, lon), geo::GlobeZ(lat, lon));
}

void SetGradient(GlApi& gl, const ColourTable& colours, int equatorSlot, int poleSlot, float lat) {
    float rgb[3];
    GradientColour(colours, equatorSlot, poleSlot, lat, rgb);
    gl.Colour(rgb[0], rgb[1], rgb[2], 1.0f);
}

struct Point {
    float Lat = 0.0f;
    float Lon = 0.0f;
};

Point ReadPoint(QStringView line) {
    const qsizetype colon = line.indexOf(u':');
    if (colon < 0)
        return {ToSingle(LeadingNumber(line)), 0.0f};
    const QStringView rest = line.sliced(colon + 1);
    const qsizetype next = rest.indexOf(u':');
    return {ToSingle(LeadingNumber(line.first(colon))),
            ToSingle(LeadingNumber(next < 0 ? rest : rest.first(next)))};
}

} // namespace

void GradientColour(const ColourTable& colours, int equatorSlot, int poleSlot, float latitude, float rgb[3]) {
    const float t = std::fabs(latitude) / 90.0f;
    rgb[0] = t * (colours.Red[poleSlot] - colours.Red[equatorSlot]) + colours.Red[equatorSlot];
    rgb[1] = t * (colours.Green[poleSlot] - colours.Green[equatorSlot]) + colours.Green[equatorSlot];
    rgb[2] = t * (colours.Blue[poleSlot] - colours.Blue[equatorSlot]) + colours.Blue[equatorSlot];
}

void BuildGrid(GlApi& gl, const ColourTable& colours) {
    gl.DeleteList(lists::kGrid);
    gl.NewList(lists::kGrid);
    gl.LineWidth(1.0f);
    // As separate segments in one block, so the view draws no more of them than it shows (a pixel off
    // at most). A meridian runs from the equator to each pole, 2 degrees a segment.
    gl.LineTolerance(1.0f);
    gl.Begin(Primitive::Lines);
    for (float lon = -180.0f; lon <= 180.0f; lon += 10.0f) {
        for (const float pole : {-1.0f, 1.0f}) {
            for (float lat = 0.0f; lat < 80.0f; lat += 2.0f) {
                SetGradient(gl, colours, kSlotGridEquator, kSlotGridPoles, lat);
                GlobeVertex(gl, pole * lat, lon);
                SetGradient(gl, colours, kSlotGridEquator, kSlotGridPoles, lat + 2.0f);
                GlobeVertex(gl, pole * (lat + 2.0f), lon);
            }
        }
    }
    for (float lat = -90.0f; lat <= 90.0f; lat += 10.0f) {
        SetGradient(gl, colours, kSlotGridEquator, kSlotGridPoles, lat);
        for (float lon = -180.0f; lon < 180.0f; lon += 2.0f) {
            GlobeVertex(gl, lat, lon);
            GlobeVertex(gl, lat, lon + 2.0f);
        }
    }
    gl.End();
    gl.EndList();
}

void BuildGlobe(GlApi& gl, const ColourTable& colours) {
    gl.DeleteList(lists::kGlobe);
    gl.NewList(lists::kGlobe);
    // The globe is opaque: nothing to blend it with, which spares a read of every pixel it covers.
    gl.Disable(Capability::Blend);
    for (float lat = -90.0f; lat <= 88.0f; lat += 2.0f) {
        SetGradient(gl, colours, kSlotGlobeEquator, kSlotGlobePoles, lat);
        // The band's 36 cells in one primitive: the same four-cornered cells, drawn in one go.
        gl.Begin(Primitive::Quads);
        for (float lon = -180.0f; lon <= 170.0f; lon += 10.0f) {
            GlobeVertex(gl, lat, lon);
            GlobeVertex(gl, lat + 2.0f, lon);
            GlobeVertex(gl, lat + 2.0f, lon + 10.0f);
            GlobeVertex(gl, lat, lon + 10.0f);
        }
        gl.End();
    }
    gl.Enable(Capability::Blend);
    gl.EndList();
}

void BuildLineFile(GlApi& gl, int list, QStringView text, const ColourTable& colours, bool shaded) {
    gl.DeleteList(list);
    gl.NewList(list);
    gl.LineWidth(shaded ? 2.0f : 1.0f);
    // Up to a pixel off the full line: the same picture to the eye (a third of a percent of a zoomed-out
    // frame's pixels change by more than an eighth of a channel's range, about 25 by more than a
    // quarter), and a third fewer of the costly smoothed segments.
    gl.LineTolerance(1.0f);
    if (!shaded)
        gl.Colour(colours.Red[kSlotCountryBorders], colours.Green[kSlotCountryBorders],
                  colours.Blue[kSlotCountryBorders], 1.0f);
    gl.Begin(Primitive::Lines);
    Point previous;
    Point current;
    // The line end after the last line starts no line of its own.
    if (text.endsWith(u'\n'))
        text.chop(1);
    for (QStringView line : text.tokenize(u'\n')) {
        if (line.endsWith(u'\r'))
            line.chop(1);
        previous = current;
        if (line == u"end")
            previous = {};
        current = ReadPoint(line);
        // A sum, on purpose: any point whose coordinates cancel breaks the line as "end" does.
        if (previous.Lat + previous.Lon == 0.0f)
            continue;
        if (shaded)
            SetGradient(gl, colours, kSlotCoastEquator, kSlotCoastPoles, current.Lat);
        GlobeVertex(gl, previous.Lat, previous.Lon);
        GlobeVertex(gl, current.Lat, current.Lon);
    }
    gl.End();
    gl.EndList();
}

GeographyResult LoadGeography(GlApi& gl, const ColourTable& colours, const QString& dataFolder,
                              bool disableCountries, const std::function<void()>& redraw) {
    const QDir folder(dataFolder);
    GeographyResult result;
    // What can be read is drawn; the first file that cannot is named.
    const auto read = [&](const QString& name) {
        auto bytes = ReadWholeFile(folder.filePath(name));
        if (!bytes && result.MissingFile.isEmpty())
            result.MissingFile = folder.filePath(name);
        return bytes;
    };
    const auto coastline = read(u"coastline.dat"_s);
    const auto countries = disableCountries ? std::optional<QByteArray>() : read(u"countries.dat"_s);
    BuildGrid(gl, colours);
    BuildGlobe(gl, colours);
    // A data folder of an older version has no land: its globe is drawn without, and nothing is said.
    result.Land = ReadWholeFile(folder.filePath(u"land.dat"_s)).value_or(QByteArray());
    if (redraw)
        redraw();
    if (coastline)
        BuildLineFile(gl, lists::kCoastlines, DecodeText(*coastline).Text, colours, true);
    if (redraw)
        redraw();
    if (countries)
        BuildLineFile(gl, lists::kBorders, DecodeText(*countries).Text, colours, false);
    return result;
}

} // namespace sky::render
