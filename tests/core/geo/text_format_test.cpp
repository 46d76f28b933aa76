#include "geo/text_format.h"

#include <QTimeZone>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace sky::geo {
namespace {

TEST(FormatLatLon, WritesHemisphereDegreesAndMinutesAsAPilotReadsThem) {
    const struct {
        float lat, lon;
        const char16_t* expected;
    } rows[] = {
        {50.0333f, 8.5706f, u"N50°02.0' E008°34.2'"},    {50.0333f, 8.5717f, u"N50°02.0' E008°34.3'"},
        {-33.9461f, 151.1772f, u"S33°56.8' E151°10.6'"}, {40.6398f, -73.7789f, u"N40°38.4' W073°46.7'"},
        {0.0f, 0.0f, u"N00°00.0' E000°00.0'"},           {-0.0f, -180.0f, u"N00°00.0' W180°00.0'"},
        {90.0f, 179.99999f, u"N90°00.0' E180°00.0'"},    {10.99999f, -0.00001f, u"N11°00.0' E000°00.0'"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(QString::fromUtf16(row.expected).toStdString());
        EXPECT_EQ(FormatLatLon(row.lat, row.lon), QString::fromUtf16(row.expected));
    }
}

TEST(FormatUtcTime, TakesHoursAndMinutesOfTheStamp) {
    EXPECT_EQ(FormatUtcTime(u"20261121142305"), u"1423Z");
    EXPECT_EQ(FormatUtcTime(u"20261121000000"), u"0000Z");
    EXPECT_EQ(FormatUtcTime(u"2026112114230"), u"-");
    EXPECT_EQ(FormatUtcTime(u"20261121256000"), u"-");
    EXPECT_EQ(FormatUtcTime(u""), u"-");
}

TEST(OnlineTime, WholeMinutesFromLogonToTheDataTime) {
    const struct {
        const char16_t *logon, *update;
        const char16_t* expected;
    } rows[] = {
        {u"20261121121800", u"20261121142305", u"2h 05m"},
        {u"20261121142305", u"20261121142305", u"0h 00m"},
        {u"20261121142306", u"20261121142305", u"0h 00m"},
        {u"20261121142206", u"20261121142305", u"0h 00m"},
        {u"20261121142205", u"20261121142305", u"0h 01m"},
        {u"20261120230000", u"20261121010000", u"2h 00m"},
        {u"20261101000000", u"20261121015959", u"481h 59m"},
        {u"20240228235900", u"20240301000100", u"24h 02m"},
        {u"", u"20261121142305", u"-"},
        {u"20261121121800", u"garbage", u"-"},
        {u"20261321121800", u"20261121142305", u"-"},
        {u"2026112112180x", u"20261121142305", u"-"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(QString::fromUtf16(row.logon).toStdString());
        EXPECT_EQ(OnlineTime(QStringView(row.logon), QStringView(row.update)),
                  QString::fromUtf16(row.expected));
    }
}

TEST(ReportedText, TheAgeInSecondsThenMinutes) {
    const QDateTime now(QDate(2026, 11, 21), QTime(14, 23, 5), QTimeZone::utc());
    const struct {
        const char16_t *stamp, *expected;
    } rows[] = {
        {u"20261121142253", u"Reported 12 s ago at N50°30.0' W000°27.0'"},
        {u"20261121142106", u"Reported 119 s ago at N50°30.0' W000°27.0'"},
        {u"20261121141805", u"Reported 5 min ago at N50°30.0' W000°27.0'"},
        {u"20261121142306", u"Reported 0 s ago at N50°30.0' W000°27.0'"}, // after now
        {u"2026112114230x", u"Reported at N50°30.0' W000°27.0'"},
    };
    for (const auto& row : rows)
        EXPECT_EQ(ReportedText(50.5f, -0.45f, QStringView(row.stamp), now), QString::fromUtf16(row.expected));
}

} // namespace
} // namespace sky::geo
