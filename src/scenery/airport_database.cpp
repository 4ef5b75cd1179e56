#include "scenery/airport_database.h"

#include <cstring>
#include <filesystem>

namespace quilmark {

namespace {

class Encoder {
  public:
    std::vector<uint8_t> bytes;

    void U16(uint16_t v) {
        bytes.push_back(static_cast<uint8_t>(v & 0xFF));
        bytes.push_back(static_cast<uint8_t>(v >> 8));
    }
    void I16(int16_t v) { U16(static_cast<uint16_t>(v)); }
    void U32(uint32_t v) {
        for (int i = 0; i < 4; ++i) {
            bytes.push_back(static_cast<uint8_t>((v >> (8 * i)) & 0xFF));
        }
    }
    void I32(int32_t v) { U32(static_cast<uint32_t>(v)); }
    void F64(double v) {
        uint64_t u;
        std::memcpy(&u, &v, 8);
        for (int i = 0; i < 8; ++i) {
            bytes.push_back(static_cast<uint8_t>((u >> (8 * i)) & 0xFF));
        }
    }
    // A text longer than a u16 count can hold keeps its first 65535 bytes.
    void Text(const std::string& s) {
        size_t n = s.size() > 65535 ? 65535 : s.size();
        U16(static_cast<uint16_t>(n));
        bytes.insert(bytes.end(), s.begin(), s.begin() + static_cast<long>(n));
    }
    template <class T, class Element> void Array(const Dyn_Array<T>& a, Element element) {
        if (!a.allocated) {
            U16(0); // never allocated: the descriptor ends here
            return;
        }
        U16(1);
        U32(static_cast<uint32_t>(a.Slot_Count()));
        I32(0); // lower bound
        for (const T& item : a.items) {
            element(item);
        }
    }

    void Airport(const Airport_Rec& a) {
        Text(a.ident);
        Text(a.name);
        F64(a.lat);
        F64(a.lon);
        Text(a.clearance_freq);
        Text(a.ground_freq);
        Text(a.tower_freq);
        Text(a.departure_freq);
        Text(a.approach_freq);
        Text(a.center_freq);
        Text(a.atis_freq);
        Array(a.runways, [this](const Runway_Rec& r) {
            Text(r.end1_name);
            Text(r.end2_name);
            F64(r.end1_lat);
            F64(r.end1_lon);
            F64(r.end2_lat);
            F64(r.end2_lon);
            I32(r.altitude_ft);
            I16(r.end1_heading);
            I16(r.end2_heading);
            I32(r.length_raw);
            I32(r.width_raw);
        });
        I32(a.runway_count);
        Array(a.ils, [this](const ILS_Rec& i) {
            Text(i.ils_name);
            F64(i.lat);
            F64(i.lon);
            I16(i.mag_heading);
            Text(i.frequency);
        });
        I32(a.ils_count);
        Array(a.taxi_points, [this](const Taxi_Point_Rec& p) {
            I32(p.point_kind);
            F64(p.lat);
            F64(p.lon);
        });
        I32(a.taxi_point_count);
        Array(a.parkings, [this](const Parking_Rec& p) {
            Text(p.spot_name);
            F64(p.lat);
            F64(p.lon);
            I32(p.radius_ft);
        });
        I32(a.parking_count);
        Array(a.taxi_paths, [this](const Taxi_Path_Rec& p) {
            I32(p.path_kind);
            I32(p.start_point);
            I32(p.end_point);
            Text(p.path_label);
        });
        I32(a.taxi_path_count);
    }
};

// Reads records from the file's bytes; any step past the end, or a descriptor that cannot
// be right, marks the reader failed, after which every read gives zeros.
class Decoder {
  public:
    explicit Decoder(const std::vector<uint8_t>& b) : bytes_(b) {}
    bool failed = false;

    size_t Remaining() const { return bytes_.size() - at_; }

