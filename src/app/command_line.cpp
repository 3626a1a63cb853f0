#include "app/command_line.h"

#include "app/argument_text.h"
#include "base/files.h"
#include "base/message.h"

#include <CLI/CLI.hpp>

#include <QGuiApplication>

#include <cmath>
#include <memory>

namespace kigumi {

namespace {

constexpr int status_failed = 1;
constexpr int status_usage = 2;

void require(bool good, const char* option, const std::string& value) {
    if (!good) {
        throw CLI::ValidationError(option, "「" + value + "」を読めません");
    }
}

RoleOption load_role(const std::string& text) {
    RoleOption role;
    require(parse_load(text, role), "--load", text);
    return role;
}

// The options of a command that marks supports and loads, kept in the order they were given.
struct RoleArguments {
    std::vector<std::string> fix, load;
    CLI::Option* fix_option = nullptr;
    CLI::Option* load_option = nullptr;

    void add_to(CLI::App& command) {
        fix_option =
            command.add_option("--fix", fix, "固定節点 bottom、top、または節点名（* と ?）");
        load_option = command.add_option("--load", load, "荷重節点 SEL:FX,FY,FZ（kgf）");
        for (CLI::Option* option : {fix_option, load_option}) {
            option->type_size(1)->expected(1)->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
        }
    }
    std::vector<RoleOption> in_order(const CLI::App& command) const {
        std::vector<RoleOption> roles;
        size_t fixes = 0;
        size_t loads = 0;
        for (const CLI::Option* option : command.parse_order()) {
            if (option == fix_option) {
                RoleOption role;
                role.selector = fix[fixes++];
                roles.push_back(role);
            } else if (option == load_option) {
                roles.push_back(load_role(load[loads++]));
            }
        }
        return roles;
    }
};

// The arguments of all commands, and which of them was chosen.
class CommandLine {
  public:
    CommandLine();
    int run(int argc, char** argv);

  private:
    static constexpr const char* option_group = "オプション";

    void speak_japanese();
    static void add_help(CLI::App& command);
    void add_generate();
    void add_info();
    void add_convert();
    void add_solve();
    void add_draw();
    void add_listing();
    void add_report();
    void add_demo();
    int run_chosen();
    void read_draw_texts();

