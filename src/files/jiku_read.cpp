#include "base/codepage.h"
#include "base/float.h"
#include "base/format.h"
#include "base/message.h"
#include "base/scan.h"
#include "files/jiku.h"
#include "generate/generate.h"
#include "model/members.h"
#include "solid/solid.h"
#include "trace/spy.h"

#include <algorithm>
#include <cfloat>
#include <cmath>
#include <map>

namespace kigumi {

namespace {

constexpr size_t longest_line = 255;
constexpr size_t longest_token = 32;

// Members and volume at one height: the volume summary Youseki.dat.
struct Height {
    float height; // mean z of the members, cm
    int count;
    double volume; // m³
};

class HeightTable {
  public:
    void add(float height, double volume);
    // Writes Youseki.dat into the working directory, for this number of members.
    void save(const fs::path& work_dir, int members);

  private:
    // Heights closer than this are one.
    static constexpr double tolerance = 0.1; // cm

    static bool same_height(float a, float b) {
        // The noise of two rounded values must not make 100.0 and 100.1 one height.
        const double noise = FLT_EPSILON * (std::fabs(a) + std::fabs(b));
        return same_float(a, b) || std::fabs(static_cast<double>(a) - b) < tolerance - noise;
    }
    static double bucket_of(float height) {
        return std::floor(static_cast<double>(height) / tolerance);
    }

    std::vector<Height> heights_;
    std::multimap<double, int> buckets_; // positions of heights by height in tenths
};

void HeightTable::add(float height, double volume) {
    const double bucket = bucket_of(height);
    int first = -1;
    for (auto at = buckets_.lower_bound(bucket - 2);
         at != buckets_.end() && at->first <= bucket + 2; ++at) {
        const bool earlier = first < 0 || at->second < first;
        if (earlier && same_height(heights_[at->second].height, height)) {
            first = at->second;
        }
    }
    if (first < 0) {
        buckets_.emplace(bucket, static_cast<int>(heights_.size()));
        heights_.push_back({height, 1, volume});
        return;
    }
    ++heights_[first].count;
    heights_[first].volume += volume;
}

void HeightTable::save(const fs::path& work_dir, int members) {
    std::stable_sort(heights_.begin(), heights_.end(),
                     [](const Height& a, const Height& b) { return a.height < b.height; });
    // Deliberate: this file alone ends its lines in LF.
    TextWriter out;
    out.text(
        text_format("   部材総数 %5d 高さ区分数 %d\n", members, static_cast<int>(heights_.size())));
    out.text("    No    高さ   部材数 容積　積算値\n");
    double sum = 0.0;
    int no = 0;
    for (const Height& height : heights_) {
        sum += height.volume;
        out.text(text_format(" %5d  %7.1f %5d %7.3f %7.3f\n", ++no, height.height, height.count,
                             height.volume, sum));
    }
    // Every reading makes it again, so nobody waits for the disk.
    std::string reason;
    if (save_file(work_file(work_dir, "Youseki.dat"), out.bytes(), &reason, Sync::no) < 0) {
        show_message("Error: Unable to open YOUSEKI_FILE", reason);
    }
}

bool is_blank(char c) {
    return c == ' ' || c == '\t';
}

std::string_view without_blanks(std::string_view line) {
    while (!line.empty() && is_blank(line.front())) {
        line.remove_prefix(1);
    }
    while (!line.empty() && is_blank(line.back())) {
        line.remove_suffix(1);
    }
    return line;
}

class Reader {
  public:
    Reader(Model& model, Solids& solids, std::string_view bytes)
        : model_(model), solids_(solids), lines_(bytes) {}
    int read(const fs::path& work_dir, std::string* reason);

  private:
    enum class Outcome { go_on, end, failed };

    Outcome take(std::string_view line);
    void take_comment(std::string_view line);
    bool add_straight(std::string_view line);
    bool add_round(std::string_view line);
    int add_member(std::string_view line);
    bool expand_unit(std::string_view line);
    bool refuse(const char* what) const {
        show_message(text_format("%d 行目: %s", lines_.number(), what));
        return false;
    }

