// The members of the airport chooser that the scan and the fetch share.
#pragma once

#include <cstdint>
#include <string>

#include <vector>

#include "bgl/bgl_image.h"
#include "platform/drives.h"
#include "platform/native_paths.h"
#include "state/airspace_model.h"

namespace quilmark {

struct Form3_Data {
    Bgl_Image bgl_image;
    // True if the database file existed when the scan looked: the airport walker then
    // adds no airports.
    bool database_present = false;
    bool cd_prompt_shown = false;
    int32_t bgl_file_total = 0;
    int16_t area_index = 0;
    std::string area_folder;
    // The running enumeration of area_folder's "*.bgl" files.
    std::vector<Listed_File_Rec> area_files;
    size_t next_area_file = 0;
    // What is left of Max_Airspace_Bytes_Per_Fetch for the boundary walker; the fetch sets
    // it afresh.
    int64_t airspace_bytes_left = Max_Airspace_Bytes_Per_Fetch;
    // The drives through which the program's paths reach the file system; set by the scan.
    Drive_List drives;
};

} // namespace quilmark
