#include "fs2004/area_order.h"

#include <algorithm>
#include <charconv>
#include <string>

#include "platform/text1252.h"

namespace quilmark {

namespace {

long long Layer_Number(const std::string& text) {
    const size_t first = text.find_first_not_of(" \t");
    if (first == std::string::npos) {
        return 0;
    }
    const size_t last = text.find_last_not_of(" \t");
    long long value = 0;
    const char* begin = text.data() + first;
    const char* end = text.data() + last + 1;
    const auto [stop, error] = std::from_chars(begin, end, value);
    return error == std::errc{} && stop == end ? value : 0;
}

} // namespace

std::vector<size_t> Fs2004_Area_Order(const Dyn_Array<Scenery_Area>& areas, int16_t count) {
    const size_t listed =
        std::min(static_cast<size_t>(std::max<int16_t>(count, 0)), areas.Slot_Count());
    std::vector<std::pair<long long, size_t>> active;
    for (size_t i = 0; i < listed; ++i) {
        if (Equal_No_Case(areas[i].Active, "TRUE") && !areas[i].Local.empty()) {
            active.push_back({Layer_Number(areas[i].Layer), i});
        }
    }
    std::stable_sort(active.begin(), active.end(),
                     [](const auto& a, const auto& b) { return a.first < b.first; });
    std::vector<size_t> order;
    std::vector<std::string> folders;
    for (const auto& [layer, index] : active) {
        const std::string folder = Lower_1252(areas[index].Local);
        if (std::find(folders.begin(), folders.end(), folder) == folders.end()) {
            folders.push_back(folder);
            order.push_back(index);
        }
    }
    return order;
}

} // namespace quilmark
