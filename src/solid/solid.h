// Solid members: triangles of boxes and prisms, the triangle file TRIO.DAT and the point table.
//
// Triangles and points belong to one model: who replaces the model empties them (reset_solids,
// clear_points).
#pragma once

#include "base/files.h"
#include "base/float_index.h"
#include "draw/projection.h"

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace kigumi {

struct ViewCoefficients;

// One triangle, as TRIO.DAT holds it (little-endian). Bytes that the builders do not set are zero.
struct Trio {
    std::int32_t no;          // 1-based triangle number
    std::int32_t hyoji;       // visible edges: 4 vertex 1-2, 2 vertex 2-3, 1 vertex 3-1
    float vertex[3][3];       // x, y, z of the three vertices, cm
    std::int32_t bangou[3];   // point-table numbers of the vertices
    unsigned char work1[104]; // working area of the perspective picture
    double plane[3][2];       // perspective plane coordinates of the vertices
    unsigned char work2[64];
};
static_assert(sizeof(Trio) == 272);

// The three edges of a triangle in drawing order: the bit of `hyoji` that shows the edge, and the
// vertices (0-based) between which it runs.
struct TrioEdge {
    std::int32_t bit;
    int from, to;
};
constexpr TrioEdge trio_edges[3] = {{4, 0, 1}, {2, 1, 2}, {1, 2, 0}};

// A registered vertex.
struct SolidPoint {
    std::int32_t no;
    float x, y, z; // cm
};

// 14 points a round member.
constexpr int point_capacity = 14 * beam_capacity;

// First position of every place among the first `count` registered points.
struct PointIndex {
    FloatIndex first;
    std::size_t count = 0;
};

// Triangles of the last build, in memory and (after save_trio_file) in TRIO.DAT.
struct Solids {
    std::vector<Trio> trio;
    std::int32_t n_trio = 0;        // records of the last build
    float Volume = 0.0f;            // timber of the last build, m³
    std::vector<SolidPoint> points; // distinct vertices of all builds of this model
    bool saved = false;             // the triangles were written to TRIO.DAT as they are
    std::uint32_t edition = 0;      // grows with every saving
    PointIndex point_index;

    // Bounds of the members read last, or of the solid model (get_jiku_world), cm.
    float X_MIN = 9999.9f, Y_MIN = 9999.9f, Z_MIN = 9999.9f;
    float X_MAX = -9999.9f, Y_MAX = -9999.9f, Z_MAX = -9999.9f;
};

// Widens the bounds (X_MIN ... Z_MAX) by a point, cm.
void widen_bounds(Solids& solids, float x, float y, float z);

// Sets the bounds to +9999.9 (minima) and -9999.9 (maxima).
void reset_bounds(Solids& solids);

// Number of the first registered point exactly equal to (x, y, z), cm; registers it when there is
// none. -1, with a message, when the point table is full.
int register_point(Solids& solids, float x, float y, float z);

// Empties the triangles and Volume; the points stay (a new model clears them: clear_points).
void reset_solids(Solids& solids);
void clear_points(Solids& solids);

// Builders: a box of 12 triangles (width across, depth up, cm); a hexagonal prism of 24 triangles
// (`radius`, cm; `depth` has no meaning for it). They append to `solids` and add to Volume: a box
// its m³; a prism 0.01·length·radius·π, the required figure, linear in the radius. A member without
// length is built along x. -1, with a message, when the point table is full.
int make_kakuzai3(Solids& solids, float xs, float ys, float zs, float xl, float yl, float zl,
                  float width, float depth);
int make_enchu2(Solids& solids, float xs, float ys, float zs, float xl, float yl, float zl,
                float radius, float depth);

// Boxes of all generated members in memory; stops at the first member of width or thickness 0 with
// a console line (its member index).
void make_men(const Model& model, Solids& solids);

// Writes the triangles in memory to TRIO.DAT in the working directory. 0, or -1 after the message
// "Error: Unable to open TRIO_FILE 01".
int save_trio_file(Solids& solids, const fs::path& work_dir);

// Rebuilds TRIO.DAT with a box for every member. 0, or -1 after the same message. When the points
// of this build have no room beside those of earlier builds, the earlier ones are dropped.
int build_trio_file(const Model& model, Solids& solids, const fs::path& work_dir);

// The records that were saved to TRIO.DAT last, from memory: what another program has put into that
// file is never taken for them. Nothing, and no message, when none were saved or they have changed
// since. Valid until the next call of a function that builds.
std::optional<std::span<const Trio>> saved_records(const Solids& solids);

// Number of the records of saved_records, from 1; other records have another one.
std::uint32_t trio_edition(const Solids& solids);

// Sets `plane` of the records of saved_records to the places of their vertices in the perspective
// plane, and writes them to TRIO.DAT. A vertex before the near plane has no
// place and gets 0, 0. 0, or -1 after the message "Error: Unable to open TRIO_FILE 01".
int project_trio_file(Solids& solids, const fs::path& work_dir, const ViewCoefficients& v);

} // namespace kigumi
