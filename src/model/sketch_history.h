// Undo and redo of the hand-drawn editor: copies of the node and member tables, taken around each
// command. The tables themselves know nothing of it.
#pragma once

#include "model/model.h"

#include <deque>
#include <memory>
#include <vector>

namespace kigumi {

class SketchHistory {
  public:
    // The history of this model, which lives longer.
    explicit SketchHistory(Model& model) : model_(model) {}

    // Commands that can be taken back; older ones are forgotten.
    static constexpr int most_steps = 100;

    // Forgets every step: the tables as they stand are the present. `saved` tells whether they are
    // what the sketch's file holds.
    void start(bool saved);
    // Takes the tables, after a command and while X, Y are those of the sheet, as the new present.
    // False, and no step, when nothing was changed. What could be redone is forgotten.
    bool commit();
    bool can_undo() const { return at_ > 0; }
    bool can_redo() const { return at_ + 1 < steps_.size(); }
    // Put the tables back one command, or forward again.
    void undo();
    void redo();
    // Whether the present is what mark_saved was told of.
    void mark_saved();
    bool is_saved() const;

  private:
    // A table that a command left alone is shared by the steps before and after it.
    struct Step {
        std::shared_ptr<const std::vector<Node>> node;
        std::shared_ptr<const std::vector<Beam>> beam;
    };
    void restore();

    Model& model_;
    std::deque<Step> steps_;
    size_t at_ = 0;
    Step saved_;
};

} // namespace kigumi
