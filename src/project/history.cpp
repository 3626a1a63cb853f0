#include "project/history.h"

#include "base/check.h"
#include "model/nodes.h"
#include "model/roles.h"
#include "project/packing.h"

#include <algorithm>
#include <cstring>
#include <unordered_set>
#include <utility>

namespace kigumi {

namespace {

constexpr std::size_t block_bytes = 32768; // about; whole records

// Tables by the order of each_table, behind the single values.
constexpr std::size_t values_table = 0;
constexpr std::size_t beam_table = 2;
// The last ones, which are kept but are no change.
constexpr std::size_t level_tables = 4;

// Calls `visit` with every single value of the state that is no table.
template <class AnyProject, class Visit> void each_value(AnyProject& project, Visit visit) {
    auto& m = project.model;
    for (auto* count : {&m.N_Node, &m.N_Beam, &m.N_Size, &m.N_Mat, &m.N_Fix, &m.N_Load,
                        &m.fix_load_edited, &m.GaichuStart, &m.GaichuEnd}) {
        visit(*count);
    }
    for (auto* value : {&m.default_E, &m.default_poisson, &m.default_density, &m.snap_radius}) {
        visit(*value);
    }
    visit(project.param);
    visit(project.generated);
    visit(project.shift);
    visit(project.stage);
    visit(project.sketch_places.OnSaveOld);
    visit(project.sketch_places.N_OldNode);
}

// Calls `visit` with the counts of the levels.
template <class AnyProject, class Visit> void each_level_count(AnyProject& project, Visit visit) {
    for (auto* count : {&project.model.N_X, &project.model.N_Y, &project.model.N_Z}) {
        visit(*count);
    }
}

// Calls `visit` with the records in use of every table; the counts are those of the project.
template <class AnyProject, class Visit> void each_table(AnyProject& project, Visit visit) {
    auto& m = project.model;
    visit(m.node.data(), m.N_Node);
    visit(m.beam.data(), m.N_Beam);
    visit(m.edit.data(), m.N_Beam);
    for (auto* values : {&m.size.haba, &m.size.atumi, &m.size.length, &m.size.A, &m.size.Iy,
                         &m.size.Iz, &m.size.J, &m.size.angle}) {
        visit(values->data(), m.N_Size);
    }
    for (auto* values : {&m.mat.E, &m.mat.poisson, &m.mat.density}) {
        visit(values->data(), m.N_Mat);
    }
    visit(m.fix.data(), m.N_Fix);
    visit(m.load.data(), m.N_Load);
    visit(project.sketch_places.old_node.data(), project.sketch_places.N_OldNode);
    visit(m.Xval.data(), m.N_X);
    visit(m.Yval.data(), m.N_Y);
    visit(m.Zval.data(), m.N_Z);
}

template <class Value> void append_bytes(std::vector<unsigned char>& bytes, const Value& value) {
    const auto* from = reinterpret_cast<const unsigned char*>(&value);
    bytes.insert(bytes.end(), from, from + sizeof value);
}

// The nodes with the roles that they had before the search found them; none when it found none.
std::vector<Node> nodes_without_hits(const Model& model) {
    std::vector<Node> nodes;
    for (int i = 0; i < model.N_Node; ++i) {
        if (model.node[i].flag == role_found) {
            if (nodes.empty()) {
                nodes.assign(model.node.begin(), model.node.begin() + model.N_Node);
            }
            nodes[static_cast<std::size_t>(i)].flag = role_of(model, i);
        }
    }
    return nodes;
}

// Bytes of as many whole records as make a block.
std::size_t bytes_a_block(std::size_t record_bytes) {
    return block_bytes / record_bytes * record_bytes;
}

} // namespace

// Records of one table, packed or not; counts its bytes in the sum of its history.
class History::Block {
  public:
    Block(const unsigned char* from, std::size_t size, std::size_t record_bytes,
          std::shared_ptr<std::size_t> held)
        : held_(std::move(held)), record_(record_bytes), size_(size), bytes_(from, from + size) {
        *held_ += bytes_.size();
    }
    ~Block() { *held_ -= bytes_.size(); }
    Block(const Block&) = delete;
    Block& operator=(const Block&) = delete;

    // Only where it is not packed.
    bool holds(const unsigned char* from, std::size_t size) const {
        return !packed_ && size == size_ &&
               (size == 0 || std::memcmp(bytes_.data(), from, size) == 0);
    }
    const std::vector<unsigned char>& bytes() {
        if (packed_) {
            take(unpack_records(bytes_, size_, record_));
            packed_ = false;
        }
        return bytes_;
    }
    void pack() {
        if (!packed_ && record_ % 4 == 0 && size_ > 0) {
            take(pack_records(bytes_, record_));
            packed_ = true;
        }
    }

  private:
    void take(std::vector<unsigned char> bytes) {
        *held_ += bytes.size();
        *held_ -= bytes_.size();
        bytes_ = std::move(bytes);
    }

