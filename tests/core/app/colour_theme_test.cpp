#include "app/colour_theme.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

#include "app/ini_file.h"
#include "common/file_io.h"

using namespace Qt::StringLiterals;

namespace sky {
namespace {

const QString kSourceDir = QStringLiteral(SKYLANTRA_SOURCE_DIR);

float Byte(int value) {
    return static_cast<float>(value / 255.0);
}

void ExpectColour(const ColourTable& table, int slot, int red, int green, int blue) {
    SCOPED_TRACE(slot);
    EXPECT_EQ(table.Red[slot], Byte(red));
    EXPECT_EQ(table.Green[slot], Byte(green));
    EXPECT_EQ(table.Blue[slot], Byte(blue));
}

ColourTable LoadFrom(const QTemporaryDir& home, const QByteArray& theme) {
    EXPECT_TRUE(WriteFileMakingFolder(home.filePath(u"colours/test.dc"_s), theme).Ok);
    return LoadColourTheme(home.path(), u"test.dc"_s);
}

TEST(ParseColour, ReadsRedGreenBlueAsInAWebPage) {
    struct Row {
        const char16_t* text;
        int red, green, blue; // -1: keeps the previous value
    };
    const Row rows[] = {
        {u"FF0000", 255, 0, 0},
        {u"00ff4e", 0, 255, 78},
        {u"12345", 0x12, 0x34, 0x45},
        {u"1234567", 0x12, 0x34, 0x67},
        {u"ZZ3456", -1, 0x34, 0x56},
        {u"12ZZ56", 0x12, -1, 0x56},
        {u"1", 1, -1, 1},
        {u"", -1, -1, -1},
        {u"-10000", -1, 0, 0},
        {u"12 456", 0x12, -1, 0x56},
        {u"+1+1+1", -1, -1, -1},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(QString::fromUtf16(row.text).toStdString());
        ColourTable table;
        const int slot = 5;
        table.Red[slot] = table.Green[slot] = table.Blue[slot] = 0.5f;
        ParseColour(QStringView(row.text), slot, table);
        EXPECT_EQ(table.Red[slot], row.red < 0 ? 0.5f : Byte(row.red));
        EXPECT_EQ(table.Green[slot], row.green < 0 ? 0.5f : Byte(row.green));
        EXPECT_EQ(table.Blue[slot], row.blue < 0 ? 0.5f : Byte(row.blue));
    }
}

TEST(ParseColour, IgnoresASlotOutsideTheTable) {
    ColourTable table;
    ParseColour(u"FFFFFF", ColourTable::kSlots, table);
    ParseColour(u"FFFFFF", -1, table);
    for (int slot = 0; slot < ColourTable::kSlots; ++slot)
        ExpectColour(table, slot, 0, 0, 0);
}

TEST(LoadColourTheme, GoesThroughTheKeyToSlotTableAndFallsBackPerKey) {
    QTemporaryDir home;
    const ColourTable table = LoadFrom(home, "[Geo]\nGlobeEquator=010203\nGlobePoles=040506\n"
                                             "[planes]\nPlaneFill=FF0000\n"
                                             "[Screen]\nIVAO=nothex\n");
    ExpectColour(table, kSlotGlobeEquator, 1, 2, 3);
    ExpectColour(table, kSlotGlobePoles, 4, 5, 6);
    ExpectColour(table, kSlotPlaneFill, 255, 0, 0);
    // An unreadable component keeps the value it had before loading: zero.
    ExpectColour(table, kSlotIVAO, 0, 0, 0);
    ExpectColour(table, kSlotScreenBackground, 0x10, 0x10, 0x3A);
}

// The shipped file, and no file at all, both give the built-in colours.
TEST(ShippedThemes, DefaultReproducesTheBuiltInColoursExactly) {
    QTemporaryDir empty;
    const ColourTable builtIn = DefaultColourTable();
    for (const ColourTable& shipped :
         {LoadColourTheme(kSourceDir, u"default.dc"_s), LoadColourTheme(empty.path(), u"default.dc"_s)}) {
        EXPECT_EQ(shipped.Red, builtIn.Red);
        EXPECT_EQ(shipped.Green, builtIn.Green);
        EXPECT_EQ(shipped.Blue, builtIn.Blue);
    }
    // And it spells out every key, so it documents the format completely.
    const IniFile file = IniFile::Load(kSourceDir + u"/colours/default.dc"_s);
    for (const ThemeKey& key : ThemeKeys())
        EXPECT_EQ(file.Value(key.Section, key.Key, u"absent"_s), key.Default)
            << key.Key.toString().toStdString();
}

TEST(ShippedThemes, DaylightSetsEveryKeyToAReadableColour) {
    const IniFile file = IniFile::Load(kSourceDir + u"/colours/daylight.dc"_s);
    for (const ThemeKey& key : ThemeKeys()) {
        SCOPED_TRACE(key.Key.toString().toStdString());
        const QString value = file.Value(key.Section, key.Key, u"absent"_s);
        bool hex = false;
        value.toUInt(&hex, 16);
        EXPECT_TRUE(value.size() == 6 && hex) << value.toStdString();
    }
    // A light theme: the background is brighter than the coastlines drawn on it.
    const ColourTable daylight = LoadColourTheme(kSourceDir, u"daylight.dc"_s);
    const auto brightness = [&](int slot) {
        return daylight.Red[slot] + daylight.Green[slot] + daylight.Blue[slot];
    };
    EXPECT_GT(brightness(kSlotScreenBackground), brightness(kSlotCoastEquator));
    EXPECT_GT(brightness(kSlotGlobeEquator), brightness(kSlotCoastEquator));
}

} // namespace
} // namespace sky
