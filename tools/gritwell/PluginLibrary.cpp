#include "PluginLibrary.h"

#include <dlfcn.h>

#include <algorithm>
#include <cstring>
#include <filesystem>

#include "core/TransformData.h"

// The plug-in's sessions look this up by name (kRequestedSimdLevelName);
// -1 until requestSimdLevel.
extern "C" {
__attribute__((visibility("default"))) int gritwellRequestedSimdLevel = -1;
}

namespace gritwell {

void PluginLibrary::requestSimdLevel(SimdLevel level) {
    setSimdLevel(level);
    gritwellRequestedSimdLevel = static_cast<int>(simdLevel());
}

PluginLibrary::PluginLibrary(const std::string& path) {
    handle_ = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (handle_ == nullptr) {
        const char* why = dlerror();
        error_ = "cannot load the plug-in " + path + ": " + (why != nullptr ? why : "unknown error");
        return;
    }
    auto resolve = [this, &path](const char* name) {
        void* symbol = dlsym(handle_, name);
        if (symbol == nullptr && error_.empty())
            error_ = "the plug-in " + path + " has no function " + name;
        return reinterpret_cast<HostEntryPoint>(symbol);
    };
    beginSession = resolve("beginSession");
    continueSession = resolve("continueSession");
    continueSessionOne = resolve("continueSessionOne");
    endSession = resolve("endSession");
    interactWithUser = resolve("interactWithUser");
}

PluginLibrary::~PluginLibrary() {
    if (handle_ != nullptr) dlclose(handle_);
}

std::string PluginLibrary::defaultPath() {
    std::error_code ec;
    const std::filesystem::path self = std::filesystem::read_symlink("/proc/self/exe", ec);
    if (ec) return "GritwellPlugin.so";
    // In the build folder the plug-in sits beside us; installed, we are in
    // bin/ and it is in lib/gritwell/, where no host's search finds it by
    // accident.
    const std::filesystem::path beside = self.parent_path() / "GritwellPlugin.so";
    const std::filesystem::path installed = self.parent_path().parent_path() / "lib" / "gritwell" / "GritwellPlugin.so";
    if (!std::filesystem::exists(beside, ec) && std::filesystem::exists(installed, ec)) return installed.string();
    return beside.string();
}

PluginSession::PluginSession(PluginLibrary& plugin, const std::vector<unsigned char>& record,
                             const TransformData& transforms)
    : plugin_(plugin) {
    char block[256] = {};
    std::memcpy(block, record.data(), std::min<std::size_t>(record.size(), sizeof block));
    char transformBytes[sizeof(TransformData)];
    transforms.toBytes(transformBytes);
    plugin_.beginSession(nullptr, 0.0, block, sizeof block, transformBytes, sizeof transformBytes,
                         nullptr);
}

PluginSession::PluginSession(PluginLibrary& plugin, const std::vector<unsigned char>& record,
                             int flags)
    : PluginSession(plugin, record, TransformData{.flags = flags}) {}

PluginSession::~PluginSession() {
    plugin_.endSession(nullptr, 0.0, nullptr, 0, nullptr, 0, nullptr);
}

void PluginSession::evaluate(const float* points, int n, float* out) {
    constexpr int kBatch = 65536;
    block_.resize(1 + 3 * static_cast<std::size_t>(std::min(n, kBatch)));
    for (int start = 0; start < n; start += kBatch) {
        const int count = std::min(kBatch, n - start);
        std::memcpy(block_.data(), &count, sizeof count);
        std::memcpy(block_.data() + 1, points + 3 * static_cast<std::size_t>(start),
                    3 * sizeof(float) * count);
        plugin_.continueSession(nullptr, 0.0, reinterpret_cast<char*>(out + start),
                                count * static_cast<int>(sizeof(float)),
                                reinterpret_cast<char*>(block_.data()),
                                static_cast<int>(block_.size() * sizeof(float)), nullptr);
    }
}

}  // namespace gritwell
