#include "view/keyboard.h"

#include <gtest/gtest.h>

#include "app/friends.h"
#include "app/settings.h"
#include "network/whazzup.h"
#include "network/whazzup_lines.h"
#include "refdata/reference_data.h"
#include "view/display_state.h"
#include "view/keys.h"
#include "view/physical_keys.h"

using namespace Qt::StringLiterals;

namespace sky::view {
namespace {

class RecordingCommands : public MapCommands {
public:
    void ShowCompanion() override { Log.append(u"companion"_s); }
    void Download(int network) override { Log.append(u"download %1"_s.arg(network)); }
    void OpenListPanel() override { Log.append(u"list"_s); }
    void RebuildScene(int network) override { Log.append(u"rebuild %1"_s.arg(network)); }
    void DeleteHighlight() override { Log.append(u"unhighlight"_s); }
    void SetStatus(const QString& text) override { Status = text; }
    void SetView(const geo::ViewState& view) override { *View = view; }
    void ClosePanels() override { *Panels = render::PanelMode::None; }
    void Redraw() override { ++Redraws; }
    QStringList Log;
    QString Status;
    geo::ViewState* View = nullptr;
    render::PanelMode* Panels = nullptr;
    int Redraws = 0;
};

class Keys : public ::testing::Test {
protected:
    void SetUp() override {
        m_commands.View = &m_view;
        m_commands.Panels = &m_panels;
    }
    // Two pilots and a tower of IVAO online; the second pilot and the tower are member 555.
    void Online() {
        using network::testing::PilotLine;
        const QStringList lines = {PilotLine(0, u"0=FIRST|1=100|5=10"_s),
                                   PilotLine(0, u"0=MINE|1=555|5=50|6=8"_s),
                                   network::testing::AtcLine(0, u"0=EDDF_TWR|1=555|5=50.03"_s)};
        network::InterpretWhazzup(0, network::testing::WhazzupText(lines), ReferenceData(), m_tables[0], {});
    }
    // Releases a key; what the status line says after it (empty: nothing).
    QString Up(int key, int modifiers = 0) {
        m_commands.Status.clear();
        KeyContext context{m_settings, m_display, m_view, m_panels, m_friends, m_tables, m_commands};
        KeyUp(context, key, modifiers);
        return m_commands.Status;
    }
    void Down(int key, int modifiers = 0) {
        KeyContext context{m_settings, m_display, m_view, m_panels, m_friends, m_tables, m_commands};
        KeyDown(context, key, modifiers);
    }

