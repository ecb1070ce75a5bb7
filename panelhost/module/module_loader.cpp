#include "panelhost/module/module_loader.h"

#include <dlfcn.h>
#include <elf.h>
#include <link.h>

#include <cstring>
#include <filesystem>

#include "panelhost/base/text.h"

namespace panelhost {
namespace {

constexpr std::size_t kMaxModuleBytes = 512U << 20U;
constexpr std::size_t kGaugesOffset = offsetof(avq1::LinkageRecord, gauges);

struct DataSymbol {
    void* address = nullptr;
    std::size_t size = 0;
};

// A data symbol with its size from the symbol table, so a record cut short is never read past.
DataSymbol FindData(void* handle, const char* name) {
    void* const address = dlsym(handle, name);
    Dl_info info{};
    void* entry = nullptr;
    if (address == nullptr || dladdr1(address, &info, &entry, RTLD_DL_SYMENT) == 0 ||
        entry == nullptr) {
        return {};
    }
    const auto* const symbol = static_cast<const ElfW(Sym)*>(entry);
    if (ELF64_ST_TYPE(symbol->st_info) != STT_OBJECT) {
        return {};
    }
    return {address, symbol->st_size};
}

std::vector<avq1::GaugeHeader*> ListGauges(const DataSymbol& linkage) {
    std::vector<avq1::GaugeHeader*> gauges;
    const char* at = static_cast<const char*>(linkage.address) + kGaugesOffset;
    for (std::size_t left = linkage.size - kGaugesOffset; left >= sizeof(void*);
         left -= sizeof(void*), at += sizeof(void*)) {
        avq1::GaugeHeader* gauge = nullptr;
        std::memcpy(&gauge, at, sizeof(void*));
        if (gauge == nullptr) {
            break;
        }
        gauges.push_back(gauge);
    }
    return gauges;
}

template <class Record>
bool ReadRecord(std::string_view bytes, std::uint64_t at, Record& record) {
    if (at > bytes.size() || bytes.size() - at < sizeof(Record)) {
        return false;
    }
    std::memcpy(&record, bytes.data() + at, sizeof(Record));
    return true;
}

// Whether everything the file's tables speak of is in it: mapped, a file cut short ends the process
// at the first page that is missing.
bool IsWhole(std::string_view bytes) {
    Elf64_Ehdr header{};
    if (!ReadRecord(bytes, 0, header) || header.e_type != ET_DYN ||
        header.e_phentsize != sizeof(Elf64_Phdr) ||
        (header.e_shnum != 0 && header.e_shentsize != sizeof(Elf64_Shdr)) ||
        header.e_shoff > bytes.size() ||
        bytes.size() - header.e_shoff < header.e_shnum * sizeof(Elf64_Shdr)) {
        return false;
    }
    for (std::uint64_t i = 0; i < header.e_phnum; ++i) {
        Elf64_Phdr segment{};
        if (header.e_phoff > bytes.size() ||
            !ReadRecord(bytes, header.e_phoff + i * sizeof(Elf64_Phdr), segment) ||
            segment.p_offset > bytes.size() || bytes.size() - segment.p_offset < segment.p_filesz) {
            return false;
        }
    }
    return true;
}

bool CheckFile(const std::string& path, std::string& bytes, std::string& error) {
    std::error_code ignored;
    if (!std::filesystem::exists(path, ignored)) {
        error = Format("cannot load module \"%s\": there is no such file", path.c_str());
        return false;
    }
    bytes = ReadWholeFile(path, kMaxModuleBytes).value_or("");
    if (bytes.substr(0, 5) !=
        "\x7F"
        "ELF\x02") {
        error = Format("cannot load module \"%s\": it is not a 64-bit Linux shared object",
                       path.c_str());
        return false;
    }
    if (!IsWhole(bytes)) {
        error = Format("cannot load module \"%s\": the file is cut short or damaged", path.c_str());
        return false;
    }
    return true;
}

std::string CheckRecords(const DataSymbol& linkage, const DataSymbol& import) {
    if (linkage.address == nullptr || linkage.size < kGaugesOffset + sizeof(void*)) {
        return "it exports no Linkage record";
    }
    if (import.address == nullptr || import.size < sizeof(avq1::PanelServiceImport)) {
        return "it exports no ImportTable record";
    }
    const auto* const record = static_cast<const avq1::LinkageRecord*>(linkage.address);
    if (record->moduleId != avq1::kLinkageModuleId || record->version != avq1::kLinkageVersion) {
        return Format("its Linkage record has id 0x%X and version 0x%X, not 0x%X and 0x%X",
                      static_cast<unsigned>(record->moduleId), record->version,
                      static_cast<unsigned>(avq1::kLinkageModuleId), avq1::kLinkageVersion);
    }
    const auto* const table = static_cast<const avq1::ImportTableRecord*>(import.address);
    if (table->panel.key != avq1::kPanelServiceKey) {
        return Format("its ImportTable asks for service 0x%X, not 0x%X",
                      static_cast<unsigned>(table->panel.key),
                      static_cast<unsigned>(avq1::kPanelServiceKey));
    }
    for (const avq1::GaugeHeader* gauge : ListGauges(linkage)) {
        if (gauge->version != avq1::kGaugeHeaderVersion || gauge->name == nullptr) {
            return Format("a gauge header has version %u, not %u, or no name", gauge->version,
                          avq1::kGaugeHeaderVersion);
        }
    }
    return "";
}

}  // namespace

bool LoadModule(const std::string& path, LoadedModule& module, std::string& error) {
    std::string bytes;
    if (!CheckFile(path, bytes, error)) {
        return false;
    }
    void* const handle = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (handle == nullptr) {
        const char* const reason = dlerror();
        error = Format("cannot load module \"%s\": %s", path.c_str(),
                       reason != nullptr ? reason : "unknown reason");
        return false;
    }
    const DataSymbol linkage = FindData(handle, "Linkage");
    const DataSymbol import = FindData(handle, "ImportTable");
    const std::string problem = CheckRecords(linkage, import);
    if (!problem.empty()) {
        error = Format("cannot load module \"%s\": %s", path.c_str(), problem.c_str());
        dlclose(handle);
        return false;
    }
    const DataSymbol platform = FindData(handle, "PlatformTable");
    module.path = path;
    module.handle = handle;
    module.linkage = static_cast<avq1::LinkageRecord*>(linkage.address);
    module.importTable = static_cast<avq1::ImportTableRecord*>(import.address);
    if (platform.size >= sizeof(avq1::PlatformTableRecord)) {
        auto* const table = static_cast<avq1::PlatformTableRecord*>(platform.address);
        module.platformTable = table->key == avq1::kPlatformServiceKey ? table : nullptr;
    }
    module.gauges = ListGauges(linkage);
    const std::string_view section = FindElfSection(bytes, ".avq_res");
    if (section.empty()) {
        module.resources.problems.push_back("the module carries no bitmaps: panels stay plain");
    } else {
        module.resources = ParseResources(section);
    }
    return true;
}

void UnloadModule(LoadedModule& module) {
    if (module.handle != nullptr) {
        module.importTable->panel.services = nullptr;
        if (module.platformTable != nullptr) {
            module.platformTable->services = nullptr;
        }
        dlclose(module.handle);
    }
    module = LoadedModule{};
}

avq1::GaugeHeader* FindGauge(const LoadedModule& module, const std::string& name) {
    for (avq1::GaugeHeader* gauge : module.gauges) {
        if (EqualNoCase(gauge->name, name)) {
            return gauge;
        }
    }
    return nullptr;
}

}  // namespace panelhost
