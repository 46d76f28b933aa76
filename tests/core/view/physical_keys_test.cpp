#include "view/physical_keys.h"

#include <gtest/gtest.h>

#include "view/keys.h"

namespace sky::view {
namespace {

TEST(ClassicKeyFromKeycode, TheKeyByItsPlaceWhateverItPrints) {
    const struct {
        std::uint32_t keycode;
        int classic;
    } rows[] = {
        {10, keys::Digit(1)},
        {19, keys::Digit(0)}, // '&' and 'à' on a French keyboard
        {38, keys::Letter('A')},
        {52, keys::Letter('Z')},
        {67, keys::F(1)},
        {76, keys::F(10)},
        {95, keys::F(11)},
        {96, keys::F(12)},
        {9, keys::kEscape},
        {65, keys::kSpace},
        {113, keys::kLeft},
        {117, keys::kPageDown},
        {0, 0},
        {20, 0},
        {255, 0} // nothing, the minus key, beyond the keyboard
    };
    for (const auto& row : rows)
        EXPECT_EQ(ClassicKeyFromKeycode(row.keycode), row.classic) << row.keycode;
}

} // namespace
} // namespace sky::view
