#include "scenery/airport_file_decoder.h"

#include <system_error>
#include <utility>

#include "bgl/airport_walker.h"

namespace quilmark {

namespace {

// How far the workers may run ahead of the file last taken: each file waiting holds its
// whole image, so this bounds the memory they take.
constexpr size_t Look_Ahead_Files = 4;

} // namespace

Airport_File_Decoder::Airport_File_Decoder(std::vector<std::string> native_paths,
                                           const Magvar_Grid& grid, bool add_airports,
                                           int worker_threads)
    : paths_(std::move(native_paths)), grid_(grid), add_airports_(add_airports),
      slots_(paths_.size()) {
    for (int i = 0; i < worker_threads && static_cast<size_t>(i) < paths_.size(); ++i) {
        try {
            workers_.emplace_back([this] { Work(); });
        } catch (const std::system_error&) {
            break; // no more threads: the caller decodes what the others don't
        }
    }
}

Airport_File_Decoder::~Airport_File_Decoder() {
    {
        std::lock_guard<std::mutex> lock(mutex_);
        stopping_ = true;
    }
    changed_.notify_all();
    for (std::thread& worker : workers_) {
        worker.join();
    }
}

void Airport_File_Decoder::Decode(size_t index) {
    Slot& slot = slots_[index];
    try {
        Decoded_Airport_File_Rec& file = slot.file;
        file.has_sections = Load_Bgl_Image(file.image, paths_[index]) && Has_Bgl_Marker(file.image);
        if (file.has_sections) {
            Read_Airport_Section(file.image, grid_, add_airports_, file.airports,
                                 file.airport_count);
        }
    } catch (...) {
        slot.error = std::current_exception();
    }
}

void Airport_File_Decoder::Work() {
    std::unique_lock<std::mutex> lock(mutex_);
    for (;;) {
        changed_.wait(lock, [this] {
            return stopping_ || next_to_decode_ >= slots_.size() ||
                   next_to_decode_ < next_to_take_ + Look_Ahead_Files;
        });
        if (stopping_ || next_to_decode_ >= slots_.size()) {
            return;
        }
        const size_t index = next_to_decode_++;
        slots_[index].state = Slot_State::Decoding;
        lock.unlock();
        Decode(index);
        lock.lock();
        slots_[index].state = Slot_State::Done;
        changed_.notify_all();
    }
}

Decoded_Airport_File_Rec Airport_File_Decoder::Take_Next() {
    std::unique_lock<std::mutex> lock(mutex_);
    const size_t index = next_to_take_;
    Slot& slot = slots_[index];
    if (next_to_decode_ == index) {
        // No worker has begun it: decode it here rather than wait.
        ++next_to_decode_;
        slot.state = Slot_State::Decoding;
        lock.unlock();
        Decode(index);
        lock.lock();
        slot.state = Slot_State::Done;
    } else {
        changed_.wait(lock, [&slot] { return slot.state == Slot_State::Done; });
    }
    ++next_to_take_;
    Decoded_Airport_File_Rec file = std::move(slot.file);
    const std::exception_ptr error = std::exchange(slot.error, nullptr);
    lock.unlock();
    changed_.notify_all(); // a worker may go on to the next file
    if (error) {
        std::rethrow_exception(error);
    }
    return file;
}

void Append_Decoded_Airports(Decoded_Airport_File_Rec& file, Dyn_Array<Airport_Rec>& airports,
                             int32_t& airport_count) {
    for (int32_t i = 0; i < file.airport_count; ++i) {
        Append(airports, airport_count) = std::move(file.airports[static_cast<size_t>(i)]);
    }
}

} // namespace quilmark
