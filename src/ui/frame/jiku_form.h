// The axis-data view (軸データ入力).
#pragma once

#include "ui/frame/model_view.h"

class TJikuForm : public kigumi::ModelWindow {
    Q_OBJECT

  public:
    TJikuForm(kigumi::Session& session, QWidget* parent);
};
