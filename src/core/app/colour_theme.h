#pragma once

#include <array>

#include <QString>
#include <QStringView>

namespace sky {

// The theme colours by slot, as fractions from 0 to 1: the 27 of the classic themes, then those of our
// own. Slots 0 and 1 are the two networks' own colours, so the colour of network n is slot n.
struct ColourTable {
    static constexpr int kSlots = 28;
    std::array<float, kSlots> Red{};
    std::array<float, kSlots> Green{};
    std::array<float, kSlots> Blue{};
};

// The colour slots by name.
enum ColourSlot : int {
    kSlotIVAO = 0,
    kSlotVATSIM = 1,
    kSlotScreenBackground = 2,
    kSlotScreenBorder = 3,
    kSlotWindowBackground = 4,
    kSlotWindowShading = 5,
    kSlotGlobePoles = 6,
    kSlotGlobeEquator = 7,
    kSlotGridPoles = 8,
    kSlotGridEquator = 9,
    kSlotCoastPoles = 10,
    kSlotCoastEquator = 11,
    kSlotCountryBorders = 12,
    kSlotCTRFill = 13,
    kSlotCTRBorder = 14,
    kSlotAPPFillCenter = 15,
    kSlotAPPFillOut = 16,
    kSlotAPPBorder = 17,
    kSlotTWRFillCenter = 18,
    kSlotTWRFillOut = 19,
    kSlotTWRBorder = 20,
    kSlotHighlight = 21,
    kSlotATCLabel = 22,
    kSlotAirports = 23,
    kSlotPlaneFill = 24,
    kSlotPlaneBorder = 25,
    kSlotPlaneLabel = 26,
    kSlotLand = 27, // our own: the land on the globe
};

// One key of a theme file: where it is, its built-in value and the slot it fills.
struct ThemeKey {
    QStringView Section;
    QStringView Key;
    QStringView Default;
    int Slot;
};

// The theme keys in the order they are read. Read order and slot order differ, so reading always goes
// through this table.
const std::array<ThemeKey, ColourTable::kSlots>& ThemeKeys();

// Stores one colour written as in a web page, "RRGGBB" without a prefix: red from the first two
// characters, green from the third and fourth, blue from the last two (so "12345" is 12, 34, 45). A
// component that is not one or two hexadecimal digits keeps its previous value; the others are still
// read.
void ParseColour(QStringView text, int slot, ColourTable& table);

// The theme file colours/<themeName> under home; every missing file or key takes the built-in colour.
ColourTable LoadColourTheme(const QString& home, const QString& themeName);

// The built-in theme, as used when no theme file exists.
ColourTable DefaultColourTable();

} // namespace sky
