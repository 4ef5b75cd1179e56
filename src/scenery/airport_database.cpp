#include "scenery/airport_database.h"

#include <cstring>
#include <filesystem>

namespace quilmark {

namespace {

// The fields of a record in the order the file holds them, for the encoder and the decoder
// alike: Field for each text (u16 length and bytes), f64, i32 and i16, and List for each
// array (a descriptor, then its elements), with the fewest bytes one element can take.
template <class Coder, class Airport> void Airport_Fields(Coder& c, Airport& a) {
    c.Field(a.ident);
    c.Field(a.name);
    c.Field(a.lat);
    c.Field(a.lon);
    c.Field(a.clearance_freq);
    c.Field(a.ground_freq);
    c.Field(a.tower_freq);
    c.Field(a.departure_freq);
    c.Field(a.approach_freq);
    c.Field(a.center_freq);
    c.Field(a.atis_freq);
    c.List(a.runways, 4 + 48, [&c](auto& r) {
        c.Field(r.end1_name);
        c.Field(r.end2_name);
        c.Field(r.end1_lat);
        c.Field(r.end1_lon);
        c.Field(r.end2_lat);
        c.Field(r.end2_lon);
        c.Field(r.altitude_ft);
        c.Field(r.end1_heading);
        c.Field(r.end2_heading);
        c.Field(r.length_raw);
        c.Field(r.width_raw);
    });
    c.Field(a.runway_count);
    c.List(a.ils, 4 + 18, [&c](auto& i) {
        c.Field(i.ils_name);
        c.Field(i.lat);
        c.Field(i.lon);
        c.Field(i.mag_heading);
        c.Field(i.frequency);
    });
    c.Field(a.ils_count);
    c.List(a.taxi_points, 20, [&c](auto& p) {
        c.Field(p.point_kind);
        c.Field(p.lat);
        c.Field(p.lon);
    });
    c.Field(a.taxi_point_count);
    c.List(a.parkings, 2 + 20, [&c](auto& p) {
        c.Field(p.spot_name);
        c.Field(p.lat);
        c.Field(p.lon);
        c.Field(p.radius_ft);
    });
    c.Field(a.parking_count);
    c.List(a.taxi_paths, 12 + 2, [&c](auto& p) {
        c.Field(p.path_kind);
        c.Field(p.start_point);
        c.Field(p.end_point);
        c.Field(p.path_label);
    });
    c.Field(a.taxi_path_count);
}

// A text longer than a u16 count can hold keeps its first 65535 bytes.
size_t Stored_Text_Length(const std::string& s) {
    return s.size() > 65535 ? 65535 : s.size();
}

// Counts the bytes the encoder will write, so that the file's buffer is taken once at its
// exact size rather than grown (and copied, and its fresh pages touched) as it fills.
class Sizer {
  public:
    size_t size = 0;

    void Field(int16_t) { size += 2; }
    void Field(int32_t) { size += 4; }
    void Field(double) { size += 8; }
    void Field(const std::string& s) { size += 2 + Stored_Text_Length(s); }
    template <class T, class Element> void List(const Dyn_Array<T>& a, size_t, Element element) {
        size += 2;
        if (a.allocated) {
            size += 8;
            for (const T& item : a.items) {
                element(item);
            }
        }
    }
};

// Writes the fields, little-endian, into a buffer the Sizer has measured.
class Encoder {
  public:
    explicit Encoder(uint8_t* out) : out_(out) {}

