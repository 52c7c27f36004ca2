#include "ProgressMeter.h"

#include <unistd.h>

#include <cmath>

namespace gritwell {

namespace {

double secondsBetween(ProgressMeter::Clock::time_point a, ProgressMeter::Clock::time_point b) {
    return std::chrono::duration<double>(b - a).count();
}

// "950 points/s", "12.5 k points/s", "3.1 M points/s"
std::string rate(double pointsPerSecond) {
    char text[48];
    if (pointsPerSecond >= 1e6)
        std::snprintf(text, sizeof text, "%.1f M points/s", pointsPerSecond / 1e6);
    else if (pointsPerSecond >= 1e3)
        std::snprintf(text, sizeof text, "%.1f k points/s", pointsPerSecond / 1e3);
    else
        std::snprintf(text, sizeof text, "%.0f points/s", pointsPerSecond);
    return text;
}

// "0.4 s", "12 s", "3 min 05 s", "2 h 46 min"
std::string duration(double seconds) {
    char text[64];
    if (seconds < 10.0)
        std::snprintf(text, sizeof text, "%.1f s", seconds);
    else if (seconds < 60.0)
        std::snprintf(text, sizeof text, "%.0f s", seconds);
    else if (seconds < 3600.0)
        std::snprintf(text, sizeof text, "%.0f min %02.0f s", std::floor(seconds / 60.0),
                      std::floor(std::fmod(seconds, 60.0)));
    else
        std::snprintf(text, sizeof text, "%.0f h %02.0f min", std::floor(seconds / 3600.0),
                      std::floor(std::fmod(seconds, 3600.0) / 60.0));
    return text;
}

}  // namespace

ProgressMeter::ProgressMeter(std::string label, std::FILE* out)
    : ProgressMeter(std::move(label), out, ::isatty(::fileno(out)) != 0) {}

ProgressMeter ProgressMeter::alwaysShown(std::string label, std::FILE* out) {
    return ProgressMeter(std::move(label), out, true);
}

ProgressMeter ProgressMeter::neverShown() { return ProgressMeter("", stderr, false); }

ProgressMeter::ProgressMeter(std::string label, std::FILE* out, bool shown)
    : label_(std::move(label)), out_(out), shown_(shown), start_(Clock::now()), lastDrawn_(start_ - kInterval) {}

void ProgressMeter::note(const std::string& text) {
    if (shown_) draw(label_ + ": " + text);
}

void ProgressMeter::begin(std::uint64_t total) {
    total_ = total;
    start_ = Clock::now();
    lastDrawn_ = start_ - kInterval;
}

std::string ProgressMeter::line(const std::string& label, std::uint64_t done, std::uint64_t total,
                                double seconds) {
    const int percent = total == 0 ? 100 : static_cast<int>(done * 100 / total);
    std::string text = label + ": " + std::to_string(percent) + "% of " + std::to_string(total) + " points";
    // Rates and estimates are noise until a little work is done.
    if (done == 0 || seconds <= 0.0) return text;
    const double perSecond = static_cast<double>(done) / seconds;
    return text + ", " + rate(perSecond) + ", " + duration(static_cast<double>(total - done) / perSecond) + " left";
}

std::string ProgressMeter::finalLine(const std::string& label, std::uint64_t total, double seconds) {
    std::string text = label + ": " + std::to_string(total) + " points in " + duration(seconds);
    if (seconds > 0.0) text += ", " + rate(static_cast<double>(total) / seconds);
    return text;
}

void ProgressMeter::update(std::uint64_t done) {
    if (!shown_) return;
    const Clock::time_point now = Clock::now();
    if (now - lastDrawn_ < kInterval) return;
    lastDrawn_ = now;
    draw(line(label_, done, total_, secondsBetween(start_, now)));
}

void ProgressMeter::finish() {
    if (!shown_) return;
    draw(finalLine(label_, total_, secondsBetween(start_, Clock::now())));
    std::fputc('\n', out_);
    std::fflush(out_);
    shown_ = false;
}

void ProgressMeter::draw(const std::string& text) {
    // Blanks over what is left of a longer previous line.
    const std::size_t pad = lastWidth_ > text.size() ? lastWidth_ - text.size() : 0;
    std::fprintf(out_, "\r%s%*s", text.c_str(), static_cast<int>(pad), "");
    std::fflush(out_);
    lastWidth_ = text.size();
}

}  // namespace gritwell
