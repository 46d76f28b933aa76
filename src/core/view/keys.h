#pragma once

// The classic virtual-key codes the map's key handlers match on; the window maps its toolkit's keys
// to these.
namespace sky::view::keys {

inline constexpr int kEnter = 13;
inline constexpr int kEscape = 27;
inline constexpr int kSpace = 32;
inline constexpr int kPageUp = 33;
inline constexpr int kPageDown = 34;
inline constexpr int kLeft = 37;
inline constexpr int kUp = 38;
inline constexpr int kRight = 39;
inline constexpr int kDown = 40;
inline constexpr int k0 = 48;   // digits 48 to 57
inline constexpr int kA = 65;   // letters 65 to 90
inline constexpr int kF1 = 112; // F1 to F12: 112 to 123

inline constexpr int kShift = 1; // modifier mask
inline constexpr int kCtrl = 2;
inline constexpr int kAlt = 4;

constexpr int Letter(char c) {
    return kA + (c - 'A');
}
constexpr int Digit(int d) {
    return k0 + d;
}
constexpr int F(int n) {
    return kF1 + n - 1;
}

} // namespace sky::view::keys
