// The file of the work and whether it is saved, for status bars of windows whose captions are
// fixed.
#pragma once

#include "ui/kit/session.h"

#include <QLabel>

namespace kigumi {

class FileMark : public QLabel, protected Desk {
    Q_OBJECT

  public:
    explicit FileMark(Session& session);
    void refresh();
};

} // namespace kigumi
