// A program of someone else's, built against an installed Gritwell: Brick
// with a narrower brick at the points "x y z" on standard input, one value a
// line as `gritwell eval` prints them, so the two outputs compare as text.
#include <gritwell/gritwell.h>

#include <cstdio>
#include <vector>

int main() {
    gritwell::Status status;
    gritwell::Texture brick = gritwell::Texture::fromName("Brick", &status);
    if (!status || !brick.set("brickWidth", 0.5f)) return 1;
    if (gritwell::Texture::fromName("Brik", &status) || status.code != gritwell::Errc::unknownGenerator) return 1;
    std::vector<float> points;
    for (float x, y, z; std::scanf("%f %f %f", &x, &y, &z) == 3;) points.insert(points.end(), {x, y, z});
    std::vector<float> values(points.size() / 3);
    if (!brick.evaluate(points.data(), values.size(), values.data())) return 1;
    for (float v : values) std::printf("%.9g\n", v);
}
