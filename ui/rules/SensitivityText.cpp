#include "ui/rules/SensitivityText.h"

#include "settings/public/NMFVDeinterlaceLimits.h"

#include <cstdio>
#include <cstring>

namespace {

constexpr char kDigits[] = "0123456789";

// The number at the start of a text of digits and points. Exact up to fifteen digits.
double LeadingNumber(const char* text) {
    double digits = 0;
    double scale = 1;
    bool fraction = false;
    for (; *text; ++text) {
        if (*text == '.') {
            if (fraction) {
                break; // Kept: what follows a second point isn't looked at. Test: Sensitivities.
            }
            fraction = true;
            continue;
        }
        digits = digits * 10 + (*text - '0');
        scale *= fraction ? 10 : 1;
    }
    return digits / scale;
}

} // namespace

bool ParseSensitivity(const char* text, double* sensitivity) {
    if (text[std::strspn(text, "0123456789.")] != '\0') {
        return false;
    }
    const double number = LeadingNumber(text);
    if (!(number >= kLowestSensitivity && number <= kHighestSensitivity)) {
        return false;
    }
    *sensitivity = number;
    return true;
}

void FormatSensitivity(double sensitivity, SensitivityText& text) {
    std::snprintf(text, sizeof(text), "%.3f", sensitivity);
    // The host may have set a locale whose numbers have a comma.
    char* const point = text + std::strspn(text, kDigits);
    if (point != text && *point != '\0') {
        *point = '.';
    }
}
