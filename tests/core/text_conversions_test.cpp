// Tables for Str, Val, strictNumber, half-even rounding and hexadecimal.
#include <gtest/gtest.h>

#include <cfloat>
#include <cmath>
#include <limits>

#include "text/conversions.h"

using namespace halvane::text;

namespace {
constexpr double kInf = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
}  // namespace

// clang-format off
TEST(Conversions, StrOfNumbers) {
    const struct { std::int64_t v; const char* want; } ints[] = {
        {0, " 0"}, {7, " 7"}, {-3, "-3"}, {200, " 200"},
        {INT64_MAX, " 9223372036854775807"}, {INT64_MIN, "-9223372036854775808"},
    };
    for (const auto& r : ints) EXPECT_EQ(Str(r.v), r.want) << r.v;

    const struct { double v; const char* want; } doubles[] = {
        {0.0, " 0"}, {-0.0, " 0"}, {1.0, " 1"}, {-1.0, "-1"}, {0.5, " .5"}, {-0.25, "-.25"},
        {100.0, " 100"}, {32768.0, " 32768"}, {123.456, " 123.456"}, {1.0 / 3, " .333333333333333"},
        {2.0 / 3, " .666666666666667"}, {0.1 + 0.2, " .3"}, {1e14, " 100000000000000"},
        {123456789012345.0, " 123456789012345"}, {1e15, " 1E+15"}, {999999999999999.9, " 1E+15"},
        {1234567890123456.0, " 1.23456789012346E+15"}, {-1e15, "-1E+15"}, {1e100, " 1E+100"},
        {1e-5, " .00001"}, {-1.23e-5, "-.0000123"}, {9.999999999999999e-6, " .00001"}, {1e-6, " 1E-06"},
        {1.5e-7, " 1.5E-07"}, {-2.5e-7, "-2.5E-07"}, {1e-300, " 1E-300"},
        {5e-324, " 4.94065645841247E-324"}, {DBL_MAX, " 1.79769313486232E+308"},
        {kNaN, "NaN"}, {kInf, " Inf"}, {-kInf, "-Inf"},
    };
    for (const auto& r : doubles) EXPECT_EQ(Str(r.v), r.want) << r.want;
}

TEST(Conversions, ValTakesTheNumberPrefix) {
    const std::string longZeros(400, '0');
    const struct { std::string s; double want; } rows[] = {
        {"", 0}, {"abc", 0}, {"12ab", 12}, {".5", 0.5}, {"-", 0}, {"+", 0}, {".", 0}, {"-.5", -0.5},
        {"+7", 7}, {"0.1", 0.1}, {"1.2.3", 1.2}, {"--1", 0}, {"+-1", 0}, {"1,5", 1},
        // Blanks, tabs and line feeds are skipped anywhere; a carriage return is not.
        {"1 2 3", 123}, {" 1615 198th", 1615198}, {"\t4\n2", 42}, {"- 5", -5}, {"4\r2", 4},
        // Exponents: E or D, either case; a mark without digits is not part of the number.
        {"1e3", 1000}, {"1E3", 1000}, {"1d2", 100}, {"1D-2", 0.01}, {"2.5e1", 25}, {"1e 3", 1000},
        {"1e", 1}, {"1e+", 1}, {"1e-x", 1}, {"1e5.5", 1e5},
        // Hexadecimal and octal: 16-bit up to FFFF, 32-bit above; leading zeros do not widen.
        {"&HFF", 255}, {"&hff", 255}, {"&HFFFF", -1}, {"&H8000", -32768}, {"&H7FFF", 32767},
        {"&H10000", 65536}, {"&HFFFFFFFF", -1}, {"&H80000000", -2147483648.0}, {"&H0000FFFF", -1},
        {"&HFFg", 255}, {"& H F F", 255}, {"&H", 0}, {"&HG", 0}, {"-&H10", 0}, {"&12", 0},
        {"&O17", 15}, {"&o177777", -1}, {"&O200000", 65536}, {"&O37777777777", -1}, {"&O8", 0},
        // Beyond 32 bits a radix number has no value; beyond a double a decimal is clamped.
        {"&H100000000", 0}, {"&O40000000000", 0},
        {"1e308", 1e308}, {"1e309", DBL_MAX}, {"-1e999", -DBL_MAX}, {"1e99999999999999999999", DBL_MAX},
        {"1e-400", 0}, {"4.9e-324", 4.9e-324}, {"0." + longZeros + "1e401", 1},
        {"123456789012345678901234567890", 1.2345678901234568e29},
        // 2^53 + 1 is a tie: even rounds down, unless a far-off non-zero digit breaks the tie.
        {"9007199254740993", 9007199254740992.0},
        {"9007199254740993." + std::string(900, '0') + "1", 9007199254740994.0},
    };
    for (const auto& r : rows) EXPECT_EQ(Val(r.s), r.want) << '"' << r.s << '"';
    EXPECT_FALSE(std::signbit(Val("-0")));
}

