// The configuration file's bytes through Decode_Config. A record always encodes to bytes
// that decode to it again; and a file that holds every field whole is exactly the encoding
// of what was read from it, followed by whatever stood behind the record.
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "fuzz_support.h"
#include "scenery/config_file.h"

namespace quilmark {

namespace {

size_t U16_At(std::string_view bytes, size_t at) {
    if (at + 2 > bytes.size()) {
        return bytes.size(); // no such field: the record is not whole
    }
    return static_cast<uint8_t>(bytes[at]) |
           (static_cast<size_t>(static_cast<uint8_t>(bytes[at + 1])) << 8);
}

} // namespace

} // namespace quilmark

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    using namespace quilmark;
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    const Config_Rec config = Decode_Config(bytes);
    Fuzz_Check(Config_Fits(config), "a decoded record fits the file");
    const std::string encoded = Encode_Config(config);
    Fuzz_Check(Decode_Config(encoded) == config, "a record survives its encoding");

    // u16 title length, title, two bytes, u16 path length, path, i32 count.
    const size_t title = U16_At(bytes, 0);
    const size_t path = U16_At(bytes, 2 + title + 2);
    const size_t whole = 2 + title + 2 + 2 + path + 4;
    if (whole <= bytes.size()) {
        Fuzz_Check(bytes.substr(0, whole) == encoded, "a whole record is its own encoding");
    }
    return 0;
}
