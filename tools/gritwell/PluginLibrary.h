#pragma once
// PluginLibrary: GritwellPlugin.so loaded at run time with dlopen, the way
// the host loads it, and its session and dialog functions called the way
// the host calls them.

#include <string>
#include <vector>

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

    // The plug-in beside the running executable.
    static std::string defaultPath();

private:
    void* handle_ = nullptr;
    std::string error_;
};

// One session over a record: begin on construction, end on destruction.
// The record is copied into a 256-byte block, as the host's buffer is.
class PluginSession {
public:
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
