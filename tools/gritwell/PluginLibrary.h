#pragma once
// PluginLibrary: GritwellPlugin.so loaded at run time with dlopen, the way
// the host loads it, and its session and dialog functions called the way
// the host calls them.

#include <functional>
#include <string>
#include <vector>

#include "core/SimdLevel.h"
#include "core/TransformData.h"
#include "plugin/HostInterface.h"

namespace gritwell {

class PluginLibrary {
public:
    // Loads the library and resolves the host's five functions; on failure
    // ok() is false and error() says why.
    explicit PluginLibrary(const std::string& path);
    ~PluginLibrary();
    PluginLibrary(const PluginLibrary&) = delete;
    PluginLibrary& operator=(const PluginLibrary&) = delete;

    bool ok() const { return handle_ != nullptr && error_.empty(); }
    const std::string& error() const { return error_; }

    // The raw entry points, with the host's seven arguments.
    HostEntryPoint beginSession = nullptr;
    HostEntryPoint continueSession = nullptr;
    HostEntryPoint continueSessionOne = nullptr;
    HostEntryPoint endSession = nullptr;
    HostEntryPoint interactWithUser = nullptr;

    // The plug-in beside the running executable, or where an installed
    // executable finds it: ../lib/gritwell/.
    static std::string defaultPath();

    // Holds this process's batch paths to `level` (or the best below it the
    // processor runs), and those of the plug-in's sessions begun from now
    // on, through the variable named kRequestedSimdLevelName; an executable
    // exports it by linking with host-exports.list.
    static void requestSimdLevel(SimdLevel level);

private:
    void* handle_ = nullptr;
    std::string error_;
};

// Evaluates n packed points (x, y, z) into out[0..n-1].
using BatchEvaluator = std::function<void(const float* points, int n, float* out)>;

// One session over a record: begin on construction, end on destruction.
// The record is copied into a 256-byte block, as the host's buffer is, and
// the transform record goes with it (the plug-in reads its flags word).
class PluginSession {
public:
    PluginSession(PluginLibrary& plugin, const std::vector<unsigned char>& record, const TransformData& transforms);
    // A session with the default transform record and this flags word.
    PluginSession(PluginLibrary& plugin, const std::vector<unsigned char>& record, int flags);
    ~PluginSession();
    PluginSession(const PluginSession&) = delete;
    PluginSession& operator=(const PluginSession&) = delete;

    // Evaluates n packed points (x, y, z) into out[0..n-1], in batches.
    void evaluate(const float* points, int n, float* out);

private:
    PluginLibrary& plugin_;
    std::vector<float> block_;  // count word, then points
};

}  // namespace gritwell
