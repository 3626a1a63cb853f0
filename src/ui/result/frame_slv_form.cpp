#include "ui/result/frame_slv_form.h"

#include "analysis/solver_run.h"
#include "base/message.h"
#include "draw/stroke_font.h"
#include "results/displacement.h"
#include "results/listing.h"
#include "results/marukaku.h"
#include "results/pick_member.h"
#include "results/selection.h"
#include "sight/perspective.h"
#include "solid/axis_picture.h"
#include "trace/spy.h"
#include "ui/kit/dialogs.h"
#include "ui/picture/isome_form.h"
#include "ui/picture/painter_canvas.h"
#include "ui/picture/perspective_progress.h"
#include "ui/picture/picture_file.h"
#include "ui/picture/print_pages.h"
#include "ui/picture/view_form.h"
#include "ui/result/age_question.h"
#include "ui/result/heni_ichiran_form.h"
#include "ui/result/kekka_ichiran_form.h"
#include "ui/result/kekka_kensaku_form.h"
#include "ui/result/legend_box.h"
#include "ui/result/level_form.h"
#include "ui/result/marukaku_form.h"
#include "ui/result/ouryoku_ichiran_form.h"

#include <QLabel>
#include <QStatusBar>

#include <algorithm>
#include <numeric>

using namespace kigumi;

namespace {

constexpr int pick_reach = 6; // pixels
constexpr int edge_gap = 12;  // between the edge of the window and a small one within it, pixels

// Pixels for which a picture on A4 paper on its side is drawn.
constexpr QSize page_picture(1310, 800);

QLabel* add_status(QStatusBar* bar, const char* name, bool facts) {
    auto* label = new QLabel;
    label->setObjectName(name);
    label->setContentsMargins(6, 0, 6, 0);
    if (facts) {
        bar->addPermanentWidget(label);
    } else {
        label->setMinimumWidth(1); // a long text may be cut, the window keeps its width
        bar->addWidget(label, 1);
    }
    return label;
}

// Puts a list into the lower right corner of the window, at most half as high as it is, so that the
// picture stays in sight; and `above` steps above other lists.
void place_beside(QWidget& list, const QWidget& window, std::size_t above) {
    constexpr int step = 36;
    const bool sized = list.testAttribute(Qt::WA_Resized);
    const QSize wanted = sized ? list.size() : list.sizeHint();
    list.resize(wanted.width(), std::max(list.minimumSizeHint().height(),
                                         std::min(wanted.height(), window.height() / 2)));
    const QPoint corner = window.mapToGlobal(QPoint(window.width(), window.height()));
    const int up = list.height() + 3 * edge_gap + step * static_cast<int>(above);
    list.move(corner - QPoint(list.width() + edge_gap, up));
}

} // namespace

TFrameSlvForm::TFrameSlvForm(Session& session, QWidget* parent, std::optional<ResultsOf> whose)
    : PictureWindow(session, parent) {
    spy("Enter TFrameSlvForm()");
    setObjectName("FrameSlvForm");
    setWindowTitle("計算結果表示");
    status_ = add_status(statusBar(), "StatusLabel", false);
    facts_ = add_status(statusBar(), "FactsLabel", true);
    add_file_menu();
    add_view_menu();
    add_heni_menu();
    add_list_menu();
    add_help_menu();
    take_results(whose);
    connect(&picture(), &PictureWidget::picked, this, &TFrameSlvForm::pick);
    show_state();
}

TFrameSlvForm::~TFrameSlvForm() {
    if (bars_built_) {
        reset_solids(solids); // no later command may take the bars for the frame's solids
    }
}

QStringList TFrameSlvForm::read_files(ResultsOf whose) {
    std::vector<Fault> messages;
    {
        CollectedMessages collected;
        const BusyCursor busy;
        // The levels become those of the results, which is no change of the frame.
        History& history = session_.work.history;
        const bool same = !history.differs(session_.project);
        valid_ = FrameSlv(session_.project.model, result, work_dir, whose) == 0;
        if (same) {
            history.amend(session_.project);
        }
        messages = std::move(collected.faults);
    }
    QStringList told;
    for (const Fault& message : messages) {
        told << qt_text(message.sentence);
    }
    if (!messages.empty() && !messages.back().reason.empty()) {
        told << qt_text(messages.back().reason);
    }
    for (const Fault& message : messages) {
        show_message(message);
    }
    return told;
}

