#include "support/example_field.h"

#include "support/decode.h"

namespace quilmark {

Bytes Example_Field() {
    Runway_Fields rw1;
    rw1.lat_raw = 5001000;
    rw1.lon_raw = -1431650000;
    rw1.elevation_m = 130;
    rw1.heading_raw = 536870912; // 45 degrees true
    rw1.length_ft = 6000;
    rw1.width_ft = 150;
    rw1.designator_code = 1; // L
    rw1.number = 4;
    Runway_Fields rw2;
    rw2.lat_raw = 5000500;
    rw2.lon_raw = -1431660000;
    rw2.elevation_m = 131;
    rw2.heading_raw = 1073741824; // 90 degrees
    rw2.length_ft = 900;          // 274.32 m: drawn full length
    rw2.width_ft = 75;
    rw2.designator_code = 0;
    rw2.number = 9;

    Navaid_Fields ils_a{4999000, -1431700000, 536870912, 0x01103000, 4, "IXYZ", 8};
    Navaid_Fields vor{4999000, -1431700000, 0, 0x01139000, 2, "SEA", 4};
    Navaid_Fields ils_b{5003000, -1431600000, -1610612736, 0x01119000, 4, "IABC", 8}; // -135
    Navaid_Fields ils_c{4999500, -1431640000, 1193046471, 0x01085000, 4, "", 0};      // 100: no end

    Bytes taxiways = Taxiway_Block_Record({
        Point_List({{0, 0, 0}, {1, 100.5f, -50.25f}, {2, -200, 300}}),
        Parking_List({{50, 60, 20, Parking_Code_Word(9, 12, 13)},
                      {-30, 0, 15.24f, Parking_Code_Word(2, 1056, 2)}}),
        Path_List({{0, 0, 1, 0}, {0, 1, 2, 1}, {1, 0, 2, 1}, {2, 2, 0, 7}, {0, 2, 0, 5}}),
        Name_List({"A", "B1"}),
    });
    return One_Airport_File(
        "KXYZ",
        Concat({Reference_Point_Record(5000875, -1431655765), Name_Record("Example Field", 16),
                Comm_Record(0x01199000, 6), Comm_Record(0x01200000, 6), Comm_Record(0x01217000, 5),
                Comm_Record(0x01180000, 1), Comm_Record(0x01230000, 3), Comm_Record(0x01247500, 8),
                Comm_Record(0x01260500, 9), Comm_Record(0x01283500, 7), Comm_Record(0x01321000, 10),
                Runway_Record(rw1), Navaid_Record(ils_a), Navaid_Record(vor), Navaid_Record(ils_b),
                Runway_Record(rw2), Navaid_Record(ils_c), taxiways}));
}

} // namespace quilmark
