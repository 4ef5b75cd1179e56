#include "scenery/locate_folders.h"

#include <algorithm>

#include "platform/native_paths.h"
#include "platform/text1252.h"

namespace quilmark {

namespace {

bool Takes_Part(const Drive_Rec& drive) {
    return drive.drive_type == Drive_Type_Fixed || drive.drive_type == Drive_Type_Cd_Rom;
}

std::string Replace_All(std::string_view text, std::string_view from, std::string_view to) {
    std::string out;
    size_t i = 0;
    for (size_t hit = text.find(from); hit != std::string_view::npos; hit = text.find(from, i)) {
        out.append(text.substr(i, hit - i));
        out.append(to);
        i = hit + from.size();
    }
    out.append(text.substr(i));
    return out;
}

// A path that begins with a volume label in brackets gets the drive's path in its place.
void Replace_Volume_Label(std::string& field, const Drive_Rec& drive) {
    std::string lower = Lower_1252(field);
    bool label_path = !lower.empty() && lower[0] == '[' && lower.find(']') != std::string::npos;
    if (!label_path) {
        return;
    }
    std::string label_text = Lower_1252("[" + drive.volume_label + "]");
    if (lower.find(label_text) != std::string::npos) {
        field = Replace_All(lower, label_text, drive.path);
    }
}

} // namespace

void Locate_Scenery_Folders(Module1& m, const Drive_List& drives) {
    auto count = static_cast<size_t>(std::max<int16_t>(m.scenery_area_count, 0));
    count = std::min(count, m.scenery_areas.Slot_Count());

    // Volume labels. A drive without a medium has no label to look up.
    for (size_t i = 0; i < count; ++i) {
        Scenery_Area& area = m.scenery_areas[i];
        for (const Drive_Rec& drive : drives.drives) {
            if (Takes_Part(drive) && drive.ready) {
                Replace_Volume_Label(area.Local, drive);
                Replace_Volume_Label(area.Remote, drive);
            }
        }
    }

    // Relative paths. A drive path anywhere in the text makes it absolute.
    for (size_t i = 0; i < count; ++i) {
        Scenery_Area& area = m.scenery_areas[i];
        if (area.Local.empty()) {
            continue;
        }
        bool absolute = false;
        for (const Drive_Rec& drive : drives.drives) {
            absolute = absolute || (Takes_Part(drive) && Contains_No_Case(area.Local, drive.path));
        }
        if (!absolute) {
            area.Local = m.fs_path + "\\" + area.Local;
        }
    }

    // The BGL files of an area lie in its subfolder "scenery"; the simulator's own Scenery
    // folder holds them directly.
    std::string own_scenery = Lower_1252(m.fs_path + "\\Scenery");
    for (size_t i = 0; i < count; ++i) {
        Scenery_Area& area = m.scenery_areas[i];
        if (!area.Local.empty() && Lower_1252(area.Local) != own_scenery) {
            area.Local = Lower_1252(area.Local) + "\\scenery";
        }
        if (!area.Remote.empty()) {
            area.Remote = Lower_1252(area.Remote) + "\\scenery";
        }
    }
}

Drive_List Drive_List_For_Fs_Path(const std::string& fs_path) {
    if (fs_path.empty()) {
        return Plain_Drive_List();
    }
    return Drive_List_For_Folder(Resolve_Native_Path(Plain_Drive_List(), fs_path));
}

} // namespace quilmark
