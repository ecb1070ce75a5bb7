// tests/panelhost/host_fixture.h - a simulator folder with the probe module for one test.
#pragma once

#include <dlfcn.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "panelhost/base/text.h"
#include "panelhost/script/script.h"
#include "panelhost/session/session.h"
#include "platform/panel_interface.h"
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

    // The real module in place of the probe.
    void TakeRealModule() {
        // Unloaded with the module, these would take the only pointers to their caches along.
        dlopen("libcairo.so.2", RTLD_NOW | RTLD_NODELETE);
        dlopen("libfontconfig.so.1", RTLD_NOW | RTLD_NODELETE);
        options_.simFolder = folder_.string();
        options_.modulePath = AVQ1_BINARY_DIR "/avq1.gau";
    }
    // The real module in a copy of the demonstration's folder, which StartDemo() flies once the
    // session is open.
    void CopyDemo() {
        TakeRealModule();
        std::filesystem::remove(folder_ / "panel.cfg");
        std::filesystem::remove_all(folder_ / "avq");
        std::filesystem::copy(AVQ1_SOURCE_DIR "/demo", folder_,
                              std::filesystem::copy_options::recursive);
    }
    void StartDemo() {
        for (const char* script : {"start.script", "autostart.script"}) {
            EXPECT_EQ(Run(ReadWholeFile(script, 1U << 20U).value_or("")), "");
        }
    }
    // Why the script failed, if it did.
    std::string Run(const std::string& script) {
        return RunScript(session_, ParseScript(script), folder_.string(), stdout).error;
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

    // What the host offers the probe.
    static const avq1::PlatformServices& Services() {
        void* const handle = dlopen(ProbePath().c_str(), RTLD_NOW | RTLD_NOLOAD);
        const auto* const table =
            static_cast<avq1::PlatformTableRecord*>(dlsym(handle, "PlatformTable"));
        dlclose(handle);
        return *table->services;
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
