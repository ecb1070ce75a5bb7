// tests/panelhost/host_fixture.h - a simulator folder with the probe module for one test.
#pragma once

#include <dlfcn.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "panelhost/session/session.h"
#include "tests/panelhost/fake/probe_module.h"

namespace panelhost {

inline std::string ProbePath() {
    return AVQ1_BINARY_DIR "/fake/probe.gau";
}

class HostTest : public testing::Test {
  protected:
    void SetUp() override {
        startFolder_ = std::filesystem::current_path();
        folder_ = std::filesystem::temp_directory_path() /
                  ("avqpanel-" + std::to_string(getpid()) + "-" +
                   testing::UnitTest::GetInstance()->current_test_info()->name());
        std::filesystem::create_directories(folder_ / "avq" / "NavData");
    }
    void TearDown() override {
        session_.Close();
        std::filesystem::current_path(startFolder_);
        std::filesystem::remove_all(folder_);
    }

    void WriteFile(const std::string& name, const std::string& text) const {
        std::ofstream(folder_ / name, std::ios::binary) << text;
    }

    bool Open(const std::string& panel) {
        WriteFile("panel.cfg", panel);
        options_.simFolder = folder_.string();
        options_.modulePath = ProbePath();
        return session_.Open(options_);
    }

    // The probe's notes; valid while the session is open.
    static ProbeLog* Log() {
        void* const handle = dlopen(ProbePath().c_str(), RTLD_NOW | RTLD_NOLOAD);
        auto* const log =
            handle != nullptr ? static_cast<ProbeLog*>(dlsym(handle, "probeLog")) : nullptr;
        if (handle != nullptr) {
            dlclose(handle);
        }
        return log;
    }

    static std::vector<int> EventsOf(const void* gauge) {
        std::vector<int> events;
        const ProbeLog* const log = Log();
        for (int i = 0; log != nullptr && i < log->count; ++i) {
            if (log->records[i].kind == ProbeRecord::Event && log->records[i].gauge == gauge) {
                events.push_back(log->records[i].event);
            }
        }
        return events;
    }

    static std::vector<ProbeRecord> Clicks() {
        std::vector<ProbeRecord> clicks;
        const ProbeLog* const log = Log();
        for (int i = 0; log != nullptr && i < log->count; ++i) {
            if (log->records[i].kind == ProbeRecord::Mouse) {
                clicks.push_back(log->records[i]);
            }
        }
        return clicks;
    }

    std::filesystem::path startFolder_;
    std::filesystem::path folder_;
    SessionOptions options_;
    Session session_;
};

}  // namespace panelhost
