#include "ObjReader.h"

#include <algorithm>
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
// every use of one in file order, statement after statement.
struct Statements {
    static constexpr std::uint32_t kNotAFace = 0x80000000u;  // marks a line, a point or a short face

    std::vector<float> positions;
    std::vector<std::uint32_t> uses;        // position numbers from 0
    std::vector<std::uint32_t> statements;  // how many uses each has, kNotAFace added unless it is a face
    bool allFaces = true;                   // every statement a face: `uses` is the faces' corners
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

    void vertex(const char* p, const char* eol) {
        float xyz[3];
        const char* start = p;
        for (float& c : xyz)
            if (!MeshText::parseAt(p, eol, c)) damaged("is not a vertex 'v x y z': 'v " + std::string(wordAt(start, eol)) + "...'");
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
            if (!MeshText::parseAt(p, eol, n, '/') || n == 0)
                damaged("names no vertex with '" + std::string(wordAt(word, eol)) + "'");
            // -1 is the last position so far.
            const std::int64_t index = n > 0 ? n - 1 : std::int64_t(s_.positions.size() / 3) + n;
            if (index < 0 || index >= std::int64_t(kMaxVertices))
                damaged("names vertex " + std::to_string(n) + " of " + std::to_string(s_.positions.size() / 3));
            s_.uses.push_back(static_cast<std::uint32_t>(index));
            while (p < eol && !MeshText::isSpace(*p)) ++p;
        }
        if (s_.uses.size() - first >= Statements::kNotAFace) damaged("names more than 2^31 vertices");
        const auto corners = static_cast<std::uint32_t>(s_.uses.size() - first);
        if (corners == 0) return;
        const bool isFace = face && corners >= 3;
        s_.statements.push_back(isFace ? corners : corners | Statements::kNotAFace);
        s_.allFaces = s_.allFaces && isFace;
    }

    std::string_view file_;
    const std::string& path_;
    std::size_t line_ = 0;
    Statements s_;
};

// ---- joining positions ----------------------------------------------------------

// A position's bits and its number, the key and value of the joining table.
struct Slot {
    std::uint32_t bits[3];
    std::uint32_t position;  // kNone: empty
};

std::size_t hashOf(const float* xyz) {
    // Murmur3's 64-bit finaliser over the three words: grid coordinates
    // differ in few bits, and every bit must reach the slot number.
    std::uint32_t bits[3];
    std::memcpy(bits, xyz, sizeof bits);
    std::uint64_t h = (std::uint64_t(bits[0]) << 32 | bits[1]) ^ (std::uint64_t(bits[2]) * 0x9E3779B97F4A7C15ull);
    h ^= h >> 33;
    h *= 0xFF51AFD7ED558CCDull;
    h ^= h >> 33;
    h *= 0xC4CEB9FE1A85EC53ull;
    h ^= h >> 33;
    return static_cast<std::size_t>(h);
}

// For each position, the first position with the same bits. The table
// holds the bits themselves, so a probe reads one line of memory, and the
// slot a few positions ahead is fetched while this one is looked up.
std::vector<std::uint32_t> firstOfEach(const std::vector<float>& positions) {
    const std::size_t count = positions.size() / 3;
    std::size_t capacity = 16;
    while (capacity < 2 * count) capacity *= 2;
    const std::size_t mask = capacity - 1;
    std::vector<Slot> table(capacity, Slot{{0, 0, 0}, kNone});
    std::vector<std::uint32_t> first(count);
    constexpr std::size_t kAhead = 8;
    for (std::size_t i = 0; i < count; ++i) {
        if (i + kAhead < count) __builtin_prefetch(&table[hashOf(&positions[3 * (i + kAhead)]) & mask]);
        const float* key = &positions[3 * i];
        std::size_t slot = hashOf(key) & mask;
        while (table[slot].position != kNone && std::memcmp(table[slot].bits, key, sizeof Slot::bits) != 0)
            slot = (slot + 1) & mask;
        if (table[slot].position == kNone) {
            std::memcpy(table[slot].bits, key, sizeof Slot::bits);
            table[slot].position = static_cast<std::uint32_t>(i);
        }
        first[i] = table[slot].position;
    }
    return first;
}

// The mesh: each used position once (by its bits), in the order of first
// use, and the faces' corners renumbered to match.
Mesh join(Statements s, const std::string& path) {
    const std::size_t count = s.positions.size() / 3;
    if (s.uses.empty()) {
        s.uses.resize(count);
        for (std::size_t i = 0; i < count; ++i) s.uses[i] = static_cast<std::uint32_t>(i);
        if (count != 0) s.statements.push_back(static_cast<std::uint32_t>(count) | Statements::kNotAFace);
        s.allFaces = false;
    }
    for (const std::uint32_t use : s.uses)
        if (use >= count)
            throw CliError("'" + path + "' is damaged: it uses vertex " + std::to_string(std::uint64_t(use) + 1) +
                           " of " + std::to_string(count));
    const std::vector<std::uint32_t> first = firstOfEach(s.positions);
    std::vector<std::uint32_t> vertexOf(count, kNone);
    Mesh mesh;
    mesh.positions.reserve(3 * std::min(count, s.uses.size()));
    // Renumbered in place: the uses become the corners.
    for (std::uint32_t& use : s.uses) {
        std::uint32_t& vertex = vertexOf[first[use]];
        if (vertex == kNone) {
            vertex = static_cast<std::uint32_t>(mesh.vertexCount());
            const float* xyz = &s.positions[3 * std::size_t(use)];
            mesh.positions.insert(mesh.positions.end(), xyz, xyz + 3);
        }
        use = vertex;
    }
    if (s.allFaces) {
        mesh.faceCorners = std::move(s.uses);
        mesh.faceSizes = std::move(s.statements);
        return mesh;
    }
    // Lines, points and short faces leave their uses out of the corners.
    std::size_t from = 0, to = 0, faces = 0;
    for (const std::uint32_t statement : s.statements) {
        const std::uint32_t n = statement & ~Statements::kNotAFace;
        if ((statement & Statements::kNotAFace) == 0) {
            std::copy(s.uses.begin() + from, s.uses.begin() + from + n, s.uses.begin() + to);
            s.statements[faces++] = n;
            to += n;
        }
        from += n;
    }
    s.uses.resize(to);
    s.statements.resize(faces);
    mesh.faceCorners = std::move(s.uses);
    mesh.faceSizes = std::move(s.statements);
    return mesh;
}

}  // namespace

Mesh read(std::string_view file, const std::string& path) { return join(Parser(file, path).run(), path); }

}  // namespace gritwell::ObjReader
