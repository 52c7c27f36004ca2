// The painted mesh's picture: fitting, depth, interpolation, point clouds.

#include <limits>

#include <gtest/gtest.h>

#include "MeshPreview.h"

using namespace gritwell;

namespace {

// Seen straight on: x to the right, y up, the viewer on +z.
MeshPreview::View front(int size) {
    MeshPreview::View view;
    view.size = size;
    view.yawTurns = 0;
    view.pitchTurns = 0;
    return view;
}

int red(const Picture& p, int x, int y) { return p.samples[3 * (std::size_t(y) * p.width + x)]; }

void addQuad(Mesh& mesh, float z, float x0, float x1) {
    const auto first = static_cast<std::uint32_t>(mesh.vertexCount());
    mesh.positions.insert(mesh.positions.end(), {x0, 0, z, x1, 0, z, x1, 1, z, x0, 1, z});
    mesh.faceSizes.push_back(4);
    for (std::uint32_t i = 0; i < 4; ++i) mesh.faceCorners.push_back(first + i);
}

}  // namespace

TEST(MeshPreview, NearerFacesHideFartherOnesAndValuesBlend) {
    Mesh mesh;
    addQuad(mesh, 0.0f, 0, 1);   // white, behind
    addQuad(mesh, 0.5f, 0, 1);   // dark on the left, light on the right, in front
    addQuad(mesh, -0.5f, 0, 1);  // white, behind both
    const std::vector<float> values = {1, 1, 1, 1, 0, 0.5f, 0.5f, 0, 1, 1, 1, 1};
    const Picture p = MeshPreview::render(mesh, values, front(64));
    ASSERT_EQ(p.samples.size(), 64u * 64 * 3);
    EXPECT_LT(red(p, 8, 32), 16);  // the front quad's dark side, not the white ones behind
    EXPECT_LT(red(p, 8, 32), red(p, 32, 32));
    EXPECT_LT(red(p, 32, 32), red(p, 55, 32));
    EXPECT_LT(red(p, 55, 32), 128);  // 0.5 at most, and shaded
    // The margin around the fitted mesh is background.
    EXPECT_EQ(red(p, 0, 0), MeshPreview::kBackground);
    EXPECT_EQ(red(p, 63, 63), MeshPreview::kBackground);
}

TEST(MeshPreview, PointCloudsAreDotsAndNonFiniteVerticesAreLeftOut) {
    const float inf = std::numeric_limits<float>::infinity();
    Mesh cloud;
    cloud.positions = {0, 0, 0, 1, 1, 0, inf, 0, 0};
    const Picture p = MeshPreview::render(cloud, {1, 1, 1}, front(40));
    int lit = 0;
    for (std::size_t i = 0; i < p.samples.size(); i += 3) lit += p.samples[i] == 255;
    EXPECT_EQ(lit, 2 * 2 * 2);  // two dots of 2 x 2 pixels

    // A face with a vertex at infinity is left out, not smeared across.
    Mesh mesh;
    addQuad(mesh, 0.0f, 0, 1);
    mesh.positions[0] = inf;
    addQuad(mesh, 0.0f, 2, 3);
    const Picture q = MeshPreview::render(mesh, std::vector<float>(8, 1.0f), front(40));
    EXPECT_EQ(red(q, 5, 20), MeshPreview::kBackground);
    EXPECT_GT(red(q, 30, 20), 150);
}