    bool Take(void* out, size_t n) {
        if (failed || n > Remaining()) {
            failed = true;
            std::memset(out, 0, n);
            return false;
        }
        std::memcpy(out, bytes_.data() + at_, n);
        at_ += n;
        return true;
    }
    uint16_t U16() {
        uint8_t b[2];
        Take(b, 2);
        return static_cast<uint16_t>(b[0] | (b[1] << 8));
    }
    int16_t I16() { return static_cast<int16_t>(U16()); }
    uint32_t U32() {
        uint8_t b[4];
        Take(b, 4);
        return static_cast<uint32_t>(b[0]) | (static_cast<uint32_t>(b[1]) << 8) |
               (static_cast<uint32_t>(b[2]) << 16) | (static_cast<uint32_t>(b[3]) << 24);
    }
    int32_t I32() { return static_cast<int32_t>(U32()); }
    double F64() {
        uint8_t b[8];
        Take(b, 8);
        uint64_t u = 0;
        for (int i = 7; i >= 0; --i) {
            u = (u << 8) | b[i];
        }
        double v;
        std::memcpy(&v, &u, 8);
        return v;
    }
    std::string Text() {
        uint16_t n = U16();
        if (failed || n > Remaining()) {
            failed = true;
            return {};
        }
        std::string s(reinterpret_cast<const char*>(bytes_.data() + at_), n);
        at_ += n;
        return s;
    }
    // min_element_size: the fewest bytes one element can take, which bounds the count by
    // what is left of the file.
    template <class T, class Element>
    void Array(Dyn_Array<T>& a, size_t min_element_size, Element element) {
        uint16_t dimensions = U16();
        if (dimensions == 0) {
            a.Clear();
            return;
        }
        uint32_t count = U32();
        int32_t lower_bound = I32();
        if (failed || dimensions != 1 || lower_bound != 0 ||
            count > Remaining() / min_element_size) {
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
        a.ident = Text();
        a.name = Text();
        a.lat = F64();
        a.lon = F64();
        a.clearance_freq = Text();
        a.ground_freq = Text();
        a.tower_freq = Text();
        a.departure_freq = Text();
        a.approach_freq = Text();
        a.center_freq = Text();
        a.atis_freq = Text();
        Array(a.runways, 4 + 48, [this](Runway_Rec& r) {
            r.end1_name = Text();
            r.end2_name = Text();
            r.end1_lat = F64();
            r.end1_lon = F64();
            r.end2_lat = F64();
            r.end2_lon = F64();
            r.altitude_ft = I32();
            r.end1_heading = I16();
            r.end2_heading = I16();
            r.length_raw = I32();
            r.width_raw = I32();
        });
        a.runway_count = I32();
        Array(a.ils, 4 + 18, [this](ILS_Rec& i) {
            i.ils_name = Text();
            i.lat = F64();
            i.lon = F64();
            i.mag_heading = I16();
            i.frequency = Text();
        });
        a.ils_count = I32();
        Array(a.taxi_points, 20, [this](Taxi_Point_Rec& p) {
            p.point_kind = I32();
            p.lat = F64();
            p.lon = F64();
        });
        a.taxi_point_count = I32();
        Array(a.parkings, 2 + 20, [this](Parking_Rec& p) {
            p.spot_name = Text();
            p.lat = F64();
            p.lon = F64();
            p.radius_ft = I32();
        });
        a.parking_count = I32();
        Array(a.taxi_paths, 12 + 2, [this](Taxi_Path_Rec& p) {
            p.path_kind = I32();
            p.start_point = I32();
            p.end_point = I32();
            p.path_label = Text();
        });
        a.taxi_path_count = I32();
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
    const std::vector<uint8_t>& bytes_;
    size_t at_ = 0;
};

// The smallest record: nine empty texts, two doubles, five empty descriptors and counts.
constexpr size_t Min_Record_Size = 64;

} // namespace

std::vector<uint8_t> Encode_Airport_Database(const Dyn_Array<Airport_Rec>& airports) {
    Encoder e;
    for (const Airport_Rec& a : airports.items) {
        e.Airport(a);
    }
    return std::move(e.bytes);
}

std::optional<Pending_File_Rec>
Write_Pending_Airport_Database(const std::string& native_path,
                               const Dyn_Array<Airport_Rec>& airports) {
    const std::vector<uint8_t> bytes = Encode_Airport_Database(airports);
    return Write_Pending_File(
        native_path, std::string_view(reinterpret_cast<const char*>(bytes.data()), bytes.size()));
}

Database_Read_Result Decode_Airport_Database(const std::vector<uint8_t>& bytes,
                                             int32_t airport_count,
                                             Dyn_Array<Airport_Rec>& airports) {
    if (airport_count < 0 ||
        static_cast<uint64_t>(airport_count) + 1 > bytes.size() / Min_Record_Size) {
        airports.Release();
        return Database_Read_Result::Damaged;
    }
    airports.Allocate(static_cast<size_t>(airport_count) + 1);
    Decoder d(bytes);
    for (Airport_Rec& a : airports.items) {
        d.Airport(a);
        if (d.failed) {
            airports.Release();
            return Database_Read_Result::Damaged;
        }
    }
    return Database_Read_Result::Ok;
}

Database_Read_Result Read_Airport_Database(const std::string& native_path, int32_t airport_count,
                                           Dyn_Array<Airport_Rec>& airports) {
    airports.Release();
    std::error_code error;
    if (std::filesystem::is_regular_file(native_path, error) &&
        std::filesystem::file_size(native_path, error) > Max_Database_File_Size && !error) {
        return Database_Read_Result::Damaged;
    }
    std::optional<std::vector<uint8_t>> bytes =
        Read_Whole_File_Bytes(native_path, Max_Database_File_Size);
    if (!bytes) {
        return Database_Read_Result::Cannot_Open;
    }
    return Decode_Airport_Database(*bytes, airport_count, airports);
}

} // namespace quilmark
