// Replays a fuzz target's corpus without libFuzzer: every file named on the
// command line, or every file in a directory named there, is fed once to
// LLVMFuzzerTestOneInput. Used by the normal build's tests.

#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

bool replay(const std::filesystem::path& file) {
    std::ifstream in(file, std::ios::binary);
    if (!in) {
        std::fprintf(stderr, "cannot read %s\n", file.c_str());
        return false;
    }
    const std::vector<char> bytes((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
    return true;
}

}  // namespace

int main(int argc, char** argv) {
    int replayed = 0;
    for (int i = 1; i < argc; ++i) {
        const std::filesystem::path arg(argv[i]);
        if (std::filesystem::is_directory(arg)) {
            for (const auto& entry : std::filesystem::directory_iterator(arg)) {
                if (!entry.is_regular_file()) continue;
                if (!replay(entry.path())) return 1;
                ++replayed;
            }
        } else {
            if (!replay(arg)) return 1;
            ++replayed;
        }
    }
    std::printf("replayed %d inputs\n", replayed);
    // An empty corpus means the replay tested nothing.
    return replayed > 0 ? 0 : 1;
}
