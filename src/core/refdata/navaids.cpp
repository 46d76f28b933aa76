#include "refdata/navaids.h"

#include <QDir>

#include "common/file_io.h"
#include "common/numbers.h"
#include "common/text_codec.h"

using namespace Qt::StringLiterals;

namespace sky {

Navaids Navaids::Load(const QString& dataFolder) {
    Navaids navaids;
    if (const auto bytes = ReadWholeFile(QDir(dataFolder).filePath(u"navaids.dat"_s)))
        navaids.Add(DecodeText(*bytes).Text);
    return navaids;
}

void Navaids::Add(QStringView text) {
    for (QStringView line : text.tokenize(u'\n', Qt::SkipEmptyParts)) {
        const auto fields = line.trimmed().split(u':');
        if (fields.size() < 4 || fields[0].isEmpty())
            continue;
        m_navaids.push_back({fields[0].toString().toUpper(), fields[1].toString(),
                             ToSingle(LeadingNumber(fields[2])), ToSingle(LeadingNumber(fields[3])),
                             fields.size() > 4 ? fields[4].toString() : QString()});
        m_byIdent[m_navaids.back().Ident].push_back(int(m_navaids.size()) - 1);
    }
}

std::vector<const Navaid*> Navaids::Find(QStringView ident) const {
    std::vector<const Navaid*> found;
    const auto it = m_byIdent.constFind(ident.toString().toUpper());
    if (it != m_byIdent.cend())
        for (int index : *it)
            found.push_back(&m_navaids[size_t(index)]);
    return found;
}

} // namespace sky
