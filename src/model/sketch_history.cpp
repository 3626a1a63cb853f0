#include "model/sketch_history.h"

#include "model/nodes.h"

#include <algorithm>
#include <cstring>

namespace kigumi {

namespace {

template <class Record> using Shared = std::shared_ptr<const std::vector<Record>>;

// The records of a table: the earlier copy where they are the same to the last byte.
template <class Record, class Table>
Shared<Record> copy_of(const Table& table, int count, const Shared<Record>& earlier) {
    const size_t size = static_cast<size_t>(count);
    if (earlier && earlier->size() == size &&
        (size == 0 || std::memcmp(earlier->data(), table.data(), size * sizeof(Record)) == 0)) {
        return earlier;
    }
    return std::make_shared<const std::vector<Record>>(table.begin(), table.begin() + count);
}

} // namespace

void SketchHistory::start(bool saved) {
    steps_.assign(1, {copy_of<Node>(model_.node, model_.N_Node, {}),
                      copy_of<Beam>(model_.beam, model_.N_Beam, {})});
    at_ = 0;
    saved_ = saved ? steps_.front() : Step{};
}

bool SketchHistory::commit() {
    const Step& before = steps_[at_];
    Step now{copy_of(model_.node, model_.N_Node, before.node),
             copy_of(model_.beam, model_.N_Beam, before.beam)};
    if (now.node == before.node && now.beam == before.beam) {
        return false;
    }
    steps_.resize(at_ + 1);
    steps_.push_back(std::move(now));
    if (steps_.size() > most_steps + 1) {
        steps_.pop_front();
    }
    at_ = steps_.size() - 1;
    return true;
}

void SketchHistory::undo() {
    if (can_undo()) {
        --at_;
        restore();
    }
}

void SketchHistory::redo() {
    if (can_redo()) {
        ++at_;
        restore();
    }
}

void SketchHistory::restore() {
    const Step& step = steps_[at_];
    std::copy(step.node->begin(), step.node->end(), model_.node.begin());
    std::copy(step.beam->begin(), step.beam->end(), model_.beam.begin());
    model_.N_Node = static_cast<std::int32_t>(step.node->size());
    model_.N_Beam = static_cast<std::int32_t>(step.beam->size());
    forget_node_index(model_);
}

void SketchHistory::mark_saved() {
    saved_ = steps_[at_];
}

bool SketchHistory::is_saved() const {
    return saved_.node == steps_[at_].node && saved_.beam == steps_[at_].beam;
}

} // namespace kigumi
