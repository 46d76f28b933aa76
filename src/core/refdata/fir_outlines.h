#pragma once

#include <vector>

#include <QHash>
#include <QString>
#include <QStringList>
#include <QStringView>

#include "geo/geodesy.h"

namespace sky {

// One FIR outline of firdisplay.dat or firdisplay.sup: its rings of points and the identifiers of
// firlist.dat that are drawn with it.
struct FirOutline {
    QString BoundaryId;
    bool Oceanic = false;
    QStringList Identifiers;
    std::vector<std::vector<geo::LatLon>> Rings;
};

class FirOutlines {
public:
    // Reads firdisplay.dat and firdisplay.sup from dataFolder; missing files give no outlines.
    static FirOutlines Load(const QString& dataFolder);
    // Adds the outlines of one file's text; lines that fit no outline are skipped.
    void Add(QStringView text);

    // The outlines drawn for a station identifier (a FIR code or callsign prefix, case ignored); for an
    // oceanic identifier ("..._O") only the oceanic ones where the FIR has both.
    std::vector<const FirOutline*> ForIdentifier(QStringView identifier) const;
    const std::vector<FirOutline>& All() const { return m_outlines; }

private:
    std::vector<FirOutline> m_outlines;
    QHash<QString, std::vector<int>> m_byIdentifier;
};

} // namespace sky
