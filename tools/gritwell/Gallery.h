#pragma once
// The gallery: every generator the host can open, at its defaults, as a
// labelled tile on one sheet, then a row of the generators the host never
// opens, rendered through the library and labelled as such.

#include "PluginLibrary.h"
#include "PngWriter.h"

namespace gritwell {

GreyImage renderGallery(PluginLibrary& plugin);

}  // namespace gritwell
