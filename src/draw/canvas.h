// What a picture is drawn on. A picture function knows nothing else of screens, files or printers.
#pragma once

#include "draw/pen.h"
#include "draw/projection.h"

#include <span>
#include <vector>

namespace kigumi {

// Draws in plane units (cm of the projection plane); marks have their size in pixels.
class Canvas {
  public:
    virtual ~Canvas() = default;

    // The window through which the plane is seen from now on. A picture calls it after its fit and
    // before it draws. Its client size is what the canvas was asked to show.
    virtual void set_area(const DrawArea& area) = 0;
    // How many times larger than the picture's own fit the plane is shown. Labels divide their
    // height by it, so that zooming in parts them.
    virtual float zoom() const { return 1.0f; }
    // False where a label at this plane point could not be seen, so that it need not be drawn.
    virtual bool shows(float, float) const { return true; }
    // Style by PenStyle, width in pixels, colour by PenColour.
    virtual void set_pen(int style, int width, int colour) = 0;
    virtual void move(float X, float Y) = 0;
    virtual void line(float X, float Y) = 0;
    // Marks around a plane point; `half` is the radius or half side in pixels.
    virtual void circle(float X, float Y, int half, bool filled) = 0;
    virtual void square(float X, float Y, int half, bool filled) = 0;
    // A closed polygon, filled in the pen's colour.
    virtual void polygon(std::span<const PlanePoint> points) = 0;
};

// A canvas of pixels: maps plane points by to_screen and leaves out what cannot be mapped.
class PixelCanvas : public Canvas {
  public:
    void set_area(const DrawArea& area) override { area_ = area; }
    void move(float X, float Y) override;
    void line(float X, float Y) override;
    void circle(float X, float Y, int half, bool filled) override;
    void square(float X, float Y, int half, bool filled) override;
    void polygon(std::span<const PlanePoint> points) override;

  protected:
    struct Pixel {
        int x, y;
    };
    virtual void draw_line(Pixel from, Pixel to) = 0;
    virtual void draw_circle(Pixel centre, int half, bool filled) = 0;
    virtual void draw_square(Pixel centre, int half, bool filled) = 0;
    virtual void draw_polygon(std::span<const Pixel> points) = 0;

    DrawArea area_;

  private:
    Pixel at_{0, 0};
    bool at_valid_ = false;
};

// A line in the projection plane, cm; the record of the segment file TEMP.DAT.
struct Segment {
    float X1, Y1, X2, Y2;
};
static_assert(sizeof(Segment) == 16);

// Collects a picture's lines in plane units (marks and pens are dropped).
class SegmentCanvas : public Canvas {
  public:
    void set_area(const DrawArea& area) override { area_ = area; }
    void set_pen(int style, int width, int colour) override;
    void move(float X, float Y) override { at_ = {X, Y}; }
    void line(float X, float Y) override;
    void circle(float X, float Y, int half, bool filled) override;
    void square(float X, float Y, int half, bool filled) override;
    void polygon(std::span<const PlanePoint> points) override;

    const DrawArea& area() const { return area_; }
    const std::vector<Segment>& segments() const { return segments_; }

  private:
    DrawArea area_;
    PlanePoint at_{0, 0};
    bool visible_ = true;
    std::vector<Segment> segments_;
};

} // namespace kigumi
