#include "common/json_values.h"

#include <cmath>

#include <QRegularExpression>
#include <QTimeZone>

#include "common/numbers.h"

using namespace Qt::StringLiterals;

namespace sky {

QString JsonText(const QJsonValue& value) {
    if (value.isString()) {
        QString text = value.toString();
        for (QChar& c : text) {
            if (c == u'\r' || c == u'\n' || c == u'\t')
                c = u' ';
        }
        return text;
    }
    if (value.isDouble()) {
        const double number = value.toDouble();
        if (!std::isfinite(number))
            return {};
        if (number == std::floor(number) && std::fabs(number) < 1e15)
            return QString::number(qint64(number));
        return ShortestDecimal(number);
    }
    return {};
}

std::optional<qint64> JsonWhole(const QJsonValue& value, qint64 low, qint64 high) {
    double number = 0.0;
    if (value.isDouble())
        number = value.toDouble();
    else if (value.isString() && IsWholeTextNumber(value.toString()))
        number = LeadingNumber(value.toString());
    else
        return std::nullopt;
    // Checked before it becomes an integer: finite, whole and within the range asked.
    if (!std::isfinite(number) || number != std::floor(number) || number < double(low) ||
        number > double(high))
        return std::nullopt;
    return qint64(number);
}

std::optional<QDateTime> ServiceTime(const QString& text) {
    static const QRegularExpression plain(u"^(\\d{4}-\\d{2}-\\d{2}) (\\d{2}:\\d{2}(?::\\d{2})?)$"_s);
    static const QRegularExpression iso(
        u"^(\\d{4}-\\d{2}-\\d{2})T(\\d{2}:\\d{2}(?::\\d{2})?)(?:[.,]\\d+)?(Z|[+-]\\d{2}:?\\d{2})$"_s);
    const QString trimmed = text.trimmed();
    QRegularExpressionMatch match = plain.match(trimmed);
    QString zone = u"Z"_s;
    if (!match.hasMatch()) {
        match = iso.match(trimmed);
        if (!match.hasMatch())
            return std::nullopt;
        zone = match.captured(3);
    }
    const QDate date = QDate::fromString(match.captured(1), u"yyyy-MM-dd"_s);
    const QString clock = match.captured(2);
    const QTime time = QTime::fromString(clock, clock.size() == 5 ? u"HH:mm"_s : u"HH:mm:ss"_s);
    if (!date.isValid() || !time.isValid())
        return std::nullopt;
    int offsetSeconds = 0;
    if (zone != u"Z") {
        const QString digits = QString(zone).remove(u':');
        const int hours = digits.mid(1, 2).toInt(), minutes = digits.mid(3, 2).toInt();
        if (hours > 14 || minutes > 59)
            return std::nullopt;
        offsetSeconds = (hours * 3600 + minutes * 60) * (zone.startsWith(u'-') ? -1 : 1);
    }
    return QDateTime(date, time, Qt::UTC).addSecs(-offsetSeconds);
}

} // namespace sky
