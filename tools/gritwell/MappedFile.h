#pragma once
// MappedFile: a whole input file in memory, read-only, for the mesh readers
// that walk it byte by byte. The pages come from the page cache as they are,
// with no copy; a file of a million vertices is there in a few milliseconds.

#include <cstddef>
#include <string>
#include <string_view>

namespace gritwell {

class MappedFile {
public:
    // A CliError (status 2) naming the file when it cannot be opened, is a
    // folder or cannot be mapped. An empty file is an empty view.
    explicit MappedFile(const std::string& path);
    ~MappedFile();
    MappedFile(const MappedFile&) = delete;
    MappedFile& operator=(const MappedFile&) = delete;

    std::string_view bytes() const { return {static_cast<const char*>(data_), size_}; }

private:
    void* data_ = nullptr;
    std::size_t size_ = 0;
};

}  // namespace gritwell
