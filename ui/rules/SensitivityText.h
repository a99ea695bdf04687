// The detector's sensitivity as text.
#pragma once

inline constexpr int kSensitivityTextLength = 20;
using SensitivityText = char[kSensitivityTextLength + 1];

// False when there is anything but digits and points, or the number is no sensitivity; the value is then left alone.
// The decimal separator is a point in every locale.
bool ParseSensitivity(const char* text, double* sensitivity);

// With three decimals and a point; cut to its room.
void FormatSensitivity(double sensitivity, SensitivityText& text);
