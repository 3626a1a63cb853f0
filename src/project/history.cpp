#include "project/history.h"

#include "base/check.h"
#include "model/nodes.h"

#include <algorithm>
#include <cstring>

namespace kigumi {

namespace {

constexpr std::size_t block_bytes = 32768;

// Calls `visit` with every single value of the state that is no table.
template <class AnyProject, class Visit> void each_value(AnyProject& project, Visit visit) {
    auto& m = project.model;
    for (auto* count : {&m.N_Node, &m.N_Beam, &m.N_Size, &m.N_Mat, &m.N_Fix, &m.N_Load, &m.N_X,
                        &m.N_Y, &m.N_Z, &m.fix_load_edited, &m.GaichuStart, &m.GaichuEnd}) {
        visit(*count);
    }
    for (auto* bound : {&m.X_MIN, &m.Y_MIN, &m.Z_MIN, &m.X_MAX, &m.Y_MAX, &m.Z_MAX, &m.default_E,
                        &m.default_poisson, &m.default_density, &m.snap_radius}) {
        visit(*bound);
    }
    visit(project.param);
    visit(project.generated);
    visit(project.shift);
    visit(project.stage);
    visit(project.sketch_places.OnSaveOld);
    visit(project.sketch_places.N_OldNode);
}

// Calls `visit` with the records in use of every table; the counts are those of the project.
template <class AnyProject, class Visit> void each_table(AnyProject& project, Visit visit) {
    auto& m = project.model;
    visit(m.node.data(), m.N_Node);
    visit(m.beam.data(), m.N_Beam);
    for (auto* values : {&m.size.haba, &m.size.atumi, &m.size.length, &m.size.A, &m.size.Iy,
                         &m.size.Iz, &m.size.J, &m.size.angle}) {
        visit(values->data(), m.N_Size);
    }
    for (auto* values : {&m.mat.E, &m.mat.poisson, &m.mat.density}) {
        visit(values->data(), m.N_Mat);
    }
    visit(m.fix.data(), m.N_Fix);
    visit(m.load.data(), m.N_Load);
    visit(m.found_role.data(), m.N_Node);
    visit(m.Xval.data(), m.N_X);
    visit(m.Yval.data(), m.N_Y);
    visit(m.Zval.data(), m.N_Z);
    visit(project.sketch_places.old_node.data(), project.sketch_places.N_OldNode);
}

std::vector<unsigned char> value_bytes(const Project& project) {
    std::vector<unsigned char> bytes;
    each_value(project, [&bytes](const auto& value) {
        const auto* from = reinterpret_cast<const unsigned char*>(&value);
        bytes.insert(bytes.end(), from, from + sizeof value);
    });
    return bytes;
}

} // namespace

std::vector<History::Block> History::blocks_of(const Project& project,
                                               const std::vector<Block>& earlier) {
    std::vector<Block> blocks;
    const auto add = [&](const unsigned char* from, std::size_t size) {
        const std::size_t at = blocks.size();
        if (at < earlier.size() && earlier[at]->size() == size &&
            (size == 0 || std::memcmp(earlier[at]->data(), from, size) == 0)) {
            blocks.push_back(earlier[at]);
        } else {
            blocks.push_back(std::make_shared<const std::vector<unsigned char>>(from, from + size));
        }
    };
    const std::vector<unsigned char> values = value_bytes(project);
    add(values.data(), values.size());
    each_table(project, [&add](const auto* records, std::int32_t count) {
        const auto* from = reinterpret_cast<const unsigned char*>(records);
        const std::size_t all = static_cast<std::size_t>(count) * sizeof *records;
        for (std::size_t at = 0; at == 0 || at < all; at += block_bytes) {
            add(from + at, std::min(block_bytes, all - at));
        }
    });
    return blocks;
}

void History::start(const Project& project) {
    steps_.assign(1, {{}, blocks_of(project, {}), 0});
    at_ = 0;
    saved_ = steps_.front().blocks;
}

bool History::differs(const Project& project) const {
    return steps_.empty() || blocks_of(project, steps_[at_].blocks) != steps_[at_].blocks;
}

bool History::commit(std::string_view name, const Project& project) {
    KIGUMI_CHECK(!steps_.empty(), "a history that was not started");
    std::vector<Block> now = blocks_of(project, steps_[at_].blocks);
    if (now == steps_[at_].blocks) {
        return false;
    }
    steps_.resize(at_ + 1);
    steps_.push_back({std::string(name), std::move(now), ++newest_});
    if (steps_.size() > most_steps + 1) {
        steps_.pop_front();
    }
    at_ = steps_.size() - 1;
    return true;
}

void History::amend(const Project& project) {
    const bool saved = is_saved();
    steps_[at_].blocks = blocks_of(project, steps_[at_].blocks);
    saved_ = saved ? steps_[at_].blocks : saved_;
}

const std::string& History::undo_name() const {
    static const std::string none;
    return can_undo() ? steps_[at_].name : none;
}

const std::string& History::redo_name() const {
    static const std::string none;
    return can_redo() ? steps_[at_ + 1].name : none;
}

void History::restore(Project& project) const {
    const std::vector<Block>& blocks = steps_[at_].blocks;
    const unsigned char* from = blocks.front()->data();
    each_value(project, [&from](auto& value) {
        std::memcpy(&value, from, sizeof value);
        from += sizeof value;
    });
    std::size_t next = 1;
    each_table(project, [&](auto* records, std::int32_t count) {
        auto* to = reinterpret_cast<unsigned char*>(records);
        const std::size_t all = static_cast<std::size_t>(count) * sizeof *records;
        for (std::size_t at = 0; at == 0 || at < all; at += block_bytes, ++next) {
            if (!blocks[next]->empty()) {
                std::memcpy(to + at, blocks[next]->data(), blocks[next]->size());
            }
        }
    });
    forget_node_index(project.model);
    reset_solids(project.solids);
    clear_points(project.solids);
}

void History::undo(Project& project) {
    if (can_undo()) {
        --at_;
        restore(project);
    }
}

void History::redo(Project& project) {
    if (can_redo()) {
        ++at_;
        restore(project);
    }
}

void History::mark_saved() {
    saved_ = steps_[at_].blocks;
}

void History::mark_unsaved() {
    saved_.clear();
}

bool History::is_saved() const {
    return !steps_.empty() && saved_ == steps_[at_].blocks;
}

std::size_t History::bytes() const {
    std::vector<const void*> seen;
    std::size_t bytes = 0;
    for (const Step& step : steps_) {
        for (const Block& block : step.blocks) {
            seen.push_back(block.get());
        }
    }
    std::sort(seen.begin(), seen.end());
    seen.erase(std::unique(seen.begin(), seen.end()), seen.end());
    for (const void* block : seen) {
        bytes += static_cast<const std::vector<unsigned char>*>(block)->size();
    }
    return bytes;
}

} // namespace kigumi
