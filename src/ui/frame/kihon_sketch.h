// The small elevation beside the basic data, which shows what the lengths measure.
#pragma once

#include "generate/param.h"

#include <QWidget>

namespace kigumi {

// Draws a frame of the chosen sort, not to scale, with its lengths named. Choices that the check
// would refuse are drawn as what generation makes of them: without columns the floor alone, and no
// roof over three storeys.
class KihonSketch : public QWidget {
    Q_OBJECT

  public:
    explicit KihonSketch(QWidget* parent = nullptr);

    void show_frame(const KihonChoice& choice);
    // Picks out the length of this name; none when the sketch has no such length.
    void mark(const QString& length);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    KihonChoice choice_;
    QString marked_;
};

} // namespace kigumi
