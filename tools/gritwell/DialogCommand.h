#pragma once
// `gritwell dialog`: the command-line host as a host of the generator dialog
// on its own. It opens the dialog through the plug-in's interactWithUser, as
// the host does, prints each change the user makes, shows it in a preview
// window beside the dialog, and writes what the host would keep.

#include <functional>
#include <string>
#include <vector>

#include "DialogPreview.h"
#include "PluginLibrary.h"

namespace gritwell {

struct DialogOptions {
    std::string target;           // a generator name or a record file; none: the host has no record
    std::string output;           // the record, written after OK only
    std::string transform;        // the transform record the dialog starts from
    std::string transformOutput;  // the transform record afterwards, whatever the answer
    std::string mesh;             // the preview's mesh; none: the sample bust
    int previewSize = DialogPreview::kDefaultSize;
    bool preview = true;
    // For tests: once the dialog shows, click these generators in its list,
    // then answer "ok", "cancel" or "close" (the last step).
    std::vector<std::string> script;
};

// Everything but the plug-in is checked first (bad input is a CliError of
// status 2, no usable display one of status 1); `loadPlugin` is called once
// the dialog can be shown.
void runDialog(const DialogOptions& options, const std::function<PluginLibrary&()>& loadPlugin);

}  // namespace gritwell
