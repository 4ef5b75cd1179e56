#include "scenery/scenery_cfg.h"

#include <algorithm>
#include <array>
#include <optional>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "platform/native_paths.h"
#include "platform/text1252.h"

namespace quilmark {

namespace {

constexpr size_t Max_Sections = 32767;
constexpr int16_t Max_Area_Count = 32767;
// Real files are a few hundred kilobytes; this only stops a file built to repeat one huge
// value in thousands of overlapping blocks.
constexpr size_t Value_Budget = size_t{256} << 20;
// The reader holds the file several times over (lines, joined text, lower case).
constexpr uint64_t Max_File_Size = uint64_t{256} << 20;

// The keys of an area, in the order of the fields of Scenery_Area.
constexpr std::array<std::string_view, 7> Area_Keys = {"Title",    "Texture_ID", "Active", "Layer",
                                                       "Required", "Remote",     "Local"};

// Calls on_line for each line; a line ends at CR, CR LF or LF, and a last line without an
// ending counts too.
template <class On_Line> void For_Each_Line(std::string_view bytes, On_Line on_line) {
    size_t i = 0;
    while (i < bytes.size()) {
        size_t end = bytes.find_first_of("\r\n", i);
        if (end == std::string_view::npos) {
            on_line(bytes.substr(i));
            return;
        }
        on_line(bytes.substr(i, end - i));
        i = end + 1;
        if (bytes[end] == '\r' && i < bytes.size() && bytes[i] == '\n') {
            ++i;
        }
    }
}

// Section headers: lines that begin with "[" and hold a "]", taken through the first "]".
std::vector<std::string_view> Collect_Headers(std::string_view bytes) {
    std::vector<std::string_view> headers;
    For_Each_Line(bytes, [&](std::string_view line) {
        size_t close = line.find(']');
        if (!line.empty() && line[0] == '[' && close != std::string_view::npos &&
            headers.size() < Max_Sections) {
            headers.push_back(line.substr(0, close + 1));
        }
    });
    return headers;
}

// The whole file as one text: lines joined by CR LF, leading empty lines dropped.
std::string Build_Contents(std::string_view bytes) {
    std::string contents;
    For_Each_Line(bytes, [&](std::string_view line) {
        if (contents.empty()) {
            contents.assign(line);
        } else {
            contents += "\r\n";
            contents += line;
        }
    });
    return contents;
}

// The position of the first occurrence of every header in contents. A header is "[", text
// without "]", and "]"; so an occurrence at a "[" ends at the first "]" behind it, and one
// walk over the "[" characters finds them all, where a search per header would go over
// the text again for every section.
std::unordered_map<std::string_view, size_t>
First_Occurrences(std::string_view contents, const std::vector<std::string_view>& headers) {
    std::unordered_map<std::string_view, size_t> first;
    std::unordered_set<size_t> lengths;
    for (std::string_view header : headers) {
        first.emplace(header, std::string_view::npos);
        lengths.insert(header.size());
    }
    size_t unseen = first.size();
    size_t close = contents.find(']');
    for (size_t open = contents.find('[');
         open != std::string_view::npos && close != std::string_view::npos && unseen > 0;
         open = contents.find('[', open + 1)) {
        if (close < open) {
            close = contents.find(']', open);
            if (close == std::string_view::npos) {
                break;
            }
        }
        size_t length = close - open + 1;
        if (!lengths.contains(length)) {
            continue;
        }
        auto found = first.find(contents.substr(open, length));
        if (found != first.end() && found->second == std::string_view::npos) {
            found->second = open;
            --unseen;
        }
    }
    return first;
}

// Where each key's "key=" stands in the lower-case contents, in ascending order, so that
// the first one inside a block is a binary search away.
struct Key_Index {
    std::string_view contents;
    std::array<std::string, Area_Keys.size()> needles;
    std::array<std::vector<size_t>, Area_Keys.size()> positions;

