// Str, Val, half-even rounding and hexadecimal: the classic number conversions, free of locale and
// of the FPU rounding mode.
#include "text/conversions.h"

#include <cfloat>
#include <charconv>
#include <cmath>
#include <limits>

namespace halvane::text {
namespace {

bool isBlank(char c) {
    return c == ' ' || c == '\t';
}
bool isDigit(char c) {
    return c >= '0' && c <= '9';
}
bool isExponentMark(char c) {
    return c == 'E' || c == 'e' || c == 'D' || c == 'd';
}

int hexDigit(char c) {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    return -1;
}

int radixDigit(char c, int radix) {
    const int d = hexDigit(c);
    return d >= 0 && d < radix ? d : -1;
}

// The number found at the start of a text.
struct Scan {
    std::size_t length = 0;  // characters that belong to the number; 0 when there is none
    double value = 0.0;      // the number; a decimal beyond a double is clamped to +-DBL_MAX
    bool fits = true;        // false when an &H or &O number needs more than 32 bits
};

// Saturating the exponent keeps its accumulation from overflowing; any mantissa short enough to be held
// in memory cannot bring an exponent this large back into the range of a double.
constexpr long long kExponentCap = 1'000'000'000'000;
// Halfway points between doubles have at most 767 significant digits, so digits beyond this
// count can only matter as "something non-zero follows".
constexpr std::size_t kMaxMantissaDigits = 800;

// Value of a decimal mantissa (the digits, with the point after `pointAt` of them) times 10^exp.
Scan decimalValue(std::string_view digits, std::size_t pointAt, long long exp, bool negative) {
    Scan r;
    const std::size_t first = digits.find_first_not_of('0');
    if (first == std::string_view::npos) return r;
    std::string_view sig = digits.substr(first);
    sig = sig.substr(0, sig.find_last_not_of('0') + 1);
    // Decimal exponent of the first significant digit.
    const long long lead = static_cast<long long>(pointAt) - static_cast<long long>(first) - 1 + exp;
    const double huge = negative ? -DBL_MAX : DBL_MAX;
    if (lead > 400) return {0, huge, true};
    if (lead < -400) return r;

    std::string text;
    text.reserve(kMaxMantissaDigits + 16);
    text += sig[0];
    text += '.';
    if (sig.size() > kMaxMantissaDigits) {
        text.append(sig.substr(1, kMaxMantissaDigits - 2));
        text += '1';  // stands for the non-zero digits cut off
    } else {
        text.append(sig.substr(1));
    }
    text += 'e';
    text += std::to_string(lead);
    double v = 0.0;
    if (std::from_chars(text.data(), text.data() + text.size(), v).ec == std::errc::result_out_of_range) {
        if (lead > 0) return {0, huge, true};
        return r;  // underflow to zero
    }
    r.value = negative ? -v : v;
    return r;
}

// "&H..." or "&O...": up to 16 bits of value read as a 16-bit signed number, up to 32 bits as a
// 32-bit one. Leading zeros do not count toward the width.
Scan radixNumber(std::string_view s) {
    const int radix = (s[1] == 'H' || s[1] == 'h') ? 16 : 8;
    std::size_t i = 2;
    std::uint64_t value = 0;
    bool overflow = false;
    for (; i < s.size(); ++i) {
        const int d = radixDigit(s[i], radix);
        if (d < 0) break;
        value = value * static_cast<unsigned>(radix) + static_cast<unsigned>(d);
        if (value > 0xFFFFFFFFu) {
            overflow = true;
            value = 0;  // keeps the accumulation bounded; the result is "does not fit" anyway
        }
    }
    if (i == 2) return {};  // no digits: not a number
    if (overflow) return {i, 0.0, false};
    if (value <= 0xFFFFu) return {i, static_cast<double>(static_cast<std::int16_t>(value)), true};
    return {i, static_cast<double>(static_cast<std::int32_t>(static_cast<std::uint32_t>(value))), true};
}

// The longest number at the start of `s` (no blanks inside).
Scan scanNumber(std::string_view s) {
    if (s.size() >= 2 && s[0] == '&' && (s[1] == 'H' || s[1] == 'h' || s[1] == 'O' || s[1] == 'o')) {
        return radixNumber(s);
    }
    std::size_t i = 0;
    bool negative = false;
    if (i < s.size() && (s[i] == '+' || s[i] == '-')) negative = s[i++] == '-';

    std::string digits;
    while (i < s.size() && isDigit(s[i])) digits += s[i++];
    const std::size_t pointAt = digits.size();
    if (i < s.size() && s[i] == '.') {
        ++i;
        while (i < s.size() && isDigit(s[i])) digits += s[i++];
    }
    if (digits.empty()) return {};
    std::size_t length = i;

    long long exp = 0;
    if (i < s.size() && isExponentMark(s[i])) {
        std::size_t j = i + 1;
        bool expNegative = false;
        if (j < s.size() && (s[j] == '+' || s[j] == '-')) expNegative = s[j++] == '-';
        if (j < s.size() && isDigit(s[j])) {  // a mark without digits is not part of the number
            for (; j < s.size() && isDigit(s[j]); ++j) {
                if (exp < kExponentCap) exp = exp * 10 + (s[j] - '0');
            }
            if (expNegative) exp = -exp;
            length = j;
        }
    }
    Scan r = decimalValue(digits, pointAt, exp, negative);
    r.length = length;
    return r;
}

template <typename Int>
std::optional<Int> roundHalfEven(double v) {
    if (!std::isfinite(v)) return std::nullopt;
    // Wide enough bounds to rule out anything far away before floor and the cast.
    constexpr double lo = static_cast<double>(std::numeric_limits<Int>::min()) - 1.0;
    constexpr double hi = static_cast<double>(std::numeric_limits<Int>::max()) + 1.0;
    if (v < lo || v > hi) return std::nullopt;
    double r = std::floor(v);
    const double fraction = v - r;  // exact for every double
    if (fraction > 0.5 || (fraction == 0.5 && std::fmod(r, 2.0) != 0.0)) r += 1.0;
    if (r < static_cast<double>(std::numeric_limits<Int>::min()) ||
        r > static_cast<double>(std::numeric_limits<Int>::max())) {
        return std::nullopt;
    }
    return static_cast<Int>(r);
}

}  // namespace

std::string Str(std::int64_t v) {
    return (v >= 0 ? " " : "") + std::to_string(v);
}

std::string Str(double v) {
    if (std::isnan(v)) return "NaN";
    if (std::isinf(v)) return v > 0 ? " Inf" : "-Inf";
    if (v == 0.0) return " 0";
    std::string out = v < 0 ? "-" : " ";

    // 15 significant digits as d.dddddddddddddde±x; the exponent is taken after rounding, so
    // 999999999999999.9 becomes 1E+15 as it should.
    char buf[32];
    const auto res = std::to_chars(buf, buf + sizeof buf, std::fabs(v), std::chars_format::scientific, 14);
    const std::string_view sci(buf, static_cast<std::size_t>(res.ptr - buf));
    const std::size_t e = sci.find('e');
    std::string digits;
    digits += sci[0];
    digits.append(sci.substr(2, e - 2));
    digits.erase(digits.find_last_not_of('0') + 1);
    int exp = 0;
    const std::size_t expDigits = e + 2;
    std::from_chars(sci.data() + expDigits, sci.data() + sci.size(), exp);
    if (sci[e + 1] == '-') exp = -exp;

    if (exp >= 15 || exp < -5) {
        out += digits[0];
        if (digits.size() > 1) out.append(".").append(digits, 1);
        out += exp < 0 ? "E-" : "E+";
        const int mag = exp < 0 ? -exp : exp;
        if (mag < 10) out += '0';
        out += std::to_string(mag);
    } else if (exp >= 0) {
        const std::size_t intLen = static_cast<std::size_t>(exp) + 1;
        if (digits.size() <= intLen) {
            out += digits;
            out.append(intLen - digits.size(), '0');
        } else {
            out.append(digits, 0, intLen).append(".").append(digits, intLen);
        }
    } else {
        out += '.';
        out.append(static_cast<std::size_t>(-exp - 1), '0');
        out += digits;
    }
    return out;
}

double Val(std::string_view s) {
    std::string packed;
    packed.reserve(s.size());
    for (char c : s) {
        if (c != ' ' && c != '\t' && c != '\n') packed += c;
    }
    const Scan r = scanNumber(packed);
    return r.value == 0.0 ? 0.0 : r.value;  // no negative zero
}

std::optional<double> strictNumber(std::string_view s) {
    while (!s.empty() && isBlank(s.front())) s.remove_prefix(1);
    while (!s.empty() && isBlank(s.back())) s.remove_suffix(1);
    const Scan r = scanNumber(s);
    if (r.length == 0 || r.length != s.size() || !r.fits) return std::nullopt;
    return r.value == 0.0 ? 0.0 : r.value;
}

std::optional<std::int16_t> toInt16(double v) {
    return roundHalfEven<std::int16_t>(v);
}
std::optional<std::int32_t> toInt32(double v) {
    return roundHalfEven<std::int32_t>(v);
}

std::string Hex(std::int64_t v) {
    const std::uint64_t u = v < 0 ? static_cast<std::uint32_t>(v) : static_cast<std::uint64_t>(v);
    char buf[17];
    const auto res = std::to_chars(buf, buf + sizeof buf, u, 16);
    std::string out(buf, res.ptr);
    for (char& c : out) {
        if (c >= 'a' && c <= 'f') c = static_cast<char>(c - 'a' + 'A');
    }
    return out;
}

std::string hexByte(std::uint8_t b) {
    static constexpr char kDigits[] = "0123456789ABCDEF";
    return {kDigits[b >> 4], kDigits[b & 0x0F]};
}

std::optional<std::uint32_t> parseHex(std::string_view s) {
    if (s.empty() || s.size() > 8) return std::nullopt;
    std::uint32_t v = 0;
    for (char c : s) {
        const int d = hexDigit(c);
        if (d < 0) return std::nullopt;
        v = v * 16 + static_cast<std::uint32_t>(d);
    }
    return v;
}

std::string CStr(double v) {
    std::string text = Str(v);
    if (!text.empty() && text[0] == ' ') text.erase(0, 1);
    const std::size_t digits = !text.empty() && text[0] == '-' ? 1 : 0;
    if (text.size() > digits && text[digits] == '.') text.insert(digits, "0");
    return text;
}

}  // namespace halvane::text
