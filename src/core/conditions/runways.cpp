#include "conditions/runways.h"

#include <QRegularExpression>
#include <QSet>

using namespace Qt::StringLiterals;

namespace sky::conditions {
namespace {

enum class Use { Both, Arrival, Departure };

const QSet<QString>& ArrivalWords() {
    static const QSet<QString> words = {u"ARR"_s,     u"ARRIVAL"_s, u"ARRIVALS"_s, u"ARRIVING"_s,
                                        u"LANDING"_s, u"LDG"_s,     u"LAND"_s,     u"APPROACH"_s,
                                        u"APCH"_s,    u"APPR"_s,    u"EXPECT"_s,   u"INBOUND"_s};
    return words;
}

const QSet<QString>& DepartureWords() {
    static const QSet<QString> words = {u"DEP"_s,       u"DEPARTURE"_s, u"DEPARTURES"_s,
                                        u"DEPARTING"_s, u"TAKEOFF"_s,   u"TKOF"_s,
                                        u"TAKE"_s,      u"TAKE-OFF"_s,  u"OUTBOUND"_s};
    return words;
}

bool IsRunwayWord(const QString& word) {
    return word == u"RWY" || word == u"RWYS" || word == u"RUNWAY" || word == u"RUNWAYS";
}

// Words that may stand inside a list of runways without ending it.
bool Joins(const QString& word) {
    return word == u"AND" || word == u"&" || word == u"," || word == u"/" || word == u"IN" ||
           word == u"USE" || word == u"ACTIVE" || word == u"ARE" || word == u"IS" || word == u"FOR" ||
           word == u":";
}

// A runway's designator, "07L" for "7L" or "07L"; empty for anything else.
QString Designator(const QString& word) {
    static const QRegularExpression pattern(u"^(\\d{1,2})([LRC]?)$"_s);
    const QRegularExpressionMatch m = pattern.match(word);
    if (!m.hasMatch())
        return {};
    const int number = m.captured(1).toInt();
    if (number < 1 || number > 36)
        return {};
    return u"%1"_s.arg(number, 2, 10, QChar(u'0')) + m.captured(2);
}

// The words of a text, upper case, with commas, slashes and sentence ends as words of their own.
QStringList Words(const QString& text) {
    QString spaced = text.toUpper();
    spaced.replace(u"^\u00A7"_s, u" . "_s);
    static const QRegularExpression marks(u"([,/;.:&])"_s);
    spaced.replace(marks, u" \\1 "_s);
    static const QRegularExpression blanks(u"\\s+"_s);
    return spaced.split(blanks, Qt::SkipEmptyParts);
}

bool IsSentenceEnd(const QString& word) {
    return word == u"." || word == u";";
}

// A four-letter word that can be an ICAO code (no region starts with I, J, Q or X) and is none of the
// words an ATIS puts before "RWY" or "ATIS".
bool LooksLikeAirport(const QString& word) {
    static const QRegularExpression pattern(u"^[A-HK-PR-WYZ][A-Z]{3}$"_s);
    static const QSet<QString> words = {u"ATIS"_s, u"MAIN"_s, u"LEFT"_s, u"WIND"_s, u"CALL"_s, u"THIS"_s,
                                        u"WITH"_s, u"FROM"_s, u"ONLY"_s, u"NOTE"_s, u"SAME"_s, u"BOTH"_s,
                                        u"OPEN"_s, u"WEST"_s, u"EAST"_s, u"RWYS"_s, u"LAND"_s, u"TAKE"_s,
                                        u"TKOF"_s, u"APCH"_s, u"APPR"_s};
    return pattern.match(word).hasMatch() && !words.contains(word);
}

void Add(QStringList& list, const QString& runway) {
    if (!list.contains(runway))
        list.append(runway);
}

} // namespace

RunwaysInUse ParseRunways(const QString& atisText, const QString& airport) {
    RunwaysInUse found;
    const QStringList words = Words(atisText);
    const QString own = airport.toUpper();
    Use use = Use::Both; // what the words before a list said
    QStringList pending; // the list being read
    bool listing = false;
    bool elsewhere = false; // the text speaks of another airport
    const auto flush = [&](Use of) {
        for (const QString& runway : pending) {
            if (of != Use::Departure)
                Add(found.Arrival, runway);
            if (of != Use::Arrival)
                Add(found.Departure, runway);
        }
        pending.clear();
        listing = false;
    };
    const auto useOf = [](const QString& word) {
        return ArrivalWords().contains(word) ? Use::Arrival
                                             : (DepartureWords().contains(word) ? Use::Departure : Use::Both);
    };
    for (qsizetype i = 0; i < words.size(); ++i) {
        const QString& word = words[i];
        const QString next = i + 1 < words.size() ? words[i + 1] : QString();
        // "RWY 27L FOR LANDING": the list is for what follows.
        if (listing && word == u"FOR" && useOf(next) != Use::Both) {
            flush(useOf(next));
            ++i;
            continue;
        }
        if (IsSentenceEnd(word)) {
            flush(use);
            use = Use::Both;
            continue;
        }
        // "EDDS RWY 07", "EDDS ATIS": what follows is of that airport ("INFORMATION KILO RWY 34" not).
        const QString before = i > 0 ? words[i - 1] : QString();
        const bool letter = before == u"INFORMATION" || before == u"INFO" || before == u"ATIS";
        if (!letter && LooksLikeAirport(word) &&
            (IsRunwayWord(next) || next == u"ATIS" || next == u"INFORMATION")) {
            flush(use);
            elsewhere = word != own;
            continue;
        }
        if (useOf(word) != Use::Both) {
            flush(use);
            use = useOf(word);
            continue;
        }
        if (IsRunwayWord(word)) {
            flush(use);
            listing = true;
            continue;
        }
        if (!listing)
            continue;
        const QString runway = Designator(word);
        if (runway.isEmpty()) {
            if (!Joins(word))
                flush(use);
            continue;
        }
        if (!elsewhere && next != u"CLOSED" && next != u"CLSD")
            pending.append(runway);
    }
    flush(use);
    return found;
}

QString AtisLetter(const QString& atisText) {
    static const QStringList phonetic = {
        u"ALPHA"_s,  u"BRAVO"_s,   u"CHARLIE"_s, u"DELTA"_s,  u"ECHO"_s,   u"FOXTROT"_s, u"GOLF"_s,
        u"HOTEL"_s,  u"INDIA"_s,   u"JULIET"_s,  u"KILO"_s,   u"LIMA"_s,   u"MIKE"_s,    u"NOVEMBER"_s,
        u"OSCAR"_s,  u"PAPA"_s,    u"QUEBEC"_s,  u"ROMEO"_s,  u"SIERRA"_s, u"TANGO"_s,   u"UNIFORM"_s,
        u"VICTOR"_s, u"WHISKEY"_s, u"XRAY"_s,    u"YANKEE"_s, u"ZULU"_s};
    const QStringList words = Words(atisText);
    for (qsizetype i = 0; i + 1 < words.size(); ++i) {
        const QString& word = words[i];
        if (word != u"INFORMATION" && word != u"INFO" && word != u"ATIS")
            continue;
        QString letter = words[i + 1];
        if (letter == u"INFO" || letter == u"INFORMATION")
            continue; // "ATIS INFO D": the letter follows the next word
        if (phonetic.contains(letter) || letter == u"WHISKY" || letter == u"X-RAY")
            letter = letter.left(1);
        if (letter.size() == 1 && letter[0].isLetter())
            return letter;
    }
    return {};
}

QString RunwaysText(const RunwaysInUse& r, RunwayWords words) {
    if (r.Arrival == r.Departure)
        return r.Arrival.join(u' ');
    const bool brief = words == RunwayWords::Short;
    QStringList parts;
    if (!r.Arrival.isEmpty())
        parts.append((brief ? u"arr "_s : u"arrival "_s) + r.Arrival.join(u' '));
    if (!r.Departure.isEmpty())
        parts.append((brief ? u"dep "_s : u"departure "_s) + r.Departure.join(u' '));
    return parts.join(u", "_s);
}

QString RunwaysLine(const network::NetworkData& data, const QString& airport) {
    const RunwaysInUse runways = AtisOf(data, airport).Runways;
    return runways.IsEmpty() ? QString() : u"Runways: "_s + RunwaysText(runways, RunwayWords::Short);
}

AirportAtis AtisOf(const network::NetworkData& data, const QString& airport) {
    AirportAtis atis;
    const QString prefix = airport.toUpper() + u'_';
    std::vector<const network::ControllerRecord*> stations;
    bool anyAtis = false;
    for (int slot = 1; slot <= data.ControllerCount; ++slot) {
        const network::ControllerRecord& c = data.Controllers[size_t(slot)];
        if (!c.Callsign.startsWith(prefix) || c.AtisMessage.trimmed().isEmpty())
            continue;
        stations.push_back(&c);
        anyAtis = anyAtis || c.Callsign.endsWith(u"ATIS");
    }
    for (const network::ControllerRecord* c : stations) {
        if (anyAtis && !c->Callsign.endsWith(u"ATIS"))
            continue;
        atis.Online = true;
        if (atis.Letter.isEmpty())
            atis.Letter = AtisLetter(c->AtisMessage);
        const RunwaysInUse found = ParseRunways(c->AtisMessage, airport);
        const bool departureAtis = c->Callsign.endsWith(u"_D_ATIS"),
                   arrivalAtis = c->Callsign.endsWith(u"_A_ATIS");
        for (const QString& runway : found.Arrival)
            if (!departureAtis || !found.Departure.contains(runway))
                Add(atis.Runways.Arrival, runway);
        for (const QString& runway : found.Departure)
            if (!arrivalAtis || !found.Arrival.contains(runway))
                Add(atis.Runways.Departure, runway);
    }
    return atis;
}

} // namespace sky::conditions
