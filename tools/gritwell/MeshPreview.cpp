#include "MeshPreview.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <numbers>

#include "CliError.h"
#include "core/FloatToInt.h"

namespace gritwell::MeshPreview {

namespace {

constexpr int kSamples = 2;        // per pixel, along each side
constexpr double kMargin = 0.06;   // of the picture, on each side
constexpr double kAmbient = 0.3;
constexpr double kDiffuse = 0.7;
constexpr int kDotPixels = 2;      // a point cloud's dots, on a side

struct V3 {
    double x = 0, y = 0, z = 0;
};
V3 operator-(V3 a, V3 b) { return {a.x - b.x, a.y - b.y, a.z - b.z}; }
V3 operator+(V3 a, V3 b) { return {a.x + b.x, a.y + b.y, a.z + b.z}; }
V3 operator*(double k, V3 a) { return {k * a.x, k * a.y, k * a.z}; }
double dot(V3 a, V3 b) { return a.x * b.x + a.y * b.y + a.z * b.z; }
V3 cross(V3 a, V3 b) { return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x}; }
V3 normalized(V3 a) {
    const double length = std::sqrt(dot(a, a));
    return length > 0 ? (1.0 / length) * a : V3{0, 0, 1};
}

const V3 kLight = normalized({-0.45, 0.6, 0.66});  // upper left, in front

using Colour = std::array<double, 3>;

using Sample = Raster::Sample;

// The supersampled picture: what each sample shows and its depth, nearer larger.
struct Canvas {
    Canvas(int n, std::vector<Sample>& shown)
        : size(n), samples(shown), depth(std::size_t(n) * n, -std::numeric_limits<double>::infinity()) {
        samples.assign(std::size_t(n) * n, Sample{});
    }
    bool nearer(int x, int y, double z) const { return z > depth[std::size_t(y) * size + x]; }
    void put(int x, int y, double z, const Sample& sample) {
        depth[std::size_t(y) * size + x] = z;
        samples[std::size_t(y) * size + x] = sample;
    }
    int size;
    std::vector<Sample>& samples;
    std::vector<double> depth;
};

// Signed twice-area of (a, b, p) in the picture's plane.
double edge(const V3& a, const V3& b, double px, double py) {
    return (b.x - a.x) * (py - a.y) - (b.y - a.y) * (px - a.x);
}

struct Corner {
    V3 screen;  // x right, y down, z nearer larger
    V3 normal;
    std::uint32_t vertex;
};

void fillTriangle(Canvas& canvas, const Corner& a, const Corner& b, const Corner& c) {
    const double area = edge(a.screen, b.screen, c.screen.x, c.screen.y);
    if (!(std::abs(area) > 1e-12)) return;
    const double left = std::min({a.screen.x, b.screen.x, c.screen.x});
    const double right = std::max({a.screen.x, b.screen.x, c.screen.x});
    const double top = std::min({a.screen.y, b.screen.y, c.screen.y});
    const double bottom = std::max({a.screen.y, b.screen.y, c.screen.y});
    const int x0 = std::max(0, truncToInt(std::floor(left)));
    const int x1 = std::min(canvas.size - 1, truncToInt(std::ceil(right)));
    const int y0 = std::max(0, truncToInt(std::floor(top)));
    const int y1 = std::min(canvas.size - 1, truncToInt(std::ceil(bottom)));
    for (int y = y0; y <= y1; ++y) {
        const double py = y + 0.5;
        for (int x = x0; x <= x1; ++x) {
            const double px = x + 0.5;
            const double wa = edge(b.screen, c.screen, px, py) / area;
            const double wb = edge(c.screen, a.screen, px, py) / area;
            const double wc = edge(a.screen, b.screen, px, py) / area;
            if (wa < 0 || wb < 0 || wc < 0) continue;
            const double z = wa * a.screen.z + wb * b.screen.z + wc * c.screen.z;
            if (!canvas.nearer(x, y, z)) continue;
            V3 n = normalized(wa * a.normal + wb * b.normal + wc * c.normal);
            if (n.z < 0) n = -1.0 * n;  // the side facing the viewer is lit
            const double shade = kAmbient + kDiffuse * std::max(0.0, dot(n, kLight));
            canvas.put(x, y, z, Sample{Sample::Kind::Face, {a.vertex, b.vertex, c.vertex}, {wa, wb, wc}, shade});
        }
    }
}

Colour sampleColour(const Sample& sample, const std::vector<float>& values, const Colormap::Map& map) {
    switch (sample.kind) {
        case Sample::Kind::Face: {
            const float value = static_cast<float>(sample.weights[0] * values[sample.corners[0]] +
                                                   sample.weights[1] * values[sample.corners[1]] +
                                                   sample.weights[2] * values[sample.corners[2]]);
            Colour colour = Colormap::colour(map, value);
            for (double& channel : colour) channel *= sample.shade;
            return colour;
        }
        case Sample::Kind::Dot: return Colormap::colour(map, values[sample.corners[0]]);
        case Sample::Kind::Background: break;
    }
    return {kBackground / 255.0, kBackground / 255.0, kBackground / 255.0};
}

}  // namespace

