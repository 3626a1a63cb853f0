#include "ui/picture/viewpoint_diagram.h"

#include "draw/projection.h"

#include <QPainter>
#include <QPainterPath>

#include <cmath>
#include <numbers>

namespace kigumi {

namespace {

// The drawing's own view and eye, chosen so that nothing overlaps; lengths in parts of the axes.
constexpr float view_tau = 25.0f;
constexpr float view_fai = 25.0f;
constexpr double eye_theta = 60.0;
constexpr double eye_phi = 48.0;
constexpr double eye_rho = 1.5;
constexpr double theta_radius = 0.45;
constexpr double phi_radius = 0.6;

struct Space {
    double x, y, z;
};

// The point at this distance from the origin in the direction of the angles, degrees.
Space at_angles(double rho, double theta, double phi) {
    const double t = theta * std::numbers::pi / 180.0;
    const double p = phi * std::numbers::pi / 180.0;
    return {rho * std::sin(p) * std::cos(t), rho * std::sin(p) * std::sin(t), rho * std::cos(p)};
}

class DiagramPainter {
  public:
    DiagramPainter(QPainter& painter, QSize size, const QPalette& palette)
        : painter_(painter), palette_(palette), size_(size),
          unit_(0.48 * std::min(size.width(), size.height())) {}

    void draw();

  private:
    QPointF at(Space s) const;
    void line(Space from, Space to) { painter_.drawLine(at(from), at(to)); }
    void axis(Space end, const QString& name);
    void arc(double radius, Space (*point)(double radius, double part));
    void name(Space place, QPointF by, const QString& text);
    void use(const QColor& colour, double width, Qt::PenStyle style = Qt::SolidLine);

    QPainter& painter_;
    const QPalette& palette_;
    QSize size_;
    double unit_;
};

QPointF DiagramPainter::at(Space s) const {
    const PlanePoint p = project(static_cast<float>(s.x), static_cast<float>(s.y),
                                 static_cast<float>(s.z), view_tau, view_fai);
    return {size_.width() * 0.34 + p.X * unit_, size_.height() * 0.58 - p.Y * unit_};
}

void DiagramPainter::use(const QColor& colour, double width, Qt::PenStyle style) {
    painter_.setPen(QPen(colour, width, style));
}

// Centred on the place moved by `by`, which counts in text heights.
void DiagramPainter::name(Space place, QPointF by, const QString& text) {
    const QFontMetricsF metrics(painter_.font());
    const QPointF centre = at(place) + by * metrics.height();
    painter_.drawText(centre - metrics.boundingRect(text).center(), text);
}

void DiagramPainter::axis(Space end, const QString& name_of_axis) {
    use(palette_.color(QPalette::Text), 1.2);
    const QPointF tip = at(end);
    line({0, 0, 0}, end);
    const QPointF back = at({0, 0, 0}) - tip;
    const QPointF along = back / std::hypot(back.x(), back.y()) * 9.0;
    const QPointF across(-along.y() * 0.35, along.x() * 0.35);
    painter_.setBrush(palette_.color(QPalette::Text));
    painter_.drawPolygon(QPolygonF{tip, tip + along + across, tip + along - across});
    painter_.setBrush(Qt::NoBrush);
    painter_.drawText(tip - along * 1.4 - QFontMetricsF(painter_.font()).boundingRect("X").center(),
                      name_of_axis);
}

void DiagramPainter::arc(double radius, Space (*point)(double radius, double part)) {
    constexpr int steps = 24;
    QPainterPath path(at(point(radius, 0.0)));
    for (int i = 1; i <= steps; ++i) {
        path.lineTo(at(point(radius, static_cast<double>(i) / steps)));
    }
    painter_.drawPath(path);
}

void DiagramPainter::draw() {
    const Space origin{0, 0, 0};
    const Space eye = at_angles(eye_rho, eye_theta, eye_phi);
    const Space foot{eye.x, eye.y, 0};
    axis({1.15, 0, 0}, "X");
    axis({0, 1.15, 0}, "Y");
    axis({0, 0, 1.15}, "Z");

    const QColor thin = palette_.color(QPalette::Disabled, QPalette::Text);
    use(thin, 1, Qt::DashLine);
    line(origin, foot);
    line(foot, eye);

    const QColor ink = palette_.color(QPalette::Highlight);
    use(ink, 2);
    line(origin, eye);
    use(ink, 1.5);
    arc(theta_radius,
        [](double radius, double part) { return at_angles(radius, part * eye_theta, 90.0); });
    arc(phi_radius,
        [](double radius, double part) { return at_angles(radius, eye_theta, part * eye_phi); });
    painter_.setBrush(ink);
    painter_.drawEllipse(at(eye), 4.5, 4.5);
    painter_.setBrush(Qt::NoBrush);

    use(palette_.color(QPalette::Text), 1);
    name(eye, {0, -1.0}, "視点");
    name({eye.x * 0.7, eye.y * 0.7, eye.z * 0.7}, {0.9, 0.9}, "Rho");
    name(at_angles(theta_radius, eye_theta / 2, 90.0), {-0.2, 0.8}, "Theta");
    name(at_angles(phi_radius, eye_theta, eye_phi / 2), {0.5, -0.7}, "Phi");
}

} // namespace

ViewpointDiagram::ViewpointDiagram(QWidget* parent) : QWidget(parent) {
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
}

QSize ViewpointDiagram::sizeHint() const {
    return {fontMetrics().height() * 18, fontMetrics().height() * 18};
}

QSize ViewpointDiagram::minimumSizeHint() const {
    return sizeHint() * 0.95;
}

void ViewpointDiagram::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillRect(rect(), palette().color(QPalette::Base));
    DiagramPainter(painter, size(), palette()).draw();
}

} // namespace kigumi
