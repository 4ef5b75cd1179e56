// KXYZ "Example Field": one airport with two runways, an ILS on each end of the first,
// a VOR between them, an ILS that sits on neither end, comm records of every kind and
// a taxiway block with points, parking, runway and taxiway paths and names.
#pragma once

#include "bgl_writer/bgl_writer.h"

namespace quilmark {

Bytes Example_Field();

} // namespace quilmark
