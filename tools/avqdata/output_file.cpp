#include "avqdata/output_file.h"

#include <cerrno>
#include <fstream>

#include "avqdata/os.h"

namespace avqdata {

namespace fs = std::filesystem;

bool WriteWhole(const fs::path& path, const std::string& text, std::error_code& code) {
    errno = 0;
    std::ofstream file(path, std::ios::binary | std::ios::trunc);
    file.write(text.data(), static_cast<std::streamsize>(text.size()));
    file.close();
    code = file.fail() ? std::error_code(errno != 0 ? errno : EIO, std::generic_category())
                       : std::error_code();
    return !code;
}

bool WriteOutputFile(const std::string& path, const std::string& text, bool force,
                     std::string& error) {
    std::error_code code;
    if (!force && fs::exists(fs::symlink_status(PathOf(path), code))) {
        error = path + ": is there already; --force writes over it";
        return false;
    }
    const fs::path staged = PathOf(path + ".new-" + std::to_string(ProcessNumber()));
    if (WriteWhole(staged, text, code)) {
        fs::rename(staged, PathOf(path), code);
    }
    if (code) {
        error = path + ": cannot be written (" + code.message() + ")";
        fs::remove(staged, code);
        return false;
    }
    return true;
}

}  // namespace avqdata
