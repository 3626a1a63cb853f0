// Undo and redo of everything that a person makes: model, parameters, shift, sketch places, stage.
#pragma once

#include "project/project.h"

#include <cstdint>
#include <deque>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace kigumi {

// Steps of one project, each with the name of the command that led to it. A step keeps the records
// in use of every table in blocks of bytes: a block that a command left alone is shared by the
// steps before and after it, and blocks that the present does not hold are packed. Nodes that a
// search has found are kept with the role that they had before, for a search is no change; grid
// levels are kept, but are no change alone, for results bring theirs.
class History {
  public:
    // Steps that can be taken back; older ones are forgotten. So are the oldest while all together
    // hold more bytes than this.
    static constexpr int most_steps = 200;
    static constexpr std::size_t most_bytes = 200'000'000;

    // Forgets every step: the project as it stands is the present, and what its file holds.
    void start(const Project& project);
    // Takes the project as the new present, under the name of the command that changed it
    // ("部材の削除"). False, and no step, when nothing was changed. What could be redone is
    // forgotten.
    bool commit(std::string_view name, const Project& project);
    // Takes the project as it stands into the present step, which keeps its name. What was saved
    // stays saved.
    void amend(const Project& project);
    // True when the project is not what the present holds.
    bool differs(const Project& project) const;
    // True when its members are not.
    bool members_differ(const Project& project) const;

    bool can_undo() const { return at_ > 0; }
    bool can_redo() const { return at_ + 1 < steps_.size(); }
    // Names of the commands that undo() takes back and redo() repeats; empty when there is none.
    std::string undo_name() const { return can_undo() ? steps_[at_].name : std::string(); }
    std::string redo_name() const { return can_redo() ? steps_[at_ + 1].name : std::string(); }
    // Steps are numbered from 1 in the order in which they were made. The number given last, and
    // those of the steps that undo() takes back and redo() repeats; 0 when there is none.
    std::uint64_t newest() const { return newest_; }
    std::uint64_t undo_number() const { return can_undo() ? steps_[at_].number : 0; }
    std::uint64_t redo_number() const { return can_redo() ? steps_[at_ + 1].number : 0; }
    // Put the project back one command, or forward again. View and results stay; what is derived
    // from the members is emptied where they change, and the search has found nothing.
    void undo(Project& project);
    void redo(Project& project);
    // Puts the project back to the present: what was changed since the last commit is lost.
    void restore(Project& project) const;

    // Whether the present is what mark_saved was told of.
    void mark_saved();
    // Nothing that the history holds is in a file.
    void mark_unsaved();
    bool is_saved() const;

    // Bytes that all steps hold together.
    std::size_t bytes() const { return *held_; }

  private:
    class Block;
    using Blocks = std::vector<std::shared_ptr<Block>>;
    // The blocks of each table, in the order in which they are visited (history.cpp).
    using Tables = std::vector<Blocks>;
    struct Step {
        std::string name;
        Tables tables;
        std::uint64_t number = 0;
    };
    Tables tables_of(const Project& project, const Tables& earlier) const;
    void move_to(std::size_t step, Project& project);
    // Packs the blocks of a step that the present does not hold.
    void pack(const Step& step) const;
    void forget_oldest();

    std::deque<Step> steps_;
    std::size_t at_ = 0;
    std::uint64_t newest_ = 0;
    Tables saved_;
    // Counted by the blocks themselves, which may be shared with a copy of the history.
    std::shared_ptr<std::size_t> held_ = std::make_shared<std::size_t>(0);
};

// Empties what was derived from members that have changed: solids, points and perspective.
void empty_derived(Project& project);

} // namespace kigumi
