#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "bgl/bgl_image.h"
#include "bgl_writer/bgl_writer.h"
#include "support/work_dir.h"

namespace quilmark {

namespace {

Bgl_Image Image_Of(Bytes bytes) {
    Bgl_Image image;
    Set_Bgl_Image(image, std::move(bytes));
    return image;
}

} // namespace

TEST(BglReaders, SignedLittleEndianAndZeroOutsideTheImageByteByByte) {
    Bgl_Image image = Image_Of({0xFF, 0xFF, 0x00, 0x80, 0x00, 0x00, 0x00, 0x80, 0x21, 0x43});
    EXPECT_EQ(Read_Int16(image, 0), -1);
    EXPECT_EQ(Read_Int16(image, 2), -32768);
    EXPECT_EQ(Read_Int32(image, 4), std::numeric_limits<int32_t>::min());
    EXPECT_EQ(Read_Int16(image, 8), 0x4321);
    EXPECT_EQ(Read_Byte(image, 9), 0x43);

    image = Image_Of({0x11, 0x22, 0x33});
    EXPECT_EQ(Read_Byte(image, -1), 0);
    EXPECT_EQ(Read_Byte(image, 3), 0); // the spare byte
    EXPECT_EQ(Read_Byte(image, 1LL << 40), 0);
    EXPECT_EQ(Read_Int32(image, 1), 0x3322); // straddles the end
    EXPECT_EQ(Read_Int32(image, -2), 0x22110000);
    EXPECT_EQ(Read_Int16(image, 2), 0x33);
    EXPECT_EQ(Read_Int32(image, std::numeric_limits<int64_t>::max() - 2), 0);
    EXPECT_EQ(Read_Text(image, 2, 100), "\x33");
    EXPECT_EQ(Read_Text(image, -5, 7), "\x11\x22");

    // Texts drop their zero bytes wherever they stand.
    image = Image_Of({'E', 'G', 0, 'L', 'L', 0, 0, 0});
    EXPECT_EQ(Read_Text(image, 0, 5), "EGLL");
    EXPECT_EQ(Read_Text(image, 0, 0), "");
    EXPECT_EQ(Read_Text(image, 0, -3), "");
}

TEST(BglReaders, FloatFromItsBits) {
    const float values[] = {1.0f, -1.0f, 0.15625f, -1234.5f, 3.0e38f, 1.0e-30f};
    for (float v : values) {
        EXPECT_EQ(Read_Float(Float_Bits(v)), v) << v;
    }
    EXPECT_EQ(Read_Float(0), 0.0f);
    EXPECT_EQ(Read_Float(Float_Bits(std::numeric_limits<float>::infinity())), 0.0f);
    EXPECT_EQ(Read_Float(Float_Bits(-std::numeric_limits<float>::infinity())), 0.0f);
    EXPECT_EQ(Read_Float(0x7FC00000), 0.0f); // NaN
    // Exponent 0 keeps its leading mantissa bit: m * 2^-150.
    EXPECT_EQ(Read_Float(0x00000001), static_cast<float>(std::ldexp(8388609.0, -150)));
}

TEST(BglEncodings, PositionsAndFrequencies) {
    EXPECT_DOUBLE_EQ(Decode_Latitude(10001750), 90.0);
    EXPECT_EQ(Decode_Latitude(-10001750), -90.0);
    EXPECT_EQ(Decode_Longitude(std::numeric_limits<int32_t>::min()), -180.0);
    // The reference point divides by 2^32 + 1, not 2^32.
    EXPECT_EQ(Decode_Reference_Longitude(1 << 30), 1073741824.0 * 360.0 / 4294967297.0);
    EXPECT_NE(Decode_Reference_Longitude(1 << 30), 90.0);

    const struct {
        int32_t word;
        const char* text;
    } freqs[] = {{0x01187500, "118.75"},
                 {0x01215000, "121.5"},
                 {0x01100000, "110"},
                 {0x01199000, "119.9"},
                 {0x00000001, "0.0001"},
                 {0, "0"},
                 {static_cast<int32_t>(0x99999999u), "9999.9999"},
                 // digits A to F mean nothing: reading stops at the first of them
                 {0x011A7500, "0.0011"},
                 {static_cast<int32_t>(0xF1187500u), "0"}};
    for (const auto& f : freqs) {
        EXPECT_EQ(Frequency_Text(Decode_Frequency(f.word)), f.text) << std::hex << f.word;
    }
}

TEST(BglImage, LoadsAWholeFileWithASpareByte) {
    std::string path = Temp_File("image_load.bgl");
    Write_File(path, {1, 2, 3});
    Bgl_Image image;
    ASSERT_TRUE(Load_Bgl_Image(image, path));
    EXPECT_EQ(Bgl_File_Length(image), 3);
    EXPECT_EQ(image.bytes.size(), 4u);
    EXPECT_FALSE(Load_Bgl_Image(image, path + ".missing"));
    EXPECT_EQ(Bgl_File_Length(image), 0);
}

} // namespace quilmark
