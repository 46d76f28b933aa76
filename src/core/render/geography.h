#pragma once

#include <functional>

#include <QByteArray>
#include <QString>
#include <QStringView>

namespace sky {
struct ColourTable;
}

namespace sky::render {

class GlApi;

// Records the latitude/longitude grid (list 51): 37 meridians from 80 S to 80 N and 19 parallels,
// shaded from the equator to the poles.
void BuildGrid(GlApi& gl, const ColourTable& colours);

// Records the globe (list 52): 90 bands of 2 degrees, each in the globe colour of its southern edge.
void BuildGlobe(GlApi& gl, const ColourTable& colours);

// Records a line file ("lat:lon" points, "end" between polylines) into list as independent segments.
// A point joins the one before it unless that one's latitude and longitude add up to exactly 0.
// Coastlines are shaded by latitude; with shaded false the list takes the border colour once.
void BuildLineFile(GlApi& gl, int list, QStringView text, const ColourTable& colours, bool shaded);

// The red, green and blue of a latitude between an equator and a pole slot.
void GradientColour(const ColourTable& colours, int equatorSlot, int poleSlot, float latitude, float rgb[3]);

// What LoadGeography found wrong: the name of a file it could not read, or empty; and land.dat's bytes,
// for the land's lists (render/land_layer.h), empty without the file.
struct GeographyResult {
    QString MissingFile;
    QByteArray Land;
};

// Builds lists 51 to 53, and 54 unless disableCountries, from coastline.dat and countries.dat in
// dataFolder, and reads land.dat; redraw is called after the globe and after the coastlines so the map
// fills in visibly. A file that cannot be read leaves its lists out and is named in the result,
// land.dat excepted (a globe without land is still a map).
GeographyResult LoadGeography(GlApi& gl, const ColourTable& colours, const QString& dataFolder,
                              bool disableCountries, const std::function<void()>& redraw = {});

} // namespace sky::render
