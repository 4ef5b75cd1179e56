// A dynamic array that knows whether it was ever allocated. The program's arrays either
// grow one slot at a time keeping a spare empty top slot, or are allocated once from a
// count; an array that was never allocated is stored and treated differently from one
// that holds a single empty slot.
#pragma once

#include <cstddef>
#include <vector>

namespace quilmark {

template <class T> struct Dyn_Array {
    bool allocated = false;
    std::vector<T> items;

    // Resize to hold slots 0 to upper_bound, keeping the contents.
    void Resize_Keep(size_t upper_bound) {
        allocated = true;
        items.resize(upper_bound + 1);
    }
    // Allocate exactly n slots afresh, discarding the contents (n may be 0).
    void Allocate(size_t n) {
        allocated = true;
        items.assign(n, T{});
    }
    // Reallocate to a single empty slot, giving the memory of the old contents back.
    void Release() {
        allocated = true;
        items = std::vector<T>(1);
    }
    // Back to never allocated.
    void Clear() {
        allocated = false;
        items.clear();
    }
    size_t Slot_Count() const { return items.size(); }
    T& operator[](size_t i) { return items[i]; }
    const T& operator[](size_t i) const { return items[i]; }
    bool operator==(const Dyn_Array&) const = default;
};

// Appends to an array that grows one slot at a time: count goes up by one, the array then
// holds slots 0 to count, its top slot the spare empty one, and the new entry (the slot
// that was the spare one) is returned to be filled.
template <class T, class Count> T& Append(Dyn_Array<T>& list, Count& count) {
    count += 1;
    list.Resize_Keep(static_cast<size_t>(count));
    return list[static_cast<size_t>(count) - 1];
}

} // namespace quilmark
