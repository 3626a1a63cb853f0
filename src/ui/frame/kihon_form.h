// The basic data dialog (基本データ).
#pragma once

#include "generate/param.h"
#include "ui/kit/session.h"

#include <QDialog>

#include <memory>

namespace Ui {
class TKihonForm;
}

// Edits the basic data in `param` as a draft: whoever opens the dialog makes them a step, or
// restores them. Ends accepted with data from which a frame can be generated, as
// check_param finds. Cancelling gives the nine dimensions NX ... Sujikai and the first material
// back as they were; levels, heights and choices stay as clicked and read.
class TKihonForm : public QDialog, protected kigumi::Desk {
    Q_OBJECT

  public:
    explicit TKihonForm(kigumi::Session& session, QWidget* parent = nullptr);
    ~TKihonForm() override;

    void accept() override;
    void reject() override;

  private:
    void fill();
    void connect_controls();
    void hashira_clicked(int item);
    void kaisou_clicked(int item);
    void yane_clicked(int item);
    void ask_roof();
    void show_roof_heights();
    // Opens the column heights of the storeys that there are.
    void enable_heights();
    kigumi::KihonChoice choice() const;
    // Reads every box into `param`; false after a message.
    bool read();
    // Reads and checks; shows the overall height. False after a message.
    bool check();
    void update_sketch();

    std::unique_ptr<Ui::TKihonForm> ui_;
    kigumi::Param& draft_; // the session's
    kigumi::Param at_opening_;
    float E_at_opening_, density_at_opening_;
};
