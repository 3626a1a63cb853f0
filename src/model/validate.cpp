#include "model/validate.h"

#include "base/float.h"
#include "model/nodes.h"
#include "model/roles.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <initializer_list>
#include <utility>
#include <vector>

namespace kigumi {

namespace {

bool counts_fit(const Model& model) {
    const auto fits = [](int count, int capacity) { return count >= 0 && count <= capacity; };
    return fits(model.N_Node, node_capacity) && fits(model.N_Beam, beam_capacity) &&
           fits(model.N_Size, size_capacity) && fits(model.N_Mat, mat_capacity) &&
           fits(model.N_Fix, fix_capacity) && fits(model.N_Load, load_capacity) &&
           fits(model.N_X, level_capacity) && fits(model.N_Y, level_capacity) &&
           fits(model.N_Z, level_capacity);
}

bool are_numbers(std::initializer_list<float> values) {
    for (const float value : values) {
        if (!std::isfinite(value)) {
            return false;
        }
    }
    return true;
}

bool is_ended(const char* text, std::size_t bytes) {
    return std::memchr(text, '\0', bytes) != nullptr;
}

bool is_switch(int value) {
    return value == 0 || value == 1;
}

const char* find_node_fault(const Node& node, int position) {
    if (node.no != number_at(position)) {
        return "節点番号が表の順番と合いません";
    }
    if (!is_ended(node.id, sizeof node.id)) {
        return "節点の名前に終わりがありません";
    }
    if (!are_numbers({node.x, node.y, node.z, node.X, node.Y})) {
        return "節点の座標が数値ではありません";
    }
    const bool known = (node.flag >= 0 && node.flag <= 2) || node.flag == role_found;
    return known ? nullptr : "節点の状態に意味がありません";
}

bool ends_lie_at(const Beam& beam, const Node& start, const Node& end) {
    return same_float(beam.xs, start.x) && same_float(beam.ys, start.y) &&
           same_float(beam.zs, start.z) && same_float(beam.xl, end.x) &&
           same_float(beam.yl, end.y) && same_float(beam.zl, end.z);
}

const char* find_end_fault(const Model& model, const Beam& beam, Promise promise) {
    if (!names_a_node(model, beam.noi) || !names_a_node(model, beam.noj)) {
        return "部材の端の節点がありません";
    }
    const Node& start = model.node[position_of(beam.noi)];
    const Node& end = model.node[position_of(beam.noj)];
    if (!ends_lie_at(beam, start, end)) {
        return "部材の端が節点の位置と合いません";
    }
    if (promise != Promise::drawn &&
        (std::strcmp(beam.idi, start.id) != 0 || std::strcmp(beam.idj, end.id) != 0)) {
        return "部材の端の名前が節点の名前と合いません";
    }
    return nullptr;
}

// While a member has none its number is -1; a file may give 0.
bool names_a_record(int no, int count, Promise promise) {
    return promise == Promise::drawn ? no >= -1
                                     : no <= count && no >= (promise == Promise::made ? 1 : -1);
}

const char* find_edit_fault(const MemberEdit& edit) {
    if (!is_switch(edit.section) || !is_switch(edit.material) ||
        !is_ended(edit.species, sizeof edit.species)) {
        return "部材ごとの変更に意味がありません";
    }
    if (edit.section == 1 && (!(edit.haba > 0.0f && edit.atumi > 0.0f) ||
                              !are_numbers({edit.haba, edit.atumi, edit.angle}))) {
        return "部材ごとに変更した断面の値に誤りがあります";
    }
    if (edit.material == 1 && (!(edit.E > 0.0f && edit.poisson > 0.0f && edit.density > 0.0f) ||
                               !are_numbers({edit.E, edit.poisson, edit.density}))) {
        return "部材ごとに変更した材料の値に誤りがあります";
    }
    return nullptr;
}

const char* find_beam_fault(const Model& model, const Beam& beam, int position, Promise promise) {
    if (beam.no != number_at(position)) {
        return "部材番号が表の順番と合いません";
    }
    if (!is_ended(beam.idi, sizeof beam.idi) || !is_ended(beam.idj, sizeof beam.idj)) {
        return "部材の端の名前に終わりがありません";
    }
    if (const char* fault = find_end_fault(model, beam, promise)) {
        return fault;
    }
    if (!are_numbers({beam.haba, beam.atumi})) {
        return "部材の巾か厚みが数値ではありません";
    }
    if (!are_numbers({beam.XS, beam.YS, beam.XL, beam.YL})) {
        return "部材の紙面上の位置が数値ではありません";
    }
    if (!names_a_record(beam.size, model.N_Size, promise)) {
        return "部材の断面番号が範囲外です";
    }
    if (!names_a_record(beam.mat, model.N_Mat, promise)) {
        return "部材の材料番号が範囲外です";
    }
    if (kind_label(beam.kind) == nullptr) {
        return "部材の区分に意味がありません";
    }
    if (beam.flag < (promise == Promise::made ? 2 : 0) || beam.flag > 2) {
        return "部材の状態が作業の段階と合いません";
    }
    return find_edit_fault(model.edit[position]);
}

const char* find_table_fault(const Model& model) {
    const SizeTable& size = model.size;
    for (int k = 0; k < model.N_Size; ++k) {
        if (!are_numbers({size.haba[k], size.atumi[k], size.length[k], size.angle[k]})) {
            return "断面の値が数値ではありません";
        }
    }
    for (int k = 0; k < model.N_Mat; ++k) {
        if (!are_numbers({model.mat.E[k], model.mat.poisson[k], model.mat.density[k]})) {
            return "材料の値が数値ではありません";
        }
    }
    return nullptr;
}

// Nodes by number that have a record already.
class Taken {
  public:
    explicit Taken(const Model& model) : taken_(static_cast<std::size_t>(model.N_Node) + 1) {}
    // False when the node had one.
    bool take(int no) { return std::exchange(taken_[static_cast<std::size_t>(no)], 1) == 0; }