    Settings m_settings;
    DisplayState m_display;
    geo::ViewState m_view{0.0f, 0.0f, 2.0f};
    render::PanelMode m_panels = render::PanelMode::None;
    Friends m_friends;
    network::ClientTables m_tables;
    RecordingCommands m_commands;
};

TEST_F(Keys, CameraKeysStepByFiveOverTheZoomUnlessShiftOrAPanel) {
    Down(keys::kRight);
    Down(keys::kDown);
    Down(keys::F(11));
    EXPECT_EQ(m_view.ViewX, 2.5f);
    EXPECT_EQ(m_view.ViewY, 2.5f);
    EXPECT_FLOAT_EQ(m_view.ViewZ, 2.2f);
    Down(keys::kLeft, keys::kShift);
    EXPECT_EQ(m_view.ViewX, 2.5f);
    Down(keys::kLeft, keys::kShift | keys::kCtrl);
    EXPECT_LT(m_view.ViewX, 2.5f);
    m_panels = render::PanelMode::Table;
    Down(keys::kUp);
    EXPECT_EQ(m_view.ViewY, 2.5f);
}

TEST_F(Keys, EscapeClosesAnOpenPanelAndNothingElseActsMeanwhile) {
    Up(keys::kEscape);
    EXPECT_EQ(m_commands.Redraws, 0);
    m_panels = render::PanelMode::TableAndInfoBox;
    Up(keys::Letter('G'));
    EXPECT_TRUE(m_settings.ShowLatLon);
    Up(keys::kEscape);
    EXPECT_EQ(m_panels, render::PanelMode::None);
    EXPECT_TRUE(m_settings.ShowLatLon);
    Up(keys::kSpace);
    EXPECT_EQ(m_commands.Log, QStringList{u"companion"_s});
}

TEST_F(Keys, BeforeTheFirstDownloadOnlyTheGeneralKeysAct) {
    Up(keys::F(1));
    Up(keys::F(6), keys::kShift);
    Up(keys::Letter('L'));
    EXPECT_TRUE(m_settings.ShowPlaneLabels);
    EXPECT_TRUE(m_settings.ShowPlanes);
    EXPECT_TRUE(m_commands.Log.isEmpty());
    EXPECT_EQ(Up(keys::Letter('G')), u"Lat/Lon grid toggle");
    EXPECT_FALSE(m_settings.ShowLatLon);
    EXPECT_EQ(Up(keys::Letter('C')), u"Country borders toggle");
    EXPECT_FALSE(m_display.ShowCountries);
    m_settings.DisableCountries = true; // then the key does nothing and says nothing
    EXPECT_TRUE(Up(keys::Letter('C')).isEmpty());
    EXPECT_FALSE(m_display.ShowCountries);
    Up(keys::Letter('I'), keys::kCtrl);
    Up(keys::Letter('V'));
    Up(keys::Letter('B'));
    EXPECT_EQ(m_commands.Log, (QStringList{u"download 0"_s, u"download 1"_s, u"download 2"_s}));
}

TEST_F(Keys, ShiftAloneStoresAViewAnyOtherModifierRestores) {
    m_view = {1.0f, 2.0f, 3.0f};
    EXPECT_EQ(Up(keys::Digit(2), keys::kShift), u"Current view stored as View 2");
    EXPECT_EQ(m_settings.X[1], 1.0f);
    EXPECT_EQ(m_settings.Z[1], 3.0f);
    EXPECT_EQ(Up(keys::Digit(1), keys::kCtrl), u"View 1 restored");
    EXPECT_EQ(m_view.ViewX, m_settings.X[0]);
    EXPECT_EQ(Up(keys::Digit(2)), u"View 2 restored");
    EXPECT_EQ(m_view.ViewZ, 3.0f);
}

TEST_F(Keys, LayerKeysWithShiftLabelKeysWithoutAndOnlyWhileTheLayerShows) {
    Online();
    EXPECT_EQ(Up(keys::F(4), keys::kShift), u"Airport display toggle");
    EXPECT_FALSE(m_settings.ShowAirports);
    const int redraws = m_commands.Redraws;
    EXPECT_TRUE(Up(keys::F(4)).isEmpty()); // the layer is off: nothing but a redraw
    EXPECT_TRUE(m_settings.ShowAirportLabels);
    EXPECT_EQ(m_commands.Redraws, redraws + 1);
    EXPECT_EQ(Up(keys::F(5)), u"ATC labels toggle");
    EXPECT_FALSE(m_settings.ShowATCLabels);
    Up(keys::F(6), keys::kShift);
    EXPECT_EQ(m_commands.Log.last(), u"unhighlight");
    Up(keys::F(1));
    EXPECT_FALSE(m_settings.ShowPlaneLabels || m_settings.ShowATCLabels || m_settings.ShowAirportLabels);
    EXPECT_EQ(Up(keys::F(1)), u"All labels toggle");
    EXPECT_TRUE(m_settings.ShowPlaneLabels && m_settings.ShowATCLabels && m_settings.ShowAirportLabels);
}

TEST_F(Keys, FriendsFilterCountsFriendsOnlineAndComparisonViewIgnoresNetworkKeys) {
    Online();
    Up(keys::F(2));
    EXPECT_FALSE(m_display.FriendsOnly); // an empty friends list: nothing
    m_friends.Add(u"999"_s);
    EXPECT_EQ(Up(keys::F(2)), u"No friends online");
    m_friends.Add(u"555"_s);
    Up(keys::F(2), keys::kShift);
    EXPECT_FALSE(m_display.FriendsOnly);
    EXPECT_EQ(Up(keys::F(2)), u"Friends toggle (2 online)");
    EXPECT_TRUE(m_display.FriendsOnly);
    Up(keys::F(3));
    EXPECT_FALSE(m_settings.ShowInbounds); // no inbound lines among friends
    EXPECT_EQ(Up(keys::F(2)), u"Friends toggle");
    EXPECT_FALSE(m_display.FriendsOnly);
    EXPECT_EQ(m_commands.Log, (QStringList{u"rebuild 0"_s, u"rebuild 0"_s}));

    m_display.ShownNetwork = 2;
    m_commands.Log.clear();
    Up(keys::Letter('L'));
    Up(keys::F(3));
    Up(keys::Digit(4));
    Up(keys::F(2));
    EXPECT_TRUE(m_commands.Log.isEmpty());
    EXPECT_FALSE(m_settings.ShowInbounds);
}

TEST_F(Keys, CentreOnMyselfLetsTheLastMatchingPilotWin) {
    Online();
    m_settings.IVAO_ID = u"555"_s;
    m_settings.ShowATC = false;
    m_settings.ShowPlanes = false;
    EXPECT_EQ(Up(keys::Digit(4)), u"Centered on myself (MINE)");
    EXPECT_EQ(m_view.ViewY, -50.0f);
    EXPECT_EQ(m_view.ViewX, 8.0f);
    EXPECT_EQ(m_view.ViewZ, 16.0f);
    EXPECT_TRUE(m_settings.ShowATC && m_settings.ShowPlanes);

    m_settings.IVAO_ID = u"123"_s;
    m_view = {};
    Up(keys::Digit(4));
    EXPECT_EQ(m_view.ViewZ, 1.0f); // not online: nothing changes
}

// Each block of keys at its ends; 19 prints '&' and 'à' on a French keyboard; 0, the minus key (20) and
// codes beyond the keyboard are no key.
TEST(ClassicKeyFromKeycode, TheKeyByItsPlaceWhateverItPrints) {
    const std::pair<std::uint32_t, int> rows[] = {
        {10, keys::Digit(1)}, {19, keys::Digit(0)}, {38, keys::Letter('A')}, {52, keys::Letter('Z')},
        {67, keys::F(1)},     {76, keys::F(10)},    {95, keys::F(11)},       {96, keys::F(12)},
        {9, keys::kEscape},   {65, keys::kSpace},   {113, keys::kLeft},      {117, keys::kPageDown},
    };
    for (const auto& [keycode, classic] : rows)
        EXPECT_EQ(ClassicKeyFromKeycode(keycode), classic) << keycode;
    for (std::uint32_t none : {0u, 20u, 255u})
        EXPECT_EQ(ClassicKeyFromKeycode(none), 0) << none;
}

} // namespace
} // namespace sky::view
