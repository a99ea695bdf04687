// The detector's sensitivity as text.
#pragma once

inline constexpr int kSensitivityTextLength = 20;
using SensitivityText = char[kSensitivityTextLength + 1];

inline constexpr double kLowestSensitivity = 0.001;
inline constexpr double kHighestSensitivity = 8.0;

// False when there is anything but digits and points, or the number lies outside the two bounds; the value is then
// left alone. Whatever the locale, a point is a point.
bool ParseSensitivity(const char* text, double* sensitivity);

// With three decimals and a point; cut to its room.
void FormatSensitivity(double sensitivity, SensitivityText& text);
