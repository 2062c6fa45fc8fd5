#pragma once
// The number and text conversions that every file and wire format of the console depends on.

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace halvane::text {

// Number to text the way the console always wrote numbers: a leading blank stands for the sign of
// a number >= 0 (" 7", "-3", " 0"). The double form writes at most 15 significant digits, drops a
// leading zero before the point (" .5") and switches to exponent form outside 1E-05 <= |v| < 1E+15
// (" 1E+15", "-2.5E-07").
std::string Str(std::int64_t v);
std::string Str(double v);

// The number prefix of a text, as the classic Val does: blanks, tabs and line feeds anywhere are
// skipped; an optional sign, digits, one decimal point and an exponent (E or D) are taken up to the
// first other character; "&H" and "&O" prefixes read hexadecimal and octal (a value of 4 hex digits or
// fewer, leading zeros aside, is 16-bit signed, a larger one 32-bit signed). "" and "abc" give 0,
// "12ab" gives 12. A decimal beyond the range of a double gives +-DBL_MAX, never infinity; an &H or &O
// value over 32 bits gives 0.
double Val(std::string_view s);

// A number as it reads when put into a text box: no leading blank, a zero before the point
// ("0.5", "-0.25", "31", "1E+20").
std::string CStr(double v);

// A whole text taken as a number, for places where a text must be a number: blanks around it are
// allowed, anything else that Val would skip over is not. "" and "12ab" give nothing. As in Val, a
// decimal beyond the range of a double is clamped to +-DBL_MAX; an &H or &O value over 32 bits
// (which Val reads as 0) gives nothing.
std::optional<double> strictNumber(std::string_view s);

// Rounding to an integer, halves to even (2.5 -> 2, 3.5 -> 4, -2.5 -> -2). Nothing when the rounded
// value does not fit or the value is not a number.
std::optional<std::int16_t> toInt16(double v);
std::optional<std::int32_t> toInt32(double v);

// Upper-case hexadecimal without leading zeros (Hex(255) = "FF", Hex(0) = "0"). Negative values are
// written as their 32-bit two's complement.
std::string Hex(std::int64_t v);
// Two hexadecimal digits, upper case, for one byte ("0A").
std::string hexByte(std::uint8_t b);
// Hexadecimal text to a value: 1 to 8 digits, either case, nothing else. Nothing for anything else.
std::optional<std::uint32_t> parseHex(std::string_view s);

// "True" or "False", as booleans are written in the configuration file and in scripts' output.
inline const char* boolText(bool b) {
    return b ? "True" : "False";
}

}  // namespace halvane::text
