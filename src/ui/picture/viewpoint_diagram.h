// The picture of the viewpoint dialog that explains its distance and angles.
#pragma once

#include <QWidget>

namespace kigumi {

// Draws the axes, an eye, its distance Rho from the origin, its turn Theta from the x axis and its
// angle Phi from the vertical.
class ViewpointDiagram : public QWidget {
    Q_OBJECT

  public:
    explicit ViewpointDiagram(QWidget* parent = nullptr);
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

  protected:
    void paintEvent(QPaintEvent* event) override;
};

} // namespace kigumi
