// The record of the configuration file "quilmark_config.cfg".
#pragma once

#include <cstdint>
#include <string>

namespace quilmark {

// fs_version: which simulator the user has.
constexpr uint8_t Fs_Version_2002 = 1;
constexpr uint8_t Fs_Version_2004 = 2;

struct Config_Rec {
    std::string title;       // "Quilmark v1.1"
    uint8_t format_mark = 0; // always written as 1
    uint8_t fs_version = 0;  // Fs_Version_2002 or Fs_Version_2004
    std::string fs_path;     // the simulator's main directory
    int32_t airport_count = 0;
    bool operator==(const Config_Rec&) const = default;
};

} // namespace quilmark
