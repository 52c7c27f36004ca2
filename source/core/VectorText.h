#pragma once
// The text form shared by Vec2, Vec3 and Vec4: "[x y z]".

#include <iosfwd>

namespace gritwell {

// Writes "[" then the components; the stream's width on entry pads the
// bracket (as streams do) and every component after the first.
void writeVectorText(std::ostream& os, const float* components, int count);

// Skips whitespace one character at a time and returns the next character
// without consuming it (EOF at the end).
int skipSpaceAndPeek(std::istream& is);

// Reads "[c0 c1 ...]" into `out` only on complete success; on failure sets
// the stream's fail state and reports on standard error.
bool readVectorText(std::istream& is, float* out, int count);

}  // namespace gritwell
