#include "AtomicOutput.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>

#include "CliError.h"

namespace gritwell {

namespace fs = std::filesystem;

namespace {

// What the signal handler removes. It may only touch memory that is fully
// written before it is armed, so each path lives in a fixed buffer and the
// flag that arms it is the last thing set and the first thing cleared.
constexpr int kSlots = 4;
char gTemporary[kSlots][4096];
volatile sig_atomic_t gArmed[kSlots] = {};

extern "C" void removeTemporariesAndExit(int) {
    for (int i = 0; i < kSlots; ++i)
        if (gArmed[i] != 0) ::unlink(gTemporary[i]);
    ::_exit(AtomicOutput::kInterruptedStatus);
}

// Ctrl-C, kill, a closed terminal (SIGHUP) and Ctrl-\\ (SIGQUIT): each
// would otherwise end the program with the temporary left beside the output.
constexpr int kCleanedUpSignals[] = {SIGINT, SIGTERM, SIGHUP, SIGQUIT};

void installHandlersOnce() {
    static const bool installed = [] {
        struct sigaction action {};
        action.sa_handler = removeTemporariesAndExit;
        sigemptyset(&action.sa_mask);
        for (const int signal : kCleanedUpSignals) sigaddset(&action.sa_mask, signal);
        for (const int signal : kCleanedUpSignals) sigaction(signal, &action, nullptr);
        return true;
    }();
    (void)installed;
}

CliError cannotWrite(const std::string& path, int error) {
    return CliError("cannot write '" + path + "': " + std::strerror(error));
}

// The name a write to `path` lands on: symbolic links followed to the end,
// also to a target that does not exist yet.
std::string followLinks(const std::string& path) {
    fs::path at = path;
    for (int hops = 0; hops < 40; ++hops) {
        struct stat status {};
        if (::lstat(at.c_str(), &status) != 0 || !S_ISLNK(status.st_mode)) return at.string();
        std::error_code ec;
        const fs::path target = fs::read_symlink(at, ec);
        if (ec) throw cannotWrite(path, ec.value());
        at = target.is_absolute() ? target : at.parent_path() / target;
    }
    throw cannotWrite(path, ELOOP);
}

struct Destination {
    enum class Kind { NewFile, ExistingFile, Device, StandardOutput } kind;
    std::string path;          // the file a write lands on, or the device as given
    struct stat status {};     // of an existing file
};

// Where a write to `path` goes, refusing what cannot or must not be written.
Destination locate(const std::string& path) {
    if (path == "-") return {Destination::Kind::StandardOutput, path, {}};
    struct stat status {};
    Destination d{Destination::Kind::NewFile, path, {}};
    if (::stat(path.c_str(), &status) == 0) {
        if (S_ISDIR(status.st_mode)) throw cannotWrite(path, EISDIR);
        if (::access(path.c_str(), W_OK) != 0) throw cannotWrite(path, errno);
        if (!S_ISREG(status.st_mode)) return {Destination::Kind::Device, path, status};
        // Root passes access(2) on any file; a file nobody may write is
        // still one the user meant to keep.
        if ((status.st_mode & 0222) == 0)
            throw CliError("cannot write '" + path + "': it is read-only (it has no write permission)");
        d = {Destination::Kind::ExistingFile, followLinks(path), status};
    } else if (errno == ENOENT) {
        d.path = followLinks(path);
    } else {
        throw cannotWrite(path, errno);
    }
    // The temporary is made beside the file, then renamed over it.
    const fs::path folder = fs::path(d.path).parent_path();
    if (::access(folder.empty() ? "." : folder.c_str(), W_OK | X_OK) != 0) throw cannotWrite(path, errno);
    return d;
}

// A file by its device and inode where it exists, else by its name.
struct Identity {
    bool exists = false;
    dev_t device = 0;
    ino_t inode = 0;
    std::string name;

