// tests/support/kept_file.h - lines as they were when somebody last looked at them.
//
// With AVQ1_RENEW_PICTURES set the file is written anew instead of compared; look at the difference
// before it is committed.
#pragma once

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>

namespace avq1::test {

// Compares text with a file below tests/, line by line, and names the block of a line that differs:
// the line before it that begins with "# ".
inline void ExpectAsKept(const std::string& now, const std::string& name) {
    const std::string path = AVQ1_SOURCE_DIR "/tests/" + name;
    if (std::getenv("AVQ1_RENEW_PICTURES") != nullptr) {
        std::ofstream(path) << now;
        return;
    }
    std::ifstream file(path);
    std::istringstream lines(now);
    std::string block;
    int differing = 0;
    for (std::string line, kept; std::getline(lines, line) && differing < 5;) {
        block = line.starts_with("# ") ? line : block;
        ASSERT_TRUE(std::getline(file, kept)) << "more than was kept: " << line;
        EXPECT_EQ(line, kept) << block;
        differing += line != kept ? 1 : 0;
    }
    std::string more;
    EXPECT_TRUE(differing >= 5 || !std::getline(file, more)) << "gone: " << more;
}

}  // namespace avq1::test
