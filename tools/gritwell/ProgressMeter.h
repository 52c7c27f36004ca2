#pragma once
// ProgressMeter: one line on standard error, redrawn in place, while a long
// job runs on a terminal: the share done, points per second and the time
// left. Redrawn at most ten times a second; silent when standard error is not
// a terminal, so logs and pipes get no control characters.

#include <chrono>
#include <cstdint>
#include <cstdio>
#include <string>

namespace gritwell {

class ProgressMeter {
public:
    using Clock = std::chrono::steady_clock;

    // A meter under `label`, shown when `out` is a terminal.
    explicit ProgressMeter(std::string label, std::FILE* out = stderr);
    // A meter that draws on `out` whether or not it is a terminal.
    static ProgressMeter alwaysShown(std::string label, std::FILE* out);
    // A meter that draws nothing: for work that has its own display.
    static ProgressMeter neverShown();

    bool shown() const { return shown_; }

    // Says what is happening before the counting starts ("reading bust.obj").
    void note(const std::string& text);
    // Starts the clock on a job of `total` points.
    void begin(std::uint64_t total);
    // `done` points of the total are finished; draws at the first call, then
    // when a tenth of a second has passed since the last drawing.
    void update(std::uint64_t done);
    // Draws the final line ("100%", the whole time and rate) and ends it.
    void finish();

    // The line for `done` of `total` points after `seconds`, without the
    // carriage return: "paint: 42% of 1000000 points, 3.1 M points/s, 0.2 s left".
    static std::string line(const std::string& label, std::uint64_t done, std::uint64_t total, double seconds);
    // The closing line: "paint: 1000000 points in 0.3 s, 3.1 M points/s".
    static std::string finalLine(const std::string& label, std::uint64_t total, double seconds);

    static constexpr std::chrono::milliseconds kInterval{100};

private:
    ProgressMeter(std::string label, std::FILE* out, bool shown);
    void draw(const std::string& text);

    std::string label_;
    std::uint64_t total_ = 0;
    std::FILE* out_;
    bool shown_;
    Clock::time_point start_;
    Clock::time_point lastDrawn_;
    std::size_t lastWidth_ = 0;
};

}  // namespace gritwell
