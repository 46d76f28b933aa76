#include "geo/view_option.h"

#include <algorithm>
#include <cmath>

#include <QStringList>

#include "common/numbers.h"

using namespace Qt::StringLiterals;

namespace sky::geo {

std::optional<ViewOption> ParseViewOption(const QString& text) {
    const QStringList parts = text.split(u',');
    if (parts.size() != 3)
        return std::nullopt;
    double values[3] = {};
    for (int i = 0; i < 3; ++i) {
        bool ok = false;
        values[i] = parts[i].trimmed().toDouble(&ok);
        if (!ok || !std::isfinite(values[i]))
            return std::nullopt;
    }
    const double lon = std::remainder(values[0], 360.0);
    const double lat = std::clamp(values[1], -90.0, 90.0);
    const double zoom = std::clamp(values[2], 0.3, 50.0);
    ViewOption option;
    option.View = {ToSingle(lon), ToSingle(-lat), ToSingle(zoom)};
    option.Clamped = lon != values[0] || lat != values[1] || zoom != values[2];
    return option;
}

QString ViewOptionText(const ViewState& view) {
    const auto number = [](float value) { return QString::number(double(value), 'g', 6); };
    return number(view.ViewX) + u',' + number(view.ViewY == 0.0f ? 0.0f : -view.ViewY) + u',' +
           number(view.ViewZ);
}

} // namespace sky::geo
