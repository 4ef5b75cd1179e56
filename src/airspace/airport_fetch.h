// GET AIRPORT: from the chosen list entry to the airport and the airspace around it. The
// airport's record is found by its list text and copied out of the list, which is then
// released; every BGL file of the ATC folder is read for the boundaries whose box holds the
// airport; each gets its class, the airport's own approach and departure control is added
// as a circle of 20 miles, and the chart takes over.
#pragma once

#include <optional>
#include <string>

namespace quilmark {

class Chooser_Form;
struct Form3_Data;
struct Module1;

// chosen_entry: the text of the chosen list entry, or nothing if no entry is chosen (then
// nothing happens at all).
void Get_Airport(Module1& m, Form3_Data& form, Chooser_Form& ui,
                 const std::optional<std::string>& chosen_entry);

} // namespace quilmark
