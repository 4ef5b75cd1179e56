#include "airspace/airspace_class.h"

#include "state/airspace_model.h"

namespace quilmark {

std::string Airspace_Class(const Airspace_Rec& a) {
    if (!a.freq_text.empty() && !a.facility_name.empty()) {
        return "ARTCC/FIR";
    }
    if (a.floor_alt <= 2500 && a.ceiling_alt <= 2500) {
        return "Airspace Class D";
    }
    if (a.floor_alt <= 4000 && a.ceiling_alt <= 4000) {
        return "Airspace Class C";
    }
    return "Airspace Class B";
}

} // namespace quilmark
