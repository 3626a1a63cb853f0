// Cuts the edges of a scene into hidden and seen pieces.
#pragma once

#include "sight/hidden_line.h"
#include "sight/sight_scene.h"

namespace kigumi::hidden_line {

// A piece of the scene's edge `edge` (0-based) that the eye sees.
struct SeenPiece {
    int edge;
    Piece piece;
};

// What is seen of all edges, in their order and from start to end: what no body hides. Hidden
// pieces that overlap or lie no more than `tolerance` cm apart are one, and seen pieces with no
// more than that hidden between them too. With `threads` threads; the pieces do not depend on how
// many. Nothing when `progress` stopped the work.
std::optional<std::vector<SeenPiece>> seen_pieces(const Scene& scene, double tolerance, int threads,
                                                  const Progress& progress);

} // namespace kigumi::hidden_line