void TFrameSlvForm::take_results(std::optional<ResultsOf> whose) {
    QStringList told;
    if (whose) {
        told = read_files(*whose);
    } else {
        valid_ = result.N_Stress > 0;
    }
    for (QAction* item : needs_results_) {
        item->setEnabled(valid_);
    }
    if (!valid_) {
        clear_selection(result);
        status_->setText(told.join("　"));
        return;
    }
    age_ = result_age(model, result);
    shown_.mode = mode_sign;
    shown_.upper = 100.0f;
    shown_.lower = 0.0f;
    shown_.TAU = view.TAU;
    shown_.FAI = view.FAI;
    status_->setText(result.roles.state == ResultRoles::State::of_other_frame ? roles_of_other_frame
                                                                              : folder_text());
    picture().set_overlay([this](PainterCanvas& canvas) {
        if (legend_) {
            paint_legend(canvas, picture().width(), result_legend(result, shown_, scale_, age_));
        }
    });
}

void TFrameSlvForm::add_file_menu() {
    QMenu* menu = add_menu("FileMenu", "ファイル(&F)");
    needs_results_ = {
        add_item(
            menu, "KekkaSaveMenu", "計算結果の保存(&S)...", [this] { save_list(); },
            QKeySequence::Save),
        add_item(menu, "DxfSaveMenu", "DXF保存(&D)...",
                 [this] { export_dxf("DXFファイルを作製しました"); }),
        add_item(menu, "GazouSaveMenu", "画像・PDF保存(&G)...", [this] { save_image(); })};
    menu->addSeparator();
    needs_results_.push_back(add_item(
        menu, "InsatuMenu", "印刷(&P)...", [this] { print_pages(work_dir, this, page()); },
        QKeySequence::Print));
    needs_results_.push_back(add_item(menu, "InsatuPreviewMenu", "印刷プレビュー(&V)...",
                                      [this] { preview_pages(this, page()); }));
    menu->addSeparator();
    add_item(
        menu, "ModoruMenu", "戻る(&X)", [this] { close(); }, QKeySequence("Ctrl+W"));
}

QAction* TFrameSlvForm::add_checked_item(QMenu* menu, const char* name, const QString& caption,
                                         Handler handler, std::function<bool()> checked) {
    QAction* item = add_item(menu, name, caption, [this, handler = std::move(handler)] {
        handler();
        show_state();
    });
    item->setCheckable(true);
    checked_.emplace_back(item, std::move(checked));
    needs_results_.push_back(item);
    return item;
}

QAction* TFrameSlvForm::add_mode_item(QMenu* menu, const char* name, const QString& caption,
                                      Handler handler, int mode) {
    return add_checked_item(menu, name, caption, std::move(handler),
                            [this, mode] { return valid_ && shown_.mode == mode; });
}

void TFrameSlvForm::add_mode_items(QMenu* menu) {
    add_mode_item(
        menu, "JikuryokuMenu", "軸力表示(&A)", [this] { set_mode(mode_sign); }, mode_sign);
    add_mode_item(
        menu, "FutosaMenu", "太さ色分(&T)", [this] { set_mode(mode_width); }, mode_width);
    add_mode_item(
        menu, "LevelMenu", "軸力表示境界値(&B)...", [this] { ask_band(); }, mode_band);
    add_mode_item(
        menu, "WireMenu", "ワイヤモデル(&W)", [this] { set_mode(mode_wire); }, mode_wire);
    add_mode_item(
        menu, "MarukakuMenu", "角丸表示(&M)...", [this] { ask_marukaku(); }, mode_solids);
    needs_results_.push_back(
        add_item(menu, "SitenModelMenu", "視点座標モデル(&S)...", [this] { show_viewpoint(); }));
    turn_item_ = add_item(menu, "IsomeMenu", "アイソメ(&I)...", [this] { turn(); });
    needs_results_.push_back(turn_item_);
}

void TFrameSlvForm::add_view_menu() {
    struct Toggle {
        const char* name;
        const char* caption;
        ResultLabel label;
    };
    constexpr Toggle toggles[] = {
        {"SetutenMeishouMenu", "節点名(&N)", label_node_names},
        {"BuzaiBangouMenu", "部材番号(&U)", label_member_numbers},
        {"KoteiStutenMenu", "固定節点(&K)", label_fixed_nodes},
        {"KajyuryouMenu", "荷重節点(&L)", label_loaded_nodes},
    };
    QMenu* menu = add_menu("HyoujiMenu", "表示(&V)");
    add_mode_items(menu);
    menu->addSeparator();
    for (const Toggle& toggle : toggles) {
        int& flag = shown_.label[toggle.label];
        add_checked_item(
            menu, toggle.name, toggle.caption,
            [this, &flag] { flag = flag == 0 && load_stroke_font(lettering) == 0 ? 1 : 0; },
            [&flag] { return flag != 0; });
    }
    add_checked_item(
        menu, "HanreiMenu", "凡例(&H)", [this] { legend_ = !legend_; }, [this] { return legend_; });
    needs_results_.push_back(add_joint_item(menu, [this] {
        if (shown_.mode == mode_solids) {
            prepare_solids(this);
        }
    }));
    menu->addSeparator();
    needs_results_.push_back(add_fit_item(menu));
}