  private:
    std::vector<char> taken_;
};

// A record of supports or loads and the node that it names.
template <class Record>
const char* find_role_fault(const Model& model, const Record& record, NodeRole role,
                            Promise promise, Taken& taken) {
    if (!names_a_node(model, record.no)) {
        return role == role_fixed ? "支点の節点番号が範囲外です" : "荷重の節点番号が範囲外です";
    }
    const Node& node = model.node[position_of(record.no)];
    if (!is_ended(record.id, sizeof record.id) ||
        (promise != Promise::drawn && std::strcmp(record.id, node.id) != 0)) {
        return role == role_fixed ? "支点の名前が節点の名前と合いません"
                                  : "荷重の名前が節点の名前と合いません";
    }
    if (!taken.take(record.no)) {
        return "支点や荷重が同じ節点に重なっています";
    }
    if (promise == Promise::made && model.fix_load_edited != 0 &&
        role_of(model, position_of(record.no)) != role) {
        return "節点の指定が支点・荷重の表と合いません";
    }
    return nullptr;
}

const char* find_roles_fault(const Model& model, Promise promise) {
    Taken taken(model);
    for (int i = 0; i < model.N_Fix; ++i) {
        const Fix& fix = model.fix[i];
        if (const char* fault = find_role_fault(model, fix, role_fixed, promise, taken)) {
            return fault;
        }
        if (!is_switch(fix.ix) || !is_switch(fix.iy) || !is_switch(fix.iz)) {
            return "支点の拘束に意味がありません";
        }
    }
    for (int i = 0; i < model.N_Load; ++i) {
        const Load& load = model.load[i];
        if (const char* fault = find_role_fault(model, load, role_loaded, promise, taken)) {
            return fault;
        }
        if (!are_numbers({load.fx, load.fy, load.fz})) {
            return "荷重が数値ではありません";
        }
    }
    if (!is_switch(model.fix_load_edited)) {
        return "支点・荷重の入力の印に意味がありません";
    }
    if (promise != Promise::made || model.fix_load_edited == 0) {
        return nullptr;
    }
    int with_role = 0;
    for (int i = 0; i < model.N_Node; ++i) {
        with_role += role_of(model, i) != role_plain ? 1 : 0;
    }
    return with_role == model.N_Fix + model.N_Load ? nullptr
                                                   : "節点の指定が支点・荷重の表と合いません";
}

// Whether values of nodes are levels, and which levels were met.
class LevelCheck {
  public:
    LevelCheck(const Table<float, level_capacity>& levels, int count)
        : levels_(levels.data()), count_(count) {}

    bool is_ascending() const {
        return std::adjacent_find(levels_, levels_ + count_,
                                  [](float a, float b) { return !(a < b); }) == levels_ + count_;
    }
    bool meet(float value) {
        if (at_ >= count_ || !same_float(levels_[at_], value)) {
            at_ = static_cast<int>(std::lower_bound(levels_, levels_ + count_, value) - levels_);
            if (at_ == count_ || !same_float(levels_[at_], value)) {
                return false;
            }
        }
        met_[at_] = true;
        return true;
    }
    bool all_met() const {
        return std::all_of(met_, met_ + count_, [](bool met) { return met; });
    }

  private:
    const float* levels_;
    int count_;
    int at_ = 0;
    bool met_[level_capacity] = {};
};

} // namespace

const char* find_model_fault(const Model& model, Promise promise) {
    if (!counts_fit(model)) {
        return "表の件数が範囲外です";
    }
    for (int i = 0; i < model.N_Node; ++i) {
        if (const char* fault = find_node_fault(model.node[i], i)) {
            return fault;
        }
    }
    for (int i = 0; i < model.N_Beam; ++i) {
        if (const char* fault = find_beam_fault(model, model.beam[i], i, promise)) {
            return fault;
        }
    }
    if (const char* fault = find_table_fault(model)) {
        return fault;
    }
    return find_roles_fault(model, promise);
}

const char* find_model_fault(const Model& model, bool names) {
    return find_model_fault(model, names ? Promise::placed : Promise::drawn);
}

const char* find_level_fault(const Model& model) {
    LevelCheck x(model.Xval, model.N_X);
    LevelCheck y(model.Yval, model.N_Y);
    LevelCheck z(model.Zval, model.N_Z);
    bool sound = x.is_ascending() && y.is_ascending() && z.is_ascending();
    for (int i = 0; i < model.N_Node && sound; ++i) {
        const Node& node = model.node[i];
        sound = x.meet(node.x) && y.meet(node.y) && z.meet(node.z);
    }
    return sound && x.all_met() && y.all_met() && z.all_met() ? nullptr
                                                              : "レベルが節点の座標と合いません";
}

} // namespace kigumi
