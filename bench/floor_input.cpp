// Writes the solver's input of a space floor of any size on columns: a lattice of CELLS x CELLS
// cells with braced faces, on clusters of three columns under its corners, feet held, 200 kgf down
// on every node of the top layer. The frame is the modeller's own floor on type I columns, without
// the limits of its tables: 8 n^2 + 32 n + 96 members.
#include <charconv>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <unordered_map>
#include <vector>

namespace {

constexpr double pitch = 90.0;          // cm, of a cell
constexpr double floor_depth = 45.0;    // cm
constexpr double lowest = 50.0;         // cm, level of the feet
constexpr double column_height = 240.0; // cm
constexpr double top_load = -200.0;     // kgf on each node of the top layer
constexpr int quarters = 4;             // levels of a column: feet, quarter points, bottom layer
constexpr int bottom = quarters;
constexpr int top = quarters + 1;

// A place in half pitches and levels.
struct Place {
    int x, y, level;
};

struct Section {
    double width;
};
constexpr Section sections[] = {{12.0}, {12.0}, {10.0}, {9.0}, {9.0}};
enum Kind { column = 0, frame = 1, chord = 2, diagonal = 3, brace = 4 };

struct Member {
    int noi, noj, section;
};

double level_at(int level) {
    if (level == top)
        return lowest + column_height + floor_depth;
    return lowest + column_height * level / quarters;
}

class Floor {
  public:
    explicit Floor(int cells) : cells_(cells), far_(2 * cells) {
        lattice();
        faces();
        for (int corner = 0; corner < 4; corner++)
            cluster(corner);
    }
    std::string text() const;

  private:
    void lattice();
    void faces();
    void cluster(int corner);
    void add(Kind kind, Place i, Place j) { member_.push_back({node(i), node(j), kind + 1}); }
    // A member of a face along x, and its twin along y.
    void add_both(Kind kind, Place i, Place j) {
        add(kind, i, j);
        add(kind, {i.y, i.x, i.level}, {j.y, j.x, j.level});
    }
    int node(Place at) {
        const long long key =
            (static_cast<long long>(at.x) * (far_ + 1) + at.y) * (top + 1) + at.level;
        const auto [found, added] = number_.try_emplace(key, static_cast<int>(place_.size()) + 1);
        if (added)
            place_.push_back(at);
        return found->second;
    }
    std::string name(int no) const;

