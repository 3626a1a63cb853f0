#include "model/roles.h"

#include "model/lookup.h"

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

template <class Table> void remove_record(Table& table, std::int32_t& count, int at) {
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

int role_of(int node) {
    const int flag = model.node[node].flag;
    return flag == role_found ? model.found_role[node] : flag;
}

bool any_role() {
    for (int i = 0; i < model.N_Node; ++i) {
        if (role_of(i) != role_plain) {
            return true;
        }
    }
    return false;
}

void clear_roles() {
    for (int i = 0; i < model.N_Node; ++i) {
        model.node[i].flag = role_plain;
    }
    model.N_Fix = model.N_Load = 0;
    model.fix_load_edited = 0;
}

void pick_role(int node, int role) {
    std::int32_t& flag = model.node[node].flag;
    std::int32_t& shown = flag == role_found ? model.found_role[node] : flag;
    shown = shown == role ? role_plain : role;
}

int put_fix(int node, int ix, int iy, int iz) {
    const int no = number_at(node);
    const int code[3] = {ix != 0 ? 1 : 0, iy != 0 ? 1 : 0, iz != 0 ? 1 : 0};
    const int at = find_fix(no);
    if (at >= 0) {
        Fix& fix = model.fix[at];
        fix.ix = code[0];
        fix.iy = code[1];
        fix.iz = code[2];
    } else if (append_fix(no, code[0], code[1], code[2]) < 0) {
        return -1;
    }
    delete_load(find_load(no));
    model.node[node].flag = role_fixed;
    return 0;
}

int put_load(int node, float fx, float fy, float fz) {
    const int no = number_at(node);
    const int at = find_load(no);
    if (at >= 0) {
        Load& load = model.load[at];
        load.fx = fx;
        load.fy = fy;
        load.fz = fz;
    } else if (append_load(no, fx, fy, fz) < 0) {
        return -1;
    }
    delete_fix(find_fix(no));
    model.node[node].flag = role_loaded;
    return 0;
}

void delete_fix(int at) {
    remove_record(model.fix, model.N_Fix, at);
}

void delete_load(int at) {
    remove_record(model.load, model.N_Load, at);
}

int find_fix(int no) {
    return find_record(model.fix, model.N_Fix, no);
}

int find_load(int no) {
    return find_record(model.load, model.N_Load, no);
}

void set_all_loads(float fx, float fy, float fz) {
    for (int i = 0; i < model.N_Load; ++i) {
        Load& load = model.load[i];
        load.fx = fx;
        load.fy = fy;
        load.fz = fz;
    }
}

int find_node_id(std::string_view text) {
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

LevelRanges all_levels() {
    return {{{0, model.N_X - 1}, {0, model.N_Y - 1}, {0, model.N_Z - 1}}};
}

int find_nodes(const LevelRanges& ranges) {
    forget_found();
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

void forget_found() {
    for (int i = 0; i < model.N_Node; ++i) {
        model.node[i].flag = role_of(i);
    }
}

void turn_found(int role) {
    for (int i = 0; i < model.N_Node; ++i) {
        if (model.node[i].flag == role_found) {
            model.node[i].flag = role;
        }
    }
}

} // namespace kigumi
