#include "model/roles.h"

#include "base/format.h"
#include "base/message.h"

#include <algorithm>
#include <cstring>

namespace kigumi {

namespace {

constexpr size_t id_length = 9; // "X00Y00Z00"

template <class Table> int find_record(const Table& table, int count, int no) {
    const auto end = table.begin() + count;
    const auto found =
        std::find_if(table.begin(), end, [no](const auto& record) { return record.no == no; });
    return found == end ? -1 : static_cast<int>(found - table.begin());
}

template <class Table> void remove_record(Model& model, Table& table, std::int32_t& count, int at) {
    if (at < 0 || at >= count) {
        return;
    }
    model.node[position_of(table[at].no)].flag = role_plain;
    std::copy(table.begin() + at + 1, table.begin() + count, table.begin() + at);
    --count;
}

// The two digits behind each of the letters of "X00Y00Z00"; false for a name of another form.
bool levels_of(const char (&id)[name_bytes], int (&levels)[3]) {
    const char* part = id;
    for (int axis = 0; axis < 3; ++axis, part += 3) {
        const auto digit = [](char c) { return c >= '0' && c <= '9'; };
        if (part[0] != 'X' + axis || !digit(part[1]) || !digit(part[2])) {
            return false;
        }
        levels[axis] = 10 * (part[1] - '0') + (part[2] - '0');
    }
    return true;
}

bool lies_in(const Node& node, const LevelRanges& ranges) {
    int levels[3];
    if (!levels_of(node.id, levels)) {
        return false;
    }
    for (int axis = 0; axis < 3; ++axis) {
        if (levels[axis] < ranges[axis].first || levels[axis] > ranges[axis].last) {
            return false;
        }
    }
    return true;
}

} // namespace

int append_fix(Model& model, int no, int ix, int iy, int iz) {
    if (model.N_Fix >= fix_capacity) {
        show_message(text_format("固定節点が多すぎます（最大 %d 個）", fix_capacity));
        return -1;
    }
    Fix& fix = model.fix[model.N_Fix++];
    std::memcpy(fix.id, model.node[position_of(no)].id, name_bytes);
    fix.no = no;
    fix.ix = ix;
    fix.iy = iy;
    fix.iz = iz;
    return 0;
}

int append_load(Model& model, int no, float fx, float fy, float fz) {
    if (model.N_Load >= load_capacity) {
        show_message(text_format("荷重節点が多すぎます（最大 %d 個）", load_capacity));
        return -1;
    }
    Load& load = model.load[model.N_Load++];
    std::memcpy(load.id, model.node[position_of(no)].id, name_bytes);
    load.no = no;
    load.fx = fx;
    load.fy = fy;
    load.fz = fz;
    return 0;
}

int make_fix_and_load(Model& model) {
    int fixes = 0;
    int loads = 0;
    for (int i = 0; i < model.N_Node; ++i) {
        fixes += role_of(model, i) == role_fixed ? 1 : 0;
        loads += role_of(model, i) == role_loaded ? 1 : 0;
    }
    if (fixes > fix_capacity || loads > load_capacity) {
        show_message(text_format("固定節点 %d 個・荷重節点 %d 個は多すぎます（それぞれ最大 %d 個）",
                                 fixes, loads, fix_capacity));
        return -1;
    }
    constexpr float first_load = -200.0f; // kgf, downwards
    model.N_Fix = model.N_Load = 0;
    for (int i = 0; i < model.N_Node; ++i) {
        const Node& node = model.node[i];
        if (role_of(model, i) == role_fixed) {
            append_fix(model, node.no, 1, 1, 1);
        } else if (role_of(model, i) == role_loaded) {
            append_load(model, node.no, 0.0f, 0.0f, first_load);
        }
    }
    return 0;
}

int role_of(const Model& model, int node) {
    const int flag = model.node[node].flag;
    return flag == role_found ? model.found_role[node] : flag;
}

bool any_role(const Model& model) {
    for (int i = 0; i < model.N_Node; ++i) {
        if (role_of(model, i) != role_plain) {
            return true;
        }
    }
    return false;
}

void clear_roles(Model& model) {
    for (int i = 0; i < model.N_Node; ++i) {
        model.node[i].flag = role_plain;
    }
    model.N_Fix = model.N_Load = 0;
    model.fix_load_edited = 0;
}

void pick_role(Model& model, int node, int role) {
    std::int32_t& flag = model.node[node].flag;
    std::int32_t& shown = flag == role_found ? model.found_role[node] : flag;
    shown = shown == role ? role_plain : role;
}

int put_fix(Model& model, int node, int ix, int iy, int iz) {
    const int no = number_at(node);
    const int code[3] = {ix != 0 ? 1 : 0, iy != 0 ? 1 : 0, iz != 0 ? 1 : 0};
    const int at = find_fix(model, no);
    if (at >= 0) {
        Fix& fix = model.fix[at];
        fix.ix = code[0];
        fix.iy = code[1];
        fix.iz = code[2];
    } else if (append_fix(model, no, code[0], code[1], code[2]) < 0) {
        return -1;
    }
    delete_load(model, find_load(model, no));
    model.node[node].flag = role_fixed;
    return 0;
}

int put_load(Model& model, int node, float fx, float fy, float fz) {
    const int no = number_at(node);
    const int at = find_load(model, no);
    if (at >= 0) {
        Load& load = model.load[at];
        load.fx = fx;
        load.fy = fy;
        load.fz = fz;
    } else if (append_load(model, no, fx, fy, fz) < 0) {
        return -1;
    }
    delete_fix(model, find_fix(model, no));
    model.node[node].flag = role_loaded;
    return 0;
}

void delete_fix(Model& model, int at) {
    remove_record(model, model.fix, model.N_Fix, at);
}

void delete_load(Model& model, int at) {
    remove_record(model, model.load, model.N_Load, at);
}

int find_fix(const Model& model, int no) {
    return find_record(model.fix, model.N_Fix, no);
}

int find_load(const Model& model, int no) {
    return find_record(model.load, model.N_Load, no);
}

void set_all_loads(Model& model, float fx, float fy, float fz) {
    for (int i = 0; i < model.N_Load; ++i) {
        Load& load = model.load[i];
        load.fx = fx;
        load.fy = fy;
        load.fz = fz;
    }
}

int find_node_id(const Model& model, std::string_view text) {
    if (text.size() < 7 || text[0] != 'X' || text[3] != 'Y' || text[6] != 'Z') {
        return bad_node_id;
    }
    for (int i = 0; i < model.N_Node; ++i) {
        if (std::string_view(model.node[i].id).substr(0, id_length) == text.substr(0, id_length)) {
            return i;
        }
    }
    return -1;
}

LevelRanges all_levels(const Model& model) {
    return {{{0, model.N_X - 1}, {0, model.N_Y - 1}, {0, model.N_Z - 1}}};
}

int find_nodes(Model& model, const LevelRanges& ranges) {
    forget_found(model);
    int count = 0;
    for (int i = 0; i < model.N_Node; ++i) {
        Node& node = model.node[i];
        if (lies_in(node, ranges)) {
            model.found_role[i] = node.flag;
            node.flag = role_found;
            ++count;
        }
    }
    return count;
}

void forget_found(Model& model) {
    for (int i = 0; i < model.N_Node; ++i) {
        model.node[i].flag = role_of(model, i);
    }
}

void turn_found(Model& model, int role) {
    for (int i = 0; i < model.N_Node; ++i) {
        if (model.node[i].flag == role_found) {
            model.node[i].flag = role;
        }
    }
}

} // namespace kigumi
