#include "common/numbers.h"

#include <charconv>
#include <cmath>
#include <limits>
#include <string>
#include <string_view>

namespace sky {
namespace {

bool IsBlank(QChar c) {
    return c == u' ' || c == u'\t' || c == u'\r' || c == u'\n';
}
bool IsDigit(QChar c) {
    return c >= u'0' && c <= u'9';
}

qsizetype SkipBlanks(QStringView text, qsizetype pos) {
    while (pos < text.size() && IsBlank(text[pos]))
        ++pos;
    return pos;
}

// Finds the extent of the number at the start of text (after blanks): [begin, end). Returns false
// when there is no digit, so "-" or "." alone are not numbers.
bool ScanNumber(QStringView text, qsizetype& begin, qsizetype& end) {
    qsizetype pos = SkipBlanks(text, 0);
    begin = pos;
    if (pos < text.size() && (text[pos] == u'+' || text[pos] == u'-'))
        ++pos;
    qsizetype digits = 0;
    while (pos < text.size() && IsDigit(text[pos])) {
        ++pos;
        ++digits;
    }
    if (pos < text.size() && text[pos] == u'.') {
        ++pos;
        while (pos < text.size() && IsDigit(text[pos])) {
            ++pos;
            ++digits;
        }
    }
    if (digits == 0)
        return false;
    // An exponent counts only when digits follow it: "12e" is 12.
    if (pos < text.size() && (text[pos] == u'e' || text[pos] == u'E')) {
        qsizetype exp = pos + 1;
        if (exp < text.size() && (text[exp] == u'+' || text[exp] == u'-'))
            ++exp;
        if (exp < text.size() && IsDigit(text[exp])) {
            while (exp < text.size() && IsDigit(text[exp]))
                ++exp;
            pos = exp;
        }
    }
    end = pos;
    return true;
}

double ParseScanned(QStringView number) {
    // Numbers in the networks' files are short; a longer one still reads, through the heap.
    char stackBuffer[64];
    std::string heapBuffer;
    char* ascii = stackBuffer;
    if (number.size() > qsizetype(sizeof stackBuffer)) {
        heapBuffer.resize(size_t(number.size()));
        ascii = heapBuffer.data();
    }
    for (qsizetype i = 0; i < number.size(); ++i)
        ascii[i] = static_cast<char>(number[i].unicode());
    const char* first = ascii;
    const char* last = ascii + number.size();
    const bool negative = *first == '-';
    // from_chars does not take a leading plus sign, and takes the minus itself.
    if (*first == '+')
        ++first;
    double value = 0.0;
    const auto result = std::from_chars(first, last, value, std::chars_format::general);
    if (result.ec == std::errc::result_out_of_range) {
        // Too large saturates; too small is zero. Which one it is shows in the exponent's sign.
        const std::string_view text(ascii, size_t(number.size()));
        const bool tiny =
            text.find("e-") != std::string_view::npos || text.find("E-") != std::string_view::npos;
        if (tiny)
            return negative ? -0.0 : 0.0;
        return negative ? -std::numeric_limits<double>::max() : std::numeric_limits<double>::max();
    }
    if (result.ec != std::errc())
        return 0.0;
    return value;
}

template <typename Int> Int ToInteger(double value) {
    if (std::isnan(value))
        return 0;
    const double rounded = RoundHalfEven(value);
    if (rounded <= static_cast<double>(std::numeric_limits<Int>::min()))
        return std::numeric_limits<Int>::min();
    if (rounded >= static_cast<double>(std::numeric_limits<Int>::max()))
        return std::numeric_limits<Int>::max();
    return static_cast<Int>(rounded);
}

template <typename Float> QString ToShortest(Float value) {
    char buffer[64];
    const auto result = std::to_chars(buffer, buffer + sizeof buffer, value);
    return QString::fromLatin1(buffer, result.ptr - buffer);
}

} // namespace

double LeadingNumber(QStringView text) {
    qsizetype begin = 0;
    qsizetype end = 0;
    if (!ScanNumber(text, begin, end))
        return 0.0;
    return ParseScanned(text.sliced(begin, end - begin));
}

bool IsWholeTextNumber(QStringView text) {
    qsizetype begin = 0;
    qsizetype end = 0;
    if (!ScanNumber(text, begin, end))
        return false;
    return SkipBlanks(text, end) == text.size();
}

double RoundHalfEven(double value) {
    if (std::isnan(value))
        return 0.0;
    // nearbyint follows the current rounding mode, which is round-to-nearest-even unless someone
    // changed it; this program never does.
    return std::nearbyint(value);
}

std::int16_t ToInt16(double value) {
    return ToInteger<std::int16_t>(value);
}

std::int32_t ToInt32(double value) {
    return ToInteger<std::int32_t>(value);
}

float ToSingle(double value) {
    constexpr double kMax = std::numeric_limits<float>::max();
    if (std::isnan(value))
        return 0.0f;
    if (value > kMax)
        return std::numeric_limits<float>::max();
    if (value < -kMax)
        return -std::numeric_limits<float>::max();
    return static_cast<float>(value);
}

bool ToBoolean(QStringView text, bool fallback) {
    const QStringView trimmed = text.trimmed();
    if (trimmed.compare(u"true", Qt::CaseInsensitive) == 0)
        return true;
    if (trimmed.compare(u"false", Qt::CaseInsensitive) == 0)
        return false;
    if (!IsWholeTextNumber(trimmed))
        return fallback;
    return LeadingNumber(trimmed) != 0.0;
}

QString ShortestDecimal(double value) {
    return ToShortest(value);
}

QString ShortestDecimal(float value) {
    return ToShortest(value);
}

} // namespace sky
