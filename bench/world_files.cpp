#include "world_files.h"

#include <memory>
#include <set>

#include "bgl/bgl_image.h"
#include "fs2004/area_order.h"
#include "fs2004/bgl_file.h"
#include "platform/native_paths.h"
#include "scenery/fs2004_scan.h"
#include "scenery/locate_folders.h"
#include "scenery/scan_sequence.h"
#include "scenery/scenery_cfg.h"
#include "state/module1.h"

namespace quilmark {

World_Files Find_World_Files(const std::string& fs_path) {
    auto m = std::make_unique<Module1>();
    m->fs_path = fs_path;
    const Drive_List drives = Drive_List_For_Fs_Path(fs_path);
    World_Files files;
    files.scenery_cfg = Resolve_Native_Path(drives, fs_path + "\\scenery.cfg");
    files.magdec = Resolve_Native_Path(drives, fs_path + "\\scenery\\magdec.bgl");
    m->scenery_areas.Release();
    Read_Scenery_Cfg(*m, files.scenery_cfg);
    Locate_Scenery_Folders(*m, drives);
    std::set<std::string> listed;
    for (int16_t i = 0; i < m->scenery_area_count; ++i) {
        const Scenery_Area& area = m->scenery_areas[static_cast<size_t>(i)];
        if ((Is_Airport_Area(area) || Is_Atc_Area(area)) && listed.insert(area.Local).second) {
            for (const Listed_File_Rec& f : List_Folder_Files(drives, area.Local, "*.bgl")) {
                (Is_Airport_Area(area) ? files.airport_files : files.atc_files)
                    .push_back(f.native_path);
            }
        }
    }
    return files;
}

World_Files Find_Fs2004_World_Files(const std::string& fs_path) {
    auto m = std::make_unique<Module1>();
    m->fs_path = fs_path;
    const Drive_List drives = Drive_List_For_Fs_Path(fs_path);
    World_Files files;
    files.scenery_cfg = Resolve_Native_Path(drives, fs_path + "\\scenery.cfg");
    files.magdec = Resolve_Native_Path(drives, Fs2004_Magdec_Path(fs_path));
    m->scenery_areas.Release();
    Read_Scenery_Cfg(*m, files.scenery_cfg);
    Locate_Scenery_Folders(*m, drives);
    Bgl_Image image;
    for (size_t i : Fs2004_Area_Order(m->scenery_areas, m->scenery_area_count)) {
        for (const Listed_File_Rec& f :
             List_Folder_Files(drives, m->scenery_areas[i].Local, "*.bgl")) {
            files.airport_files.push_back(f.native_path);
            if (Load_Bgl_Image(image, f.native_path) && Is_Fs2004_File(image) &&
                Declares_Fs2004_Section(image, Fs2004_Section_Boundaries)) {
                files.atc_files.push_back(f.native_path);
            }
        }
    }
    return files;
}

size_t Largest_Airport_Index(const Dyn_Array<Airport_Rec>& airports, int32_t count) {
    size_t best = 0;
    for (size_t i = 0; i < static_cast<size_t>(count); ++i) {
        if (airports[i].taxi_path_count > airports[best].taxi_path_count) {
            best = i;
        }
    }
    return best;
}

} // namespace quilmark