    void U16(uint16_t v) {
        out_[0] = static_cast<uint8_t>(v & 0xFF);
        out_[1] = static_cast<uint8_t>(v >> 8);
        out_ += 2;
    }
    void U32(uint32_t v) {
        for (int i = 0; i < 4; ++i) {
            out_[i] = static_cast<uint8_t>((v >> (8 * i)) & 0xFF);
        }
        out_ += 4;
    }
    void Field(int16_t v) { U16(static_cast<uint16_t>(v)); }
    void Field(int32_t v) { U32(static_cast<uint32_t>(v)); }
    void Field(double v) {
        uint64_t u;
        std::memcpy(&u, &v, 8);
        for (int i = 0; i < 8; ++i) {
            out_[i] = static_cast<uint8_t>((u >> (8 * i)) & 0xFF);
        }
        out_ += 8;
    }
    void Field(const std::string& s) {
        const size_t n = Stored_Text_Length(s);
        U16(static_cast<uint16_t>(n));
        if (n > 0) {
            std::memcpy(out_, s.data(), n);
            out_ += n;
        }
    }
    template <class T, class Element> void List(const Dyn_Array<T>& a, size_t, Element element) {
        if (!a.allocated) {
            U16(0); // never allocated: the descriptor ends here
            return;
        }
        U16(1);
        U32(static_cast<uint32_t>(a.Slot_Count()));
        Field(int32_t{0}); // lower bound
        for (const T& item : a.items) {
            element(item);
        }
    }

  private:
    uint8_t* out_;
};

// The file's bytes held whole in memory, as a source for the decoder.
class Memory_Source {
  public:
    explicit Memory_Source(const std::vector<uint8_t>& b) : bytes_(b) {}
    uint64_t Remaining() const { return bytes_.size() - at_; }
    bool Take(void* out, size_t n) {
        if (n > Remaining()) {
            return false;
        }
        std::memcpy(out, bytes_.data() + at_, n);
        at_ += n;
        return true;
    }

