// What the windows of a session tell each other of the project.
#pragma once

#include <QObject>

namespace kigumi {

class News : public QObject {
    Q_OBJECT

  signals:
    // A command changed the project and became a step, or a step was taken back or repeated.
    void changed();
    // A step was taken back or repeated: the model is that of another time. Told before changed().
    void stepped();
};

} // namespace kigumi
