#pragma once
// AtomicOutput: every file the command-line host writes.
//
// A regular file is written beside its destination under a temporary name
// and renamed over it only once complete and on disk, so that a failure, a
// full disk, Ctrl-C or a kill leaves either the old file or the whole new
// one, never half of it. The new file keeps the old one's permission bits
// (and, where the process may set it, its owner). A symbolic link is written
// through: the file it names is replaced and the link stays.
//
// "-" is standard output. A character device, pipe or socket cannot be
// renamed over, so it is written directly, once the whole output is ready.
//
// While an output is open, SIGINT, SIGTERM, SIGHUP and SIGQUIT remove the
// temporaries and end the program with status 130.

#include <cstddef>
#include <cstdio>
#include <initializer_list>
#include <string>
#include <vector>

namespace gritwell {

// A file a command reads or writes, with what named it, for messages:
// {"-o", "m.ply"}, {"MESH", "m.ply"}.
struct CommandFile {
    std::string name;
    std::string path;
};

// A command's files, checked before anything is read or written: each output
// must be writable, and no two outputs, nor an output and an input, may be
// the same file (links followed). A CliError (status 2) says which, naming
// the options. Writable means the process may write it (access(2)) and, as
// root may write anything, that the file has at least one write permission
// bit: a read-only file is never replaced. Its folder must let a file be
// made in it. Inputs that do not exist are left to their readers.
void checkCommandFiles(const std::vector<CommandFile>& outputs, const std::vector<CommandFile>& inputs = {});

class AtomicOutput {
public:
    // Prepares the output: for a file, creates "<file>.partial-<pid>"
    // beside it (the file a symbolic link names). A CliError (status 2) when
    // it cannot, or when the destination is a folder or not writable. Up to
    // four may be open at once, each for a different destination.
    explicit AtomicOutput(const std::string& path);
    // Removes the temporary unless commit() succeeded.
    ~AtomicOutput();
    AtomicOutput(const AtomicOutput&) = delete;
    AtomicOutput& operator=(const AtomicOutput&) = delete;

    // Where to write, with fwrite: the temporary, or for a device a buffer.
    std::FILE* file() const { return file_; }

    // Flushes the output to disk (a buffer for a device); a CliError (status
    // 2) when that fails, say on a full disk, the temporary then removed and
    // the destination untouched.
    void finish();
    // finish(), then puts the output in place: renames the temporary over
    // the destination, or writes the buffer to the device. A CliError
    // (status 2) when any step fails. Call it once.
    void commit();
    // Finishes every one before committing any, so that a failed write
    // leaves all their destinations as they were. Null entries are skipped.
    static void commitAll(std::initializer_list<AtomicOutput*> outputs);

    // The status a signal ends the program with while an output is open.
    static constexpr int kInterruptedStatus = 130;

private:
    [[noreturn]] void fail(int error);
    void discard();
    void writeDirectly();

    std::string path_;         // as given, for messages
    std::string destination_;  // the file replaced, or the device written
    std::string temporary_;    // empty for a device
    std::FILE* file_ = nullptr;
    char* buffer_ = nullptr;   // a device's output, gathered until commit
    std::size_t bufferSize_ = 0;
    int slot_ = 0;             // its entry among the paths a signal removes
    bool pending_ = false;     // the temporary exists and is ours to remove
    bool finished_ = false;
};

}  // namespace gritwell
