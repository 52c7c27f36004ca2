#pragma once
// The gallery: every generator the host can open, at its defaults, as a
// labelled tile on one sheet.

#include "PluginLibrary.h"
#include "PngWriter.h"

namespace gritwell {

GreyImage renderGallery(PluginLibrary& plugin);

}  // namespace gritwell
