#include "avqdata/output_file.h"

#include <filesystem>
#include <fstream>
#include <system_error>

#include "avqdata/os.h"

namespace avqdata {

namespace fs = std::filesystem;

bool WriteOutputFile(const std::string& path, const std::string& text, bool force,
                     std::string& error) {
    std::error_code code;
    if (!force && fs::exists(fs::symlink_status(PathOf(path), code))) {
        error = path + ": is there already; --force writes over it";
        return false;
    }
    const fs::path staged = PathOf(path + ".new-" + std::to_string(ProcessNumber()));
    std::ofstream file(staged, std::ios::binary | std::ios::trunc);
    file.write(text.data(), static_cast<std::streamsize>(text.size()));
    file.close();
    if (file.fail()) {
        fs::remove(staged, code);
        error = path + ": cannot be written";
        return false;
    }
    fs::rename(staged, PathOf(path), code);
    if (code) {
        error = path + ": cannot be written (" + code.message() + ")";
        fs::remove(staged, code);
        return false;
    }
    return true;
}

}  // namespace avqdata
