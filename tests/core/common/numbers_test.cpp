#include "common/numbers.h"

#include <cmath>
#include <limits>

#include <gtest/gtest.h>

namespace sky {
namespace {

struct NumberRow {
    const char16_t* text;
    double expected;
};

TEST(LeadingNumber, ReadsTheNumberAtTheStartAndIgnoresTheRest) {
    const NumberRow rows[] = {
        {u"", 0.0},        {u"7", 7.0},       {u"  7", 7.0},   {u"\t-3.25", -3.25}, {u".5", 0.5},
        {u"-.5", -0.5},    {u"0.1", 0.1},     {u"+5", 5.0},    {u"1e3", 1000.0},    {u"2.5E-1", 0.25},
        {u"1e+2x", 100.0}, {u"12e", 12.0},    {u"12e+", 12.0}, {u"12abc", 12.0},    {u"1.5.3", 1.5},
        {u"7 8", 7.0},     {u"1,5", 1.0},     {u"abc", 0.0},   {u"-", 0.0},         {u".", 0.0},
        {u"+.e5", 0.0},    {u"nan", 0.0},     {u"inf", 0.0},   {u"5.", 5.0},        {u"00042", 42.0},
        {u"1e-999", 0.0},  {u"-1e-999", 0.0},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(QString::fromUtf16(row.text).toStdString());
        EXPECT_EQ(LeadingNumber(QStringView(row.text)), row.expected);
    }
}

TEST(LeadingNumber, KeepsTheSignOfZeroAndNeverOverflowsToInfinity) {
    EXPECT_TRUE(std::signbit(LeadingNumber(u"-0")));
    EXPECT_EQ(LeadingNumber(u"1e999"), std::numeric_limits<double>::max());
    EXPECT_EQ(LeadingNumber(u"-1e999"), -std::numeric_limits<double>::max());
    const QString longDigits(400, u'9');
    EXPECT_EQ(LeadingNumber(longDigits), std::numeric_limits<double>::max());
}

TEST(IsWholeTextNumber, AcceptsOnlyANumberWithBlanksAround) {
    EXPECT_TRUE(IsWholeTextNumber(u" 12 "));
    EXPECT_TRUE(IsWholeTextNumber(u"-1e3"));
    EXPECT_FALSE(IsWholeTextNumber(u"12abc"));
    EXPECT_FALSE(IsWholeTextNumber(u""));
    EXPECT_FALSE(IsWholeTextNumber(u"1 2"));
}

TEST(RoundHalfEven, TiesGoToTheEvenNeighbour) {
    const NumberRow rows[] = {{u"0.5", 0.0},   {u"1.5", 2.0},    {u"2.5", 2.0},
                              {u"3.5", 4.0},   {u"-0.5", -0.0},  {u"-1.5", -2.0},
                              {u"-2.5", -2.0}, {u"2.4999", 2.0}, {u"2.5001", 3.0}};
    for (const auto& row : rows) {
        SCOPED_TRACE(QString::fromUtf16(row.text).toStdString());
        EXPECT_EQ(RoundHalfEven(LeadingNumber(QStringView(row.text))), row.expected);
    }
    EXPECT_EQ(RoundHalfEven(std::nan("")), 0.0);
}

TEST(Narrowing, RoundsHalfToEvenAndClampsToTheFieldInsteadOfOverflowing) {
    constexpr double kInf = std::numeric_limits<double>::infinity();
    const struct {
        double value;
        std::int16_t int16;
        std::int32_t int32;
    } rows[] = {
        {2.5, 2, 2},
        {-2.5, -2, -2},
        {32767.5, 32767, 32768},
        {-32768.5, -32768, -32768},
        {40000, 32767, 40000},
        {2147483647.5, 32767, std::numeric_limits<std::int32_t>::max()},
        {-3e9, -32768, std::numeric_limits<std::int32_t>::min()},
        {-kInf, -32768, std::numeric_limits<std::int32_t>::min()},
        {std::nan(""), 0, 0},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.value);
        EXPECT_EQ(ToInt16(row.value), row.int16);
        EXPECT_EQ(ToInt32(row.value), row.int32);
    }
    EXPECT_EQ(ToSingle(0.1), 0.1f);
    EXPECT_EQ(ToSingle(-1e300), -std::numeric_limits<float>::max());
    EXPECT_EQ(ToSingle(std::nan("")), 0.0f);
}

TEST(ToBoolean, ZeroIsFalseOtherNumbersTrueWordsAcceptedTheRestFallsBack) {
    struct Row {
        const char16_t* text;
        bool whenFallbackFalse;
        bool whenFallbackTrue;
    };
    const Row rows[] = {
        {u"0", false, false},   {u"1", true, true},       {u"-1", true, true},      {u"2.5", true, true},
        {u"0.0", false, false}, {u"-0", false, false},    {u" 1 ", true, true},     {u"1e3", true, true},
        {u"True", true, true},  {u"FALSE", false, false}, {u" true ", true, true},  {u"yes", false, true},
        {u"", false, true},     {u"1abc", false, true},   {u"Truely", false, true},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(QString::fromUtf16(row.text).toStdString());
        EXPECT_EQ(ToBoolean(QStringView(row.text), false), row.whenFallbackFalse);
        EXPECT_EQ(ToBoolean(QStringView(row.text), true), row.whenFallbackTrue);
    }
}

TEST(ShortestDecimal, WritesTheShortestTextThatReadsBackTheSameValue) {
    EXPECT_EQ(ShortestDecimal(800.0f), u"800");
    EXPECT_EQ(ShortestDecimal(812.5f), u"812.5");
    EXPECT_EQ(ShortestDecimal(0.1f), u"0.1");
    EXPECT_EQ(ShortestDecimal(1001.0f / 15.0f), u"66.73333");
    EXPECT_EQ(ShortestDecimal(1001.0 / 15.0), u"66.73333333333333");
    EXPECT_EQ(ShortestDecimal(-12.0), u"-12");
    EXPECT_EQ(ShortestDecimal(1e20), u"1e+20");
    EXPECT_EQ(LeadingNumber(ShortestDecimal(1e20)), 1e20);
}

} // namespace
} // namespace sky
