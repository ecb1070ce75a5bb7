// tests/support/full_disk.h - a disk that runs full.
#pragma once

#include <sys/resource.h>

#include <csignal>
#include <cstddef>

namespace avq1::test {

// The disk takes no more than `bytes` of a file for as long as this lives.
struct FullDisk {
    rlimit before = {};

    explicit FullDisk(std::size_t bytes) {
        getrlimit(RLIMIT_FSIZE, &before);
        signal(SIGXFSZ, SIG_IGN);
        const rlimit small = {bytes, before.rlim_max};
        setrlimit(RLIMIT_FSIZE, &small);
    }
    ~FullDisk() { setrlimit(RLIMIT_FSIZE, &before); }
};

}  // namespace avq1::test
