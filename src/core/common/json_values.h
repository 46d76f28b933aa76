#pragma once

#include <optional>

#include <QDateTime>
#include <QJsonValue>
#include <QString>

// Values of the networks' JSON services read the one way: lenient where a service may send a number
// as text or the other way round, strict where a wrong value would mislead.
namespace sky {

// A text of a JSON value: a string as sent (line breaks made blanks), a whole number as its digits, any
// other number in its shortest form; empty for anything else.
QString JsonText(const QJsonValue& value);

// A whole number within low to high, sent as a number or as a text of one; nullopt for anything else
// (a fraction, a number out of range, a word).
std::optional<qint64> JsonWhole(const QJsonValue& value, qint64 low, qint64 high);

// A time of a service in UTC: "YYYY-MM-DD HH:MM[:SS]", which the services define as UTC, or ISO 8601
// with a "T", any fraction of seconds and a zone ("Z", "+02:00"). A time with a "T" but no zone could
// be any zone's and is nullopt, as is anything else.
std::optional<QDateTime> ServiceTime(const QString& text);

} // namespace sky
