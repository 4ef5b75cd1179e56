// The diagram's texts: headings, lengths, bands, frequencies and spot names as a pilot
// reads them.
#include <algorithm>
#include <sstream>

#include "chart/chart_records.h"
#include "chart/diagram_records.h"
#include "state/airport_model.h"

namespace quilmark {

namespace {

constexpr char Degree_Sign = '\xB0'; // Windows-1252
constexpr char Times_Sign = '\xD7';  // Windows-1252

bool Starts_With(const std::string& text, std::string_view prefix) {
    return text.size() >= prefix.size() && text.compare(0, prefix.size(), prefix) == 0;
}

} // namespace

std::string Heading_Text(int heading) {
    const int folded = ((heading % 360) + 360) % 360;
    std::string digits = std::to_string(folded);
    return std::string(3 - digits.size(), '0') + digits + Degree_Sign;
}

std::string Feet_Text(int32_t feet) {
    std::string digits = std::to_string(feet < 0 ? -static_cast<int64_t>(feet) : feet);
    for (int i = static_cast<int>(digits.size()) - 3; i > 0; i -= 3) {
        digits.insert(static_cast<size_t>(i), 1, ',');
    }
    return feet < 0 ? std::string(1, '-').append(digits) : digits;
}

std::string Runway_Size_Text(int32_t length_ft, int32_t width_ft) {
    return Feet_Text(length_ft) + ' ' + Times_Sign + ' ' + Feet_Text(width_ft);
}

std::string Variation_Text(int variation) {
    if (variation == 0) {
        return std::string("0") + Degree_Sign;
    }
    return std::to_string(variation < 0 ? -variation : variation) + Degree_Sign +
           (variation > 0 ? "E" : "W");
}

std::string Frequency_Text(const std::string& mhz) {
    if (mhz.empty() || mhz.find('.') != std::string::npos) {
        return mhz;
    }
    return mhz + ".0";
}

std::string Band_Text(int32_t floor_alt, int32_t ceiling_alt) {
    return (floor_alt == 0 ? std::string("SFC") : std::to_string(floor_alt)) + "-" +
           std::to_string(ceiling_alt);
}

std::string Airspace_Frequencies(const std::string& freq_text) {
    std::istringstream words(freq_text);
    std::string result;
    for (std::string word; words >> word;) {
        if (word == "Mhz" || word == "MHz") {
            continue;
        }
        if (!result.empty()) {
            result += ' ';
        }
        result += Frequency_Text(word);
    }
    return result;
}

int32_t Field_Elevation(const Airport_Rec& airport) {
    int32_t highest = 0;
    const size_t count = Filled_Count(airport.runways, airport.runway_count);
    for (size_t i = 0; i < count; ++i) {
        highest = i == 0 ? airport.runways[i].altitude_ft
                         : std::max(highest, airport.runways[i].altitude_ft);
    }
    return highest;
}

bool Is_Gate(const std::string& spot_name) {
    return Starts_With(spot_name, "GATE");
}

std::string Spot_Label(const std::string& spot_name) {
    if (Starts_With(spot_name, "GATE ")) {
        // "GATE A 4" to "A4": the letter and the number joined, as gates are spoken.
        std::string rest = spot_name.substr(5);
        rest.erase(std::remove(rest.begin(), rest.end(), ' '), rest.end());
        return rest;
    }
    const std::string::size_type parking = spot_name.find("PARKING");
    if (parking != std::string::npos) {
        return spot_name.substr(0, parking) + "PKG" + spot_name.substr(parking + 7);
    }
    return spot_name;
}

} // namespace quilmark
