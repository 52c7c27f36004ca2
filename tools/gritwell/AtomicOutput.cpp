#include "AtomicOutput.h"

#include <fcntl.h>
#include <signal.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "CliError.h"

namespace gritwell {

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

void installHandlersOnce() {
    static const bool installed = [] {
        struct sigaction action {};
        action.sa_handler = removeTemporariesAndExit;
        sigemptyset(&action.sa_mask);
        sigaddset(&action.sa_mask, SIGINT);
        sigaddset(&action.sa_mask, SIGTERM);
        sigaction(SIGINT, &action, nullptr);
        sigaction(SIGTERM, &action, nullptr);
        return true;
    }();
    (void)installed;
}

std::string withReason(const std::string& what, int error) { return what + ": " + std::strerror(error); }

}  // namespace

AtomicOutput::AtomicOutput(const std::string& path)
    : path_(path), temporary_(path + ".partial-" + std::to_string(::getpid())) {
    while (slot_ < kSlots && gArmed[slot_] != 0) ++slot_;
    if (slot_ == kSlots) throw CliError("internal: too many outputs open at once", CliError::kEnvironment);
    if (temporary_.size() >= sizeof gTemporary[slot_]) throw CliError("cannot write '" + path + "': the path is too long");
    installHandlersOnce();
    std::memcpy(gTemporary[slot_], temporary_.c_str(), temporary_.size() + 1);
    // Armed before the file exists, so no signal can leave it behind.
    gArmed[slot_] = 1;
    pending_ = true;
    // 0666 lets the umask decide the permissions, as for any new file.
    const int fd = ::open(temporary_.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
    if (fd < 0) {
        const int error = errno;
        gArmed[slot_] = 0;
        pending_ = false;
        throw CliError(withReason("cannot write '" + path + "'", error));
    }
    file_ = ::fdopen(fd, "wb");
    if (file_ == nullptr) {
        const int error = errno;
        ::close(fd);
        discard();
        throw CliError(withReason("cannot write '" + path + "'", error));
    }
    std::setvbuf(file_, nullptr, _IOFBF, 1 << 20);
}

AtomicOutput::~AtomicOutput() { discard(); }

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

void AtomicOutput::commit() {
    const bool written = std::fflush(file_) == 0 && !std::ferror(file_);
    const int writeError = errno;
    const bool closed = std::fclose(file_) == 0;
    const int closeError = errno;
    file_ = nullptr;
    if (!written || !closed) {
        discard();
        throw CliError(withReason("cannot write '" + path_ + "'", written ? closeError : writeError));
    }
    if (::rename(temporary_.c_str(), path_.c_str()) != 0) {
        const int error = errno;
        discard();
        throw CliError(withReason("cannot write '" + path_ + "'", error));
    }
    // The temporary's name is gone: nothing is left to remove.
    gArmed[slot_] = 0;
    pending_ = false;
}

}  // namespace gritwell
