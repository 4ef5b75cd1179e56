// From the paths of scenery.cfg to folders on this machine.
//
// scenery.cfg names an area's folder relative to the simulator's folder ("Scenery\World"),
// absolutely ("D:\Addons\Foo"), or behind the volume label of a CD ("[FS2002 Disk2]\..."),
// and the area's BGL files lie in a subfolder "scenery" of the named folder, except for
// the simulator's own "Scenery" folder. Locate_Scenery_Folders rewrites Local and Remote of
// every area in place so that Local names the folder whose "*.bgl" files are read. The
// results are program paths: resolve them with Resolve_Native_Path and the same drive
// list.
#pragma once

#include <string>

#include "platform/drives.h"
#include "state/module1.h"

namespace quilmark {

// Three passes over the areas 0 to scenery_area_count - 1, with the fixed and CD-ROM
// drives of the list:
//   1. a Local or Remote that begins with "[" and holds a "]" has every "[label]" of a
//      ready drive (compared in lower case) replaced by the drive's path ("D:"), and is
//      then lower case;
//   2. a Local that holds no drive path anywhere becomes fs_path + "\" + Local;
//   3. a Local other than fs_path + "\Scenery" (compared in lower case) becomes lower case
//      + "\scenery"; a Remote becomes lower case + "\scenery".
// Empty fields stay empty.
void Locate_Scenery_Folders(Module1& m, const Drive_List& drives);

// The drive list for the program's fs_path: the drives of the Wine prefix that holds the
// simulator folder, or the plain list outside one.
Drive_List Drive_List_For_Fs_Path(const std::string& fs_path);

} // namespace quilmark