void TFrameSlvForm::add_heni_menu() {
    QMenu* menu = add_menu("HeniMenu", "節点変位(&D)");
    struct Item {
        const char* name;
        const char* caption;
        int scale;
    };
    for (const Item& item :
         {Item{"Heni1Menu", "変位1倍(&1)", 1}, Item{"Heni5Menu", "変位5倍(&5)", 5},
          Item{"Heni10Menu", "変位10倍(&0)", 10}}) {
        const auto scale = static_cast<float>(item.scale);
        add_checked_item(
            menu, item.name, item.caption, [this, scale] { show_displaced(scale); },
            [this, item] {
                return shown_.mode == mode_displaced && static_cast<int>(scale_) == item.scale;
            });
    }
}

void TFrameSlvForm::add_list_menu() {
    QMenu* menu = add_menu("IchiranMenu", "一覧(&L)");
    needs_results_.insert(needs_results_.end(),
                          {add_item(
                               menu, "KekkaIchiranMenu", "計算結果一覧(&K)",
                               [this] { open_list<TKekkaIchiranForm>(); }, QKeySequence("Ctrl+L")),
                           add_item(menu, "OuryokuIchiranMenu", "応力一覧(&O)",
                                    [this] { open_list<TOuryokuIchiranForm>(); }),
                           add_item(menu, "HeniIchiranMenu", "変位一覧(&H)",
                                    [this] { open_list<THeniIchiranForm>(); }),
                           add_item(
                               menu, "KekkaKensakuMenu", "計算結果検索(&S)",
                               [this] { open_list<TKekkaKensakuForm>(); }, QKeySequence::Find)});
    menu->addSeparator();
    clear_item_ = add_item(menu, "SentakuKaijoMenu", "選択解除(&C)", [this] {
        clear_selection(result);
        spread_selection(nullptr);
    });
}

template <class Form> void TFrameSlvForm::open_list() {
    Form* form = nullptr;
    for (const List& list : lists_) {
        form = form != nullptr ? form : qobject_cast<Form*>(list.window);
    }
    if (form == nullptr) {
        const BusyCursor busy;
        form = new Form(session_, this);
        place_beside(*form, *this, lists_.size());
        connect(form, &Form::selection_changed, this, [this, form] { spread_selection(form); });
        form->setAttribute(Qt::WA_DeleteOnClose);
        connect(form, &QDialog::finished, this, [this, form] {
            std::erase_if(lists_, [form](const List& list) { return list.window == form; });
        });
        lists_.push_back({form, [form] { form->show_selection(); }});
    }
    form->show();
    form->raise();
    form->activateWindow();
}

void TFrameSlvForm::spread_selection(const QWidget* from) {
    show_selection();
    for (const List& list : lists_) {
        if (list.window != from) {
            list.follow();
        }
    }
    emit selection_changed();
}

void TFrameSlvForm::show_selection() {
    if (bars_built_ && !shown_.all_bars && shown_.mode == mode_solids) {
        const View eye = view;
        const int status = build_solids(false);
        view = eye;
        if (status == 0) {
            prepare_solids(this);
        }
    }
    show_state();
}

int TFrameSlvForm::draw(Canvas& canvas, DrawArea& area) {
    shown_.area = area;
    const int status =
        shown_.mode == mode_solids
            ? draw_marukaku(view, result, solids, perspective, lettering, work_dir, canvas, shown_)
            : draw_result_picture(view, result, lettering, canvas, shown_);
    area = shown_.area;
    return status;
}

PictureFunction TFrameSlvForm::drawing(QSize size) {
    return [this, size](PainterCanvas& canvas) {
        DrawArea area;
        area.xScreen = size.width();
        area.yScreen = size.height();
        if (draw(canvas, area) < 0) {
            return -1;
        }
        if (legend_) {
            paint_legend(canvas, size.width(), result_legend(result, shown_, scale_, age_));
        }
        return 0;
    };
}

