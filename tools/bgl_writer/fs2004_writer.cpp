#include "bgl_writer/fs2004_writer.h"

#include <cmath>
#include <cstring>

namespace quilmark {

uint32_t Pack_Latitude(double degrees) {
    return static_cast<uint32_t>(std::llround((90.0 - degrees) * 536870912.0 / 180.0));
}

uint32_t Pack_Longitude(double degrees) {
    return static_cast<uint32_t>(std::llround((degrees + 180.0) * 805306368.0 / 360.0));
}

uint32_t Pack_Icao(std::string_view text, bool shifted) {
    uint32_t value = 0;
    for (char c : text) {
        uint32_t code = 0;
        if (c >= '0' && c <= '9') {
            code = 2 + static_cast<uint32_t>(c - '0');
        } else if (c >= 'A' && c <= 'Z') {
            code = 12 + static_cast<uint32_t>(c - 'A');
        }
        value = value * 38 + code;
    }
    return shifted ? value << 5 : value;
}

Bytes Fs9_Record(uint16_t id, const Bytes& payload) {
    return Fs9_Bytes{}.U16(id).U32(static_cast<uint32_t>(6 + payload.size())).Append(payload).bytes;
}

Fs9_Bytes& Fs9_Bytes::U8(uint8_t v) {
    bytes.push_back(v);
    return *this;
}

Fs9_Bytes& Fs9_Bytes::U16(uint16_t v) {
    return U8(static_cast<uint8_t>(v & 0xFF)).U8(static_cast<uint8_t>(v >> 8));
}

Fs9_Bytes& Fs9_Bytes::U32(uint32_t v) {
    return U16(static_cast<uint16_t>(v & 0xFFFF)).U16(static_cast<uint16_t>(v >> 16));
}

Fs9_Bytes& Fs9_Bytes::F32(float v) {
    return U32(static_cast<uint32_t>(Float_Bits(v)));
}

Fs9_Bytes& Fs9_Bytes::Lon_Lat(double lat, double lon) {
    return U32(Pack_Longitude(lon)).U32(Pack_Latitude(lat));
}

Fs9_Bytes& Fs9_Bytes::Text(std::string_view text, size_t padded_length) {
    bytes.insert(bytes.end(), text.begin(), text.end());
    if (padded_length > text.size()) {
        bytes.insert(bytes.end(), padded_length - text.size(), 0);
    }
    return *this;
}

Fs9_Bytes& Fs9_Bytes::Append(const Bytes& more) {
    bytes.insert(bytes.end(), more.begin(), more.end());
    return *this;
}

Bytes Fs9_Name_Record(std::string_view name) {
    return Fs9_Record(0x19, Fs9_Bytes{}.Text(name).U8(0).bytes);
}

Bytes Fs9_Com_Record(uint16_t type, uint32_t hz, std::string_view name) {
    return Fs9_Record(0x12, Fs9_Bytes{}.U16(type).U32(hz).Text(name).U8(0).bytes);
}

Bytes Fs9_Runway_Record(const Fs9_Runway& r) {
    Fs9_Bytes b;
    b.U16(r.surface)
        .U8(r.primary_number)
        .U8(r.primary_designator)
        .U8(r.secondary_number)
        .U8(r.secondary_designator)
        .U32(Pack_Icao(r.primary_ils, false))
        .U32(Pack_Icao(r.secondary_ils, false))
        .Lon_Lat(r.lat, r.lon)
        .U32(static_cast<uint32_t>(r.elevation_mm))
        .F32(r.length_m)
        .F32(r.width_m)
        .F32(r.heading)
        .F32(300)    // pattern altitude
        .U16(0x0003) // edge and threshold markings
        .U8(0)
        .U8(0);
    // An offset threshold nested inside, as a real runway may have.
    b.Append(Fs9_Record(0x05, Fs9_Bytes{}.U16(4).F32(100).F32(45).bytes));
    return Fs9_Record(0x04, b.bytes);
}

Bytes Fs9_Taxi_Points_Record(const std::vector<Fs9_Taxi_Point>& points) {
    Fs9_Bytes b;
    b.U16(static_cast<uint16_t>(points.size()));
    for (const Fs9_Taxi_Point& p : points) {
        b.U8(p.type).U8(0).U16(0).Lon_Lat(p.lat, p.lon);
    }
    return Fs9_Record(0x1A, b.bytes);
}

uint32_t Fs9_Parking_Bits(uint32_t name, uint32_t push_back, uint32_t type, uint32_t number,
                          uint32_t airline_codes) {
    return name | push_back << 6 | type << 8 | number << 12 | airline_codes << 24;
}

Bytes Fs9_Parking_Record(const std::vector<Fs9_Parking>& spots) {
    Fs9_Bytes b;
    b.U16(static_cast<uint16_t>(spots.size()));
    for (const Fs9_Parking& s : spots) {
        b.U32(Fs9_Parking_Bits(s.name, 0, s.type, s.number,
                               static_cast<uint32_t>(s.airlines.size())))
            .F32(s.radius_m)
            .F32(90)
            .Lon_Lat(s.lat, s.lon);
        for (const std::string& code : s.airlines) {
            b.Text(code, 4);
        }
    }
    return Fs9_Record(0x1B, b.bytes);
}

Bytes Fs9_Taxi_Paths_Record(const std::vector<Fs9_Taxi_Path>& paths) {
    Fs9_Bytes b;
    b.U16(static_cast<uint16_t>(paths.size()));
    for (const Fs9_Taxi_Path& p : paths) {
        b.U16(p.start)
            .U16(static_cast<uint16_t>((p.end & 0x0FFF) | p.designator << 12))
            .U8(static_cast<uint8_t>(p.type | 0x60)) // with both draw flags
            .U8(p.name_or_number)
            .U8(0x01) // centre line
            .U8(4)    // asphalt
            .F32(20)
            .U32(0)
            .U32(0);
    }
    return Fs9_Record(0x1C, b.bytes);
}

Bytes Fs9_Taxi_Names_Record(const std::vector<std::string>& names) {
    Fs9_Bytes b;
    b.U16(static_cast<uint16_t>(names.size()));
    for (const std::string& name : names) {
        b.Text(name, 8);
    }
    return Fs9_Record(0x1D, b.bytes);
}

Bytes Fs9_Delete_Record(const Fs9_Deletion& d) {
    Fs9_Bytes b;
    b.U16(d.flags)
        .U8(static_cast<uint8_t>(d.runways.size()))
        .U8(static_cast<uint8_t>(d.starts.size()))
        .U8(static_cast<uint8_t>(d.frequencies.size()))
        .U8(0);
    for (const Fs9_Deleted_Runway& r : d.runways) {
        b.U8(4)
            .U8(r.primary_number)
            .U8(r.secondary_number)
            .U8(static_cast<uint8_t>(r.primary_designator | r.secondary_designator << 4));
    }
    for (uint32_t start : d.starts) {
        b.U32(start);
    }
    for (const auto& [type, hz] : d.frequencies) {
        b.U32(static_cast<uint32_t>(type) << 28 | (hz & 0x0FFFFFFF));
    }
    return Fs9_Record(0x33, b.bytes);
}

Bytes Fs9_Airport_Record(const Fs9_Airport& a) {
    Fs9_Bytes b;
    b.U8(0)
        .U8(0)
        .U8(0)
        .U8(0)
        .U8(0)
        .U8(0) // element counts: the decoder walks by sizes
        .Lon_Lat(a.lat, a.lon)
        .U32(static_cast<uint32_t>(a.elevation_mm))
        .Lon_Lat(a.lat, a.lon) // tower
        .U32(static_cast<uint32_t>(a.elevation_mm + 20000))
        .F32(a.magvar)
        .U32(Pack_Icao(a.ident, true))
        .U32(0)
        .U32(0);
    for (const Bytes& sub : a.subrecords) {
        b.Append(sub);
    }
    return Fs9_Record(0x03, b.bytes);
}

Bytes Fs9_Ils_Record(const Fs9_Ils& ils) {
    Fs9_Bytes b;
    b.U8(ils.type)
        .U8(0x19) // NAV, DME and glide slope present
        .Lon_Lat(ils.lat, ils.lon)
        .U32(100000)
        .U32(ils.hz)
        .F32(50000)
        .F32(342)
        .U32(Pack_Icao(ils.ident, true))
        .U32(Pack_Icao(ils.airport_ident, false) << 11 | Pack_Icao("K1", false));
    if (ils.localizer) {
        b.Append(Fs9_Record(
            0x14,
            Fs9_Bytes{}.U8(ils.secondary_end ? 0x10 : 0).U8(0).F32(ils.heading).F32(5).bytes));
    }
    b.Append(
        Fs9_Record(0x15, Fs9_Bytes{}.U16(0).Lon_Lat(ils.lat, ils.lon).U32(0).F32(1).F32(3).bytes));
    if (!ils.name.empty()) {
        b.Append(Fs9_Name_Record(ils.name));
    }
    return Fs9_Record(0x13, b.bytes);
}

namespace {

// A list of names: an index of offsets counted from the end of the index, then the
// zero-terminated names.
Bytes Name_Index_And_Texts(const std::vector<std::string>& names) {
    Fs9_Bytes index;
    Fs9_Bytes texts;
    for (const std::string& name : names) {
        index.U32(static_cast<uint32_t>(texts.bytes.size()));
        texts.Text(name).U8(0);
    }
    return index.Append(texts.bytes).bytes;
}

} // namespace

Bytes Fs9_Name_List_Record(const std::vector<std::pair<std::string, std::string>>& airports) {
    std::vector<std::string> airport_names;
    for (const auto& entry : airports) {
        airport_names.push_back(entry.second);
    }
    const Bytes region = Name_Index_And_Texts({"North America"});
    const Bytes country = Name_Index_And_Texts({"United States"});
    const Bytes state = Name_Index_And_Texts({"Washington"});
    const Bytes city = Name_Index_And_Texts({"Seattle"});
    const Bytes names = Name_Index_And_Texts(airport_names);
    Fs9_Bytes icao;
    for (size_t i = 0; i < airports.size(); ++i) {
        icao.U8(0).U8(0).U16(0).U16(0).U16(static_cast<uint16_t>(i));
        icao.U32(Pack_Icao(airports[i].first, true)).U32(Pack_Icao("K1", false)).U32(0);
    }
    // Offsets from the start of the record, whose fixed part is 42 bytes.
    uint32_t at = 42;
    uint32_t offsets[6];
    const Bytes* lists[] = {&region, &country, &state, &city, &names, &icao.bytes};
    for (int i = 0; i < 6; ++i) {
        offsets[i] = at;
        at += static_cast<uint32_t>(lists[i]->size());
    }
    Fs9_Bytes b;
    b.U16(0x27).U32(0); // a size of 0, as files are known to have
    b.U16(1).U16(1).U16(1).U16(1);
    b.U16(static_cast<uint16_t>(airports.size())).U16(static_cast<uint16_t>(airports.size()));
    for (uint32_t offset : offsets) {
        b.U32(offset);
    }
    for (const Bytes* list : lists) {
        b.Append(*list);
    }
    return b.bytes;
}

Bytes Fs9_Boundary_Points_Record(const std::vector<Fs9_Boundary_Point>& points) {
    Fs9_Bytes b;
    b.U16(static_cast<uint16_t>(points.size()));
    for (const Fs9_Boundary_Point& p : points) {
        b.U16(p.type);
        if (p.type == 6) {
            b.U32(0).F32(p.radius_m);
        } else {
            b.U32(Pack_Latitude(p.lat)).U32(Pack_Longitude(p.lon)); // latitude first here
        }
    }
    return Fs9_Record(0x21, b.bytes);
}

Bytes Fs9_Boundary_Record(const Fs9_Boundary& bd) {
    Fs9_Bytes b;
    b.U8(bd.type)
        .U8(bd.altitude_types)
        .Lon_Lat(bd.south, bd.west)
        .U32(static_cast<uint32_t>(bd.min_mm))
        .Lon_Lat(bd.north, bd.east)
        .U32(static_cast<uint32_t>(bd.max_mm));
    for (const Bytes& sub : bd.subrecords) {
        b.Append(sub);
    }
    return Fs9_Record(0x20, b.bytes);
}

Bytes Build_Fs2004(const std::vector<Fs9_Section>& sections) {
    Fs9_Bytes file;
    file.U32(0x19920201).U32(0x38).U32(0).U32(0).U32(0x08051803);
    file.U32(static_cast<uint32_t>(sections.size()));
    for (int i = 0; i < 8; ++i) {
        file.U32(0);
    }
    const size_t pointers = file.bytes.size();
    file.bytes.resize(pointers + 20 * sections.size());
    for (size_t s = 0; s < sections.size(); ++s) {
        const Fs9_Section& section = sections[s];
        const bool boundaries = section.type == 0x20;
        size_t records = 0;
        for (const auto& sub : section.subsections) {
            records += sub.size();
        }
        const size_t table = file.bytes.size();
        const size_t table_size = 16 * section.subsections.size() + (boundaries ? 8 * records : 0);
        // The pointer: type, entry-size flag, subsection count, table position and size.
        Fs9_Bytes pointer;
        pointer.U32(section.type).U32(1).U32(static_cast<uint32_t>(section.subsections.size()));
        pointer.U32(static_cast<uint32_t>(table)).U32(static_cast<uint32_t>(table_size));
        std::memcpy(file.bytes.data() + pointers + 20 * s, pointer.bytes.data(), 20);

        Fs9_Bytes entries;
        Fs9_Bytes pairs;
        size_t at = table + table_size;
        size_t record_index = 0;
        for (const auto& sub : section.subsections) {
            size_t size = 0;
            for (const Bytes& record : sub) {
                pairs.U32(static_cast<uint32_t>(at + size))
                    .U32(static_cast<uint32_t>(record.size()));
                size += record.size();
            }
            entries.U32(0).U32(static_cast<uint32_t>(sub.size()));
            if (boundaries) {
                entries.U32(static_cast<uint32_t>(record_index)).U32(0);
            } else {
                entries.U32(static_cast<uint32_t>(at)).U32(static_cast<uint32_t>(size));
            }
            record_index += sub.size();
            at += size;
        }
        file.Append(entries.bytes);
        if (boundaries) {
            file.Append(pairs.bytes);
        }
        for (const auto& sub : section.subsections) {
            for (const Bytes& record : sub) {
                file.Append(record);
            }
        }
    }
    return file.bytes;
}

} // namespace quilmark
