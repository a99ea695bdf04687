// The names of result codes in trace lines.
#include "diag/text/ResultCodes.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <iterator>
#include <string_view>
#include <vector>

// The number of a public name is the platform's own where its headers are at hand.
#ifdef _WIN32
#include <windows.h>

#include <delayimp.h>
#include <nserror.h>
#include <urlmon.h>
#include <vfwmsgs.h>
#define PUBLIC_ROW(code, name, ...) {static_cast<std::uint32_t>(name), #name __VA_ARGS__},
#else
#define PUBLIC_ROW(code, name, ...) {code, #name __VA_ARGS__},
#endif

// In place of the trace log's own word.
std::uint32_t TraceFlags = kTraceMaster;

namespace {

struct Row {
    std::uint32_t code;
    const char* text;
};

const Row kNames[] = {
#include "diag/text/ResultNames.inc"
};
const Row kWinsock[] = {
#include "diag/text/WinsockNames.inc"
};

// The only ones that the binary search misses: two that stand outside the rising order, and the second of two with one
// code.
TEST(ResultCodes, RowsThatTheSearchMisses) {
    std::vector<std::size_t> missed;
    for (std::size_t i = 0; i < std::size(kNames); ++i) {
        if (std::string_view(kNames[i].text) != ResultCodeLookup(kNames[i].code)) {
            missed.push_back(i);
        }
    }
    EXPECT_EQ((std::vector<std::size_t>{12, 48, 71}), missed);
    for (const Row& row : kWinsock) {
        EXPECT_STREQ(row.text, ResultCodeLookup(0x80070000 | row.code));
    }
}

TEST(ResultCodes, EveryKindOfText) {
    const Row kCases[] = {
        {0x00000000, "S_OK"},
        {0x00050024, "NXMM_S_DVR_WAITING"},
        {0xC06D007E, "VcppException(ERROR_SEVERITY_ERROR, ERROR_MOD_NOT_FOUND) - One or more delay loaded modules are "
                     "missing"},
        {0xFEDCBA98, "E_ABORTED_BY_DOWNSTREAM_FILTER"},
        {0xFEDCBA99, "0xFEDCBA99"},
        {0x12345678, "0x12345678"},
        {0x80072746, "WSAECONNRESET = An existing connection was forcibly closed by the remote host"},
        {0x8007270F, "0x8007270F"},
        {0x80072710, "Unknown Winsock error (10000=0x00002710)"},
        {0x80072715, "Unknown Winsock error (10005=0x00002715)"},
        {0x80072EDF, "Unknown Winsock error (11999=0x00002EDF)"},
        {0x80072EE0, "0x80072EE0"},
        {0x8005EFFF, "0x8005EFFF"},
        {0x8005F000, "Nerinkit Raster Error (0)"},
        {0x8005F005, "Nerinkit Raster Error (-5)"},
        {0x8005FFFF, "Nerinkit Raster Error (-4095)"},
        {0x80060000, "0x80060000"},
    };
    for (const Row& expected : kCases) {
        EXPECT_STREQ(expected.text, ResultCodeLookup(expected.code));
    }
}

TEST(ResultCodes, UnknownWinsockErrorsHaveTheirOwnBuffer) {
    const char* const winsock = ResultCodeLookup(0x80072711);
    const char* const number = ResultCodeLookup(0x12345678);
    EXPECT_STREQ("Unknown Winsock error (10001=0x00002711)", winsock);
    EXPECT_EQ(number, ResultCodeLookup(0x8005F001));
}

TEST(ResultCodes, NothingIsNamedWhileTracingIsOff) {
    EXPECT_STREQ("E_FAIL", ResultCodeName(0x80004005));
    TraceFlags = ~kTraceMaster;
    for (const std::uint32_t code : {0x00000000u, 0x80004005u, 0x80072746u, 0x12345678u}) {
        EXPECT_STREQ("", ResultCodeName(code));
    }
    TraceFlags = kTraceMaster;
}

} // namespace