Raster::Raster(const Mesh& mesh, const View& view) : vertexCount_(mesh.vertexCount()), view_(view) {
    const std::size_t n = vertexCount_;
    if (view.size < 1) throw CliError("internal: a preview of size " + std::to_string(view.size), CliError::kEnvironment);
    const double yaw = 2.0 * std::numbers::pi * view.yawTurns;
    const double pitch = 2.0 * std::numbers::pi * view.pitchTurns;
    const double cosYaw = std::cos(yaw), sinYaw = std::sin(yaw), cosPitch = std::cos(pitch), sinPitch = std::sin(pitch);

    // The model turned into view space; the viewer looks along -z.
    std::vector<V3> points(n);
    std::vector<char> finite(n);
    double minX = std::numeric_limits<double>::infinity(), maxX = -minX, minY = minX, maxY = -minX;
    for (std::size_t v = 0; v < n; ++v) {
        const V3 p{mesh.positions[3 * v], mesh.positions[3 * v + 1], mesh.positions[3 * v + 2]};
        finite[v] = std::isfinite(p.x) && std::isfinite(p.y) && std::isfinite(p.z);
        if (!finite[v]) continue;
        const V3 turned{cosYaw * p.x + sinYaw * p.z, p.y, -sinYaw * p.x + cosYaw * p.z};
        points[v] = {turned.x, cosPitch * turned.y - sinPitch * turned.z, sinPitch * turned.y + cosPitch * turned.z};
        minX = std::min(minX, points[v].x);
        maxX = std::max(maxX, points[v].x);
        minY = std::min(minY, points[v].y);
        maxY = std::max(maxY, points[v].y);
    }

    const int samples = view.size * kSamples;
    Canvas canvas(samples, samples_);
    const double extent = std::max(maxX - minX, maxY - minY);
    const double scale = extent > 0 ? samples * (1.0 - 2.0 * kMargin) / extent : 1.0;
    const double midX = 0.5 * (minX + maxX), midY = 0.5 * (minY + maxY);
    auto toScreen = [&](const V3& p) {
        return V3{(p.x - midX) * scale + 0.5 * samples, 0.5 * samples - (p.y - midY) * scale, p.z};
    };

    if (mesh.faceCount() == 0) {
        // Whole pixels, so a dot is as crisp as the picture allows.
        for (std::size_t v = 0; v < n; ++v) {
            if (!finite[v]) continue;
            const V3 s = toScreen(points[v]);
            Sample dot;
            dot.kind = Sample::Kind::Dot;
            dot.corners[0] = static_cast<std::uint32_t>(v);
            const int left = (truncToInt(s.x) / kSamples - kDotPixels / 2) * kSamples;
            const int top = (truncToInt(s.y) / kSamples - kDotPixels / 2) * kSamples;
            for (int y = top; y < top + kDotPixels * kSamples; ++y)
                for (int x = left; x < left + kDotPixels * kSamples; ++x)
                    if (x >= 0 && y >= 0 && x < samples && y < samples && canvas.nearer(x, y, s.z))
                        canvas.put(x, y, s.z, dot);
        }
    } else {
        // Smooth normals: each triangle of a face's fan adds its area-weighted
        // normal to its corners.
        std::vector<V3> normals(n);
        auto usable = [&](std::size_t first, std::uint32_t corners) {
            for (std::uint32_t c = 0; c < corners; ++c)
                if (!finite[mesh.faceCorners[first + c]]) return false;
            return true;
        };
        std::size_t first = 0;
        for (const std::uint32_t corners : mesh.faceSizes) {
            if (usable(first, corners)) {
                const std::uint32_t* f = &mesh.faceCorners[first];
                for (std::uint32_t i = 1; i + 1 < corners; ++i) {
                    const V3 normal = cross(points[f[i]] - points[f[0]], points[f[i + 1]] - points[f[0]]);
                    for (const std::uint32_t v : {f[0], f[i], f[i + 1]}) normals[v] = normals[v] + normal;
                }
            }
            first += corners;
        }
        auto corner = [&](std::uint32_t v) { return Corner{toScreen(points[v]), normals[v], v}; };
        first = 0;
        for (const std::uint32_t corners : mesh.faceSizes) {
            if (usable(first, corners)) {
                const std::uint32_t* f = &mesh.faceCorners[first];
                for (std::uint32_t i = 1; i + 1 < corners; ++i)
                    fillTriangle(canvas, corner(f[0]), corner(f[i]), corner(f[i + 1]));
            }
            first += corners;
        }
    }
}

Picture Raster::colour(const std::vector<float>& values) const {
    if (values.size() != vertexCount_)
        throw CliError("internal: a preview of " + std::to_string(values.size()) + " values for " +
                           std::to_string(vertexCount_) + " vertices",
                       CliError::kEnvironment);
    return colourBy([&](const Sample& sample) { return sampleColour(sample, values, view_.map); });
}

Picture Raster::colourBy(const std::function<std::array<double, 3>(const Sample&)>& colourOf) const {
    const int size = view_.size;
    const std::size_t samples = std::size_t(size) * kSamples;
    Picture picture{size, size, 3, 8, {}};
    picture.samples.reserve(std::size_t(size) * size * 3);
    for (int y = 0; y < size; ++y)
        for (int x = 0; x < size; ++x) {
            Colour sum{};
            for (int j = 0; j < kSamples; ++j)
                for (int i = 0; i < kSamples; ++i) {
                    const Sample& sample = samples_[(std::size_t(y) * kSamples + j) * samples + std::size_t(x) * kSamples + i];
                    const Colour c = sample.kind == Sample::Kind::Background
                                         ? Colour{kBackground / 255.0, kBackground / 255.0, kBackground / 255.0}
                                         : colourOf(sample);
                    for (int k = 0; k < 3; ++k) sum[k] += c[k];
                }
            for (int k = 0; k < 3; ++k) picture.samples.push_back(Colormap::level(sum[k] / (kSamples * kSamples), 8));
        }
    return picture;
}

Picture render(const Mesh& mesh, const std::vector<float>& values, const View& view) {
    return Raster(mesh, view).colour(values);
}

}  // namespace gritwell::MeshPreview
