// Fuzzes the number conversions: Val, strictNumber and rounding never fail, agree with each other,
// and Str writes what Val reads back.
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "text/conversions.h"

using namespace halvane::text;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view s(reinterpret_cast<const char*>(data), size);
    const double v = Val(s);
    if (!std::isfinite(v)) std::abort();
    if (const auto strict = strictNumber(s); strict && *strict != v) std::abort();

    if (const auto i = toInt16(v); i && std::fabs(*i - v) > 0.5) std::abort();
    if (const auto i = toInt32(v)) {
        if (std::fabs(*i - v) > 0.5) std::abort();
        if (parseHex(Hex(*i)) != static_cast<std::uint32_t>(*i)) std::abort();
    }

    // Str keeps 15 significant digits, in a form strictNumber accepts.
    const auto back = strictNumber(Str(v));
    if (!back || std::fabs(*back - v) > std::fabs(v) * 1e-14) std::abort();
    return 0;
}