    Model& model_;
    Solids& solids_;
    LineReader lines_;
    HeightTable heights_;
    int group_ = kind_none;
};

int Reader::read(const fs::path& work_dir, std::string* reason) {
    std::string_view line;
    Outcome outcome = Outcome::go_on;
    while (outcome == Outcome::go_on && lines_.next(line)) {
        outcome = take(line);
    }
    if (outcome == Outcome::failed) {
        if (reason != nullptr) {
            *reason = text_format("%d 行目", lines_.number());
        }
        return -1;
    }
    if (model_.N_Beam == 0) {
        show_message("部材の行がありません");
        return -1;
    }
    heights_.save(work_dir, model_.N_Beam);
    return model_.N_Beam;
}

Reader::Outcome Reader::take(std::string_view line) {
    line = without_blanks(line);
    if (line.empty()) {
        return Outcome::go_on;
    }
    if (line.starts_with("999")) {
        return Outcome::end;
    }
    if (line.starts_with("//")) {
        take_comment(line);
        return Outcome::go_on;
    }
    const std::string_view token = line.substr(0, line.find_first_of(" \t"));
    if (token.size() > longest_token) {
        show_message("最初の文字は '1' or '2'  or '3' or '999'");
        return Outcome::failed;
    }
    int kind = 0;
    if (!parse_number(token, kind) || kind < 1 || kind > 3) {
        show_message("最初の文字は '1' or '2' or '3' or '999'");
        return Outcome::failed;
    }
    if (line.size() > longest_line) {
        refuse("行が長すぎます（最大 255 文字）");
        return Outcome::failed;
    }
    const bool good = kind == 1   ? add_straight(line)
                      : kind == 2 ? expand_unit(line)
                                  : add_round(line);
    return good ? Outcome::go_on : Outcome::failed;
}

// A group label tells the category of the members after it; other comments are passed over.
void Reader::take_comment(std::string_view line) {
    if (line.size() > longest_line) {
        return;
    }
    const auto text = from_cp932(line);
    for (int kind = 0; text && kind < kind_count; ++kind) {
        if (*text == kind_label(kind)) {
            group_ = kind;
        }
    }
}

// Reads the type and eight numbers and appends the member; its position, or -1.
int Reader::add_member(std::string_view line) {
    Scanner scan(line);
    int type = 0;
    float value[8];
    bool good = scan.next(type);
    for (float& number : value) {
        good = good && scan.next(number);
    }
    if (!good) {
        refuse("座標 6 個と巾・厚みの数値が必要です");
        return -1;
    }
    const int at = append_beam(model_, {value[0], value[1], value[2]},
                               {value[3], value[4], value[5]}, value[6], value[7], group_, 0);
    if (at >= 0) {
        widen_bounds(solids_, value[0], value[1], value[2]);
        widen_bounds(solids_, value[3], value[4], value[5]);
    }
    return at;
}

bool Reader::add_straight(std::string_view line) {
    const int at = add_member(line);
    if (at < 0) {
        return false;
    }
    const Beam& beam = model_.beam[at];
    const double mean = (static_cast<double>(beam.zs) + beam.zl) * 0.5;
    heights_.add(round_once(mean), beam_volume(beam));
    return true;
}

// A circular member: its width is the diameter.
bool Reader::add_round(std::string_view line) {
    const int at = add_member(line);
    if (at < 0) {
        return false;
    }
    const Beam& beam = model_.beam[at];
    return make_enchu2(solids_, beam.xs, beam.ys, beam.zs, beam.xl, beam.yl, beam.zl,
                       beam.haba * 0.5f, beam.atumi) >= 0;
}

bool Reader::expand_unit(std::string_view line) {
    return bunkai_shazai(model_, solids_, line) >= 0;
}

} // namespace

int load_jiku_data(Model& model, Solids& solids, const fs::path& work_dir, const fs::path& path,
                   std::string* reason) {
    spy("Enter load_jiku_data()");
    const auto bytes = read_file(path, reason);
    if (!bytes) {
        return -1;
    }
    std::string_view text = *bytes;
    constexpr std::string_view utf8_mark = "\xEF\xBB\xBF";
    if (text.starts_with(utf8_mark)) {
        text.remove_prefix(utf8_mark.size());
    }
    reset_bounds(solids);
    return Reader(model, solids, text).read(work_dir, reason);
}

} // namespace kigumi
