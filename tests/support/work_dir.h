// A fresh temporary folder that a test works in: the process's current directory moves
// there for the test's lifetime, as the program's two files live in the current directory.
#pragma once

#include <filesystem>
#include <string>

namespace quilmark {

class Work_Dir {
  public:
    explicit Work_Dir(const std::string& name);
    ~Work_Dir();
    Work_Dir(const Work_Dir&) = delete;
    Work_Dir& operator=(const Work_Dir&) = delete;
    const std::filesystem::path& Path() const { return path_; }
    std::string Sub(const std::string& relative) const { return (path_ / relative).string(); }

  private:
    std::filesystem::path path_;
    std::filesystem::path previous_;
};

// A path for a file of this name in the temporary folder, this process's own: tests run in
// processes side by side, and those of other checkouts too.
std::string Temp_File(const std::string& name);

// The generated sample world (build/sample-world/FS2002).
std::string Sample_World_Folder();

// Writes a text file, creating its folders.
void Write_Text(const std::string& path, const std::string& text);

} // namespace quilmark
