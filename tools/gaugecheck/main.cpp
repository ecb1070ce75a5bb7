// gaugecheck MODULE [OPTIONS] - loads a gauge module as a simulator's panel system does, places
// every gauge, sends every event, clicks every area and writes down what is drawn.
//
//   --out FOLDER        where pictures and texts go (default gaugecheck-out)
//   --sim FOLDER        the simulator folder: it becomes the current one (default: as it is)
//   --scenario FILE     what happens, see scenario.h (default: a plain one)
//   --parameters TEXT   the parameter text of every gauge, an aircraft name
//   --scale N           surfaces N times as large as their bitmaps, 1 to 4
//   --bare              a host that offers no service and no device context
// Exit status 0 when everything was done, 1 when not, 2 for a wrong command line.
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iterator>

#include "gaugecheck/gauge_host.h"
#include "gaugecheck/os.h"
#include "gaugecheck/scenario.h"

namespace {

using namespace gaugecheck;
using avq1::PanelEvent;

struct CommandLine {
    std::string module;
    std::string outputFolder = "gaugecheck-out";
    std::string simFolder;
    std::string scenarioFile;
    HostOptions host;
};

bool ReadCommandLine(int argc, char** argv, CommandLine& line) {
    for (int i = 1; i < argc; ++i) {
        const std::string word = argv[i];
        const char* const value = i + 1 < argc ? argv[i + 1] : nullptr;
        struct Option {
            const char* name;
            std::string* target;
        };
        const Option options[] = {{"--out", &line.outputFolder},
                                  {"--sim", &line.simFolder},
                                  {"--scenario", &line.scenarioFile},
                                  {"--parameters", &line.host.parameters}};
        bool taken = false;
        for (const Option& option : options) {
            if (word == option.name && value != nullptr) {
                *option.target = value;
                taken = true;
            }
        }
        if (word == "--scale" && value != nullptr) {
            line.host.surfaceScale = std::atoi(value);
            taken = line.host.surfaceScale >= 1 && line.host.surfaceScale <= 4;
        }
        if (taken) {
            ++i;
        } else if (word == "--bare") {
            line.host.bare = true;
        } else if (word.front() != '-' && line.module.empty()) {
            line.module = word;
        } else {
            return false;
        }
    }
    return !line.module.empty();
}

int Fail(const std::string& why) {
    std::printf("FAILED: %s\n", why.c_str());
    return 1;
}

// Everything between loading and unloading; false with the reason in `error`.
bool Examine(const CommandLine& line, const std::string& scenario, std::string& error) {
    if (!ConnectModule(error)) {
        return false;
    }
    const int missing = PlaceGauges();
    std::printf("%d gauges, %d bitmaps missing\n", static_cast<int>(host.placements.size()),
                missing);
    for (const PanelEvent event : {PanelEvent::Install, PanelEvent::AfterInstall,
                                   PanelEvent::Initialise, PanelEvent::AfterInitialise}) {
        SendToAll(event);
    }
    RunFrame();  // before any window is there: nothing can be drawn yet
    SendToAll(PanelEvent::ConnectToWindow);
    const bool done = RunScenario(scenario, line.outputFolder, error);
    SendToAll(PanelEvent::DisconnectFromWindow);
    RunFrame();  // after the drawing library has stopped
    SendToAll(PanelEvent::ConnectToWindow);
    RunFrame();
    for (const PanelEvent event :
         {PanelEvent::DisconnectFromWindow, PanelEvent::Kill, PanelEvent::AfterKill}) {
        SendToAll(event);
    }
    if (host.module.linkage->deinit != nullptr) {
        host.module.linkage->deinit();
    }
    FreePlacements();
    if (done && missing > 0) {
        error = "bitmaps are missing";
    }
    return done && missing == 0;
}

}  // namespace

int main(int argc, char** argv) {
    CommandLine line;
    if (!ReadCommandLine(argc, argv, line)) {
        std::printf(
            "usage: gaugecheck MODULE [--out FOLDER] [--sim FOLDER] [--scenario FILE] "
            "[--parameters TEXT] [--scale N] [--bare]\n");
        return 2;
    }
    std::string scenario = kPlainScenario;
    if (!line.scenarioFile.empty()) {
        std::ifstream file(line.scenarioFile, std::ios::binary);
        scenario.assign(std::istreambuf_iterator<char>(file), {});
    }
    MakeFolder(line.outputFolder);
    line.outputFolder = AbsolutePath(line.outputFolder);
    host.options = line.host;
    std::string error;
    if (!LoadGaugeModule(AbsolutePath(line.module), host.module, error)) {
        return Fail(error);
    }
    std::printf("loaded %s\n", line.module.c_str());
    if (!line.simFolder.empty() && !EnterFolder(line.simFolder)) {
        return Fail("there is no folder " + line.simFolder);
    }
    if (!Examine(line, scenario, error)) {
        return Fail(error);
    }
    std::printf("service calls %llu, key events %llu\n",
                static_cast<unsigned long long>(host.serviceCalls),
                static_cast<unsigned long long>(host.keyEvents));
    UnloadGaugeModule(host.module);
    std::printf("OK\n");
    return 0;
}