TablePrinter TFrameSlvForm::page() {
    TablePrinter page("計算結果　" + qt_text(result_title(shown_, scale_, age_)),
                      qt_path(work_dir));
    page.set_landscape(true);
    page.add_picture(page_picture, drawing(page_picture));
    return page;
}

void TFrameSlvForm::set_mode(int mode) {
    shown_.mode = mode;
    if (mode != mode_solids) {
        status_->setText(folder_text());
    }
    show_state();
}

QString TFrameSlvForm::folder_text() const {
    return "計算結果のフォルダ　" + qt_path(work_dir);
}

void TFrameSlvForm::show_displaced(float scale) {
    int status = 0;
    std::vector<Fault> messages;
    {
        CollectedMessages collected;
        status = get_new_beam(result, scale);
        messages = std::move(collected.faults);
    }
    Fault failure;
    if (status < 0) {
        failure = messages.back();
        messages.pop_back();
    }
    tell_other_names(messages);
    if (status < 0) {
        show_message(failure);
        return;
    }
    scale_ = scale;
    set_mode(mode_displaced);
}

void TFrameSlvForm::tell_other_names(const std::vector<Fault>& messages) {
    constexpr std::size_t most = 10;
    if (messages.empty() || told_other_names_) {
        return;
    }
    told_other_names_ = true;
    QStringList lines;
    for (std::size_t i = 0; i < std::min(messages.size(), most); ++i) {
        lines << qt_text(messages[i].sentence);
    }
    if (messages.size() > most) {
        lines << QString("ほか %1 件").arg(messages.size() - most);
    }
    show_message(lines.join('\n').toStdString());
}

void TFrameSlvForm::ask_band() {
    TLevelForm bounds(shown_, this);
    if (bounds.exec() == QDialog::Accepted) {
        status_->setText(shown_.lower > shown_.upper
                             ? "下限値が上限値より大きいので、範囲に入る部材はありません"
                             : folder_text());
    }
}

void TFrameSlvForm::turn() {
    view.TAU = shown_.TAU;
    view.FAI = shown_.FAI;
    TIsomeForm angles(session_, this);
    connect(&angles, &TIsomeForm::changed, this, [this] {
        shown_.TAU = view.TAU;
        shown_.FAI = view.FAI;
        picture().update();
    });
    angles.exec();
}

int TFrameSlvForm::build_solids(bool all_members) {
    const BusyCursor busy;
    const std::vector<int> chosen = selected_rows(result);
    if (all_members) {
        std::vector<int> all(result.N_Stress);
        std::iota(all.begin(), all.end(), 0);
        select_results(result, all);
    }
    shown_.area.xScreen = picture().width();
    shown_.area.yScreen = picture().height();
    shown_.all_bars = all_members;
    const int status = make_marukaku(view, result, solids, work_dir, shown_);
    if (all_members) {
        select_results(result, chosen);
    }
    DrawArea bounds = shown_.area;
    if (status < 0 || (solids.n_trio > 0 && get_jiku_world(view, solids, bounds) < 0)) {
        reset_solids(solids);
        bars_built_ = false;
        if (shown_.mode == mode_solids) {
            set_mode(mode_sign); // the bars shown until now have gone
        }
        return refuse("視点座標表示に失敗しました");
    }
    bars_built_ = true;
    return 0;
}

int TFrameSlvForm::prepare_solids(QWidget* parent) {
    const int status = prepare_perspective_shown(view, solids, perspective, work_dir, parent);
    const char* text = paint_perspective(status);
    if (status < 0) {
        return -1;
    }
    if (text == nullptr) {
        text = solids.n_trio == 0 ? "選択した部材がないので、角丸表示は空です"
                                  : "角丸表示　引張は丸、圧縮は角";
    }
    status_->setText(text);
    return 0;
}

int TFrameSlvForm::show_solids() {
    if (prepare_solids(this) < 0) {
        return -1;
    }
    picture().fit();
    set_mode(mode_solids);
    return 0;
}

void TFrameSlvForm::ask_marukaku() {
    TMarukakuKakuninForm question(session_, this);
    if (question.exec() != QDialog::Accepted || build_solids(question.all_members()) < 0) {
        return;
    }
    if (show_solids() < 0) {
        return;
    }
    if (marukaku_ == nullptr) {
        marukaku_ = new TMarukakuForm(this);
        connect(marukaku_, &TMarukakuForm::colours_wanted, this, [this] { set_mode(mode_sign); });
        connect(marukaku_, &TMarukakuForm::solids_wanted, this, [this] {
            const bool ready = bars_built_ && shown_.all_bars;
            if (ready || build_solids(shown_.all_bars) == 0) {
                show_solids();
            }
        });
    }
    marukaku_->adjustSize();
    marukaku_->move(mapToGlobal(QPoint(edge_gap, height() - marukaku_->height() - 3 * edge_gap)));
    marukaku_->show();
}

