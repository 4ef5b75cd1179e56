#include "description.h"

#include <algorithm>
#include <cmath>
#include <fstream>
#include <sstream>

#include "platform/text1252.h"

namespace quilmark {

namespace fs = std::filesystem;

// Words of a line; "quoted words" keep their blanks, key="quoted value" too.
std::vector<std::string> Split_Words(const std::string& line) {
    std::vector<std::string> words;
    std::string word;
    bool quoted = false, any = false;
    for (char c : line) {
        if (c == '"') {
            quoted = !quoted;
            any = true;
        } else if ((c == ' ' || c == '\t') && !quoted) {
            if (any) {
                words.push_back(word);
            }
            word.clear();
            any = false;
        } else {
            word += c;
            any = true;
        }
    }
    if (quoted) {
        throw Fault("unclosed quote");
    }
    if (any) {
        words.push_back(word);
    }
    return words;
}

double Number(const std::string& text) {
    size_t used = 0;
    double v = std::stod(text, &used);
    if (used != text.size()) {
        throw Fault("not a number: " + text);
    }
    return v;
}

std::pair<double, double> Pair(const std::string& text) {
    size_t comma = text.find(',');
    if (comma == std::string::npos) {
        throw Fault("expected x,y: " + text);
    }
    return {Number(text.substr(0, comma)), Number(text.substr(comma + 1))};
}

int32_t Parking_Name_Code(const std::string& name) {
    static const char* const Names[] = {
        "Parking",    "N Parking", "NE Parking", "E Parking", "SE Parking", "S Parking",
        "SW Parking", "W Parking", "NW Parking", "Gate",      "Dock",       "Gate A",
        "Gate B",     "Gate C",    "Gate D",     "Gate E",    "Gate F",     "Gate G",
        "Gate H",     "Gate I",    "Gate J",     "Gate K",    "Gate L",     "Gate M",
        "Gate N",     "Gate O",    "Gate P",     "Gate Q",    "Gate R",     "Gate S",
        "Gate T",     "Gate U",    "Gate V",     "Gate W",    "Gate X",     "Gate Y",
        "Gate Z"};
    for (int32_t i = 0; i < 37; ++i) {
        if (Equal_No_Case(name, Names[i])) {
            return i + 1;
        }
    }
    throw Fault("no parking name code for " + name);
}

void Read_Description(const std::string& path,
                      const std::function<void(const std::vector<std::string>&)>& take) {
    std::ifstream in(path);
    if (!in) {
        throw Fault("cannot read " + path);
    }
    std::string line;
    int line_number = 0;
    while (std::getline(in, line)) {
        ++line_number;
        try {
            if (!line.empty() && line.back() == '\r') {
                line.pop_back();
            }
            std::vector<std::string> w = Split_Words(line);
            if (!w.empty() && w[0][0] != '#') {
                take(w);
            }
        } catch (const std::exception& e) {
            throw Fault(path + ":" + std::to_string(line_number) + ": " + e.what());
        }
    }
}

Area_Fields Area_From(const std::vector<std::string>& w) {
    Area_Fields area{{"Title", w.at(1)}};
    for (size_t i = 2; i < w.size(); ++i) {
        size_t eq = w[i].find('=');
        if (eq == std::string::npos) {
            throw Fault("expected Key=Value: " + w[i]);
        }
        area[w[i].substr(0, eq)] = w[i].substr(eq + 1);
    }
    return area;
}

void Create_Area_Folders(const fs::path& root, const std::vector<Area_Fields>& areas) {
    for (const auto& area : areas) {
        std::string local = area.at("Local");
        std::replace(local.begin(), local.end(), '\\', '/');
        fs::create_directories(root / local / "scenery");
    }
}

void Write_Text_File(const fs::path& path, const std::string& text) {
    fs::create_directories(path.parent_path());
    std::ofstream out(path, std::ios::binary);
    out << text;
    if (!out) {
        throw Fault("cannot write " + path.string());
    }
}

std::string Scenery_Cfg(const std::vector<Area_Fields>& areas, const std::string& title,
                        const std::string& description) {
    std::ostringstream cfg;
    cfg << "[General]\r\nTitle=" << title << "\r\nDescription=" << description
        << "\r\nClean_on_Exit=TRUE\r\n";
    int index = 1;
    for (const auto& area : areas) {
        char header[32];
        std::snprintf(header, sizeof header, "[Area.%03d]", index++);
        cfg << "\r\n" << header << "\r\n";
        for (const char* key :
             {"Title", "Texture_ID", "Remote", "Local", "Layer", "Active", "Required"}) {
            auto it = area.find(key);
            cfg << key << "=" << (it == area.end() ? "" : it->second) << "\r\n";
        }
    }
    return cfg.str();
}

// Variation east, a smooth field that is right for the Pacific Northwest
// of about 2001 (19.5 degrees east at Seattle) and stays within 30 degrees elsewhere.
int16_t Variation_Counts(int lat, int lon_index) {
    double lon = lon_index > 180 ? lon_index - 360 : lon_index;
    double degrees = 19.5 - 0.45 * (lon + 122) - 0.15 * (lat - 47.5);
    degrees = std::max(-30.0, std::min(30.0, degrees));
    return static_cast<int16_t>(std::lround(degrees * 65536 / 360));
}

std::pair<size_t, bool> Network_Index::Node(double x, double y, size_t next_index) {
    const auto [it, fresh] =
        node_at.emplace(std::pair{std::lround(x * 10), std::lround(y * 10)}, next_index);
    return {it->second, fresh};
}

size_t Network_Index::Name(const std::string& name) {
    for (size_t i = 0; i < names.size(); ++i) {
        if (names[i] == name) {
            return i;
        }
    }
    if (name.size() > 8) {
        throw Fault("taxiway name longer than 8 letters: " + name);
    }
    names.push_back(name);
    return names.size() - 1;
}

void Outline_Box::Cover(double lat, double lon) {
    south = std::min(south, lat);
    north = std::max(north, lat);
    west = std::min(west, lon);
    east = std::max(east, lon);
}

void Outline_Box::Cover_Around_Fix(double radius_nm) {
    double dlat = radius_nm / 60;
    double dlon = dlat / std::cos(fix_lat * 3.14159265358979 / 180);
    Cover(fix_lat - dlat, fix_lon - dlon);
    Cover(fix_lat + dlat, fix_lon + dlon);
}

double Outline_Box::Nm_From_Fix(double lat, double lon) const {
    double dy = (lat - fix_lat) * 60;
    double dx = (lon - fix_lon) * 60 * std::cos(fix_lat * 3.14159265358979 / 180);
    return std::sqrt(dx * dx + dy * dy);
}

} // namespace quilmark
