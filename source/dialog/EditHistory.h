#pragma once
// EditHistory: the dialog's undo and redo. It sees every state the dialog
// sends to the host (record and transforms) and keeps the states before each
// change. A gesture, such as a slider held down, makes one step however many
// states it sends.

#include <array>
#include <cstddef>
#include <vector>

namespace gritwell {

class EditHistory {
public:
    // One state as the host receives it. Only the record's own bytes (its
    // size byte says how many) are kept; the rest of the buffer is zero.
    struct State {
        static constexpr std::size_t kRecordSize = 256;
        static constexpr std::size_t kTransformSize = 44;
        std::array<char, kRecordSize> record{};
        std::array<char, kTransformSize> transforms{};

        static State of(const char* record, const char* transforms);
        bool operator==(const State&) const = default;
    };

    // The starting point: no steps to undo or redo.
    void reset(const State& start);

    // A state the dialog sent. A state other than the current one is a new
    // step and drops what could be redone, unless the gesture under way has
    // already opened its step; then it only moves that step's end.
    void record(const State& now);
    void beginGesture();
    void endGesture();

    bool canUndo() const { return !undo_.empty(); }
    bool canRedo() const { return !redo_.empty(); }
    // Step back or forward; the result is the state to show and send, and
    // becomes the current one. Only when canUndo() / canRedo().
    const State& undo();
    const State& redo();
    const State& current() const { return current_; }

private:
    const State& step(std::vector<State>& from, std::vector<State>& to);

    State current_;
    std::vector<State> undo_;
    std::vector<State> redo_;
    bool inGesture_ = false;
    bool gestureStepOpen_ = false;
};

}  // namespace gritwell
