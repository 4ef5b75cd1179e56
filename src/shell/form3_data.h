// The members of the airport chooser that the scan, the decoders and the fetch share.
#pragma once

#include <cstdint>
#include <string>

#include "bgl/bgl_image.h"

struct Form3_Data {
    Bgl_Image bgl_image;
    // True if the database file existed when the scan looked: the airport walker then
    // adds no airports.
    bool database_present = false;
    bool cd_prompt_shown = false;
    int32_t bgl_file_total = 0;
    int16_t area_index = 0;
    std::string area_folder;
};
