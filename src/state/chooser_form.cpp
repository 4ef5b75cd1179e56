#include "state/chooser_form.h"

#include <algorithm>

#include "platform/text1252.h"

namespace quilmark {

void Sort_List_Entries(std::vector<std::string>& entries) {
    std::stable_sort(
        entries.begin(), entries.end(),
        [](const std::string& a, const std::string& b) { return Compare_No_Case(a, b) < 0; });
}

std::vector<std::string> Recording_Chooser_Form::Sorted_List() const {
    std::vector<std::string> sorted = list;
    Sort_List_Entries(sorted);
    return sorted;
}

std::vector<std::string> Recording_Chooser_Form::Distinct_Status_Texts() const {
    std::vector<std::string> out;
    for (const std::string& text : status_texts) {
        if (out.empty() || out.back() != text) {
            out.push_back(text);
        }
    }
    return out;
}

} // namespace quilmark
