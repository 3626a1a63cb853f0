// The dialogs for one restrained or one loaded node.
#pragma once

#include "ui/kit/session.h"

#include <QDialog>

#include <array>

class QFormLayout;
class QLabel;

namespace kigumi {

class NumberEdit;

// Why an existing record is shown.
enum class RecordPurpose { edit, remove };

// A node's number and name, three boxes for its x, y and z value, OK and Cancel.
class NodeValueForm : public QDialog, protected Desk {
    Q_OBJECT

  protected:
    // Object names and labels of the three boxes.
    struct Boxes {
        const char* number_label;
        std::array<const char*, 3> names;
        std::array<const char*, 3> labels;
    };
    NodeValueForm(Session& session, QWidget* parent, const QString& title, int node,
                  const Boxes& boxes);

    // A line above the boxes, and one below them.
    void add_message(const QString& text);
    QLabel* add_note(const QString& text);
    // A row below the boxes.
    void add_row(QLabel* caption, QWidget* widget);
    // Values are shown only.
    void lock_values();

    std::array<NumberEdit*, 3> value_{};

  private:
    QFormLayout* rows_;
};

// Three flags: 1 holds the node in x, y, z.
class FixValueForm : public NodeValueForm {
    Q_OBJECT

  public:
    using Values = std::array<int, 3>;
    // What the boxes held at OK; any number but 0 is 1.
    const Values& values() const { return values_; }
    void accept() override;

  protected:
    FixValueForm(Session& session, QWidget* parent, const QString& title, int node,
                 const Values& values);

  private:
    Values values_;
};

// Three forces in x, y, z, kgf.
class LoadValueForm : public NodeValueForm {
    Q_OBJECT

  public:
    using Values = std::array<float, 3>;
    const Values& values() const { return values_; }
    void accept() override;

  protected:
    LoadValueForm(Session& session, QWidget* parent, const QString& title, int node,
                  const Values& values);
    // Takes the boxes over; false after the message that one of them holds no number.
    bool read_values();

  private:
    Values values_;
};

} // namespace kigumi

// A new restrained node (node position), offered as held vertically only.
class TSelFixForm : public kigumi::FixValueForm {
    Q_OBJECT

  public:
    TSelFixForm(kigumi::Session& session, QWidget* parent, int node);
};

// The record at position `at` of the support table.
class TFixEditForm : public kigumi::FixValueForm {
    Q_OBJECT

  public:
    TFixEditForm(kigumi::Session& session, QWidget* parent, int at, kigumi::RecordPurpose purpose);
};

// A new loaded node (node position), offered with 1000 kgf downwards.
class TSelLoadForm : public kigumi::LoadValueForm {
    Q_OBJECT

  public:
    TSelLoadForm(kigumi::Session& session, QWidget* parent, int node);
};

// The record at position `at` of the load table. 同 gives the boxes' forces to the whole table at
// once, as part of the change that OK leads to; Cancel takes that back.
class TLoadEditForm : public kigumi::LoadValueForm {
    Q_OBJECT

  public:
    TLoadEditForm(kigumi::Session& session, QWidget* parent, int at, kigumi::RecordPurpose purpose);
    void reject() override;

  private:
    void add_all_button();
    void set_all();

    bool all_set_ = false; // the whole table was overwritten; a step once the caller stores it
    QLabel* note_ = nullptr;
};

// Asks before the load at position `at` of the table is dropped.
class TDelNodeForm : public kigumi::LoadValueForm {
    Q_OBJECT

  public:
    TDelNodeForm(kigumi::Session& session, QWidget* parent, int at);
};
