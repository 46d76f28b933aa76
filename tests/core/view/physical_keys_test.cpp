#include "view/physical_keys.h"

#include <gtest/gtest.h>

#include "view/keys.h"

namespace sky::view {
namespace {

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
