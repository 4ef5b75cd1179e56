// Shared pieces of the fuzz targets: a check that stops the run with a message (so that
// libFuzzer keeps the input as a crash), a variation grid that is not all zero, and the
// little-endian word at the front of an input.
#pragma once

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

#include "geo/magnetic_variation.h"
#include "platform/dyn_array.h"

namespace quilmark {

inline void Fuzz_Check(bool holds, const char* what) {
    if (!holds) {
        std::fprintf(stderr, "fuzz check failed: %s\n", what);
        std::abort();
    }
}

// Variation from -30 to +30 degrees over the world, so that every heading conversion
// does real work.
inline const Magvar_Grid& Fuzz_Grid() {
    static const Magvar_Grid grid = [] {
        Magvar_Grid g{};
        for (int lon = 0; lon < 360; ++lon) {
            for (int lat = -90; lat <= 90; ++lat) {
                int degrees = ((lon * 7 + lat * 3) % 61) - 30;
                g[static_cast<size_t>(181 * lon + 90 + lat)] =
                    static_cast<int16_t>(degrees * 65536 / 360);
            }
        }
        return g;
    }();
    return grid;
}

inline int32_t Fuzz_Leading_I32(const uint8_t* data, size_t size) {
    uint32_t v = 0;
    for (size_t i = 0; i < 4 && i < size; ++i) {
        v |= static_cast<uint32_t>(data[i]) << (8 * i);
    }
    return static_cast<int32_t>(v);
}

// A list that grows one slot at a time keeps exactly one spare slot above its count.
template <class T> bool Fuzz_Has_Spare_Slot(const Dyn_Array<T>& list, int64_t count) {
    return count == 0 ? list.Slot_Count() <= 1
                      : list.Slot_Count() == static_cast<size_t>(count) + 1;
}

} // namespace quilmark
