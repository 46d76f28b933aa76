#pragma once

#include <optional>

#include <QString>

#include "geo/geodesy.h"

namespace sky::geo {

// The --view option: a view read from "LON,LAT,ZOOM" (degrees east, degrees north, zoom factor).
// Values out of range are brought into the range the map keeps, as ClampView does: the longitude
// wrapped into -180 to 180, the latitude held to -90 to 90, the zoom to 0.3 to 50; Clamped tells.
struct ViewOption {
    ViewState View;
    bool Clamped = false;
};

// nullopt when the text is not three finite numbers separated by commas.
std::optional<ViewOption> ParseViewOption(const QString& text);

// A view written as the option takes it, e.g. "140,-90,50".
QString ViewOptionText(const ViewState& view);

} // namespace sky::geo
