// Lays out an FS2004 simulator folder (scenery.cfg, Scenery/Base/Scenery/magdec.bgl and
// the scenery files of the areas) from a readable description of a small world.
#pragma once

#include <string>

namespace quilmark {

// Writes the world described in the file at description_path below out_folder. False with
// a message in error if the description has a fault.
bool Write_Fs2004_Sample_World(const std::string& description_path, const std::string& out_folder,
                               std::string& error);

} // namespace quilmark
