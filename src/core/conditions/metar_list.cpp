#include "conditions/metar_list.h"

#include <QRegularExpression>

using namespace Qt::StringLiterals;

namespace sky::conditions {
namespace {

// The day and time group of a report in the month of now, or the month before where it would lie
// more than a day ahead of now; invalid when that day does not exist in either.
QDateTime ObservedAt(int day, int hour, int minute, const QDateTime& nowUtc) {
    if (hour > 23 || minute > 59 || day < 1)
        return {};
    const QDate today = nowUtc.date();
    for (int monthsBack = 0; monthsBack <= 1; ++monthsBack) {
        const QDate month = today.addMonths(-monthsBack);
        const QDate date(month.year(), month.month(), day);
        if (!date.isValid())
            continue;
        const QDateTime at(date, QTime(hour, minute), Qt::UTC);
        if (at <= nowUtc.addDays(1))
            return at;
    }
    return {};
}

} // namespace

MetarList ReadMetarList(const QString& answer, const QDateTime& nowUtc,
                        const std::function<bool(const QString&)>& known) {
    static const QRegularExpression report(u"^(?:(?:METAR|SPECI)\\s+)?(?:COR\\s+)?([A-Z][A-Z0-9]{3})\\s+"
                                           u"(\\d{2})(\\d{2})(\\d{2})Z(\\s.*)?$"_s);
    static const QRegularExpression cycleTime(u"^\\d{4}/\\d{2}/\\d{2} \\d{2}:\\d{2}$"_s);
    MetarList list;
    const QDateTime now = nowUtc.toUTC();
    for (QStringView raw : QStringView(answer).split(u'\n')) {
        QString line = raw.trimmed().toString();
        // A table's row: the report is its first field (reports hold no commas).
        if (const qsizetype comma = line.indexOf(u','); comma >= 0)
            line = line.left(comma).trimmed();
        line = line.simplified();
        if (line.endsWith(u'=')) // the end mark some services keep
            line = line.chopped(1).trimmed();
        if (line.isEmpty() || cycleTime.match(line).hasMatch())
            continue;
        const QRegularExpressionMatch m = report.match(line);
        const QDateTime at = m.hasMatch() ? ObservedAt(m.captured(2).toInt(), m.captured(3).toInt(),
                                                       m.captured(4).toInt(), now)
                                          : QDateTime();
        if (!at.isValid()) {
            ++list.LeftOut;
            continue;
        }
        const QString station = m.captured(1);
        if (known && !known(station))
            continue;
        const auto had = list.Metars.constFind(station);
        if (had != list.Metars.cend() && had->ObservedUtc > at)
            continue;
        list.Metars.insert(station, {station, at, line.mid(m.capturedStart(1))});
    }
    return list;
}

QString MetarListAddress(const QString& address, const QStringList& stations) {
    QString expanded = address.trimmed();
    expanded.replace(u"{ids}"_s, stations.join(u','));
    return expanded;
}

} // namespace sky::conditions
