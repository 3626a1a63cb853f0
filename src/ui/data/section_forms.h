// The dialogs that change one section (巾・厚み変更) or one material (物性値変更).
#pragma once

#include "model/sections.h"
#include "ui/kit/session.h"

#include <QDialog>

class QFormLayout;

namespace kigumi {
class NumberEdit;
}

// Changes the section at a position of the section table.
class THenSizeForm : public QDialog, protected kigumi::Desk {
    Q_OBJECT

  public:
    THenSizeForm(kigumi::Session& session, int section, QWidget* parent);

    void accept() override;
    // What OK did: stored, or none when it found nothing changed or was not pressed.
    kigumi::Change change() const { return change_; }

  private:
    int section_;
    kigumi::NumberEdit* width_;
    kigumi::NumberEdit* thickness_;
    kigumi::NumberEdit* angle_;
    kigumi::Change change_ = kigumi::Change::none;
};

// Changes the material at a position of the material table.
class THenMatForm : public QDialog, protected kigumi::Desk {
    Q_OBJECT

  public:
    THenMatForm(kigumi::Session& session, int material, QWidget* parent);

    void accept() override;
    kigumi::Change change() const { return change_; }

  private:
    int material_;
    kigumi::NumberEdit* young_;
    kigumi::NumberEdit* poisson_;
    kigumi::NumberEdit* density_;
    kigumi::Change change_ = kigumi::Change::none;
};