    int cells_;
    int far_; // the far edge, in half pitches
    std::vector<Place> place_;
    std::vector<Member> member_;
    std::unordered_map<long long, int> number_;
};

void Floor::lattice() {
    for (int line = 1; line < far_; line += 2)
        for (int k = 0; k <= cells_; k++)
            add_both(chord, {k == 0 ? 0 : 2 * k - 1, line, top},
                     {k == cells_ ? far_ : 2 * k + 1, line, top});
    for (int line = 2; line < far_; line += 2)
        for (int k = 0; k < cells_; k++)
            add_both(chord, {2 * k, line, bottom}, {2 * k + 2, line, bottom});
    for (int i = 1; i < far_; i += 2)
        for (int j = 1; j < far_; j += 2)
            for (const int dx : {-1, 1})
                for (const int dy : {-1, 1})
                    add(diagonal, {i, j, top}, {i + dx, j + dy, bottom});
}

void Floor::faces() {
    for (const int side : {0, far_})
        for (int k = 0; k < far_; k++) {
            add_both(frame, {k, side, top}, {k + 1, side, top});
            add_both(frame, {k, side, bottom}, {k + 1, side, bottom});
            const bool rises = k % 2 == 0;
            add_both(brace, {k, side, rises ? bottom : top}, {k + 1, side, rises ? top : bottom});
            if (k > 0)
                add_both(brace, {k, side, top}, {k, side, bottom});
        }
    for (const int x : {0, far_})
        for (const int y : {0, far_})
            add(frame, {x, y, bottom}, {x, y, top});
}

void Floor::cluster(int corner) {
    const int x = corner % 2 == 0 ? 0 : far_;
    const int y = corner / 2 == 0 ? 0 : far_;
    const int inward_x = x == 0 ? 1 : -1;
    const int inward_y = y == 0 ? 1 : -1;
    const auto on = [&](int along_x, int along_y, int level) -> Place {
        return {x + inward_x * along_x, y + inward_y * along_y, level};
    };
    for (const int level : {0, 2}) {
        add(column, on(0, 0, level), on(0, 0, level + 2));
        add(column, on(2, 0, level), on(2, 0, level + 2));
        add(column, on(0, 2, level), on(0, 2, level + 2));
        // An X over half the height, crossing half a pitch away at the quarter point.
        for (const int end : {level, level + 2}) {
            for (const int along : {0, 2}) {
                add(column, on(1, 0, level + 1), on(along, 0, end));
                add(column, on(0, 1, level + 1), on(0, along, end));
            }
        }
    }
    add(column, on(0, 0, 2), on(2, 0, 2));
    add(column, on(0, 0, 2), on(0, 2, 2));
}

std::string Floor::name(int no) const {
    const Place& at = place_[static_cast<size_t>(no) - 1];
    char word[40];
    if (far_ < 100)
        std::snprintf(word, sizeof word, "X%02dY%02dZ%02d", at.x, at.y, at.level);
    else
        std::snprintf(word, sizeof word, "N%08d", no);
    return word;
}

std::string Floor::text() const {
    std::string text;
    char line[200];
    const auto put = [&](const char* format, auto... values) {
        text.append(line, static_cast<size_t>(std::snprintf(line, sizeof line, format, values...)));
        text += "\r\n";
    };
    for (int axis = 0; axis < 2; axis++) {
        put(" %5d", far_ + 1);
        for (int k = 0; k <= far_; k++)
            put(" %12.5e", k * pitch / 2.0);
    }
    put(" %5d", top + 1);
    for (int level = 0; level <= top; level++)
        put(" %12.5e", level_at(level));
    put(" %5zu %5zu", place_.size(), member_.size());
    for (size_t i = 0; i < member_.size(); i++) {
        const Member& m = member_[i];
        put(" %5zu %5d %5d %5d %5d %10.1f %9s %9s", i + 1, m.noi, m.noj, m.section, 1, 0.0,
            name(m.noi).c_str(), name(m.noj).c_str());
    }
    put(" %5zu", std::size(sections));
    for (size_t i = 0; i < std::size(sections); i++) {
        const double a = sections[i].width;
        const double I = a * a * a * a / 12.0;
        put(" %5zu %9.3e %9.3e %9.3e %9.3e", i + 1, I, I, a * a, 0.141 * a * a * a * a);
    }
    put(" %5d", 1);
    put(" %5d %9.3e %9.3e %9.3e", 1, 1e5, 0.3, 5e-4);
    size_t feet = 0, loads = 0;
    put(" %5zu", place_.size());
    for (size_t i = 0; i < place_.size(); i++) {
        const Place& at = place_[i];
        put(" %5zu %9.1f %9.1f %9.1f %9s", i + 1, at.x * pitch / 2.0, at.y * pitch / 2.0,
            level_at(at.level), name(static_cast<int>(i) + 1).c_str());
        feet += at.level == 0;
        loads += at.level == top;
    }
    put(" %5zu", feet);
    for (size_t i = 0; i < place_.size(); i++)
        if (place_[i].level == 0)
            put(" %5zu,111111", i + 1);
    put(" %5zu", loads);
    for (size_t i = 0; i < place_.size(); i++)
        if (place_[i].level == top)
            put(" %9s,%5zu,%10.1f,%10.1f,%10.1f,%10.1f,%10.1f,%10.1f",
                name(static_cast<int>(i) + 1).c_str(), i + 1, 0.0, 0.0, top_load, 0.0, 0.0, 0.0);
    return text;
}

} // namespace

int main(int argc, char** argv) {
    const int cells = argc == 2 ? std::atoi(argv[1]) : 0;
    if (cells < 2) {
        std::fputs("usage: floor_input CELLS > FRAMESLV.IN\n", stderr);
        return 2;
    }
    const std::string text = Floor(cells).text();
    return std::fwrite(text.data(), 1, text.size(), stdout) == text.size() ? 0 : 1;
}
