#include "dialog/EditHistory.h"

#include <algorithm>
#include <cstring>

namespace gritwell {

EditHistory::State EditHistory::State::of(const char* record, const char* transforms) {
    State state;
    // A size byte above the buffer cannot be a record's; the copy stays inside.
    const std::size_t size = std::min<std::size_t>(static_cast<unsigned char>(record[0]), kRecordSize);
    std::memcpy(state.record.data(), record, size);
    std::memcpy(state.transforms.data(), transforms, kTransformSize);
    return state;
}

void EditHistory::reset(const State& start) {
    current_ = start;
    undo_.clear();
    redo_.clear();
    gestureStepOpen_ = false;
}

void EditHistory::record(const State& now) {
    if (now == current_) return;
    if (!gestureStepOpen_) {
        undo_.push_back(current_);
        redo_.clear();
        gestureStepOpen_ = inGesture_;
    }
    current_ = now;
}

void EditHistory::beginGesture() {
    inGesture_ = true;
    gestureStepOpen_ = false;
}

void EditHistory::endGesture() {
    inGesture_ = false;
    gestureStepOpen_ = false;
}

const EditHistory::State& EditHistory::undo() { return step(undo_, redo_); }

const EditHistory::State& EditHistory::redo() { return step(redo_, undo_); }

// A gesture still under way after a step back or forward opens a step of its own.
const EditHistory::State& EditHistory::step(std::vector<State>& from, std::vector<State>& to) {
    gestureStepOpen_ = false;
    to.push_back(current_);
    current_ = from.back();
    from.pop_back();
    return current_;
}

}  // namespace gritwell
