// panelhost/module/module_loader.h - opens a gauge module's shared object and finds its exported
// records.
//
// A module is an ELF64 shared object that exports the data symbols Linkage and ImportTable, and
// PlatformTable if it wants the Linux services. Nothing of it is called here.
#pragma once

#include <string>
#include <vector>

#include "panelhost/module/resources.h"
#include "platform/panel_interface.h"

namespace panelhost {

struct LoadedModule {
    std::string path;
    void* handle = nullptr;
    avq1::LinkageRecord* linkage = nullptr;
    avq1::ImportTableRecord* importTable = nullptr;
    avq1::PlatformTableRecord* platformTable = nullptr;  // may stay null
    std::vector<avq1::GaugeHeader*> gauges;
    ModuleResources resources;
};

// False leaves one line in `error` and nothing loaded.
bool LoadModule(const std::string& path, LoadedModule& module, std::string& error);
void UnloadModule(LoadedModule& module);
avq1::GaugeHeader* FindGauge(const LoadedModule& module, const std::string& name);  // any case

}  // namespace panelhost
