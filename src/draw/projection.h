// Parallel projection, the fits of plane bounds into a window, and the mapping to pixels.
#pragma once

#include "model/model.h"

#include <vector>

namespace kigumi {

// From where a frame is looked at: what all pictures of one project share.
struct View {
    float TAU = 30.0f; // azimuth of the parallel projection, degrees
    float FAI = 30.0f; // elevation, degrees

    double Rho = 4000.0; // distance of the eye from the origin, cm
    double Theta = 20.0; // turn of the eye about the vertical axis, degrees
    double Phi = 70.0;   // angle of the eye from the vertical, degrees
    int perspective = 0; // 1 once the viewpoint dialog asked for the perspective picture
    int joints = 0;      // 1: the perspective picture has the lines where bars meet (交線)
};

// A point of the projection plane, cm.
struct PlanePoint {
    float X, Y;
};

// Part of the plane shown in a window, plane units (cm).
struct World {
    float xmin = 0, ymin = 0, xmax = 0, ymax = 0;
};

// Pixel rectangle onto which the world window is mapped.
struct Viewport {
    int left = 0, top = 0, right = 0, bottom = 0;
};

// World window, viewport and client size of one drawing window.
struct DrawArea {
    World world;
    Viewport crt;
    int xScreen = 0, yScreen = 0; // client width and height, pixels
};

// Projects a model point, cm, with the angles TAU and FAI in degrees. Deliberate: the angles are
// converted with 3.14159 / 180.
PlanePoint project(float x, float y, float z, float TAU, float FAI);
// The same with the angles of `view`.
PlanePoint project(const View& view, float x, float y, float z);

// The same projection with its four factors computed once.
class Projector {
  public:
    Projector(float TAU, float FAI);
    PlanePoint operator()(float x, float y, float z) const;

  private:
    long double cos_t_, sin_t_, cos_f_, sin_f_;
};

// Plane bounds in the making, with the start values of a rule.
struct PlaneBounds {
    float xmin, ymin, xmax, ymax;
    void widen(PlanePoint p);
};

// Start values of the square fit. Deliberate: ymax starts at -999.9, not -9999.9.
constexpr PlaneBounds square_fit_start{9999.9f, 9999.9f, -9999.9f, -999.9f};
// Start values of the aspect fit of the result pictures.
constexpr PlaneBounds aspect_fit_start{999.9f, 999.9f, -999.9f, -999.9f};

// A model as a picture shows it: the plane points of the nodes and of the members' ends, by
// position, and the bounds of the nodes. A picture keeps one of its own, and picking in it reads
// it.
struct PlanarModel {
    std::vector<PlanePoint> node, start, end;
    PlaneBounds bounds = square_fit_start;
};

// Projects all nodes and members with the angles of `view`.
PlanarModel project_model(const Model& model, const View& view);

// Position of the first node that lies closer to the plane point than `radius`, or -1.
int find_plane_node(const PlanarModel& plane, PlanePoint at, float radius);

// Takes the projected points as the places on the drawing sheet (X, Y of the nodes, XS ... YL of
// the members): for commands that make a sketch of a model, never for a picture. The model is the
// one that was projected.
void place_on_sheet(Model& model, const PlanarModel& plane);

// The three fits. Each reads the client size of `area` and sets its world window and viewport.
void square_fit(DrawArea& area, const PlaneBounds& bounds);
void aspect_fit(DrawArea& area, const PlaneBounds& bounds);
void margin_fit(DrawArea& area, const PlaneBounds& bounds);

// Fits the window around the projected nodes (square fit).
void get_new_world(const PlanarModel& plane, DrawArea& area);
// Fits the window around given plane bounds (margin fit).
void get_world(DrawArea& area, float xmin, float ymin, float xmax, float ymax);

// True when the world window has a finite width and height, so that it can be mapped to pixels.
bool can_map(const DrawArea& area);

// Pixel of a plane point, truncated towards zero. False, and no pixel, when the window cannot be
// mapped or the pixel is out of any screen's reach.
bool to_screen(const DrawArea& area, float X, float Y, int& px, int& py);

// Plane point of a pixel; the inverse of to_screen.
PlanePoint to_plane(const DrawArea& area, int px, int py);

} // namespace kigumi
