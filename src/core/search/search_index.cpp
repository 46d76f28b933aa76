#include "search/search_index.h"

#include <algorithm>

#include "app/friend_names.h"
#include "refdata/reference_data.h"
#include "search/text_fold.h"

using namespace Qt::StringLiterals;

namespace sky::search {
namespace {

// How well an entry matches, smaller is better; kNone not at all.
enum Rank { kExact, kPrefix, kOtherExact, kCodePrefix, kWholeWords, kWordPrefixes, kInside, kNone };

// True when every word typed begins some word of the entry's folded text; whole tells whether they all
// are whole words.
bool WordsMatch(const QStringList& typed, QStringView folded, bool& whole) {
    whole = true;
    for (const QString& t : typed) {
        bool found = false, exact = false;
        for (qsizetype at = folded.indexOf(t); at >= 0; at = folded.indexOf(t, at + 1)) {
            if (at > 0 && folded[at - 1] != u' ')
                continue; // inside a word
            found = true;
            const qsizetype end = at + t.size();
            exact = exact || end == folded.size() || folded[end] == u' ';
        }
        if (!found)
            return false;
        whole = whole && exact;
    }
    return !typed.isEmpty();
}

// A callsign or code as compared: folded, without the blanks its "_" and "-" became ("eddftwr").
QString CodeKey(const QString& code) {
    return Fold(code).remove(u' ');
}

} // namespace

void SearchIndex::SetPlaces(const ReferenceData& reference) {
    m_places.clear();
    m_places.reserve(size_t(reference.Airports().size() + reference.FirCentres().size()));
    for (const Airport& a : reference.Airports()) {
        SearchResult r{ResultKind::Airport,
                       {},
                       a.Icao,
                       a.Icao + u"  "_s + a.Name + (a.City.isEmpty() ? QString() : u", "_s + a.City) +
                           (a.Iata.isEmpty() ? QString() : u" ("_s + a.Iata + u')'),
                       -1,
                       a.Latitude,
                       a.Longitude};
        m_places.push_back({r, CodeKey(a.Icao), CodeKey(a.Iata), Fold(a.Name + u' ' + a.City)});
    }
    for (const FirCentre& f : reference.FirCentres()) {
        SearchResult r{
            ResultKind::Fir, {},         f.Identifier, f.Identifier + u"  "_s + f.Name + u" (FIR)"_s, -1,
            f.Latitude,      f.Longitude};
        m_places.push_back({r, CodeKey(f.Identifier), QString(), Fold(f.Name)});
    }
}

void SearchIndex::SetClients(const network::ClientTables& tables, const std::vector<int>& networks,
                             const filter::Visibility& shown, const KeyedLines* names) {
    const auto person = [&](const QString& realName, const QString& vid) {
        return names ? NamedPerson(realName, names->Value(vid)) : realName;
    };
    m_clients.clear();
    m_busyAirports.clear();
    for (int n : networks) {
        const network::NetworkData& data = tables[size_t(n)];
        for (int slot = 1; slot <= data.ControllerCount; ++slot) {
            const network::ControllerRecord& c = data.Controllers[size_t(slot)];
            if (!shown.Shows(c))
                continue;
            const QString name = person(c.RealName, c.VID);
            SearchResult r{ResultKind::Client,
                           {n, false, slot},
                           c.Callsign,
                           c.Callsign + u"  "_s + name +
                               (c.Frequency.isEmpty() ? QString() : u"  "_s + c.Frequency),
                           n,
                           c.DisplayLatitude,
                           c.DisplayLongitude};
            m_clients.push_back({r, CodeKey(c.Callsign), CodeKey(c.VID), Fold(name)});
        }
        for (int slot = 1; slot <= data.PilotCount; ++slot) {
            const network::PilotRecord& p = data.Pilots[size_t(slot)];
            if (!shown.Shows(p))
                continue;
            const QString name = person(p.RealName, p.VID);
            const QString route =
                p.DestAirport.isEmpty() ? QString() : u"  "_s + p.DepAirport + u'-' + p.DestAirport;
            SearchResult r{
                ResultKind::Client, {n, true, slot}, p.Callsign, p.Callsign + u"  "_s + name + route, n,
                p.Latitude,         p.Longitude};
            m_clients.push_back({r, CodeKey(p.Callsign), CodeKey(p.VID), Fold(name)});
            m_busyAirports.insert(p.DepAirport.toUpper());
            m_busyAirports.insert(p.DestAirport.toUpper());
        }
    }
}

void SearchIndex::SetPrefiles(const std::vector<network::Prefile>& prefiles, const ReferenceData& reference) {
    m_prefiles.clear();
    for (const network::Prefile& f : prefiles) {
        const Airport* departure = reference.FindAirport(f.Departure);
        SearchResult r{ResultKind::Prefile,
                       {},
                       f.Callsign,
                       f.Callsign + u"  "_s + f.Name + u"  "_s + f.Departure + u'-' + f.Arrival +
                           u"  prefiled"_s,
                       1,
                       departure ? departure->Latitude : 0.0f,
                       departure ? departure->Longitude : 0.0f};
        m_prefiles.push_back({r, CodeKey(f.Callsign), CodeKey(f.Member), Fold(f.Name)});
    }
}

std::vector<SearchResult> SearchIndex::Find(const QString& query, int limit) const {
    const QString typed = Fold(query);
    if (typed.isEmpty() || limit <= 0)
        return {};
    const QStringList typedWords = Words(typed);
    const QString joined = QString(typed).remove(u' ');
    struct Hit {
        int Rank;
        bool Idle;
        const Entry* Item;
    };
    std::vector<Hit> hits;
    const auto rate = [&](const Entry& e) {
        bool whole = false;
        const bool flight = e.Result.Kind == ResultKind::Client || e.Result.Kind == ResultKind::Prefile;
        if (e.Key == joined)
            return kExact;
        if (!e.OtherKey.isEmpty() && e.OtherKey == joined)
            return kOtherExact;
        if (e.Key.startsWith(joined))
            return flight ? kPrefix : kCodePrefix;
        if (joined.size() >= 3 && !e.OtherKey.isEmpty() && e.OtherKey.startsWith(joined))
            return kCodePrefix;
        if (WordsMatch(typedWords, e.Folded, whole))
            return whole ? kWholeWords : kWordPrefixes;
        if (joined.size() >= 2 && flight && e.Key.contains(joined))
            return kInside;
        return kNone;
    };
    for (const auto* list : {&m_clients, &m_prefiles, &m_places}) {
        for (const Entry& e : *list) {
            const int rank = rate(e);
            if (rank != kNone)
                hits.push_back(
                    {rank, e.Result.Kind == ResultKind::Airport && !m_busyAirports.contains(e.Result.Code),
                     &e});
        }
    }
    const auto better = [](const Hit& a, const Hit& b) {
        if (a.Rank != b.Rank)
            return a.Rank < b.Rank;
        if (a.Idle != b.Idle)
            return !a.Idle;
        if (a.Item->Result.Text.size() != b.Item->Result.Text.size())
            return a.Item->Result.Text.size() < b.Item->Result.Text.size();
        return a.Item->Result.Text < b.Item->Result.Text;
    };
    const size_t count = std::min(hits.size(), size_t(limit));
    std::partial_sort(hits.begin(), hits.begin() + std::ptrdiff_t(count), hits.end(), better);
    std::vector<SearchResult> results;
    for (size_t i = 0; i < count; ++i)
        results.push_back(hits[i].Item->Result);
    return results;
}

} // namespace sky::search
