#pragma once
// The record layouts of every generator, as Markdown, from the field tables:
// docs/records.md is this text, and a test keeps the two the same.

#include <string>

namespace gritwell {

std::string recordFormatsMarkdown();

}  // namespace gritwell
