// panelhost/main.cpp - the avqpanel program: opens a session from the command line, then obeys a
// script or serves the page.
#include <CLI/CLI.hpp>
#include <cstdio>
#include <filesystem>
#include <iostream>
#include <iterator>
#include <string>

#include "panelhost/base/text.h"
#include "panelhost/script/script.h"
#include "panelhost/session/session.h"
#ifdef AVQPANEL_WEB
#include "panelhost/web/web_server.h"
#endif

namespace {

using panelhost::ScriptResult;
using panelhost::Session;
using panelhost::SessionOptions;

struct ProgramOptions {
    SessionOptions session;
    std::string scriptPath;
    bool cold = false;
    double simulationRate = 1;
    bool hasPosition = false;
    std::string folder;  // where the program was started: scripts write there
    std::string listenAddress = "127.0.0.1";
    int port = 8737;
    bool forget = false;
    bool flightGear = false;  // flies, in place of the built-in model
    bool flightGearLine = false;
    panelhost::LiveOptions live;
};

constexpr std::size_t kMaxScriptBytes = 16U << 20U;

void DescribeOptions(CLI::App& app, ProgramOptions& options) {
    SessionOptions& session = options.session;
    auto& start = session.start;
    app.add_option("--module", session.modulePath, "gauge module (gauges/avq1.gau of the folder)");
    app.add_option("--sim", session.simFolder, "simulator folder")
        ->capture_default_str()
        ->take_last();  // behind the folder that a script names
    app.add_option("--panel", session.panelPath, "panel file (panel.cfg of the folder)");
    app.add_flag("--cold", options.cold, "start with nothing set: skip autostart.script");
    app.add_option("--scale", session.surfaceScale, "picture pixels per panel pixel")
        ->check(CLI::Range(1, 3))
        ->capture_default_str();
    app.add_flag("!--no-traffic", session.trafficModule, "no traffic module beside the panel");
    app.add_option("--seed", session.seed, "of the turbulence")->capture_default_str();
    app.add_option("--port", options.port, "of the page")
        ->check(CLI::Range(0, 65535))
        ->capture_default_str();
    app.add_option("--listen", options.listenAddress, "address the page is served on")
        ->capture_default_str();
    app.add_flag("--forget", options.forget, "drop every pairing of earlier starts");
    app.add_option("--lat", start.latitude, "start latitude, degrees")
        ->check(CLI::Range(-89.0, 89.0));
    app.add_option("--lon", start.longitude, "start longitude, degrees")
        ->check(CLI::Range(-180.0, 180.0));
    app.add_option("--alt", start.altitudeFt, "start altitude, feet")->check(CLI::Range(0, 45000));
    app.add_option("--heading", start.headingTrue, "start heading, degrees true")
        ->check(CLI::Range(0, 360));
    app.add_option("--speed", start.indicatedAirspeedKt, "start airspeed, knots")
        ->check(CLI::Range(0, 340));
    app.add_flag("--ground", start.onGround, "start parked on the ground");
    app.add_option("--rate", options.simulationRate, "simulation rate")
        ->check(CLI::Range(0.25, 64.0));
    app.add_flag("--flightgear", options.flightGear, "FlightGear flies the aircraft");
    app.add_option("--flightgear-host", options.live.ports.host, "address FlightGear runs at")
        ->capture_default_str();
    app.add_option("--flightgear-port", options.live.ports.port,
                   "UDP port its packets come to; the next one is sent to")
        ->check(CLI::Range(1, 65534))
        ->capture_default_str();
    app.add_option("--flightgear-autopilot", options.live.mappingPath,
                   "mapping file (flightgear/generic.json of the folder)");
    app.add_flag("--flightgear-line", options.flightGearLine,
                 "write the protocol files, print FlightGear's options and end");
    app.add_option("--script", options.scriptPath,
                   "obey this script (- for standard input) and end");
}

int Fail(const std::string& line) {
    std::fprintf(stderr, "avqpanel: %s\n", line.c_str());
    return 1;
}

int ObeyScript(Session& session, const ProgramOptions& options, const std::string& name,
               const std::string& text, bool& quit) {
    const panelhost::Script script = panelhost::ParseScript(text);
    for (const std::string& error : script.errors) {
        Fail(name + " " + error);
    }
    if (!script.errors.empty()) {
        return 1;
    }
    const ScriptResult result = panelhost::RunScript(session, script, options.folder, stdout);
    quit = result.quit;
    return result.error.empty() ? result.exitStatus : Fail(name + " " + result.error);
}

bool ReadScript(const std::string& path, std::string& text) {
    if (path == "-") {
        text.assign(std::istreambuf_iterator<char>(std::cin), std::istreambuf_iterator<char>());
        return true;
    }
    const std::optional<std::string> file = panelhost::ReadWholeFile(path, kMaxScriptBytes);
    text = file.value_or("");
    return file.has_value();
}

// A simulator folder's own scripts: start.script places the aircraft unless the command line did,
// autostart.script flies the demonstration unless the start is a cold one or another script runs.
int ObeyFolderScripts(Session& session, const ProgramOptions& options, bool& quit) {
    struct FolderScript {
        const char* name;
        bool wanted;
        bool places;
    };
    const FolderScript scripts[] = {
        {"start.script", !options.hasPosition, true},
        {"autostart.script", !options.cold && options.scriptPath.empty(), false}};
    for (const FolderScript& script : scripts) {
        const std::string path = panelhost::FindFileNoCase(".", script.name);
        std::string text;
        if (!script.wanted || path.empty() || quit || !ReadScript(path, text)) {
            continue;
        }
        if (ObeyScript(session, options, script.name, text, quit) != 0) {
            return 1;
        }
        if (options.session.start.onGround && script.places) {
            session.SetAltitude(0);  // at the place the script chose
            session.SetIndicatedAirspeed(0);
        }
    }
    return 0;
}

// The options FlightGear is started with go to standard output, for a shell to use.
int PrintStartOptions(const ProgramOptions& options) {
    std::string problem;
    if (!panelhost::WriteLiveFiles(options.live, problem)) {
        return Fail(problem);
    }
    const std::string line = panelhost::LiveStartOptions(options.live);
    std::printf("%s\n", line.c_str());
    return 0;
}

// FlightGear places its aircraft itself and is set by its pilot: no script of the folder does.
void PrepareLive(ProgramOptions& options) {
    const std::string line = panelhost::LiveStartOptions(options.live);
    std::printf("FlightGear is heard when it is started with: fgfs %s\n", line.c_str());
    std::fflush(stdout);
    options.live.realTime = !options.scriptPath.empty();
    options.session.live = options.live;
    options.session.start.autopilotOn = false;
}

int Serve(Session& session, const ProgramOptions& options) {
#ifdef AVQPANEL_WEB
    panelhost::WebOptions web;
    web.listenAddress = options.listenAddress;
    web.port = options.port;
    web.forgetPaired = options.forget;
    return panelhost::ServeWeb(session, web);
#else
    (void)session;
    (void)options;
    return Fail("this build has no page; use --script");
#endif
}

int Run(ProgramOptions& options) {
    std::string scriptText;
    const bool scripted = !options.scriptPath.empty();
    if (scripted && !ReadScript(options.scriptPath, scriptText)) {
        return Fail("cannot read script \"" + options.scriptPath + "\"");
    }
    options.session.start.autopilotOn = !options.cold;
    if (options.live.mappingPath.empty()) {
        options.live.mappingPath = options.session.simFolder + "/flightgear/generic.json";
    }
    if (options.flightGearLine) {
        return PrintStartOptions(options);
    }
    if (options.flightGear) {
        PrepareLive(options);
    }
    Session session;
    if (!session.Open(options.session)) {
        return Fail(session.error());
    }
    for (const std::string& warning : session.warnings()) {
        Fail(warning);
    }
    bool quit = false;
    int status = 0;
    if (!options.flightGear) {
        session.SetSimulationRate(options.simulationRate);
        status = ObeyFolderScripts(session, options, quit);
    }
    if (scripted && status == 0) {
        return ObeyScript(session, options, options.scriptPath, scriptText, quit);
    }
    return status != 0 || quit ? status : Serve(session, options);
}

}  // namespace

int main(int count, char** arguments) {
    CLI::App app{"Flies a gauge module's panel: in a browser, or by a script."};
    ProgramOptions options;
    DescribeOptions(app, options);
    CLI11_PARSE(app, count, arguments);
    std::error_code ignored;
    options.folder = std::filesystem::current_path(ignored).string();
    options.hasPosition = app.count("--lat") + app.count("--lon") > 0;
    return Run(options);
}
