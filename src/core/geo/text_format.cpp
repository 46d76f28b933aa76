#include "geo/text_format.h"

#include <cmath>

#include <QTimeZone>

#include "common/numbers.h"

using namespace Qt::StringLiterals;

namespace sky::geo {
namespace {

// One axis of a position: tenths of minutes are rounded first, so 59.96 minutes carry into the next
// degree instead of printing as 60.0.
QString FormatAngle(float value, int degreeDigits, QChar positive, QChar negative) {
    const double magnitude = std::fabs(double(value));
    const std::int32_t tenths = ToInt32(magnitude * 600.0);
    const int degrees = tenths / 600;
    const int minuteTenths = tenths % 600;
    // A value that rounds to zero is not given a southern or western sign.
    const bool isNegative = value < 0.0f && tenths > 0;
    return QString(isNegative ? negative : positive) +
           u"%1°%2.%3'"_s.arg(degrees, degreeDigits, 10, QChar(u'0'))
               .arg(minuteTenths / 10, 2, 10, QChar(u'0'))
               .arg(minuteTenths % 10);
}

bool AllDigits(QStringView text) {
    for (QChar c : text) {
        if (c < u'0' || c > u'9')
            return false;
    }
    return true;
}

} // namespace

QString FormatLatLon(float lat, float lon) {
    return FormatAngle(lat, 2, u'N', u'S') + u' ' + FormatAngle(lon, 3, u'E', u'W');
}

std::optional<QDateTime> ParseTimeStamp(QStringView stamp) {
    stamp = stamp.trimmed();
    if (stamp.size() != 14 || !AllDigits(stamp))
        return std::nullopt;
    const auto part = [&](qsizetype from, qsizetype length) { return stamp.sliced(from, length).toInt(); };
    const QDate date(part(0, 4), part(4, 2), part(6, 2));
    const QTime time(part(8, 2), part(10, 2), part(12, 2));
    if (!date.isValid() || !time.isValid())
        return std::nullopt;
    return QDateTime(date, time, QTimeZone::utc());
}

QString FormatUtcTime(QStringView updateStamp) {
    const auto moment = ParseTimeStamp(updateStamp);
    if (!moment)
        return u"-"_s;
    return moment->toString(u"HHmm"_s) + u'Z';
}

QString OnlineTime(QStringView logonStamp, QStringView updateStamp) {
    const auto logon = ParseTimeStamp(logonStamp);
    const auto update = ParseTimeStamp(updateStamp);
    if (!logon || !update)
        return u"-"_s;
    const qint64 minutes = std::max<qint64>(0, logon->secsTo(*update) / 60);
    return u"%1h %2m"_s.arg(minutes / 60).arg(minutes % 60, 2, 10, QChar(u'0'));
}

QString ReportedText(float lat, float lon, QStringView reportStamp, const QDateTime& now) {
    const auto reported = ParseTimeStamp(reportStamp);
    const QString at = u"at "_s + FormatLatLon(lat, lon);
    if (!reported)
        return u"Reported "_s + at;
    const qint64 seconds = std::max<qint64>(0, reported->secsTo(now));
    const QString age =
        seconds < 120 ? QString::number(seconds) + u" s"_s : QString::number(seconds / 60) + u" min"_s;
    return u"Reported "_s + age + u" ago "_s + at;
}

} // namespace sky::geo
