// The eye of the perspective picture (視点): the viewing transformation and its plane.
#pragma once

#include "draw/canvas.h"
#include "draw/projection.h"

#include <optional>

namespace kigumi {

// Factors of the viewing transformation. The eye stands `v43` cm from the origin and looks at it.
struct ViewCoefficients {
    double v11, v12, v13;
    double v21, v22, v23;
    double v32, v33;
    double v43;
};

// From the distance Rho, cm, the turn Theta about the vertical and the angle Phi from the vertical,
// degrees; converted with the exact pi, unlike the parallel projection.
ViewCoefficients view_coefficients(double Rho, double Theta, double Phi);

// A point as the eye sees it, cm: xe to the right, ye up, ze away from the eye.
struct EyePoint {
    double xe, ye, ze;
};

EyePoint to_eye(const ViewCoefficients& v, float x, float y, float z);

// Nearest distance from the eye at which anything is drawn, cm: a tenth of the eye's distance from
// the origin, so that nothing is magnified more than tenfold and the fit keeps its sense, and never
// less than 1 cm.
double near_plane(const ViewCoefficients& v);

// The point at this part of the way from a to b.
EyePoint point_between(const EyePoint& a, const EyePoint& b, double part);

// Cuts off the part of the edge a-b before the near plane; false when that is the whole edge.
bool cut_at_near_plane(const ViewCoefficients& v, EyePoint& a, EyePoint& b);

// A point in the perspective plane, which stands at the origin: (xe, ye)·v43 / ze, cm.
PlanePoint to_perspective(const ViewCoefficients& v, const EyePoint& p);

// The edge a-b in the perspective plane, cut off at the near plane.
std::optional<Segment> perspective_edge(const ViewCoefficients& v, EyePoint a, EyePoint b);

// Bounds of plane segments, cm; all 0 when there are none.
PlaneBounds segment_bounds(std::span<const Segment> segments);

} // namespace kigumi
