// The canvas that every screen, PNG, SVG and PDF picture is painted on.
#pragma once

#include "draw/canvas.h"

#include <QLine>
#include <QPainter>
#include <QVector>

namespace kigumi {

// The colour of a pen number (PenColour).
QColor colour_of(int index);

// Paints on a QPainter. Lines are collected as long as the pen stays the same and are drawn in one
// call; flush() (or the end of the canvas) draws the rest.
class PainterCanvas : public PixelCanvas {
  public:
    explicit PainterCanvas(QPainter& painter) : painter_(painter) {}
    ~PainterCanvas() override { flush(); }
    PainterCanvas(const PainterCanvas&) = delete;
    PainterCanvas& operator=(const PainterCanvas&) = delete;

    void set_pen(int style, int width, int colour) override;
    void flush();
    // What the lines so far were painted on, for what no canvas draws (the legend's letters).
    QPainter& painter() {
        flush();
        return painter_;
    }

  protected:
    void draw_line(Pixel from, Pixel to) override;
    void draw_circle(Pixel centre, int half, bool filled) override;
    void draw_square(Pixel centre, int half, bool filled) override;
    void draw_polygon(std::span<const Pixel> points) override;

  private:
    void use_pen(bool filled);

    QPainter& painter_;
    int style_ = pen_solid;
    int width_ = 1;
    int colour_ = colour_black;
    QVector<QLine> lines_;
};

} // namespace kigumi
