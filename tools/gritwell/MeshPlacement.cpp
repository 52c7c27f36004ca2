#include "MeshPlacement.h"

namespace gritwell::MeshPlacement {

namespace {

void find(const aiNode* node, const aiMatrix4x4& parent, std::vector<aiMatrix4x4>& placement,
          std::vector<bool>& placed) {
    if (node == nullptr) return;
    const aiMatrix4x4 here = parent * node->mTransformation;
    for (unsigned i = 0; i < node->mNumMeshes; ++i) {
        const unsigned m = node->mMeshes[i];
        if (m < placement.size() && !placed[m]) {
            placement[m] = here;
            placed[m] = true;
        }
    }
    for (unsigned c = 0; c < node->mNumChildren; ++c) find(node->mChildren[c], here, placement, placed);
}

}  // namespace

std::vector<aiMatrix4x4> of(const aiScene& scene) {
    std::vector<aiMatrix4x4> placement(scene.mNumMeshes);
    std::vector<bool> placed(scene.mNumMeshes);
    find(scene.mRootNode, aiMatrix4x4(), placement, placed);
    return placement;
}

}  // namespace gritwell::MeshPlacement
