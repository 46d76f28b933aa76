#pragma once

#include <vector>

#include <QHash>
#include <QString>
#include <QStringView>

namespace sky {

// A radio navigation aid of data/navaids.dat: IDENT:TYPE:Latitude:Longitude:Name.
struct Navaid {
    QString Ident;
    QString Type;
    float Latitude = 0.0f;
    float Longitude = 0.0f;
    QString Name;
};

// The navaids by identifier; many share one ("TGO" is in Germany, China and Myanmar).
class Navaids {
public:
    // Reads navaids.dat of dataFolder; a missing file gives none.
    static Navaids Load(const QString& dataFolder);
    // Adds the navaids of a file's text; lines with too few fields are skipped.
    void Add(QStringView text);
    std::vector<const Navaid*> Find(QStringView ident) const;
    int Size() const { return int(m_navaids.size()); }

private:
    std::vector<Navaid> m_navaids;
    QHash<QString, std::vector<int>> m_byIdent;
};

} // namespace sky
