// The drawing sheet of the hand-drawn editor without its window: what presses and releases of the
// mouse do to the nodes and members of the model.
//
// Sheet units are pixels of an unmagnified sheet, Y upwards. A node is born where an end is placed
// farther than the snap radius from every node (flag 0), is used once a later end snaps to it
// (flag 1) and is known once its place in space was entered (flag 2). A member is begun by its
// first end (flag 0, not counted), counted with its second (flag 1) and finished once its section
// was entered (flag 2).
#pragma once

#include "model/model.h"

#include <optional>
#include <vector>

namespace kigumi {

struct SheetPoint {
    float X, Y;
};

// The old-node table: the kept sheet positions of the nodes, while the model is viewed from
// elsewhere.
struct SketchPlaces {
    // 1 while the table holds kept positions: after save_old_node on at least one node, and after a
    // file was read. 0 at start and after forget_old_node.
    std::int32_t OnSaveOld = 0;
    Table<SheetPoint, node_capacity> old_node;
    std::int32_t N_OldNode = 0;
};

// x, y and z of a node whose place is not known yet, cm.
constexpr float unknown_place = -1.0f;

// Section of a new member, cm.
constexpr float new_beam_haba = 12.0f;
constexpr float new_beam_atumi = 12.0f;

// True while a node waits for its place or a member for its section. A deletion can leave a node
// with flag 2 whose place was never entered; it counts as missing all the same.
bool is_missing(const Node& node);
bool is_missing(const Beam& beam);

// Nodes and members, and how many of them are missing their data.
struct SketchCount {
    int nodes, missing_nodes, beams, missing_beams;
    bool is_finished() const { return beams > 0 && missing_nodes == 0 && missing_beams == 0; }
};
SketchCount count_sketch(const Model& model);

// True when every node has flag 2, and there is one.
bool all_nodes_known(const Model& model);

// Position of the first member whose sheet line crosses the line from (x1, y1) to (x2, y2), ends
// included, or -1; `at` is then the crossing. A member parallel to the line is not crossed.
int search_cross_beam(const Model& model, float x1, float y1, float x2, float y2, SheetPoint& at);

// Position of the first member that is a point on the sheet, and so is never crossed, within the
// snap radius of the line; or -1.
int search_point_beam(const Model& model, SheetPoint from, SheetPoint to);

// Position of the member whose sheet line lies closest to (X, Y) and closer than `radius`, or -1.
int search_near_beam(const Model& model, float X, float Y, float radius);

// Gives the node at position `node` its place, cm: flag 2, and its members follow.
void set_node_place(Model& model, int node, float x, float y, float z);

// Gives the member at position `beam` a section, cm, in place of what was changed of it, and
// flag 2.
void set_beam_section(Model& model, int beam, float haba, float atumi);

// What the mouse is for.
enum class SheetMode { draw, remove, node_data, beam_data };

// Marks left by the last command, around a place of the sheet.
enum class MarkKind {
    new_node,      // an end made a node
    snapped,       // an end took a node of unknown place
    snapped_known, // an end took a node of known place
    second_end,    // where the second end was pressed
    picked,        // the node whose data is asked for
};
struct SheetMark {
    MarkKind kind;
    SheetPoint at;
};

// What a release did, or asks the window to do.
enum class SheetEvent {
    none,
    first_end, // a member was begun
    drawn,     // a member was finished and counted: `at` is its position
    removed,   // a member was deleted
    ask_node,  // the data of the node at position `at` is wanted
    ask_beam,  // the data of the member at position `at` is wanted
};
struct SheetOutcome {
    SheetEvent event = SheetEvent::none;
    int at = -1;
};

// The state of the sheet between the events of the mouse.
class TegakiSheet {
  public:
    // Draws into this model, which lives longer.
    explicit TegakiSheet(Model& model) : model_(model) {}

    static constexpr int left_button = 1;
    static constexpr int right_button = 2;

    // Gives up what is half done and changes to another mode.
    void set_mode(SheetMode mode);
    SheetMode mode() const;

    void press(int button, SheetPoint at);
    // Only a single press of the left button acts. A miss is told by its message; the model is then
    // as before.
    SheetOutcome release(SheetPoint at);

    // Where the rubber band to the pointer begins, while there is one.
    std::optional<SheetPoint> band() const;
    // True while a line across the members is being dragged, to delete or edit one.
    bool is_crossing() const { return iMouse == 1 && (OnBuzaiSakujyo == 1 || OnBuzaiData == 1); }

    bool is_half_drawn() const { return OnBuzaiShitei == 2; }
    // The node that giving up would take back: counted, but of no member yet.
    bool has_loose_node() const { return is_half_drawn() && first_.made; }
    // Gives up the half-drawn member, with its first node where that was made for it, and a press
    // whose release is still to come: that release does nothing. False when there was neither.
    bool give_up();
    // Only the press; false when there was none that acts.
    bool drop_press();

    const std::vector<SheetMark>& marks() const { return marks_; }
    void clear_marks() { marks_.clear(); }

  private:
    // An end of a member at a node that was there or made.
    struct End {
        int node = -1; // position
        bool made = false;
        int old_flag = 0; // of a node that was there
    };
    End place_end(SheetPoint at);
    SheetOutcome place_first_end();
    SheetOutcome place_second_end();
    SheetOutcome cross(SheetPoint from, SheetPoint to);
    SheetOutcome pick_node(SheetPoint at);

    Model& model_;
    int iMouse = 0;        // presses since the last release: +1 left, +2 right
    int OnBuzaiShitei = 1; // 1 the first end is waited for, 2 the second, 0 another mode
    int OnBuzaiSakujyo = 0;
    int OnSetutenData = 0;
    int OnBuzaiData = 0;
    SheetPoint press_{0, 0};
    SheetPoint band_{0, 0};
    End first_;
    std::vector<SheetMark> marks_;
};

} // namespace kigumi
