#pragma once

#include "bgl/airport_model.h"
#include "json_out.h"

// An airport with every field under its own name; lists show their filled entries, and a
// taxiway list that was never allocated is null.

namespace quilmark {

void Write_Airport_Json(Json_Out& json, const Airport_Rec& airport);

} // namespace quilmark
