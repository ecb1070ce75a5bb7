// tests/support/temp_sim_folder.h - an empty simulator folder that lives for one test.
#pragma once

#include <filesystem>
#include <fstream>
#include <string>

#include "base/sim_folder.h"

namespace avq1::test {

class TempSimFolder {
  public:
    TempSimFolder() {
        std::string pattern = (std::filesystem::temp_directory_path() / "avq1-XXXXXX").string();
        root_ = mkdtemp(pattern.data());
        SimFolder = root_.string();
    }
    ~TempSimFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(root_, ignored);
        SimFolder.clear();
    }
    TempSimFolder(const TempSimFolder&) = delete;
    TempSimFolder& operator=(const TempSimFolder&) = delete;

    // Writes a file below the folder; `path` uses forward slashes.
    void Write(const std::string& path, const std::string& contents) const {
        const std::filesystem::path file = root_ / path;
        std::filesystem::create_directories(file.parent_path());
        std::ofstream(file, std::ios::binary) << contents;
    }
    std::string Read(const std::string& path) const {
        std::ifstream in(root_ / path, std::ios::binary);
        return {std::istreambuf_iterator<char>(in), {}};
    }
    bool Exists(const std::string& path) const { return std::filesystem::exists(root_ / path); }
    const std::filesystem::path& root() const { return root_; }

  private:
    std::filesystem::path root_;
};

}  // namespace avq1::test
