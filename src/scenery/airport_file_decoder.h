// The database build decodes the airport sections of its files ahead of the scan, on a
// worker thread beside the scan's own, and takes them back one file at a time in the
// order of the run: what the scan adds, shows and counts is the same as if it had read
// each file itself at that moment.
#pragma once

#include <condition_variable>
#include <cstdint>
#include <exception>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "bgl/bgl_image.h"
#include "geo/magnetic_variation.h"
#include "platform/dyn_array.h"
#include "state/airport_model.h"

namespace quilmark {

struct Decoded_Airport_File_Rec {
    // The file as loaded, its walk budget already charged for the airport section; a
    // single 0 byte if it could not be read.
    Bgl_Image image;
    bool has_sections = false; // read, and marked as a BGL file with sections
    Dyn_Array<Airport_Rec> airports;
    int32_t airport_count = 0;
};

class Airport_File_Decoder {
  public:
    // Decodes the files at the native paths with the grid, which must stay unchanged
    // while the decoder lives, adding their airports or only walking the entries as
    // Read_Airport_Section does. Up to worker_threads threads decode ahead of the caller,
    // at most a few files ahead of the file last taken; with none, or none that can be
    // started, each file is decoded when it is taken.
    Airport_File_Decoder(std::vector<std::string> native_paths, const Magvar_Grid& grid,
                         bool add_airports, int worker_threads);
    // Waits for the workers to finish the files they are decoding.
    ~Airport_File_Decoder();
    Airport_File_Decoder(const Airport_File_Decoder&) = delete;
    Airport_File_Decoder& operator=(const Airport_File_Decoder&) = delete;

    // The next file of the run, decoded here if no worker has begun it. What its decoding
    // threw (running out of memory) is thrown here, in its turn. Not after the last file.
    Decoded_Airport_File_Rec Take_Next();

  private:
    enum class Slot_State { Waiting, Decoding, Done };
    struct Slot {
        Slot_State state = Slot_State::Waiting;
        Decoded_Airport_File_Rec file;
        std::exception_ptr error;
    };

    void Decode(size_t index);
    void Work();

    const std::vector<std::string> paths_;
    const Magvar_Grid& grid_;
    const bool add_airports_;
    std::vector<Slot> slots_;
    std::mutex mutex_;
    std::condition_variable changed_;
    size_t next_to_decode_ = 0; // every file before it has been begun
    size_t next_to_take_ = 0;
    bool stopping_ = false;
    std::vector<std::thread> workers_;
};

// Moves the decoded airports to the end of the list, as the walker would have appended
// them there.
void Append_Decoded_Airports(Decoded_Airport_File_Rec& file, Dyn_Array<Airport_Rec>& airports,
                             int32_t& airport_count);

} // namespace quilmark
