#include "geo/view_option.h"

#include <gtest/gtest.h>

#include "qt_printers.h"

using namespace Qt::StringLiterals;

namespace sky::geo {
namespace {

TEST(ParseViewOption, BringsValuesOutOfRangeInAndRefusesWhatIsNoView) {
    struct Row {
        QString text;
        bool clamped;
        ViewState view;
        QString written;
    };
    const Row rows[] = {
        {u"8.5,50,4"_s, false, {8.5f, -50, 4}, u"8.5,50,4"_s},
        {u"500,-200,99999"_s, true, {140, 90, 50}, u"140,-90,50"_s},
        {u" -190 ,0,0.1"_s, true, {170, 0, 0.3f}, u"170,0,0.3"_s},
        {u"180,90,50"_s, false, {180, -90, 50}, u"180,90,50"_s},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.text.toStdString());
        const std::optional<ViewOption> option = ParseViewOption(row.text);
        ASSERT_TRUE(option.has_value());
        EXPECT_EQ(option->Clamped, row.clamped);
        EXPECT_FLOAT_EQ(option->View.ViewX, row.view.ViewX);
        EXPECT_FLOAT_EQ(option->View.ViewY, row.view.ViewY);
        EXPECT_FLOAT_EQ(option->View.ViewZ, row.view.ViewZ);
        EXPECT_EQ(ViewOptionText(option->View), row.written);
    }
    for (const QString& text : {u"1,2"_s, u"1,2,3,4"_s, u"a,b,c"_s, u"nan,0,1"_s, u"0,inf,1"_s, QString()})
        EXPECT_FALSE(ParseViewOption(text).has_value()) << text.toStdString();
}

} // namespace
} // namespace sky::geo
