#pragma once

#include "json_out.h"
#include "state/airport_model.h"

namespace quilmark {

// An airport with every field under its own name; lists show their filled entries, and a
// taxiway list that was never allocated is null.
void Write_Airport_Json(Json_Out& json, const Airport_Rec& airport);

} // namespace quilmark
