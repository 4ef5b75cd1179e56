#include "platform/rounding.h"

#include <cerrno>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <string>

namespace quilmark {

double Round_Half_Even(double x) {
    if (!std::isfinite(x)) {
        return x;
    }
    double lower = std::floor(x);
    double diff = x - lower; // exact for every finite double
    if (diff < 0.5) {
        return lower;
    }
    if (diff > 0.5) {
        return lower + 1.0;
    }
    return std::fmod(lower, 2.0) == 0.0 ? lower : lower + 1.0;
}

namespace {

constexpr double Powers_Of_Ten[] = {1e0, 1e1, 1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                    1e8, 1e9, 1e10, 1e11, 1e12, 1e13, 1e14, 1e15};

// Slow but exact: the full decimal expansion of the double, rounded as decimal text.
double Round_Decimals_By_Text(double x, int decimals) {
    // A double has at most 1074 fractional digits; 1100 covers every case exactly.
    std::string text(1500, '\0');
    int n = std::snprintf(text.data(), text.size(), "%.1100f", x);
    text.resize(static_cast<size_t>(n));
    size_t point = text.find('.');
    std::string kept = text.substr(0, point + 1 + static_cast<size_t>(decimals));
    std::string rest = text.substr(point + 1 + static_cast<size_t>(decimals));
    // Compare the dropped digits with one half.
    int cmp = 0;
    if (rest.empty()) {
        cmp = -1;
    } else if (rest[0] > '5') {
        cmp = 1;
    } else if (rest[0] < '5') {
        cmp = -1;
    } else {
        cmp = rest.find_first_not_of('0', 1) == std::string::npos ? 0 : 1;
    }
    // Last kept digit decides a tie.
    char last = kept.back() == '.' ? kept[kept.size() - 2] : kept.back();
    bool up = cmp > 0 || (cmp == 0 && ((last - '0') % 2) == 1);
    if (up) {
        // Add one unit in the last kept place, carrying through the digits.
        int i = static_cast<int>(kept.size()) - 1;
        for (; i >= 0; --i) {
            char& c = kept[static_cast<size_t>(i)];
            if (c == '.' || c == '-') {
                continue;
            }
            if (c == '9') {
                c = '0';
                continue;
            }
            ++c;
            break;
        }
        if (i < 0 || kept[static_cast<size_t>(i)] == '-') {
            size_t at = kept[0] == '-' ? 1 : 0;
            kept.insert(kept.begin() + static_cast<long>(at), '1');
        }
    }
    return std::strtod(kept.c_str(), nullptr);
}

} // namespace

double Round_Decimals(double x, int decimals) {
    if (!std::isfinite(x) || x == 0.0) {
        return x;
    }
    if (decimals <= 0) {
        return Round_Half_Even(x);
    }
    if (decimals > 15) {
        decimals = 15;
    }
    const double scale = Powers_Of_Ten[decimals];
    const double magnitude = std::fabs(x);
    // y + err is the exact product magnitude * scale.
    const double y = magnitude * scale;
    if (y >= 4503599627370496.0) { // 2^52: no room left for the fast path
        return Round_Decimals_By_Text(x, decimals);
    }
    const double err = std::fma(magnitude, scale, -y);
    const double whole = std::floor(y);
    const double frac = y - whole; // exact below 2^52
    // Sign of (frac - 0.5) + err decides; frac - 0.5 is exact and, when not 0, larger in
    // size than err, which is at most half a unit in the last place of y.
    const double half_diff = frac - 0.5;
    bool up;
    if (half_diff > 0.0) {
        up = true;
    } else if (half_diff < 0.0) {
        up = false;
    } else if (err > 0.0) {
        up = true;
    } else if (err < 0.0) {
        up = false;
    } else {
        up = std::fmod(whole, 2.0) != 0.0; // an exact tie: to the even neighbour
    }
    double result = (up ? whole + 1.0 : whole) / scale;
    return x < 0 ? -result : result;
}

int16_t To_I16(double x) {
    if (std::isnan(x)) {
        return 0;
    }
    double r = Round_Half_Even(x);
    if (r >= 32767.0) {
        return 32767;
    }
    if (r <= -32768.0) {
        return -32768;
    }
    return static_cast<int16_t>(r);
}

int32_t To_I32(double x) {
    if (std::isnan(x)) {
        return 0;
    }
    double r = Round_Half_Even(x);
    if (r >= 2147483647.0) {
        return std::numeric_limits<int32_t>::max();
    }
    if (r <= -2147483648.0) {
        return std::numeric_limits<int32_t>::min();
    }
    return static_cast<int32_t>(r);
}

int16_t Clamp_I16(int64_t v) {
    if (v > 32767) {
        return 32767;
    }
    if (v < -32768) {
        return -32768;
    }
    return static_cast<int16_t>(v);
}

int32_t Clamp_I32(int64_t v) {
    if (v > std::numeric_limits<int32_t>::max()) {
        return std::numeric_limits<int32_t>::max();
    }
    if (v < std::numeric_limits<int32_t>::min()) {
        return std::numeric_limits<int32_t>::min();
    }
    return static_cast<int32_t>(v);
}

} // namespace quilmark
