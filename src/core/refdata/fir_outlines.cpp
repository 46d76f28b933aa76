#include "refdata/fir_outlines.h"

#include <algorithm>

#include <QDir>

#include "common/file_io.h"
#include "common/numbers.h"
#include "common/text_codec.h"

using namespace Qt::StringLiterals;

namespace sky {

FirOutlines FirOutlines::Load(const QString& dataFolder) {
    FirOutlines outlines;
    for (const QString& name : {u"firdisplay.dat"_s, u"firdisplay.sup"_s}) {
        if (const auto bytes = ReadWholeFile(QDir(dataFolder).filePath(name)))
            outlines.Add(DecodeText(*bytes).Text);
    }
    return outlines;
}

void FirOutlines::Add(QStringView text) {
    FirOutline* current = nullptr;
    const auto finish = [&] {
        if (!current)
            return;
        // An outline needs at least one ring of three points to be drawn.
        std::erase_if(current->Rings, [](const auto& ring) { return ring.size() < 3; });
        if (current->Rings.empty()) {
            m_outlines.pop_back();
        } else {
            const int index = int(m_outlines.size() - 1);
            QStringList keys = current->Identifiers;
            keys.append(current->BoundaryId);
            for (QString& key : keys)
                key = key.toUpper();
            keys.removeDuplicates();
            for (const QString& key : keys)
                m_byIdentifier[key].push_back(index);
        }
        current = nullptr;
    };
    for (QStringView line : text.tokenize(u'\n', Qt::SkipEmptyParts)) {
        line = line.trimmed();
        if (line.startsWith(u"B:")) {
            finish();
            const auto fields = line.split(u':');
            FirOutline outline;
            outline.BoundaryId = fields.value(1).toString();
            outline.Oceanic = fields.value(2) == u"1";
            for (QStringView identifier : fields.value(3).split(u',', Qt::SkipEmptyParts))
                outline.Identifiers.append(identifier.toString());
            m_outlines.push_back(std::move(outline));
            current = &m_outlines.back();
        } else if (line == u"R") {
            if (current)
                current->Rings.emplace_back();
        } else if (current && !current->Rings.empty()) {
            const qsizetype colon = line.indexOf(u':');
            if (colon > 0)
                current->Rings.back().push_back({ToSingle(LeadingNumber(line.first(colon))),
                                                 ToSingle(LeadingNumber(line.sliced(colon + 1)))});
        }
    }
    finish();
}

std::vector<const FirOutline*> FirOutlines::ForIdentifier(QStringView identifier) const {
    std::vector<const FirOutline*> found;
    const auto it = m_byIdentifier.constFind(identifier.toString().toUpper());
    if (it == m_byIdentifier.cend())
        return found;
    for (int index : *it)
        found.push_back(&m_outlines[size_t(index)]);
    // An oceanic station is drawn with the oceanic part of a FIR that has both.
    const bool anyOceanic =
        std::any_of(found.begin(), found.end(), [](const FirOutline* o) { return o->Oceanic; });
    if (identifier.endsWith(u"_O", Qt::CaseInsensitive) && anyOceanic)
        std::erase_if(found, [](const FirOutline* o) { return !o->Oceanic; });
    return found;
}

} // namespace sky