TEST(Conversions, StrictNumberNeedsTheWholeText) {
    const struct { const char* s; std::optional<double> want; } rows[] = {
        {"", {}}, {" ", {}}, {"12ab", {}}, {"1 2", {}}, {".", {}}, {"-", {}}, {"- 5", {}}, {"1e", {}},
        {"1e+", {}}, {"&H", {}}, {"&H100000000", {}}, {"\n5", {}}, {"5\r", {}},
        {"5", 5}, {"  -5.5  ", -5.5}, {"\t7\t", 7}, {"+.5", 0.5}, {"5.", 5}, {"1e3", 1000}, {"1D2", 100},
        {"&HFFFF", -1}, {" &H10 ", 16}, {"1e-999", 0}, {"-0", 0}, {"1e999", DBL_MAX},
    };
    for (const auto& r : rows) EXPECT_EQ(strictNumber(r.s), r.want) << '"' << r.s << '"';
}

TEST(Conversions, RoundingIsHalfToEvenAndRangeChecked) {
    const struct { double v; std::optional<std::int16_t> i16; std::optional<std::int32_t> i32; } rows[] = {
        {0.5, 0, 0}, {1.5, 2, 2}, {2.5, 2, 2}, {3.5, 4, 4}, {-0.5, 0, 0}, {-1.5, -2, -2}, {-2.5, -2, -2},
        {0.49999999999999994, 0, 0}, {2.5000000000000004, 3, 3}, {4.9e-324, 0, 0}, {-7.4, -7, -7},
        {32767.4, 32767, 32767}, {32767.5, {}, 32768}, {32766.5, 32766, 32766}, {-32768.5, -32768, -32768},
        {-32767.5, -32768, -32768}, {-32768.50001, {}, -32769}, {-32769.5, {}, -32770},
        {2147483646.5, {}, 2147483646}, {2147483647.4, {}, 2147483647}, {2147483647.5, {}, {}},
        {-2147483648.5, {}, INT32_MIN}, {-2147483648.6, {}, {}}, {4503599627370497.0, {}, {}},
        {1e300, {}, {}}, {-1e300, {}, {}}, {kNaN, {}, {}}, {kInf, {}, {}}, {-kInf, {}, {}},
    };
    for (const auto& r : rows) {
        EXPECT_EQ(toInt16(r.v), r.i16) << r.v;
        EXPECT_EQ(toInt32(r.v), r.i32) << r.v;
    }
}

TEST(Conversions, Hexadecimal) {
    const struct { std::int64_t v; const char* want; } hex[] = {
        {0, "0"}, {10, "A"}, {255, "FF"}, {65535, "FFFF"}, {-1, "FFFFFFFF"}, {-32768, "FFFF8000"},
        {INT32_MIN, "80000000"}, {4294967295, "FFFFFFFF"}, {4294967296, "100000000"},
    };
    for (const auto& r : hex) EXPECT_EQ(Hex(r.v), r.want) << r.v;

    const struct { std::uint8_t b; const char* want; } bytes[] = {
        {0, "00"}, {0x0A, "0A"}, {0x7F, "7F"}, {0xFF, "FF"},
    };
    for (const auto& r : bytes) EXPECT_EQ(hexByte(r.b), r.want);

    const struct { const char* s; std::optional<std::uint32_t> want; } parse[] = {
        {"FF", 255}, {"ff", 255}, {"0", 0}, {"00000000", 0}, {"FFFFFFFF", 0xFFFFFFFF}, {"1a2B", 0x1A2B},
        {"", {}}, {"123456789", {}}, {" FF", {}}, {"FF ", {}}, {"0x1", {}}, {"-1", {}}, {"+F", {}}, {"G", {}},
    };
    for (const auto& r : parse) EXPECT_EQ(parseHex(r.s), r.want) << '"' << r.s << '"';
}
// clang-format on
