#pragma once

#include <cstdint>

#include <QString>
#include <QStringView>

// The number conversions every parser of the program uses. They accept any text and never fail: what
// cannot be read is 0 or a documented default, and every narrowing conversion saturates instead of
// overflowing.
namespace sky {

// The leading number of a text, as a lenient reader takes it: blanks are skipped, then an optional
// sign, digits with an optional decimal point and an optional exponent ("1e3"). Anything after the
// number is ignored ("12abc" is 12); no number at all gives 0. Never NaN or infinite: an exponent
// beyond the range of a double gives the largest finite value of that sign.
double LeadingNumber(QStringView text);

// Like LeadingNumber, but true only when the whole text (blanks aside) is one number.
bool IsWholeTextNumber(QStringView text);

// Rounds to the nearest whole number, ties to the even neighbour (2.5 -> 2, 3.5 -> 4, -0.5 -> 0).
// NaN gives 0.
double RoundHalfEven(double value);

// Whole numbers for fixed-width fields: rounded half to even, then clamped to the type's range, so
// 40000 in a 16-bit field is 32767 and NaN is 0.
std::int16_t ToInt16(double value);
std::int32_t ToInt32(double value);

// A double narrowed to a single-precision field, clamped to the largest finite single.
float ToSingle(double value);

// The boolean reading of a settings value: "0" (or any text that is the number 0) is false, any
// other number true; the words True and False in any case are accepted. Anything else, the empty
// text included, cannot be read and gives fallback.
bool ToBoolean(QStringView text, bool fallback);

// The shortest decimal text that reads back as the same value ("800", "812.5", "1e+20").
QString ShortestDecimal(double value);
QString ShortestDecimal(float value);

} // namespace sky
