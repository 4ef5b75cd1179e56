// A BGL file held whole in memory, and the primitive readers over it. All decoding works
// by absolute byte positions into the image. Every reader stays inside the image: a read
// at a position outside it gives 0, byte by byte, so a short or damaged file never makes
// a reader fail.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace quilmark {

struct Bgl_Image {
    // The file's bytes and one spare 0 byte behind them.
    std::vector<uint8_t> bytes{0};
    // How many more bytes of records the walkers may step over in this file. A well-formed
    // file is walked about once; a hostile one (directory entries that all point at the same
    // huge block, say) runs the budget out instead of the time and memory of the machine.
    int64_t walk_budget = 0;
};

// Largest file the program loads; scenery files are a few megabytes at most.
constexpr int64_t Max_Bgl_File_Size = 256LL * 1024 * 1024;

// Reads the whole file at a native path into the image, replacing what it held. False if
// the path is not a regular file, the file cannot be opened or read, or it is larger than
// Max_Bgl_File_Size: the image is then left holding a single 0 byte.
bool Load_Bgl_Image(Bgl_Image& image, const std::string& native_path);
// Takes the bytes of a file already in memory (tests, fuzzers).
void Set_Bgl_Image(Bgl_Image& image, std::vector<uint8_t> file_bytes);
// Shrinks the image to its single spare byte.
void Release_Bgl_Image(Bgl_Image& image);

// Length of the file the image holds (without the spare byte).
int64_t Bgl_File_Length(const Bgl_Image& image);

// Takes bytes from the walk budget. False when it is used up: the walker stops there.
bool Charge_Walk(Bgl_Image& image, int64_t bytes);

// What a step over a record costs: the part of the record inside the file (a record whose
// contents the walker reads), or only a record header (a group, whose children are paid
// for as they are read).
enum class Step_Charge { Whole_Record, Header };
// One step of a walk over records that follow each other: the record at position, length
// bytes long with its header. False, and the walk ends there, if the step would not move
// the walk forward (length 0 or less), the record begins at or past the end of the file,
// or the walk budget can't pay for it.
bool Take_Record_Step(Bgl_Image& image, int64_t position, int64_t length,
                      Step_Charge charge = Step_Charge::Whole_Record);

uint8_t Read_Byte(const Bgl_Image& image, int64_t position);
int16_t Read_Int16(const Bgl_Image& image, int64_t position);
int32_t Read_Int32(const Bgl_Image& image, int64_t position);
// length bytes from position (a negative or zero length gives ""). 0 bytes are dropped
// wherever they stand; the others are kept as the Windows-1252 bytes they are.
std::string Read_Text(const Bgl_Image& image, int64_t position, int32_t length);
// The IEEE single that a word read with Read_Int32 encodes; 0 for infinities and NaN.
float Read_Float(int32_t word);

// The word 0x87654321 at byte 118 marks a BGL file with sections.
bool Has_Bgl_Marker(const Bgl_Image& image);

// Number encodings shared by the BGL records.
double Decode_Latitude(int32_t raw);            // raw * 90 / 10001750
double Decode_Longitude(int32_t raw);           // raw * 360 / 2^32 (runways, navaids)
double Decode_Reference_Longitude(int32_t raw); // raw * 360 / (2^32 + 1) (airport point)
// A frequency word holds binary-coded decimal digits: 0x01187500 is 118.75 MHz.
double Decode_Frequency(int32_t word);
// A frequency as the program shows and stores it: "118.75", "121.5".
std::string Frequency_Text(double mhz);

} // namespace quilmark
