// panelhost/base/whole_file.h - a file that is written whole or not at all.
//
// What is written goes to a file beside it, which takes its place when all of it is on the disk; a
// full disk leaves what was there. A device or a pipe is written to directly. Not for two writers
// of one name at a time.
#pragma once

#include <cstdio>
#include <memory>
#include <string>

namespace panelhost {

class WholeFile {
  public:
    WholeFile() = default;
    ~WholeFile() { Abandon(); }
    WholeFile(const WholeFile&) = delete;
    WholeFile& operator=(const WholeFile&) = delete;

    // False, with errno, when the file beside it cannot be made. One that is open is abandoned.
    bool Open(const std::string& path);

    // Null until Open() succeeded.
    std::FILE* file() const { return file_.get(); }

    // Everything written takes the name's place. False, with errno, when some of it could not be
    // written, or nothing is open.
    bool Finish();

    // What was written goes.
    void Abandon();

  private:
    struct Closer {
        void operator()(std::FILE* file) const { std::fclose(file); }
    };

    std::unique_ptr<std::FILE, Closer> file_;
    std::string path_;
    std::string beside_;  // empty: written directly
};

}  // namespace panelhost
