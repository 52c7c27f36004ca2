#include "ObjReader.h"

#include <cstdint>
#include <cstring>
#include <limits>
#include <vector>

#include "CliError.h"
#include "MeshText.h"

namespace gritwell::ObjReader {

namespace {

constexpr std::uint32_t kNone = std::numeric_limits<std::uint32_t>::max();
constexpr std::size_t kMaxVertices = std::numeric_limits<std::int32_t>::max() - 1;

bool isBlank(char c) { return c == ' ' || c == '\t'; }

// ---- the statements ------------------------------------------------------------

// What the file says, before positions are joined: every position, and
// every use of one in file order, faces among them.
struct Statements {
    std::vector<float> positions;
    std::vector<std::uint32_t> uses;  // position numbers from 0
    struct Face {
        std::size_t firstUse;
        std::uint32_t corners;
    };
    std::vector<Face> faces;
};

class Parser {
public:
    Parser(std::string_view file, const std::string& path) : file_(file), path_(path) {}

    Statements run() {
        const char* p = file_.data();
        const char* const end = p + file_.size();
        while (p < end) {
            ++line_;
            const char* eol = static_cast<const char*>(std::memchr(p, '\n', end - p));
            if (eol == nullptr) eol = end;
            while (p < eol && isBlank(*p)) ++p;
            if (eol - p >= 2 && isBlank(p[1])) {
                if (*p == 'v') vertex(p + 2, eol);
                if (*p == 'f' || *p == 'l' || *p == 'p') element(p + 2, eol, *p == 'f');
            }
            if (eol == end) break;
            p = eol + 1;
        }
        return std::move(s_);
    }

private:
    [[noreturn]] void damaged(const std::string& why) const {
        throw CliError("'" + path_ + "' is damaged: line " + std::to_string(line_) + " " + why);
    }
    static std::string_view wordAt(const char* p, const char* eol) {
        const char* q = p;
        while (q < eol && !MeshText::isSpace(*q)) ++q;
        return {p, std::min<std::size_t>(q - p, 40)};
    }

    // The number at `p` (after blanks), `p` moved past it; false when there
    // is none or it runs into something else than a blank or `stop`.
    template <typename T>
    static bool number(const char*& p, const char* eol, T& value, char stop = ' ') {
        while (p < eol && MeshText::isSpace(*p)) ++p;
        const char* from = p;
        if (eol - from > 1 && *from == '+' && from[1] != '-') ++from;
        const auto [after, ec] = std::from_chars(from, eol, value);
        if (ec != std::errc() || (after < eol && !MeshText::isSpace(*after) && *after != stop)) return false;
        p = after;
        return true;
    }

    void vertex(const char* p, const char* eol) {
        float xyz[3];
        const char* start = p;
        for (float& c : xyz)
            if (!number(p, eol, c)) damaged("is not a vertex 'v x y z': 'v " + std::string(wordAt(start, eol)) + "...'");
        if (s_.positions.size() / 3 >= kMaxVertices)
            throw CliError("'" + path_ + "' has more vertices than gritwell paints at once (2^31 - 1)");
        s_.positions.insert(s_.positions.end(), xyz, xyz + 3);
    }

    // A face, line or point: its position numbers, each maybe followed by
    // texture and normal numbers after slashes.
    void element(const char* p, const char* eol, bool face) {
        const std::size_t first = s_.uses.size();
        for (;;) {
            while (p < eol && MeshText::isSpace(*p)) ++p;
            if (p == eol || *p == '#') break;
            const char* word = p;
            std::int64_t n = 0;
            if (!number(p, eol, n, '/') || n == 0)
                damaged("names no vertex with '" + std::string(wordAt(word, eol)) + "'");
            // -1 is the last position so far.
            const std::int64_t index = n > 0 ? n - 1 : std::int64_t(s_.positions.size() / 3) + n;
            if (index < 0 || index >= std::int64_t(kMaxVertices))
                damaged("names vertex " + std::to_string(n) + " of " + std::to_string(s_.positions.size() / 3));
            s_.uses.push_back(static_cast<std::uint32_t>(index));
            while (p < eol && !MeshText::isSpace(*p)) ++p;
        }
        const std::size_t corners = s_.uses.size() - first;
        if (face && corners >= 3) s_.faces.push_back({first, static_cast<std::uint32_t>(corners)});
    }

    std::string_view file_;
    const std::string& path_;
    std::size_t line_ = 0;
    Statements s_;
};

// ---- joining positions ----------------------------------------------------------

std::uint64_t hashOf(const float* xyz) {
    std::uint32_t bits[3];
    std::memcpy(bits, xyz, sizeof bits);
    std::uint64_t h = bits[0];
    h = h * 0x9E3779B97F4A7C15ull ^ bits[1];
    h = h * 0x9E3779B97F4A7C15ull ^ bits[2];
    h *= 0x9E3779B97F4A7C15ull;
    return h ^ (h >> 32);
}

// The mesh: each used position once (by its bits), in the order of first
// use, and the faces' corners renumbered to match. Open addressing over the
// new vertex numbers; a position number seen before skips the table.
Mesh join(const Statements& s, const std::string& path) {
    const std::size_t count = s.positions.size() / 3;
    std::vector<std::uint32_t> uses;
    const std::vector<std::uint32_t>* order = &s.uses;
    if (s.uses.empty()) {
        uses.resize(count);
        for (std::size_t i = 0; i < count; ++i) uses[i] = static_cast<std::uint32_t>(i);
        order = &uses;
    }
    std::vector<std::uint32_t> vertexOf(count, kNone);
    std::size_t capacity = 16;
    while (capacity < 2 * std::min(count, order->size())) capacity *= 2;
    std::vector<std::uint32_t> table(capacity, kNone);
    const std::size_t mask = capacity - 1;

    Mesh mesh;
    mesh.positions.reserve(3 * std::min(count, order->size()));
    for (const std::uint32_t use : *order) {
        if (use >= count)
            throw CliError("'" + path + "' is damaged: it uses vertex " + std::to_string(std::uint64_t(use) + 1) +
                           " of " + std::to_string(count));
        if (vertexOf[use] != kNone) continue;
        const float* xyz = &s.positions[3 * std::size_t(use)];
        std::size_t slot = hashOf(xyz) & mask;
        while (table[slot] != kNone && std::memcmp(&mesh.positions[3 * std::size_t(table[slot])], xyz, 12) != 0)
            slot = (slot + 1) & mask;
        if (table[slot] == kNone) {
            table[slot] = static_cast<std::uint32_t>(mesh.vertexCount());
            mesh.positions.insert(mesh.positions.end(), xyz, xyz + 3);
        }
        vertexOf[use] = table[slot];
    }
    mesh.faceSizes.reserve(s.faces.size());
    mesh.faceCorners.reserve(s.uses.size());
    for (const Statements::Face& f : s.faces) {
        mesh.faceSizes.push_back(f.corners);
        for (std::size_t c = 0; c < f.corners; ++c) mesh.faceCorners.push_back(vertexOf[s.uses[f.firstUse + c]]);
    }
    return mesh;
}

}  // namespace

Mesh read(std::string_view file, const std::string& path) { return join(Parser(file, path).run(), path); }

}  // namespace gritwell::ObjReader
