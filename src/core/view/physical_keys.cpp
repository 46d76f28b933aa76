#include "view/physical_keys.h"

#include <array>
#include <cstddef>

#include "view/keys.h"

namespace sky::view {
namespace {

// X key codes of the main block, in the order of the US keys they stand for.
constexpr std::array<std::uint32_t, 10> kDigitRow = {19, 10, 11, 12, 13, 14, 15, 16, 17, 18}; // 0, 1 ... 9
constexpr std::array<std::uint32_t, 26> kLetters = {
    38, 56, 54, 40, 26, 41, 42, 43, 31, 44, 45, 46, 58,
    57, 32, 33, 24, 27, 39, 28, 30, 55, 25, 53, 29, 52}; // A ... Z

} // namespace

int ClassicKeyFromKeycode(std::uint32_t code) {
    for (std::size_t d = 0; d < kDigitRow.size(); ++d)
        if (kDigitRow[d] == code)
            return keys::Digit(int(d));
    for (std::size_t l = 0; l < kLetters.size(); ++l)
        if (kLetters[l] == code)
            return keys::kA + int(l);
    if (code >= 67 && code <= 76) // F1 to F10
        return keys::F(int(code - 66));
    switch (code) {
    case 95:
        return keys::F(11);
    case 96:
        return keys::F(12);
    case 9:
        return keys::kEscape;
    case 65:
        return keys::kSpace;
    case 36:
    case 104: // the keypad's Enter
        return keys::kEnter;
    case 111:
        return keys::kUp;
    case 113:
        return keys::kLeft;
    case 114:
        return keys::kRight;
    case 116:
        return keys::kDown;
    case 112:
        return keys::kPageUp;
    case 117:
        return keys::kPageDown;
    default:
        return 0;
    }
}

} // namespace sky::view
