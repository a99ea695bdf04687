#include "diag/text/ResultCodes.h"

#include <cstddef>
#include <cstdio>
#include <iterator>

namespace {

struct CodeRow {
    std::uint32_t code;
    const char* text;
};

#define PUBLIC_ROW(code, name, ...) {code, #name __VA_ARGS__},

constexpr CodeRow ResultNameTable[] = {
#include "diag/text/ResultNames.inc"
};

constexpr CodeRow WinsockNameTable[] = {
#include "diag/text/WinsockNames.inc"
};

#undef PUBLIC_ROW

static_assert(std::size(ResultNameTable) == 123);
static_assert(std::size(WinsockNameTable) == 89);

// Winsock errors 10000 to 11999 as Windows errors.
constexpr std::uint32_t kWinsockFirst = 0x80072710;
constexpr std::uint32_t kWinsockLast = 0x80072EDF;
// Errors of the family's raster imaging, numbered downwards.
constexpr std::uint32_t kRasterFirst = 0x8005F000;
constexpr std::uint32_t kRasterLast = 0x8005FFFF;

char g_winsockText[100];
char g_numberText[100];

// Binary search between two rows that are known not to match: the end rows themselves are never compared.
const char* Search(const CodeRow* rows, std::size_t count, std::uint32_t code) {
    std::size_t low = 0;
    std::size_t high = count - 1;
    for (;;) {
        const std::size_t middle = (low + high) / 2;
        if (middle == low) {
            return nullptr;
        }
        if (rows[middle].code == code) {
            return rows[middle].text;
        }
        (rows[middle].code < code ? low : high) = middle;
    }
}

// Null when there is no such row, or none that the search reaches.
template <std::size_t Count>
const char* Find(const CodeRow (&rows)[Count], std::uint32_t code) {
    for (const CodeRow* end : {&rows[0], &rows[Count - 1]}) {
        if (end->code == code) {
            return end->text;
        }
    }
    return rows[0].code < code && code < rows[Count - 1].code ? Search(rows, Count, code) : nullptr;
}

const char* WinsockText(std::uint32_t number) {
    if (const char* const text = Find(WinsockNameTable, number)) {
        return text;
    }
    std::snprintf(g_winsockText, sizeof(g_winsockText), "Unknown Winsock error (%d=0x%08X)", static_cast<int>(number),
                  static_cast<unsigned>(number));
    return g_winsockText;
}

const char* RasterText(std::uint32_t code) {
    std::snprintf(g_numberText, sizeof(g_numberText), "Nerinkit Raster Error (%d)",
                  static_cast<int>(kRasterFirst - code));
    return g_numberText;
}

} // namespace

const char* ResultCodeLookup(std::uint32_t code) {
    if (code >= kWinsockFirst && code <= kWinsockLast) {
        return WinsockText(code & 0xFFFF);
    }
    if (code >= kRasterFirst && code <= kRasterLast) {
        return RasterText(code);
    }
    if (const char* const text = Find(ResultNameTable, code)) {
        return text;
    }
    std::snprintf(g_numberText, sizeof(g_numberText), "0x%08X", static_cast<unsigned>(code));
    return g_numberText;
}
