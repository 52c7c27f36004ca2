#include "MappedFile.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "CliError.h"

namespace gritwell {

MappedFile::MappedFile(const std::string& path) {
    const int fd = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (fd < 0) throw CliError("cannot read '" + path + "': " + std::strerror(errno));
    struct stat status {};
    if (::fstat(fd, &status) != 0) {
        const int error = errno;
        ::close(fd);
        throw CliError("cannot read '" + path + "': " + std::strerror(error));
    }
    if (S_ISDIR(status.st_mode)) {
        ::close(fd);
        throw CliError("cannot read '" + path + "': it is a folder");
    }
    size_ = static_cast<std::size_t>(status.st_size);
    if (size_ != 0) {
        // Populated up front: the readers touch every page, and one call
        // that faults them all in is cheaper than a fault per page.
        data_ = ::mmap(nullptr, size_, PROT_READ, MAP_PRIVATE | MAP_POPULATE, fd, 0);
        if (data_ == MAP_FAILED) {
            const int error = errno;
            data_ = nullptr;
            size_ = 0;
            ::close(fd);
            throw CliError("cannot read '" + path + "': " + std::strerror(error));
        }
    }
    ::close(fd);
}

MappedFile::~MappedFile() {
    if (data_ != nullptr) ::munmap(data_, size_);
}

}  // namespace gritwell