    CLI::App app_{"kigumi - 木造スペース床の設計\n"
                  "コマンドなしで起動すると、今のフォルダでウィンドウを開きます。\n"
                  "ファイル（.kigumi .jik .tgk）だけを付けると、それを開きます。"};
    CLI::App* generate_ = nullptr;
    CLI::App* info_ = nullptr;
    CLI::App* convert_ = nullptr;
    CLI::App* solve_ = nullptr;
    CLI::App* draw_ = nullptr;
    CLI::App* listing_ = nullptr;
    CLI::App* report_ = nullptr;
    CLI::App* demo_ = nullptr;
    GenerateOptions generate_options_;
    DrawOptions draw_options_;
    ReportOptions report_options_;
    RoleArguments convert_roles_, solve_roles_;
    std::string input_, output_, dir_, move_, band_, size_, label_list_, csv_;
    int colour_ = 2;
};

CommandLine::CommandLine() {
    app_.allow_windows_style_options(false); // a path may begin with a slash
    app_.require_subcommand(1);
    speak_japanese();
    add_generate();
    add_info();
    add_convert();
    add_solve();
    add_draw();
    add_listing();
    add_report();
    add_demo();
    for (CLI::App* command : app_.get_subcommands({})) {
        command->group("コマンド");
        command->footer("* は必ず指定します");
        add_help(*command);
    }
}

// Texts of the help page that the library has in English. What stands before the descriptions is
// padded by bytes and so stays ASCII.
void CommandLine::speak_japanese() {
    using Words = std::pair<const char*, const char*>;
    for (const auto& [english, japanese] : {Words{"Usage", "使い方"},
                                            {"OPTIONS", "オプション"},
                                            {"SUBCOMMAND", "コマンド"},
                                            {"Positionals", "引数"},
                                            {"REQUIRED", "*"},
                                            {"TEXT", ""},
                                            {"FLOAT", ""}}) {
        app_.get_formatter()->label(english, japanese);
    }
    app_.option_defaults()->group(option_group);
    add_help(app_);
    app_.set_version_flag("--version", "kigumi " KIGUMI_VERSION, "版を表示します")
        ->group(option_group);
}

void CommandLine::add_help(CLI::App& command) {
    command.set_help_flag("-h,--help", "この説明を表示します")->group(option_group);
}

void CommandLine::add_generate() {
    generate_ = app_.add_subcommand("generate", "寸法から骨組を作り、保存します");
    generate_->add_option("NAME=VALUE", generate_options_.settings,
                          "パラメータ（NX=12 TukaHaba=90.9 SumiType=1 N_Sou=2 YaneMode=-1 など）");
    generate_
        ->add_option("-o,--output", generate_options_.output,
                     "プロジェクト（.kigumi）または軸データ（.jik）")
        ->required();
    generate_->add_option("--move", move_, "座標移動 DX,DY,DZ（cm）");
}

void CommandLine::add_info() {
    info_ = app_.add_subcommand("info", "骨組の数量を表示します");
    info_->add_option("FILE", input_, "骨組（.kigumi .jik .tgk）")->required();
}

void CommandLine::add_convert() {
    convert_ = app_.add_subcommand("convert", "骨組を別の形式で保存します");
    convert_->add_option("IN", input_, "骨組（.kigumi .jik .tgk）")->required();
    convert_
        ->add_option("-o,--output", output_, "出力（.kigumi .jik .bon .ydu .tgk .dxf .dat .w3d）")
        ->required();
    convert_->add_option("--colour", colour_, "DXF の線の色 1..6")
        ->check(CLI::Range(1, 6))
        ->option_text("N");
    convert_roles_.add_to(*convert_);
}

void CommandLine::add_solve() {
    solve_ = app_.add_subcommand("solve", "構造解析を行います");
    solve_->add_option("IN", input_, "骨組（.kigumi .jik .tgk）")->required();
    solve_->add_option("--dir", dir_, "解析を行うフォルダ");
    solve_roles_.add_to(*solve_);
}

void CommandLine::add_draw() {
    draw_ = app_.add_subcommand("draw", "図を描きます");
    draw_->add_option("IN", draw_options_.input, "骨組（.kigumi .jik .tgk）");
    draw_->add_option("--dir", draw_options_.dir, "計算結果のフォルダ");
    draw_
        ->add_option("--mode", draw_options_.mode,
                     "図の種類\n（wire force band width axis perspective heni solid）")
        ->check(CLI::IsMember(
            {"wire", "force", "band", "width", "axis", "perspective", "heni", "solid"}))
        ->option_text("NAME");
    draw_->add_option("--band", band_, "軸力の範囲 LO,HI（％）");
    draw_->add_option("--tau", draw_options_.tau, "視線の方位角 TAU（度）");
    draw_->add_option("--fai", draw_options_.fai, "視線の仰角 FAI（度）");
    draw_->add_option("--rho", draw_options_.rho, "視点の距離 Rho（cm）");
    draw_->add_option("--theta", draw_options_.theta, "視点の方位 Theta（度）");
    draw_->add_option("--phi", draw_options_.phi, "視点の天頂角 Phi（度）");
    draw_->add_flag("--joints", draw_options_.joints, "透視図に部材どうしの交線も描きます");
    draw_->add_option("--scale", draw_options_.scale, "変位の倍率")
        ->check(CLI::IsMember({1, 5, 10}))
        ->option_text("1|5|10");
    draw_->add_option("--labels", label_list_, "文字 nodes,members,fix,load");
    draw_->add_flag("--legend", draw_options_.legend, "凡例を入れる（結果の図。PDF には必ず入る）");
    draw_->add_option("--size", size_, "図の大きさ WxH（ピクセル）");
    draw_->add_option("-o,--output", draw_options_.output, "図（.png .svg .pdf）")->required();
}

void CommandLine::add_listing() {
    listing_ = app_.add_subcommand("listing", "計算結果の一覧を保存します");
    listing_->add_option("--dir", dir_, "計算結果のフォルダ")->required();
    listing_->add_option("--csv", csv_, "表計算用の CSV：members 部材、stress 応力、heni 変位")
        ->check(CLI::IsMember({"members", "stress", "heni"}))
        ->option_text("NAME");
    listing_->add_option("-o,--output", output_, "一覧のファイル")->required();
}

void CommandLine::add_report() {
    report_ = app_.add_subcommand("report", "計算結果の報告書（PDF）を作ります");
    report_->add_option("IN", report_options_.input,
                        "解析した骨組（.kigumi .jik .tgk）。区分ごとの材積に使います");
    report_->add_option("--dir", report_options_.dir, "計算結果のフォルダ")->required();
    report_->add_option("-o,--output", report_options_.output, "報告書（.pdf）")->required();
}

void CommandLine::add_demo() {
    demo_ = app_.add_subcommand("demo", "見本の骨組を作り、解析し、図を描きます");
    demo_->add_option("DIR", dir_, "フォルダ（なければ kigumi-demo）");
}

void CommandLine::read_draw_texts() {
    DrawOptions& o = draw_options_;
    require(band_.empty() || parse_band(band_, o), "--band", band_);
    const auto finite = [&](const char* option, const auto& value) {
        require(!value || std::isfinite(*value), option, std::to_string(value.value_or(0)));
    };
    finite("--tau", o.tau);
    finite("--fai", o.fai);
    finite("--theta", o.theta);
    finite("--phi", o.phi);
    const double rho = o.rho.value_or(1.0);
    require(std::isfinite(rho) && rho > 0.0, "--rho", std::to_string(rho));
    require(size_.empty() || parse_size(size_, o), "--size", size_);
    std::string unknown;
    require(parse_labels(label_list_, o, unknown), "--labels", unknown);
}

int CommandLine::run_chosen() {
    if (generate_->parsed()) {
        GenerateOptions& o = generate_options_;
        require(move_.empty() || parse_shift(move_, o), "--move", move_);
        return run_generate(o);
    }
    if (info_->parsed()) {
        return run_info(input_);
    }
    if (convert_->parsed()) {
        return run_convert(input_, output_, convert_roles_.in_order(*convert_), colour_);
    }
    if (solve_->parsed()) {
        return run_solve(input_, dir_, solve_roles_.in_order(*solve_));
    }
    if (draw_->parsed()) {
        read_draw_texts();
        return run_draw(draw_options_);
    }
    if (report_->parsed()) {
        return run_report(report_options_);
    }
    return listing_->parsed() ? run_listing(dir_, csv_, output_) : run_demo(dir_);
}

// What is wrong with the arguments, in the words of this program.
std::string usage_fault(const CLI::ParseError& error) {
    const std::string what = error.what();
    const std::string subject = what.substr(0, what.find_first_of(": "));
    switch (static_cast<CLI::ExitCodes>(error.get_exit_code())) {
    case CLI::ExitCodes::RequiredError:
        return subject == "A" ? "コマンドがありません" : subject + " が必要です";
    case CLI::ExitCodes::ExtrasError:
        return "余分な引数です: " + what.substr(what.find(": ") + 2);
    case CLI::ExitCodes::ArgumentMismatch:
        return subject + (what.find("At Most") != std::string::npos ? " が二度以上指定されています"
                                                                    : " に値が必要です");
    case CLI::ExitCodes::ConversionError:
        return "値が正しくありません: " + what.substr(what.find(": ") + 2);
    case CLI::ExitCodes::ValidationError:
        // Faults that this program found itself say what cannot be read.
        return what.find("を読めません") != std::string::npos ? "値が正しくありません: " + what
                                                              : subject + " の値が正しくありません";
    default:
        return "引数が正しくありません: " + what;
    }
}

// Prints the messages of a failed command as one line.
void print_failure(const std::vector<Fault>& messages) {
    std::string line;
    for (const Fault& message : messages) {
        if (message.sentence == already_told) {
            return;
        }
        line += (line.empty() ? "" : " ") + message.text();
    }
    write_console(line.empty() ? "失敗しました" : line);
}

int CommandLine::run(int argc, char** argv) {
    // Pictures are painted without any display; the toolkit's own remarks would only disturb. On
    // Windows there always is one, and the toolkit's part for none finds no fonts.
#ifndef Q_OS_WIN
    qputenv("QT_QPA_PLATFORM", "offscreen");
#endif
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {});
    std::optional<CollectedMessages> messages(std::in_place);
    int status = 0;
    try {
        app_.parse(argc, argv);
        std::unique_ptr<QGuiApplication> gui;
        if (draw_->parsed() || report_->parsed() || demo_->parsed()) {
            gui = std::make_unique<QGuiApplication>(argc, argv);
        }
        status = run_chosen();
    } catch (const CLI::Success& wanted) { // --help, --version
        return app_.exit(wanted);
    } catch (const CLI::ParseError& error) {
        write_console("kigumi: " + usage_fault(error) + "（kigumi --help）");
        return status_usage;
    }
    const std::vector<Fault> faults = std::move(messages->faults);
    messages.reset();
    if (status < 0) {
        print_failure(faults);
        return status == wrong_usage ? status_usage : status_failed;
    }
    for (const Fault& message : faults) {
        write_console(message.text());
    }
    return 0;
}

} // namespace

int run_command_line(int argc, char** argv) {
    CommandLine command_line;
    return command_line.run(argc, argv);
}

} // namespace kigumi
