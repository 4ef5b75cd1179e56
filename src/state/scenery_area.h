// One [area.NNN] section of scenery.cfg, every value kept as the file's text.
#pragma once

#include <string>

namespace quilmark {

struct Scenery_Area {
    std::string Title;
    std::string Texture_ID;
    std::string Active;
    std::string Layer;
    std::string Required;
    std::string Remote;
    std::string Local;
    bool operator==(const Scenery_Area&) const = default;
};

} // namespace quilmark
