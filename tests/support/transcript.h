// tests/support/transcript.h - commands and what they gave when somebody last looked, in one file
// that reads like a session: "$ close-gap 2 | KJFK AAA DISCO KBOS" and the result below it.
//
// A new case is a new command in the file; with AVQ1_RENEW_PICTURES set the results are written
// anew. Lines that begin with "#" are remarks. In a command "\n" stands for the end of a line, "\r"
// and "\xB0" for such characters.
#pragma once

#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "support/kept_file.h"

namespace avq1::test {

using Words = std::vector<std::string>;

inline Words WordsOf(const std::string& text) {
    std::istringstream in(text);
    Words words;
    for (std::string word; in >> word;) {
        words.push_back(word);
    }
    return words;
}

inline std::string Unescaped(const std::string& text) {
    std::string plain;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char next = text[i] == '\\' && i + 1 < text.size() ? text[++i] : '\0';
        if (next == 'x') {
            plain += static_cast<char>(std::stoi(text.substr(i + 1, 2), nullptr, 16));
            i += 2;
        } else {
            plain += next == 'n' ? '\n' : next == 'r' ? '\r' : next != '\0' ? next : text[i];
        }
    }
    return plain;
}

// `answer` gives the lines below a command, which it gets without "$ " and with its escapes.
template <class Answer>
void ExpectTranscript(const std::string& name, Answer answer) {
    std::ostringstream kept;
    kept << std::ifstream(AVQ1_SOURCE_DIR "/tests/" + name).rdbuf();
    std::istringstream in(kept.str());
    std::string now;
    for (std::string line; std::getline(in, line);) {
        if (line.empty() || line.starts_with('#')) {
            now += line + '\n';
        } else if (line.starts_with("$ ")) {
            now += line + '\n' + answer(line.substr(2));
            now += now.ends_with('\n') ? "" : "\n";
        }
    }
    ExpectAsKept(now, name);
}

}  // namespace avq1::test
