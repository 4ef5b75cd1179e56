// scenery.cfg from memory. The reader cuts each area's block out of the joined text with
// an index of headers and keys built in one pass; here every block is cut again the plain
// way (each header searched from the start of the text) and every value taken with
// Get_Cfg_Value, and the two must agree. Then the folders are located as the scan does.
#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "fuzz_support.h"
#include "platform/text1252.h"
#include "scenery/locate_folders.h"
#include "scenery/scan_sequence.h"
#include "scenery/scenery_cfg.h"

namespace quilmark {

namespace {

std::vector<std::string_view> Split_Lines(std::string_view bytes) {
    std::vector<std::string_view> lines;
    size_t begin = 0;
    for (size_t i = 0; i < bytes.size(); ++i) {
        if (bytes[i] == '\r' || bytes[i] == '\n') {
            lines.push_back(bytes.substr(begin, i - begin));
            if (bytes[i] == '\r' && i + 1 < bytes.size() && bytes[i + 1] == '\n') {
                ++i;
            }
            begin = i + 1;
        }
    }
    if (begin < bytes.size()) {
        lines.push_back(bytes.substr(begin));
    }
    return lines;
}

std::vector<Scenery_Area> Plain_Areas(std::string_view bytes) {
    std::vector<std::string_view> lines = Split_Lines(bytes);
    std::vector<std::string> headers;
    std::string contents;
    for (std::string_view line : lines) {
        size_t close = line.find(']');
        if (!line.empty() && line[0] == '[' && close != std::string_view::npos &&
            headers.size() < 32767) {
            headers.emplace_back(line.substr(0, close + 1));
        }
        if (!contents.empty()) {
            contents += "\r\n";
        }
        contents += line;
    }
    std::vector<Scenery_Area> areas;
    for (size_t s = 0; s < headers.size() && areas.size() < 32767; ++s) {
        if (Lower_1252(headers[s]).find("[area.") == std::string::npos) {
            continue;
        }
        size_t start = contents.find(headers[s]);
        size_t end = s + 1 < headers.size() ? contents.find(headers[s + 1]) : contents.size();
        std::string block = contents.substr(start, std::max(start, end) - start);
        areas.push_back({Get_Cfg_Value(block, "Title"), Get_Cfg_Value(block, "Texture_ID"),
                         Get_Cfg_Value(block, "Active"), Get_Cfg_Value(block, "Layer"),
                         Get_Cfg_Value(block, "Required"), Get_Cfg_Value(block, "Remote"),
                         Get_Cfg_Value(block, "Local")});
    }
    return areas;
}

Drive_List Fuzz_Drives() {
    Drive_List list;
    list.drives.push_back({"C:", Drive_Type_Fixed, "Local Disk", "/fuzz/c", true});
    list.drives.push_back({"D:", Drive_Type_Cd_Rom, "FS2002 Disk2", "/fuzz/d", true});
    list.drives.push_back({"E:", Drive_Type_Cd_Rom, "", "/fuzz/e", false});
    return list;
}

} // namespace

} // namespace quilmark

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    using namespace quilmark;
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    auto m = std::make_unique<Module1>();
    m->scenery_areas.Release();
    const Scenery_Cfg_Status status = Read_Scenery_Cfg_Text(*m, bytes);
    Fuzz_Check(status != Scenery_Cfg_Status::Unreadable, "bytes in memory are always read");
    Fuzz_Check(Fuzz_Has_Spare_Slot(m->scenery_areas, m->scenery_area_count),
               "areas keep one spare slot");

    const std::vector<Scenery_Area> plain = Plain_Areas(bytes);
    const auto count = static_cast<size_t>(m->scenery_area_count);
    Fuzz_Check(status == Scenery_Cfg_Status::Ok ? count == plain.size() : count <= plain.size(),
               "as many areas as the plain reading finds");
    for (size_t i = 0; i < count; ++i) {
        Fuzz_Check(m->scenery_areas[i] == plain[i], "every value as the plain reading finds it");
    }

    m->fs_path = "C:\\Program Files\\FS2002";
    Locate_Scenery_Folders(*m, Fuzz_Drives());
    for (size_t i = 0; i < count; ++i) {
        (void)Is_Airport_Area(m->scenery_areas[i]);
        (void)Is_Atc_Area(m->scenery_areas[i]);
    }
    return 0;
}
