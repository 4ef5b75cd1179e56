#include "support/work_dir.h"

#include <cstdlib>
#include <fstream>
#include <stdexcept>
#include <unistd.h>

namespace quilmark {

Work_Dir::Work_Dir(const std::string& name) {
    path_ = std::filesystem::temp_directory_path() /
            ("quilmark-test-" + name + "-" + std::to_string(::getpid()));
    std::filesystem::remove_all(path_);
    std::filesystem::create_directories(path_);
    previous_ = std::filesystem::current_path();
    std::filesystem::current_path(path_);
}

Work_Dir::~Work_Dir() {
    std::error_code error;
    std::filesystem::current_path(previous_, error);
    std::filesystem::remove_all(path_, error);
}

std::string Temp_File(const std::string& name) {
    return (std::filesystem::temp_directory_path() /
            ("quilmark-" + std::to_string(::getpid()) + "-" + name))
        .string();
}

std::string Sample_World_Folder() {
    const char* folder = std::getenv("QUILMARK_SAMPLE_WORLD");
    if (folder == nullptr) {
        throw std::runtime_error("QUILMARK_SAMPLE_WORLD is not set (ctest sets it)");
    }
    return folder;
}

void Write_Text(const std::string& path, const std::string& text) {
    std::filesystem::path parent = std::filesystem::path(path).parent_path();
    if (!parent.empty()) {
        std::filesystem::create_directories(parent);
    }
    std::ofstream out(path, std::ios::binary);
    out << text;
}

} // namespace quilmark
