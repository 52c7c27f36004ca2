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

// A gesture still under way after a step back or forward opens a step of its own.
const EditHistory::State& EditHistory::undo() {
    gestureStepOpen_ = false;
    redo_.push_back(current_);
    current_ = undo_.back();
    undo_.pop_back();
    return current_;
}

const EditHistory::State& EditHistory::redo() {
    gestureStepOpen_ = false;
    undo_.push_back(current_);
    current_ = redo_.back();
    redo_.pop_back();
    return current_;
}

}  // namespace gritwell
