#include "state/airport_model.h"

namespace quilmark {

std::string Airport_List_Text(const Airport_Rec& airport) {
    std::string text;
    text.reserve(airport.ident.size() + airport.name.size() + 3);
    text += airport.ident;
    text += " (";
    text += airport.name;
    text += ')';
    return text;
}

} // namespace quilmark
