// The pieces of a sample world's readable description that both simulators' worlds share:
// its words and numbers, the scenery.cfg it describes, the variation table and the names
// of parking spots.
#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <map>
#include <stdexcept>
#include <string>
#include <vector>

namespace quilmark {

// A fault in the description, with what is wrong.
struct Fault : std::runtime_error {
    using std::runtime_error::runtime_error;
};

using Area_Fields = std::map<std::string, std::string>;

// Words of a line; "quoted words" keep their blanks, key="quoted value" too.
std::vector<std::string> Split_Words(const std::string& line);
double Number(const std::string& text);
std::pair<double, double> Pair(const std::string& text); // "x,y"

// Calls take with the words of every line of the description that is neither empty nor a
// comment ("#"). A fault in a line comes back with the file's name and the line's number.
void Read_Description(const std::string& path,
                      const std::function<void(const std::vector<std::string>&)>& take);

// An "area" line: its title and its Key=Value fields.
Area_Fields Area_From(const std::vector<std::string>& w);
// scenery.cfg with a [General] section of this title and description, then the areas.
std::string Scenery_Cfg(const std::vector<Area_Fields>& areas, const std::string& title,
                        const std::string& description);
// Creates each area's folder and its "scenery" subfolder below root.
void Create_Area_Folders(const std::filesystem::path& root, const std::vector<Area_Fields>& areas);

void Write_Text_File(const std::filesystem::path& path, const std::string& text);

// Variation in counts of 360/65536 degree east at a whole latitude and longitude index.
int16_t Variation_Counts(int lat, int lon_index);

// The code of a parking spot's name: "Parking" 1 ... "Gate" 10, "Dock" 11, "Gate A" 12 ...
int32_t Parking_Name_Code(const std::string& name);

// The nodes of a ground network, shared by position (to a tenth of a metre), and the
// names of its taxiways.
struct Network_Index {
    std::map<std::pair<long, long>, size_t> node_at;
    std::vector<std::string> names;
    // The node at (x, y): its index, and true if it is new and takes next_index.
    std::pair<size_t, bool> Node(double x, double y, size_t next_index);
    // The index of a taxiway name, added if new; a fault beyond 8 letters.
    size_t Name(const std::string& name);
};

// The box that an airspace's outline needs: its points, and the reach of its arcs and
// circles about their centre.
struct Outline_Box {
    double south = 90, west = 180, north = -90, east = -180;
    double fix_lat = 0, fix_lon = 0;
    void Cover(double lat, double lon);
    void Cover_Around_Fix(double radius_nm);
    double Nm_From_Fix(double lat, double lon) const;
};

} // namespace quilmark
