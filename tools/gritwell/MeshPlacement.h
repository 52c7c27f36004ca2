#pragma once
// MeshPlacement: where an imported scene puts each of its meshes.

#include <vector>

#include <assimp/matrix4x4.h>
#include <assimp/scene.h>

namespace gritwell::MeshPlacement {

// The placement of each of the scene's meshes: that of the first node that
// uses it, the identity for a mesh no node uses. OBJ, PLY, STL and OFF files
// place nothing; a glTF scene places its meshes.
std::vector<aiMatrix4x4> of(const aiScene& scene);

}  // namespace gritwell::MeshPlacement
