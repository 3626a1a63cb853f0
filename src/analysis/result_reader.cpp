#include "analysis/result_reader.h"

#include "base/codepage.h"
#include "base/float.h"
#include "base/format.h"
#include "base/message.h"
#include "base/scan.h"
#include "trace/spy.h"

#include <algorithm>
#include <cmath>

namespace kigumi {

namespace {

// Reads all items in turn; false at the first that is missing or wrong.
template <class... Items> bool next_all(Scanner& scanner, Items&... items) {
    return (scanner.next(items) && ...);
}

// Reads a name, which the files hold in code page 932, cut to the field.
bool next_name(Scanner& scanner, char (&field)[name_bytes]) {
    std::string_view word;
    if (!scanner.next(word)) {
        return false;
    }
    const auto utf8 = from_cp932(word);
    if (utf8) {
        set_name(field, utf8->c_str());
    }
    return utf8.has_value();
}

// Reads a count and bounds it; `what` names the records in the message.
bool next_count(Scanner& scanner, int capacity, const char* what, int& count) {
    if (!scanner.next(count) || count < 0) {
        return false;
    }
    if (count > capacity) {
        show_message(text_format("%sの数 %d が上限 %d を超えているため読み込めません", what, count,
                                 capacity));
        return false;
    }
    return true;
}

bool next_levels(Scanner& scanner, const char* what, std::vector<float>& values) {
    int count = 0;
    if (!next_count(scanner, level_capacity, what, count)) {
        return false;
    }
    values.resize(count);
    return std::all_of(values.begin(), values.end(),
                       [&scanner](float& value) { return scanner.next(value); });
}

bool next_setuten(Scanner& scanner, Setuten& node) {
    int solver_no = 0;
    return next_all(scanner, solver_no, node.OldNo, node.x, node.y, node.z) &&
           next_name(scanner, node.pname);
}

bool next_stress(Scanner& scanner, Stress& s) {
    int solver_noi = 0;
    int solver_noj = 0;
    const bool good = next_all(scanner, s.no, solver_noi, s.old_noi) &&
                      next_name(scanner, s.iname) && next_all(scanner, solver_noj, s.old_noj) &&
                      next_name(scanner, s.jname) &&
                      next_all(scanner, s.force, s.p1, s.p2, s.xv1, s.xv2, s.yv1, s.yv2) &&
                      next_all(scanner, s.xm1, s.xm2, s.ym1, s.ym2, s.zm);
    s.ym1 = -s.ym1;
    return good;
}

bool next_disp(Scanner& scanner, Disp& d) {
    int solver_no = 0;
    if (!next_all(scanner, solver_no, d.old_no) || !next_name(scanner, d.name) ||
        !next_all(scanner, d.disp_x, d.disp_y, d.disp_z, d.rad_x, d.rad_y, d.rad_z)) {
        return false;
    }
    const double x = d.disp_x;
    const double y = d.disp_y;
    const double z = d.disp_z;
    d.mag = round_once(std::sqrt(x * x + y * y + z * z));
    return std::isfinite(d.mag);
}

// Reads a count and as many records. False as soon as one is wrong.
template <class Record, class Next>
bool next_records(Scanner& scanner, const char* what, std::vector<Record>& records, Next next) {
    int count = 0;
    if (!next_count(scanner, result_capacity, what, count)) {
        return false;
    }
    records.assign(count, Record{});
    return std::all_of(records.begin(), records.end(),
                       [&](Record& record) { return next(scanner, record); });
}

bool place_ends(const SetutenIndex& index, Stress& s) {
    const Setuten* start = index.find(s.iname);
    if (start == nullptr || start->OldNo != s.old_noi) {
        show_message("節点Iが見つかりません");
        return false;
    }
    const Setuten* end = index.find(s.jname);
    if (end == nullptr || end->OldNo != s.old_noj) {
        show_message("節点Jが見つかりません");
        return false;
    }
    s.xi = start->x;
    s.yi = start->y;
    s.zi = start->z;
    s.xj = end->x;
    s.yj = end->y;
    s.zj = end->z;
    return true;
}

// Percent of the largest force for every member; all 0 when no member has a force.
void set_percents(Listing& listing) {
    for (const Stress& s : listing.stress) {
        listing.force_max = std::max(listing.force_max, std::fabs(s.force));
    }
    const double largest = listing.force_max;
    for (Stress& s : listing.stress) {
        s.percent = largest > 0.0
                        ? round_once(std::fabs(static_cast<double>(s.force)) / largest * 100.0)
                        : 0.0f;
    }
}

void store_level(const std::vector<float>& values, Table<float, level_capacity>& table,
                 std::int32_t& count) {
    std::copy(values.begin(), values.end(), table.begin());
    count = static_cast<std::int32_t>(values.size());
}

} // namespace

int parse_levels(std::string_view text, Levels& levels) {
    Scanner scanner(text);
    return next_levels(scanner, "Ｘ座標", levels.x) && next_levels(scanner, "Ｙ座標", levels.y) &&
                   next_levels(scanner, "Ｚ座標", levels.z)
               ? 0
               : -1;
}

int parse_listing(std::string_view text, Listing& listing) {
    Scanner scanner(text);
    listing = {};
    if (!next_records(scanner, "結果の節点", listing.setuten, next_setuten)) {
        return -1;
    }
    std::stable_sort(listing.setuten.begin(), listing.setuten.end(),
                     [](const Setuten& a, const Setuten& b) { return a.OldNo < b.OldNo; });
    const SetutenIndex index(listing.setuten);
    const auto next_member = [&index](Scanner& items, Stress& s) {
        return next_stress(items, s) && place_ends(index, s);
    };
    if (!next_records(scanner, "結果の部材", listing.stress, next_member)) {
        return -1;
    }
    set_percents(listing);
    std::stable_sort(listing.stress.begin(), listing.stress.end(),
                     [](const Stress& a, const Stress& b) { return a.percent > b.percent; });
    return 0;
}

int parse_displacements(std::string_view text, std::vector<Disp>& disp) {
    Scanner scanner(text);
    if (!next_records(scanner, "変位の節点", disp, next_disp)) {
        return -1;
    }
    std::stable_sort(disp.begin(), disp.end(),
                     [](const Disp& a, const Disp& b) { return a.mag > b.mag; });
    return 0;
}

void store_levels(Model& model, const Levels& levels) {
    store_level(levels.x, model.Xval, model.N_X);
    store_level(levels.y, model.Yval, model.N_Y);
    store_level(levels.z, model.Zval, model.N_Z);
}

void store_listing(Result& result, const Listing& listing) {
    std::copy(listing.setuten.begin(), listing.setuten.end(), result.setuten.begin());
    result.N_Setuten = static_cast<std::int32_t>(listing.setuten.size());
    std::copy(listing.stress.begin(), listing.stress.end(), result.stress.begin());
    result.N_Stress = static_cast<std::int32_t>(listing.stress.size());
    result.force_max = listing.force_max;
    result.Nken_Stress = 0;
    ++result.kensaku_edition;
}

void store_displacements(Result& result, const std::vector<Disp>& disp) {
    std::copy(disp.begin(), disp.end(), result.disp.begin());
    result.N_Setuten = static_cast<std::int32_t>(disp.size());
}

void forget_results(Result& result) {
    result.N_Setuten = result.N_Stress = result.Nken_Stress = 0;
    result.force_max = 0.0f;
    result.input = {};
    result.input_file = {};
    result.roles = {};
    ++result.kensaku_edition;
}

int read_frameslv(Result& result, std::string_view text) {
    spy("Enter read_frameslv()");
    Listing listing;
    if (parse_listing(text, listing) < 0) {
        return -1;
    }
    store_listing(result, listing);
    return result.N_Stress;
}

int read_dsp(Result& result, std::string_view text) {
    spy("Enter read_dsp()");
    std::vector<Disp> disp;
    if (parse_displacements(text, disp) < 0) {
        return -1;
    }
    store_displacements(result, disp);
    return 0;
}

std::string_view matched_name(std::string_view name) {
    int characters = 0;
    for (size_t i = 0; i < name.size(); ++i) {
        const bool starts = (static_cast<unsigned char>(name[i]) & 0xC0) != 0x80;
        characters += starts ? 1 : 0;
        if (characters > matched_name_length) {
            return name.substr(0, i);
        }
    }
    return name;
}

SetutenIndex::SetutenIndex(const std::vector<Setuten>& setuten) {
    first_.reserve(setuten.size());
    for (const Setuten& node : setuten) {
        first_.try_emplace(matched_name(node.pname), &node);
    }
}

const Setuten* SetutenIndex::find(std::string_view name) const {
    const auto found = first_.find(matched_name(name));
    return found == first_.end() ? nullptr : found->second;
}

const Setuten* find_setuten(const Result& result, std::string_view name) {
    const auto end = result.setuten.begin() + result.N_Setuten;
    const auto found = std::find_if(result.setuten.begin(), end, [name](const Setuten& node) {
        return matched_name(node.pname) == matched_name(name);
    });
    return found == end ? nullptr : &*found;
}

const Setuten* find_setuten(const Result& result, int no) {
    const auto end = result.setuten.begin() + result.N_Setuten;
    const auto found =
        std::lower_bound(result.setuten.begin(), end, no,
                         [](const Setuten& node, int wanted) { return node.OldNo < wanted; });
    return found == end || found->OldNo != no ? nullptr : &*found;
}

} // namespace kigumi
