// A named pipe that no one writes to, for checking that an input is never opened: opening
// one for reading waits for a writer for ever. So that a fault fails the test instead of
// hanging it, a watchdog opens the pipe for writing after some seconds, which lets such a
// reader go on; the test then checks that the watchdog never had to.
#pragma once

#include <condition_variable>
#include <mutex>
#include <string>
#include <thread>

namespace quilmark {

class Named_Pipe {
  public:
    explicit Named_Pipe(std::string path);
    ~Named_Pipe();
    Named_Pipe(const Named_Pipe&) = delete;
    Named_Pipe& operator=(const Named_Pipe&) = delete;

    // Some reader was waiting on the pipe and had to be let go.
    bool Reader_Was_Stuck();

  private:
    std::string path_;
    std::mutex mutex_;
    std::condition_variable done_;
    bool finished_ = false;
    bool reader_stuck_ = false;
    std::thread watchdog_;
};

} // namespace quilmark
