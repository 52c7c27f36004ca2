#pragma once
// MeshPainter: one intensity per vertex of a mesh, evaluated the way the
// host paints its model: every vertex moved into texture space by the
// transform, then sent through the session in batches.

#include <cstddef>
#include <vector>

#include "HostTransform.h"
#include "Mesh.h"
#include "ParallelEvaluator.h"
#include "PluginLibrary.h"
#include "ProgressMeter.h"

namespace gritwell::MeshPainter {

// Vertices per batch: large enough that the call costs nothing beside the
// evaluation, small enough that progress moves often.
constexpr std::size_t kBatch = 65536;

// The value at every vertex, in the mesh's vertex order; counts the vertices
// on `progress` batch by batch and finishes it.
std::vector<float> paint(const BatchEvaluator& evaluate, const Mesh& mesh, const HostTransform& transform,
                         ProgressMeter& progress);

// The same on every thread of `parallel`, whose evaluators apply its transform.
std::vector<float> paint(ParallelEvaluator& parallel, const Mesh& mesh, ProgressMeter& progress);

}  // namespace gritwell::MeshPainter
