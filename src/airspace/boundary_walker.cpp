#include "airspace/boundary_walker.h"

#include "shell/form3_data.h"
#include "shell/module1.h"

void Walk_Boundary_Section(Form3_Data& /*form*/, Module1& /*module*/, int64_t /*section_position*/,
                           Section_Header /*header*/) {
    // Boundary decoding arrives with the airspace fetch.
}
