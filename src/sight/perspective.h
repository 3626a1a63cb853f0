// The picture of the solids from the viewpoint (視点座標モデル), without the lines that are hidden.
#pragma once

#include "base/files.h"
#include "draw/projection.h"
#include "sight/hidden_line.h"
#include "solid/solid.h"

namespace kigumi {

// Pen colour (PenColour) of the edges of a triangle record (0-based).
using TrioColour = std::function<int(int record)>;

// What the kept lines belong to.
struct PerspectiveKey {
    std::uint32_t edition = 0; // of the triangles; 0: none
    double Rho = 0.0, Theta = 0.0, Phi = 0.0;
    int joints = 0;

    bool same_eye(const PerspectiveKey& k) const {
        return !(Rho < k.Rho || Rho > k.Rho || Theta < k.Theta || Theta > k.Theta || Phi < k.Phi ||
                 Phi > k.Phi);
    }
    bool operator==(const PerspectiveKey& k) const {
        return edition == k.edition && joints == k.joints && same_eye(k);
    }
};

// The lines of a picture from a viewpoint, kept until solids, viewpoint or View::joints change.
struct PerspectiveLines {
    PerspectiveKey key;
    bool complete = false; // hidden lines were removed
    bool preparing = false;
    std::vector<VisibleSegment> lines;
    PlaneBounds bounds{0, 0, 0, 0};
};

// Leaves out the crumbs: pieces of cut edges shorter than `shortest`, plane cm. Whole edges stay.
std::vector<VisibleSegment> without_crumbs(std::span<const VisibleSegment> lines, double shortest);

// The lines of the solids that the eye sees, in the order of the triangles, without crumbs.
std::vector<VisibleSegment> visible_segments(std::span<const Trio> records,
                                             const ViewCoefficients& v, double shortest = 0.0);

// Outcomes of prepare_perspective besides -1.
constexpr int perspective_ready = 0;
constexpr int perspective_stopped = 1;

// Finds the lines of TRIO.DAT that are seen from the eye of `view` and keeps them for
// draw_perspective until solids, viewpoint or View::joints change; nothing is computed again before
// that. The places of the vertices in the perspective plane go into the records
// (project_trio_file). A window calls it before it paints, with its progress display.
// perspective_ready, or perspective_stopped when `progress` stopped it: draw_perspective then shows
// all flagged edges, hidden ones too, until the next call. -1 after the message "Error: Unable to
// open TRIO_FILE jikuire 03" or that of project_trio_file.
int prepare_perspective(const View& view, Solids& solids, PerspectiveLines& perspective,
                        const fs::path& work_dir, const Progress& progress = {});

// What a picture without a line has to say.
constexpr const char* nothing_in_sight = "視点から見える部材がありません";

// True when there are solids, and no line of them is kept: all lie behind the eye.
bool is_nothing_in_sight(const Solids& solids, const PerspectiveLines& perspective);

// The lines last kept; none when they are not of the solids as they now are.
std::span<const VisibleSegment> perspective_lines(const Solids& solids,
                                                  const PerspectiveLines& perspective);

// Draws TRIO.DAT from the eye of `view`: visible segments, margin fit, TEMP.DAT, picture; every
// line black, or in the colour told for its record. Prepares first what is not prepared. Crumbs of
// less than half a pixel are left out, in TEMP.DAT as the fit shows them and in the picture as the
// canvas is zoomed. 0, or -1 after a message of prepare_perspective, that of save_segment_file or,
// when there are triangles and none is before the eye, nothing_in_sight; nothing is
// drawn then. Called while a preparation asks for its progress, it draws the lines last
// kept, or nothing when the solids are not theirs.
int draw_perspective(const View& view, Solids& solids, PerspectiveLines& perspective,
                     const fs::path& work_dir, Canvas& canvas, DrawArea& area,
                     const TrioColour& colour = {});

} // namespace kigumi
