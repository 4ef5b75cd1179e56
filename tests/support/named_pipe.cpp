#include "support/named_pipe.h"

#include <chrono>
#include <fcntl.h>
#include <stdexcept>
#include <sys/stat.h>
#include <unistd.h>

namespace quilmark {

Named_Pipe::Named_Pipe(std::string path) : path_(std::move(path)) {
    if (mkfifo(path_.c_str(), 0600) != 0) {
        throw std::runtime_error("cannot make the pipe " + path_);
    }
    watchdog_ = std::thread([this] {
        std::unique_lock lock(mutex_);
        while (!finished_) {
            if (done_.wait_for(lock, std::chrono::seconds(3)) == std::cv_status::timeout) {
                // Succeeds only while a reader has the pipe open or is waiting to.
                int fd = open(path_.c_str(), O_WRONLY | O_NONBLOCK);
                if (fd >= 0) {
                    reader_stuck_ = true;
                    close(fd);
                }
            }
        }
    });
}

Named_Pipe::~Named_Pipe() {
    {
        std::lock_guard lock(mutex_);
        finished_ = true;
    }
    done_.notify_all();
    watchdog_.join();
    unlink(path_.c_str());
}

bool Named_Pipe::Reader_Was_Stuck() {
    std::lock_guard lock(mutex_);
    return reader_stuck_;
}

} // namespace quilmark
