#pragma once
// Window places and sizes are kept in the settings in twips, as the
// program has always written them; the screen shows 15 twips per pixel.

namespace vonnel {

inline constexpr int kTwipsPerPixel = 15;

}  // namespace vonnel