    std::shared_ptr<std::size_t> held_;
    std::size_t record_, size_;
    bool packed_ = false;
    std::vector<unsigned char> bytes_;
};

History::Tables History::tables_of(const Project& project, const Tables& earlier) const {
    Tables tables;
    const auto add = [&](const unsigned char* from, std::size_t all, std::size_t record_bytes) {
        const Blocks none;
        const Blocks& before = tables.size() < earlier.size() ? earlier[tables.size()] : none;
        Blocks blocks;
        const std::size_t most = bytes_a_block(record_bytes);
        for (std::size_t at = 0; at < all; at += most) {
            const std::size_t size = std::min(most, all - at);
            const std::size_t k = blocks.size();
            blocks.push_back(k < before.size() && before[k]->holds(from + at, size)
                                 ? before[k]
                                 : std::make_shared<Block>(from + at, size, record_bytes, held_));
        }
        tables.push_back(std::move(blocks));
    };
    std::vector<unsigned char> values;
    each_value(project, [&values](const auto& value) { append_bytes(values, value); });
    add(values.data(), values.size(), 1);
    const std::vector<Node> nodes = nodes_without_hits(project.model);
    each_table(project, [&](const auto* records, std::int32_t count) {
        const void* from = records;
        if (from == project.model.node.data() && !nodes.empty()) {
            from = nodes.data();
        }
        add(static_cast<const unsigned char*>(from),
            static_cast<std::size_t>(count) * sizeof *records, sizeof *records);
    });
    values.clear();
    each_level_count(project, [&values](const auto& value) { append_bytes(values, value); });
    add(values.data(), values.size(), 1);
    return tables;
}

namespace {

// True when the tables that are a change hold the same blocks.
template <class Tables> bool same_state(const Tables& a, const Tables& b) {
    return a.size() == b.size() && !a.empty() &&
           std::equal(a.begin(), a.end() - level_tables, b.begin());
}

} // namespace

void History::start(const Project& project) {
    steps_.clear();
    saved_.clear();
    steps_.push_back({{}, tables_of(project, {})});
    at_ = 0;
    mark_saved();
}

bool History::differs(const Project& project) const {
    return steps_.empty() ||
           !same_state(tables_of(project, steps_[at_].tables), steps_[at_].tables);
}

bool History::members_differ(const Project& project) const {
    if (steps_.empty()) {
        return true;
    }
    const Blocks& blocks = steps_[at_].tables[beam_table];
    const auto* from = reinterpret_cast<const unsigned char*>(project.model.beam.data());
    const std::size_t all = static_cast<std::size_t>(project.model.N_Beam) * sizeof(Beam);
    const std::size_t most = bytes_a_block(sizeof(Beam));
    if (blocks.size() != (all + most - 1) / most) {
        return true;
    }
    for (std::size_t k = 0; k < blocks.size(); ++k) {
        blocks[k]->bytes(); // no longer packed
        if (!blocks[k]->holds(from + k * most, std::min(most, all - k * most))) {
            return true;
        }
    }
    return false;
}

bool History::commit(std::string_view name, const Project& project) {
    KIGUMI_CHECK(!steps_.empty(), "a history that was not started");
    Tables now = tables_of(project, steps_[at_].tables);
    if (same_state(now, steps_[at_].tables)) {
        return false;
    }
    steps_.resize(at_ + 1);
    steps_.push_back({std::string(name), std::move(now), ++newest_});
    ++at_;
    pack(steps_[at_ - 1]);
    forget_oldest();
    return true;
}

void History::amend(const Project& project) {
    KIGUMI_CHECK(!steps_.empty(), "a history that was not started");
    const bool saved = is_saved();
    steps_[at_].tables = tables_of(project, steps_[at_].tables);
    if (saved) {
        mark_saved();
    }
}

void History::pack(const Step& step) const {
    std::unordered_set<const Block*> present;
    for (const Blocks& blocks : steps_[at_].tables) {
        for (const auto& block : blocks) {
            present.insert(block.get());
        }
    }
    for (const Blocks& blocks : step.tables) {
        for (const auto& block : blocks) {
            if (present.count(block.get()) == 0) {
                block->pack();
            }
        }
    }
}

void History::forget_oldest() {
    while (at_ > 0 && (steps_.size() > most_steps + 1 || *held_ > most_bytes)) {
        steps_.pop_front();
        --at_;
    }
}

void History::restore(Project& project) const {
    const Tables& tables = steps_[at_].tables;
    const bool members = members_differ(project);
    const auto put = [](const Blocks& blocks, auto& project_part, auto each) {
        const unsigned char* from = blocks.front()->bytes().data();
        each(project_part, [&from](auto& value) {
            std::memcpy(&value, from, sizeof value);
            from += sizeof value;
        });
    };
    put(tables[values_table], project, [](Project& p, auto visit) { each_value(p, visit); });
    put(tables.back(), project, [](Project& p, auto visit) { each_level_count(p, visit); });
    std::size_t table = 1;
    each_table(project, [&](auto* records, std::int32_t) {
        auto* to = reinterpret_cast<unsigned char*>(records);
        for (const auto& block : tables[table++]) {
            const std::vector<unsigned char>& bytes = block->bytes();
            std::memcpy(to, bytes.data(), bytes.size());
            to += bytes.size();
        }
    });
    Model& model = project.model;
    std::fill(model.edit.begin() + model.N_Beam, model.edit.end(), MemberEdit{});
    forget_node_index(model);
    if (members) {
        empty_derived(project);
    }
}

void History::move_to(std::size_t step, Project& project) {
    const std::size_t left = std::exchange(at_, step);
    restore(project);
    pack(steps_[left]);
}

void History::undo(Project& project) {
    if (can_undo()) {
        move_to(at_ - 1, project);
    }
}

void History::redo(Project& project) {
    if (can_redo()) {
        move_to(at_ + 1, project);
    }
}

void History::mark_saved() {
    saved_ = steps_[at_].tables;
}

void History::mark_unsaved() {
    saved_.clear();
}

bool History::is_saved() const {
    return !steps_.empty() && same_state(saved_, steps_[at_].tables);
}

void empty_derived(Project& project) {
    reset_solids(project.solids);
    clear_points(project.solids);
    if (!project.perspective.preparing) {
        project.perspective = PerspectiveLines{};
    }
}

} // namespace kigumi
