#include "app/colour_theme.h"

#include <optional>

#include <QDir>

#include "app/ini_file.h"

using namespace Qt::StringLiterals;

namespace sky {
namespace {

std::optional<int> HexByte(QStringView digits) {
    if (digits.isEmpty() || digits.size() > 2)
        return std::nullopt;
    int value = 0;
    for (QChar c : digits) {
        const char16_t u = c.unicode();
        int digit = -1;
        if (u >= u'0' && u <= u'9')
            digit = u - u'0';
        else if (u >= u'a' && u <= u'f')
            digit = u - u'a' + 10;
        else if (u >= u'A' && u <= u'F')
            digit = u - u'A' + 10;
        if (digit < 0)
            return std::nullopt;
        value = value * 16 + digit;
    }
    return value;
}

void Store(QStringView digits, float& component) {
    if (const auto value = HexByte(digits))
        component = static_cast<float>(*value / 255.0);
}

ColourTable ReadTheme(const IniFile& ini) {
    ColourTable table;
    for (const ThemeKey& key : ThemeKeys())
        ParseColour(ini.Value(key.Section, key.Key, key.Default.toString()), key.Slot, table);
    return table;
}

} // namespace

const std::array<ThemeKey, ColourTable::kSlots>& ThemeKeys() {
    static const std::array<ThemeKey, ColourTable::kSlots> keys = {{
        {u"Screen", u"ScreenBackground", u"10103A", kSlotScreenBackground},
        {u"Screen", u"ScreenBorder", u"FFFFFF", kSlotScreenBorder},
        {u"Screen", u"WindowBackground", u"000000", kSlotWindowBackground},
        {u"Screen", u"WindowShading", u"6D8CBA", kSlotWindowShading},
        {u"Screen", u"IVAO", u"288DFF", kSlotIVAO},
        {u"Screen", u"VATSIM", u"00FF4E", kSlotVATSIM},
        {u"Geo", u"GlobeEquator", u"11112D", kSlotGlobeEquator},
        {u"Geo", u"GlobePoles", u"0D0D22", kSlotGlobePoles},
        {u"Geo", u"GridEquator", u"404A49", kSlotGridEquator},
        {u"Geo", u"GridPoles", u"1E1E4F", kSlotGridPoles},
        {u"Geo", u"CoastEquator", u"455389", kSlotCoastEquator},
        {u"Geo", u"CoastPoles", u"3E6582", kSlotCoastPoles},
        {u"Geo", u"CountryBorders", u"3D4974", kSlotCountryBorders},
        {u"Geo", u"Airports", u"616974", kSlotAirports},
        {u"Geo", u"Highlight", u"FFFF1F", kSlotHighlight},
        {u"ATC", u"ATCLabel", u"00FF4E", kSlotATCLabel},
        {u"ATC", u"CTRFill", u"10254E", kSlotCTRFill},
        {u"ATC", u"CTRBorder", u"2E5381", kSlotCTRBorder},
        {u"ATC", u"APPFillCenter", u"143421", kSlotAPPFillCenter},
        {u"ATC", u"APPFillOut", u"1D492F", kSlotAPPFillOut},
        {u"ATC", u"APPBorder", u"307E50", kSlotAPPBorder},
        {u"ATC", u"TWRFillCenter", u"143421", kSlotTWRFillCenter},
        {u"ATC", u"TWRFillOut", u"1D492F", kSlotTWRFillOut},
        {u"ATC", u"TWRBorder", u"307E50", kSlotTWRBorder},
        {u"PLANES", u"PlaneLabel", u"FFFF9C", kSlotPlaneLabel},
        {u"PLANES", u"PlaneFill", u"323274", kSlotPlaneFill},
        {u"PLANES", u"PlaneBorder", u"FFFF2A", kSlotPlaneBorder},
        // Our own, after the classic ones.
        {u"Geo", u"Land", u"1D2238", kSlotLand},
    }};
    return keys;
}

void ParseColour(QStringView text, int slot, ColourTable& table) {
    if (slot < 0 || slot >= ColourTable::kSlots)
        return;
    Store(text.first(std::min<qsizetype>(2, text.size())), table.Red[slot]);
    Store(text.size() > 2 ? text.sliced(2, std::min<qsizetype>(2, text.size() - 2)) : QStringView(),
          table.Green[slot]);
    Store(text.last(std::min<qsizetype>(2, text.size())), table.Blue[slot]);
}

ColourTable LoadColourTheme(const QString& home, const QString& themeName) {
    return ReadTheme(IniFile::Load(QDir(home).filePath(u"colours/"_s + themeName)));
}

ColourTable DefaultColourTable() {
    return ReadTheme(IniFile());
}

} // namespace sky