  private:
    const std::vector<uint8_t>& bytes_;
    size_t at_ = 0;
};

// Reads records from the file's bytes, held in memory or read in parts; any step past the
// end, or a descriptor that cannot be right, marks the reader failed, after which every
// read gives zeros.
template <class Source> class Decoder {
  public:
    explicit Decoder(Source& source) : source_(source) {}
    bool failed = false;

    bool Take(void* out, size_t n) {
        if (failed || !source_.Take(out, n)) {
            failed = true;
            std::memset(out, 0, n);
            return false;
        }
        return true;
    }
    uint16_t U16() {
        uint8_t b[2];
        Take(b, 2);
        return static_cast<uint16_t>(b[0] | (b[1] << 8));
    }
    uint32_t U32() {
        uint8_t b[4];
        Take(b, 4);
        return static_cast<uint32_t>(b[0]) | (static_cast<uint32_t>(b[1]) << 8) |
               (static_cast<uint32_t>(b[2]) << 16) | (static_cast<uint32_t>(b[3]) << 24);
    }
    void Field(int16_t& v) { v = static_cast<int16_t>(U16()); }
    void Field(int32_t& v) { v = static_cast<int32_t>(U32()); }
    void Field(double& v) {
        uint8_t b[8];
        Take(b, 8);
        uint64_t u = 0;
        for (int i = 7; i >= 0; --i) {
            u = (u << 8) | b[i];
        }
        std::memcpy(&v, &u, 8);
    }
    void Field(std::string& s) {
        uint16_t n = U16();
        if (failed || n > source_.Remaining()) {
            failed = true;
            s.clear();
            return;
        }
        s.resize(n);
        if (n > 0 && !source_.Take(s.data(), n)) {
            failed = true;
            s.clear();
        }
    }
    // min_element_size: the fewest bytes one element can take, which bounds the count by
    // what is left of the file.
    template <class T, class Element>
    void List(Dyn_Array<T>& a, size_t min_element_size, Element element) {
        uint16_t dimensions = U16();
        if (dimensions == 0) {
            a.Clear();
            return;
        }
        uint32_t count = U32();
        int32_t lower_bound = static_cast<int32_t>(U32());
        if (failed || dimensions != 1 || lower_bound != 0 ||
            count > source_.Remaining() / min_element_size) {
            failed = true;
            return;
        }
        a.Allocate(count);
        for (T& item : a.items) {
            element(item);
            if (failed) {
                return;
            }
        }
    }

    void Airport(Airport_Rec& a) {
        Airport_Fields(*this, a);
        // The counts must fit what was read, or the chart would index past the lists.
        if (a.runway_count < 0 || a.ils_count < 0 || a.taxi_point_count < 0 ||
            a.parking_count < 0 || a.taxi_path_count < 0 ||
            static_cast<size_t>(a.runway_count) > a.runways.Slot_Count() ||
            static_cast<size_t>(a.ils_count) > a.ils.Slot_Count() ||
            static_cast<size_t>(a.taxi_point_count) > a.taxi_points.Slot_Count() ||
            static_cast<size_t>(a.parking_count) > a.parkings.Slot_Count() ||
            static_cast<size_t>(a.taxi_path_count) > a.taxi_paths.Slot_Count()) {
            failed = true;
        }
    }

  private:
    Source& source_;
};

// The smallest record: nine empty texts, two doubles, five empty descriptors and counts.
constexpr size_t Min_Record_Size = 64;

} // namespace

std::vector<uint8_t> Encode_Airport_Database(const Dyn_Array<Airport_Rec>& airports) {
    Sizer sizer;
    for (const Airport_Rec& a : airports.items) {
        Airport_Fields(sizer, a);
    }
    std::vector<uint8_t> bytes(sizer.size);
    Encoder e(bytes.data());
    for (const Airport_Rec& a : airports.items) {
        Airport_Fields(e, a);
    }
    return bytes;
}

std::optional<Pending_File_Rec>
Write_Pending_Airport_Database(const std::string& native_path,
                               const Dyn_Array<Airport_Rec>& airports) {
    // The records go out through one buffer of about a megabyte, each record encoded
    // whole, so the file's 22 MB are never all in memory beside the airports.
    constexpr size_t Part_Size = 1 << 20;
    return Write_Pending_File_In_Parts(native_path, [&airports](const Write_Part& write) {
        std::vector<uint8_t> part(Part_Size);
        size_t used = 0;
        auto flush = [&] {
            write(std::string_view(reinterpret_cast<const char*>(part.data()), used));
            used = 0;
        };
        for (const Airport_Rec& a : airports.items) {
            Sizer sizer;
            Airport_Fields(sizer, a);
            if (used + sizer.size > part.size()) {
                flush();
                if (sizer.size > part.size()) {
                    part.resize(sizer.size);
                }
            }
            Encoder e(part.data() + used);
            Airport_Fields(e, a);
            used += sizer.size;
        }
        flush();
        return true;
    });
}

namespace {

template <class Source>
Database_Read_Result Decode_Records(Source& source, int32_t airport_count,
                                    Dyn_Array<Airport_Rec>& airports) {
    if (airport_count < 0 ||
        static_cast<uint64_t>(airport_count) + 1 > source.Remaining() / Min_Record_Size) {
        airports.Release();
        return Database_Read_Result::Damaged;
    }
    airports.Allocate(static_cast<size_t>(airport_count) + 1);
    Decoder<Source> d(source);
    for (Airport_Rec& a : airports.items) {
        d.Airport(a);
        if (d.failed) {
            airports.Release();
            return Database_Read_Result::Damaged;
        }
    }
    return Database_Read_Result::Ok;
}

} // namespace

Database_Read_Result Decode_Airport_Database(const std::vector<uint8_t>& bytes,
                                             int32_t airport_count,
                                             Dyn_Array<Airport_Rec>& airports) {
    Memory_Source source(bytes);
    return Decode_Records(source, airport_count, airports);
}

Database_Read_Result Read_Airport_Database(const std::string& native_path, int32_t airport_count,
                                           Dyn_Array<Airport_Rec>& airports) {
    airports.Release();
    std::error_code error;
    if (std::filesystem::is_regular_file(native_path, error) &&
        std::filesystem::file_size(native_path, error) > Max_Database_File_Size && !error) {
        return Database_Read_Result::Damaged;
    }
    // Read in parts as the records are decoded: the file's 22 MB need not sit in memory
    // beside the airports made from them.
    File_Part_Reader reader;
    if (!reader.Open(native_path, Max_Database_File_Size)) {
        return Database_Read_Result::Cannot_Open;
    }
    const Database_Read_Result result = Decode_Records(reader, airport_count, airports);
    return reader.Read_Failed() ? Database_Read_Result::Cannot_Open : result;
}

} // namespace quilmark
