#pragma once
// FuzzFile: the fuzzer's bytes as a file on disk, for readers that take a
// path. One file per process and extension, rewritten for every input.

#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>

namespace gritwell::fuzz {

inline std::string writeFuzzFile(const std::uint8_t* data, std::size_t size, const std::string& extension) {
    const std::string path = (std::filesystem::temp_directory_path() /
                              ("gritwell-fuzz-" + std::to_string(::getpid()) + extension))
                                 .string();
    std::FILE* f = std::fopen(path.c_str(), "wb");
    if (f == nullptr) std::abort();  // the harness itself is broken, not the reader
    if (size != 0) std::fwrite(data, 1, size, f);
    std::fclose(f);
    return path;
}

}  // namespace gritwell::fuzz
