#include <gtest/gtest.h>

#include "platform/text1252.h"

namespace quilmark {

TEST(Text1252, UpperAndLowerCaseFollowTheCodePageLetters) {
    // é è ü ø š œ ž ÿ and their capitals; ß, ×, ÷ and µ have no other case here.
    EXPECT_EQ(Upper_1252("z\xE9\xE8\xFC\xF8\x9A\x9C\x9E\xFF"), "Z\xC9\xC8\xDC\xD8\x8A\x8C\x8E\x9F");
    EXPECT_EQ(Lower_1252("Z\xC9\xC8\xDC\xD8\x8A\x8C\x8E\x9F"), "z\xE9\xE8\xFC\xF8\x9A\x9C\x9E\xFF");
    EXPECT_EQ(Upper_1252("\xDF\xF7\xB5"), "\xDF\xF7\xB5");
    EXPECT_EQ(Lower_1252("\xD7"), "\xD7");
}

TEST(Text1252, ComparisonsWithoutRegardToCase) {
    EXPECT_TRUE(Equal_No_Case("Airport and Facilities Data", "AIRPORT AND FACILITIES DATA"));
    EXPECT_TRUE(Equal_No_Case("M\xDCNCHEN", "m\xFCnchen"));
    EXPECT_FALSE(Equal_No_Case("abc", "abcd"));
    EXPECT_TRUE(Contains_No_Case("Scenery\\WORLD", "world"));
    EXPECT_FALSE(Contains_No_Case("ab", "abc"));
    // Sorted order: by upper case first, texts equal but for case by their bytes.
    EXPECT_LT(Compare_No_Case("abc", "ABD"), 0);
    EXPECT_LT(Compare_No_Case("ABC", "abc"), 0);
    EXPECT_GT(Compare_No_Case("b", "A"), 0);
    EXPECT_LT(Compare_No_Case("KSE", "KSEA"), 0);
    EXPECT_EQ(Compare_No_Case("same", "same"), 0);
}

TEST(Text1252, ConversionAtTheEdgesRoundTrips) {
    std::string all;
    for (int b = 1; b < 256; ++b) {
        all.push_back(static_cast<char>(b));
    }
    std::string utf8 = Ansi_To_Utf8(all);
    EXPECT_EQ(Utf8_To_Ansi(utf8), all);
    EXPECT_EQ(Ansi_To_Utf8("\x80"), "\xE2\x82\xAC"); // euro sign
    EXPECT_EQ(Ansi_To_Utf8("Z\xFCrich"), "Z\xC3\xBCrich");
    EXPECT_EQ(Utf8_To_Ansi("\xE4\xB8\xAD"), "?"); // no such character in the code page
    EXPECT_EQ(Utf8_To_Ansi("a\xC3"), "a?");       // cut sequence
}

} // namespace quilmark
