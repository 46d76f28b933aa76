#include "refdata/reference_data.h"

#include <QDir>

#include "common/file_io.h"
#include "common/numbers.h"
#include "common/text_codec.h"

using namespace Qt::StringLiterals;

namespace sky {
namespace {

QString Key(QStringView code) {
    return code.trimmed().toString().toUpper();
}

// The key to look a code up by. Codes nearly always arrive trimmed and in capitals; those are looked
// up in place, without a copy.
QString LookupKey(QStringView code) {
    for (QChar c : code) {
        if (c.isLower() || c.isSpace())
            return Key(code);
    }
    return QString::fromRawData(code.data(), code.size());
}

template <typename Handler> void ForEachLine(QStringView text, Handler handle) {
    for (QStringView line : text.tokenize(u'\n', Qt::SkipEmptyParts)) {
        line = line.trimmed();
        if (!line.isEmpty())
            handle(line);
    }
}

QString ReadText(const QString& path) {
    const auto bytes = ReadWholeFile(path);
    return bytes ? DecodeText(*bytes).Text : QString();
}

} // namespace

ReferenceData ReferenceData::Load(const QString& dataFolder) {
    ReferenceData data;
    const QDir folder(dataFolder);
    data.AddAirports(ReadText(folder.filePath(u"airports.dat"_s)));
    data.AddFirCentres(ReadText(folder.filePath(u"firlist.dat"_s)));
    return data;
}

void ReferenceData::AddAirports(QStringView text) {
    m_airports.reserve(m_airports.size() + text.count(u'\n') + 1);
    ForEachLine(text, [&](QStringView line) {
        const auto fields = line.split(u':');
        if (fields.size() < 6 || fields[0].isEmpty())
            return;
        Airport airport{fields[0].toString(),
                        fields[1].toString(),
                        fields[2].toString(),
                        fields[3].toString(),
                        fields[4].toString(),
                        fields[5].toString(),
                        ToSingle(LeadingNumber(fields[4])),
                        ToSingle(LeadingNumber(fields[5])),
                        fields.size() > 6 ? fields[6].toString() : QString()};
        const QString key = Key(fields[0]);
        if (!m_airports.contains(key))
            m_airports.insert(key, std::move(airport));
    });
}

void ReferenceData::AddFirCentres(QStringView text) {
    ForEachLine(text, [&](QStringView line) {
        const auto fields = line.split(u':');
        if (fields.size() < 4 || fields[0].isEmpty())
            return;
        FirCentre centre{fields[0].toString(), fields[1].toString(),
                         fields.size() > 4 ? fields[4].toString() : QString(),
                         ToSingle(LeadingNumber(fields[2])), ToSingle(LeadingNumber(fields[3]))};
        const QString key = Key(fields[0]);
        if (!m_firCentres.contains(key))
            m_firCentres.insert(key, std::move(centre));
    });
}

const Airport* ReferenceData::FindAirport(QStringView code) const {
    const auto it = m_airports.constFind(LookupKey(code));
    return it == m_airports.cend() ? nullptr : &*it;
}

const FirCentre* ReferenceData::FindFirCentre(QStringView identifier) const {
    const auto it = m_firCentres.constFind(LookupKey(identifier));
    return it == m_firCentres.cend() ? nullptr : &*it;
}

QString ReferenceData::AirportPosition(QStringView code) const {
    const Airport* airport = FindAirport(code);
    return airport ? airport->LatitudeText + u':' + airport->LongitudeText : u"0:0"_s;
}

} // namespace sky