void TFrameSlvForm::show_viewpoint() {
    if (!bars_built_ && build_solids(result.Nken_Stress == 0) < 0) {
        return;
    }
    if (show_solids() < 0) {
        return;
    }
    TViewForm viewpoint(session_, this);
    connect(&viewpoint, &TViewForm::stored, this, [&] { prepare_solids(&viewpoint); });
    viewpoint.exec();
    prepare_solids(this);
}

void TFrameSlvForm::save_list() {
    // Without members it is only said so.
    const fs::path path = result.N_Stress == 0 ? fs::path()
                                               : ask_save_file(work_dir, this, "計算結果の保存",
                                                               "計算結果 (*.*)|*.*", QString());
    if ((path.empty() && result.N_Stress > 0) || !may_save_results(this, model, age_)) {
        return;
    }
    if (save_listing(result, path) == 0) {
        status_->setText("計算結果を保存しました　" + qt_path(path));
    }
}

void TFrameSlvForm::save_image() {
    const fs::path path =
        ask_save_file(work_dir, this, "画像・PDF保存", "画像・PDF|*.png *.svg *.pdf", "png");
    if (path.empty()) {
        return;
    }
    const BusyCursor busy;
    const QSize size = picture().size();
    if (save_picture(path, size.width(), size.height(), drawing(size), page().title()) == 0) {
        status_->setText("図を保存しました　" + qt_path(path));
    }
}

void TFrameSlvForm::pick(QPoint at, Qt::KeyboardModifiers keys) {
    const DrawArea& seen = picture().area();
    if (!valid_ || !can_map(seen)) {
        return;
    }
    const float reach = pick_reach * (seen.world.xmax - seen.world.xmin) /
                        static_cast<float>(seen.crt.right - seen.crt.left);
    const int row =
        pick_member(result, solids, perspective, shown_, to_plane(seen, at.x(), at.y()), reach);
    const bool several = keys.testFlag(Qt::ControlModifier);
    if (row >= 0 && several) {
        toggle_result(result, row);
    } else if (row >= 0) {
        select_results(result, std::vector<int>{row});
    } else if (!several) {
        clear_selection(result);
    }
    tell_member(row);
    spread_selection(nullptr);
}

void TFrameSlvForm::tell_member(int row) {
    if (row < 0) {
        status_->clear();
        return;
    }
    const Stress& s = result.stress[row];
    status_->setText(QString("部材 %1　%2 － %3　軸力 %4 kgf（%5）　%6 ％")
                         .arg(s.no)
                         .arg(qt_text(s.iname), qt_text(s.jname))
                         .arg(s.force, 0, 'f', 1)
                         .arg(s.force > 0.0f   ? "引張"
                              : s.force < 0.0f ? "圧縮"
                                               : "軸力なし")
                         .arg(s.percent, 0, 'f', 1));
}

QString TFrameSlvForm::facts() const {
    if (!valid_) {
        return {};
    }
    const QString mark = age_ == ResultAge::current ? "" : qt_text(age_words(age_)) + "　";
    QString text = mark + QString("部材 %1　節点 %2　最大軸力 %3 kgf")
                              .arg(result.N_Stress)
                              .arg(result.N_Setuten)
                              .arg(result.force_max, 0, 'f', 1);
    if (result.N_Setuten > 0) {
        text += QString("　最大変位 %1 cm").arg(result.disp[0].mag, 0, 'f', 3);
    }
    if (result.Nken_Stress > 0) {
        text += QString("　選択 %1").arg(result.Nken_Stress);
    }
    return text;
}

void TFrameSlvForm::show_state() {
    for (const auto& [item, checked] : checked_) {
        item->setChecked(checked());
    }
    turn_item_->setEnabled(valid_ && shown_.mode != mode_solids);
    clear_item_->setEnabled(valid_ && result.Nken_Stress > 0);
    facts_->setText(facts());
    if (valid_) { // set anew, for a picture that failed may be drawn in another mode
        picture().set_picture([this](Canvas& canvas, DrawArea& area) { draw(canvas, area); });
    }
}