    bool operator==(const Identity& o) const {
        return exists == o.exists && (exists ? device == o.device && inode == o.inode : name == o.name);
    }
};

Identity identify(const std::string& path) {
    struct stat status {};
    if (path == "-" ? ::fstat(STDOUT_FILENO, &status) == 0 : ::stat(path.c_str(), &status) == 0)
        return {true, status.st_dev, status.st_ino, {}};
    std::error_code ec;
    const fs::path name = fs::weakly_canonical(fs::absolute(followLinks(path)), ec);
    return {false, 0, 0, ec ? path : name.string()};
}

std::string named(const CommandFile& f) { return f.name + " '" + f.path + "'"; }

bool writeAll(int fd, const char* data, std::size_t size) {
    while (size > 0) {
        const ssize_t n = ::write(fd, data, size);
        if (n < 0 && errno == EINTR) continue;
        if (n <= 0) return false;
        data += n;
        size -= static_cast<std::size_t>(n);
    }
    return true;
}

}  // namespace

void checkCommandFiles(const std::vector<CommandFile>& outputs, const std::vector<CommandFile>& inputs) {
    std::vector<Identity> written;
    for (const CommandFile& out : outputs) {
        locate(out.path);
        written.push_back(identify(out.path));
        for (std::size_t i = 0; i + 1 < written.size(); ++i)
            if (written[i] == written.back())
                throw CliError(named(outputs[i]) + " and " + named(out) +
                               " are the same file; give each output a file of its own");
    }
    for (const CommandFile& in : inputs) {
        struct stat status {};
        if (in.path.empty() || ::stat(in.path.c_str(), &status) != 0) continue;
        const Identity read = identify(in.path);
        for (std::size_t i = 0; i < outputs.size(); ++i)
            if (written[i] == read)
                throw CliError(named(outputs[i]) + " is the same file as " + named(in) +
                               ", which is read; write to another file");
    }
}

AtomicOutput::AtomicOutput(const std::string& path) : path_(path) {
    const Destination d = locate(path);
    destination_ = d.path;
    if (d.kind == Destination::Kind::Device || d.kind == Destination::Kind::StandardOutput) {
        file_ = ::open_memstream(&buffer_, &bufferSize_);
        if (file_ == nullptr) throw cannotWrite(path, errno);
        return;
    }

    temporary_ = d.path + ".partial-" + std::to_string(::getpid());
    while (slot_ < kSlots && gArmed[slot_] != 0) ++slot_;
    if (slot_ == kSlots) throw CliError("internal: too many outputs open at once", CliError::kEnvironment);
    if (temporary_.size() >= sizeof gTemporary[slot_]) throw CliError("cannot write '" + path + "': the path is too long");
    installHandlersOnce();
    std::memcpy(gTemporary[slot_], temporary_.c_str(), temporary_.size() + 1);
    // Armed before the file exists, so no signal can leave it behind.
    gArmed[slot_] = 1;
    pending_ = true;
    // 0666 lets the umask decide the permissions of a new file.
    const int fd = ::open(temporary_.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
    if (fd < 0) {
        const int error = errno;
        gArmed[slot_] = 0;
        pending_ = false;
        throw cannotWrite(path, error);
    }
    if (d.kind == Destination::Kind::ExistingFile) {
        if (::fchmod(fd, d.status.st_mode & 07777) != 0) {
            const int error = errno;
            ::close(fd);
            fail(error);
        }
        // The owner too, where the process may give it (root may); anyone
        // else's replacement becomes theirs, as an editor's save does.
        if (d.status.st_uid != ::geteuid() || d.status.st_gid != ::getegid()) {
            [[maybe_unused]] const int ownerKept = ::fchown(fd, d.status.st_uid, d.status.st_gid);
        }
    }
    file_ = ::fdopen(fd, "wb");
    if (file_ == nullptr) {
        const int error = errno;
        ::close(fd);
        fail(error);
    }
    std::setvbuf(file_, nullptr, _IOFBF, 1 << 20);
}

AtomicOutput::~AtomicOutput() {
    discard();
    if (file_ != nullptr) std::fclose(file_);
    std::free(buffer_);
}

void AtomicOutput::discard() {
    if (!pending_) return;
    if (file_ != nullptr) {
        std::fclose(file_);
        file_ = nullptr;
    }
    ::unlink(temporary_.c_str());
    gArmed[slot_] = 0;
    pending_ = false;
}

void AtomicOutput::fail(int error) {
    discard();
    throw cannotWrite(path_, error);
}

void AtomicOutput::finish() {
    if (finished_) return;
    finished_ = true;
    errno = 0;
    bool ok = std::fflush(file_) == 0 && !std::ferror(file_);
    // On disk before the rename, so a crash cannot leave the new name on
    // an empty file.
    if (ok && pending_) ok = ::fsync(::fileno(file_)) == 0;
    int error = errno;
    const bool closed = std::fclose(file_) == 0;
    if (ok && !closed) error = errno;
    file_ = nullptr;
    if (!ok || !closed) fail(error != 0 ? error : EIO);
}

void AtomicOutput::commit() {
    finish();
    if (temporary_.empty()) {
        writeDirectly();
        return;
    }
    if (::rename(temporary_.c_str(), destination_.c_str()) != 0) fail(errno);
    // The temporary's name is gone: nothing is left to remove.
    gArmed[slot_] = 0;
    pending_ = false;
}

void AtomicOutput::writeDirectly() {
    if (path_ == "-") {
        std::fflush(stdout);
        if (!writeAll(STDOUT_FILENO, buffer_, bufferSize_)) throw cannotWrite("standard output", errno);
        return;
    }
    const int fd = ::open(destination_.c_str(), O_WRONLY | O_CLOEXEC);
    if (fd < 0) throw cannotWrite(path_, errno);
    const bool written = writeAll(fd, buffer_, bufferSize_);
    const int error = errno;
    ::close(fd);
    if (!written) throw cannotWrite(path_, error);
}

void AtomicOutput::commitAll(std::initializer_list<AtomicOutput*> outputs) {
    for (AtomicOutput* out : outputs)
        if (out != nullptr) out->finish();
    for (AtomicOutput* out : outputs)
        if (out != nullptr) out->commit();
}

}  // namespace gritwell
