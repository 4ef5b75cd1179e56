// Small helpers for walking the records the chart draws.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "platform/dyn_array.h"

namespace quilmark {

// The entries 0 to count - 1 that the array really holds: a count larger than the array
// (a damaged record) does not lead outside it.
template <class T> size_t Filled_Count(const Dyn_Array<T>& list, int32_t count) {
    if (count <= 0) {
        return 0;
    }
    size_t n = static_cast<size_t>(count);
    return n < list.Slot_Count() ? n : list.Slot_Count();
}

// The same entries as a span, for code that takes a list without its count.
template <class T> std::span<const T> Filled_Span(const Dyn_Array<T>& list, int32_t count) {
    return std::span<const T>(list.items.data(), Filled_Count(list, count));
}

} // namespace quilmark