    explicit Key_Index(std::string_view text) : contents(text) {
        std::string lower = Lower_1252(text);
        for (size_t k = 0; k < Area_Keys.size(); ++k) {
            needles[k] = Lower_1252(Area_Keys[k]) + "=";
            for (size_t p = lower.find(needles[k]); p != std::string::npos;
                 p = lower.find(needles[k], p + 1)) {
                positions[k].push_back(p);
            }
        }
    }

    // Get_Cfg_Value of key k for the block contents[start, end).
    std::string_view Value(size_t k, size_t start, size_t end) const {
        const std::vector<size_t>& at = positions[k];
        auto it = std::lower_bound(at.begin(), at.end(), start);
        if (it == at.end() || *it + needles[k].size() > end) {
            return {};
        }
        size_t first = *it + needles[k].size();
        // The block has CR LF appended: the value ends at the first pair inside the block,
        // or else at the block's end.
        std::string_view rest = contents.substr(first, end - first);
        return rest.substr(0, std::min(rest.find("\r\n"), rest.size()));
    }
};

} // namespace

std::string Get_Cfg_Value(std::string_view block, std::string_view key) {
    std::string text(block);
    text += "\r\n";
    std::string needle = Lower_1252(key) + "=";
    size_t found = Lower_1252(text).find(needle);
    if (found == std::string::npos) {
        return {};
    }
    size_t first = found + needle.size();
    return text.substr(first, text.find("\r\n", first) - first);
}

Scenery_Cfg_Status Read_Scenery_Cfg_Text(Module1& m, std::string_view file_bytes) {
    std::vector<std::string_view> headers = Collect_Headers(file_bytes);
    std::string contents = Build_Contents(file_bytes);
    if (headers.empty()) {
        return Scenery_Cfg_Status::Ok;
    }
    std::unordered_map<std::string_view, size_t> first = First_Occurrences(contents, headers);
    std::optional<Key_Index> index;
    size_t value_bytes = 0;
    for (size_t s = 0; s < headers.size(); ++s) {
        if (Lower_1252(headers[s]).find("[area.") == std::string::npos) {
            continue;
        }
        if (m.scenery_area_count >= Max_Area_Count) {
            break;
        }
        if (!index) {
            index.emplace(contents);
        }
        // The block runs from the header to just before the next section's header, of any
        // kind; both searched from the start of the text.
        size_t start = std::min(first.at(headers[s]), contents.size());
        size_t end = contents.size();
        if (s + 1 < headers.size()) {
            end = first.at(headers[s + 1]);
        }
        end = std::max(start, std::min(end, contents.size()));

        std::array<std::string_view, Area_Keys.size()> values;
        for (size_t k = 0; k < Area_Keys.size(); ++k) {
            values[k] = index->Value(k, start, end);
            value_bytes += values[k].size();
        }
        if (value_bytes > Value_Budget) {
            return Scenery_Cfg_Status::Too_Large;
        }
        Scenery_Area& area = Append(m.scenery_areas, m.scenery_area_count);
        area.Title = values[0];
        area.Texture_ID = values[1];
        area.Active = values[2];
        area.Layer = values[3];
        area.Required = values[4];
        area.Remote = values[5];
        area.Local = values[6];
    }
    return Scenery_Cfg_Status::Ok;
}

Scenery_Cfg_Status Read_Scenery_Cfg(Module1& m, const std::string& native_path) {
    std::optional<std::string> bytes = Read_Whole_File(native_path, Max_File_Size);
    if (!bytes) {
        return Scenery_Cfg_Status::Unreadable;
    }
    return Read_Scenery_Cfg_Text(m, *bytes);
}

bool Is_Airport_Area(const Scenery_Area& area) {
    return Equal_No_Case(area.Title, "Airport and Facilities Data") &&
           Equal_No_Case(area.Required, "TRUE");
}

bool Is_Atc_Area(const Scenery_Area& area) {
    return Equal_No_Case(area.Title, "Additional Facility Data") &&
           Equal_No_Case(area.Required, "TRUE");
}

} // namespace quilmark
