#include "MapBaker.h"

#include <algorithm>
#include <cmath>

#include "CliError.h"

namespace gritwell {

namespace {

int wrapRow(long long row, int size) {
    const long long r = row % size;
    return static_cast<int>(r < 0 ? r + size : r);
}

}  // namespace

MapBaker::MapBaker(const UvMesh& mesh, int size, int padding, int bandHeight)
    : mesh_(mesh), size_(size), padding_(padding), bandHeight_(bandHeight > 0 ? bandHeight : heightFor(size)) {
    if (size < 1 || size > 65536) throw CliError("--size must be 1 to 65536");
    bandTriangles_.resize(static_cast<std::size_t>(bands()));
    if (padding < 0) throw CliError("--padding must be 0 or more");
    const double n = size;
    for (std::uint32_t t = 0; t < mesh.triangleCount(); ++t) {
        const std::uint32_t* corner = &mesh.triangles[3 * static_cast<std::size_t>(t)];
        double u[3], v[3];
        bool finite = true;
        for (int c = 0; c < 3; ++c) {
            u[c] = mesh.uvs[2 * static_cast<std::size_t>(corner[c])];
            v[c] = mesh.uvs[2 * static_cast<std::size_t>(corner[c]) + 1];
            for (int k = 0; k < 3; ++k) finite = finite && std::isfinite(mesh.positions[3 * std::size_t(corner[c]) + k]);
            finite = finite && std::isfinite(u[c]) && std::isfinite(v[c]);
        }
        if (!finite) {
            ++leftOut_.notFinite;
            continue;
        }
        const double uLow = std::min({u[0], u[1], u[2]}), vLow = std::min({v[0], v[1], v[2]});
        if (std::max({u[0], u[1], u[2]}) - uLow > 1.0 || std::max({v[0], v[1], v[2]}) - vLow > 1.0) {
            ++leftOut_.tooLarge;
            continue;
        }
        Triangle tri{t, {}, {}, 0, 0};
        const double uShift = std::floor(uLow), vShift = std::floor(vLow);
        if (uShift != 0.0 || vShift != 0.0 || std::max({u[0], u[1], u[2]}) > 1.0 || std::max({v[0], v[1], v[2]}) > 1.0)
            ++wrapped_;
        for (int c = 0; c < 3; ++c) {
            tri.x[c] = (u[c] - uShift) * n;
            tri.y[c] = (1.0 - (v[c] - vShift)) * n;
        }
        const double area = (tri.x[1] - tri.x[0]) * (tri.y[2] - tri.y[0]) - (tri.x[2] - tri.x[0]) * (tri.y[1] - tri.y[0]);
        if (!(std::fabs(area) > 0.0)) {
            ++leftOut_.noArea;
            continue;
        }
        // Rows whose centres (row + 0.5) lie within the corners' extent; the
        // extent is at most one map high (size + 1 rows), so every row here
        // is a whole number that fits an int.
        const double yLow = std::min({tri.y[0], tri.y[1], tri.y[2]}), yHigh = std::max({tri.y[0], tri.y[1], tri.y[2]});
        tri.rowFirst = static_cast<int>(std::ceil(yLow - 0.5));
        tri.rowLast = static_cast<int>(std::floor(yHigh - 0.5));
        if (tri.rowLast < tri.rowFirst) continue;  // too small to reach a texel centre at this size
        const auto at = static_cast<std::uint32_t>(triangles_.size());
        triangles_.push_back(tri);
        // Every band whose rows, with their padding, meet the face's rows.
        std::vector<char> touched(bandTriangles_.size(), 0);
        const long long span = static_cast<long long>(tri.rowLast) - tri.rowFirst;
        if (span + 2LL * padding + 1 >= size) {
            std::fill(touched.begin(), touched.end(), 1);
        } else {
            for (long long r = static_cast<long long>(tri.rowFirst) - padding; r <= tri.rowLast + padding;) {
                const int row = wrapRow(r, size);
                const int band = row / bandHeight_;
                touched[band] = 1;
                const int skip = (band + 1) * bandHeight_ - row;  // to the next band's first row
                r += skip;
            }
        }
        for (std::size_t b = 0; b < touched.size(); ++b)
            if (touched[b]) bandTriangles_[b].push_back(at);
    }
}

int MapBaker::bandRows(int band) const { return std::min(bandHeight_, size_ - band * bandHeight_); }

void MapBaker::bake(int band, const BatchEvaluator& evaluate, Scratch& s, float* out) const {
    const int n = size_;
    const int first = firstRow(band), last = first + bandRows(band);  // rows [first, last)
    // The window: the band and the padding rows either side, within the map.
    const int top = std::max(0, first - padding_), bottom = std::min(n, last + padding_);
    const int rows = bottom - top;
    const std::size_t texels = static_cast<std::size_t>(rows) * n;
    s.values.assign(texels, 0.0f);
    s.state.assign(texels, 0);
    // Which face each texel shows: later faces overwrite earlier ones.
    std::vector<std::int32_t>& owner = s.texel;
    owner.assign(texels, -1);
    s.points.resize(3 * texels);

    for (const std::uint32_t at : bandTriangles_[static_cast<std::size_t>(band)]) {
        const Triangle& tri = triangles_[at];
        const std::uint32_t* corner = &mesh_.triangles[3 * static_cast<std::size_t>(tri.index)];
        const double area =
            (tri.x[1] - tri.x[0]) * (tri.y[2] - tri.y[0]) - (tri.x[2] - tri.x[0]) * (tri.y[1] - tri.y[0]);
        const double xLow = std::min({tri.x[0], tri.x[1], tri.x[2]}), xHigh = std::max({tri.x[0], tri.x[1], tri.x[2]});
        const int colFirst = static_cast<int>(std::ceil(xLow - 0.5)), colLast = static_cast<int>(std::floor(xHigh - 0.5));
        for (int r = tri.rowFirst; r <= tri.rowLast; ++r) {
            const int row = wrapRow(r, n);
            if (row < top || row >= bottom) continue;
            const double cy = r + 0.5;
            for (int c = colFirst; c <= colLast; ++c) {
                const double cx = c + 0.5;
                // Barycentric weights from the edge functions, signed like the area.
                const double w0 = ((tri.x[1] - cx) * (tri.y[2] - cy) - (tri.x[2] - cx) * (tri.y[1] - cy)) / area;
                const double w1 = ((tri.x[2] - cx) * (tri.y[0] - cy) - (tri.x[0] - cx) * (tri.y[2] - cy)) / area;
                const double w2 = 1.0 - w0 - w1;
                if (w0 < 0.0 || w1 < 0.0 || w2 < 0.0) continue;
                const std::size_t i = static_cast<std::size_t>(row - top) * n + static_cast<std::size_t>(wrapRow(c, n));
                owner[i] = 0;
                for (int k = 0; k < 3; ++k) {
                    const double p = w0 * mesh_.positions[3 * std::size_t(corner[0]) + k] +
                                     w1 * mesh_.positions[3 * std::size_t(corner[1]) + k] +
                                     w2 * mesh_.positions[3 * std::size_t(corner[2]) + k];
                    s.points[3 * i + k] = static_cast<float>(p);
                }
            }
        }
    }

    // Every covered texel in one batch, in texel order.
    std::size_t covered = 0;
    for (std::size_t i = 0; i < texels; ++i) {
        if (owner[i] < 0) continue;
        if (covered != i) std::copy_n(&s.points[3 * i], 3, &s.points[3 * covered]);
        owner[covered++] = static_cast<std::int32_t>(i);
    }
    s.results.resize(covered);
    if (covered > 0) evaluate(s.points.data(), static_cast<int>(covered), s.results.data());
    for (std::size_t k = 0; k < covered; ++k) {
        s.values[static_cast<std::size_t>(owner[k])] = s.results[k];
        s.state[static_cast<std::size_t>(owner[k])] = 1;
    }

    // Padding: each pass fills the empty texels next to filled ones with
    // their filled neighbours' mean, in a fixed order.
    for (int pass = 0; pass < padding_; ++pass) {
        s.next = s.values;
        s.nextState = s.state;
        bool grew = false;
        for (int y = 0; y < rows; ++y)
            for (int x = 0; x < n; ++x) {
                const std::size_t i = static_cast<std::size_t>(y) * n + x;
                if (s.state[i]) continue;
                double sum = 0.0;
                int count = 0;
                for (int dy = -1; dy <= 1; ++dy)
                    for (int dx = -1; dx <= 1; ++dx) {
                        const int yy = y + dy, xx = x + dx;
                        if (yy < 0 || yy >= rows || xx < 0 || xx >= n) continue;
                        const std::size_t j = static_cast<std::size_t>(yy) * n + xx;
                        if (!s.state[j]) continue;
                        sum += s.values[j];
                        ++count;
                    }
                if (count == 0) continue;
                s.next[i] = static_cast<float>(sum / count);
                s.nextState[i] = 1;
                grew = true;
            }
        if (!grew) break;
        s.values.swap(s.next);
        s.state.swap(s.nextState);
    }
    std::copy_n(&s.values[static_cast<std::size_t>(first - top) * n], static_cast<std::size_t>(last - first) * n, out);
}

}  // namespace gritwell
