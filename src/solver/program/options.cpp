#include "solver/program/options.h"

#include <charconv>
#include <string_view>

namespace frameslv {

namespace {

// Takes a number within its bounds.
template <class Number> bool take(std::string_view word, Number least, Number most, Number& value) {
    const auto [end, error] = std::from_chars(word.data(), word.data() + word.size(), value);
    return error == std::errc{} && end == word.data() + word.size() && value >= least &&
           value <= most;
}

struct Flag {
    std::string_view name;
    bool* on;
};

struct Count {
    std::string_view name;
    int* value;
    int most;
};

// Takes an option that has a value; false when the value does not fit.
bool take_value(std::string_view name, std::string_view word, Settings& settings, bool& known) {
    constexpr int most_threads = 256;
    constexpr int most_modes = 100; // each costs the memory of a few vectors of all unknowns
    constexpr double widest = 1e12;
    known = true;
    for (const auto& [count, value, most] : {Count{"--threads", &settings.threads, most_threads},
                                             Count{"--modal", &settings.modes, most_modes},
                                             Count{"--buckling", &settings.buckling, most_modes}})
        if (name == count)
            return take(word, 1, most, *value);
    if (name == "--gravity")
        return take(word, 1.0 / widest, widest, settings.gravity);
    if (name == "--mass") {
        settings.mass = word == "lumped" ? MassKind::lumped : MassKind::consistent;
        return word == "lumped" || word == "consistent";
    }
    known = false;
    return false;
}

Fault usage_fault(const std::string& text) {
    return {Exit::bad_usage, text + " (--help で使い方を表示します)"};
}

} // namespace

Fault read_options(std::span<const char* const> arguments, Options& options) {
    Settings& settings = options.settings;
    const Flag flags[] = {{"--self-weight", &settings.self_weight},
                          {"--p-delta", &settings.p_delta},
                          {"--check", &settings.check},
                          {"--help", &options.help},
                          {"--version", &options.version}};
    for (size_t i = 0; i < arguments.size(); i++) {
        const std::string_view name = arguments[i];
        bool known = false;
        for (const Flag& flag : flags)
            if (flag.name == name)
                *flag.on = known = true;
        if (known)
            continue;
        const std::string_view word = i + 1 < arguments.size() ? arguments[i + 1] : "";
        const bool taken = take_value(name, word, settings, known);
        if (!known)
            return usage_fault(text_of("オプション「%s」はありません", printable(name).c_str()));
        if (!taken)
            return usage_fault(text_of("オプション %s の値「%s」が正しくありません", arguments[i],
                                       printable(word).c_str()));
        i++;
    }
    if (settings.buckling > 0 && settings.p_delta)
        return usage_fault("--buckling と --p-delta は同時に使えません");
    return {};
}

const char* help_text() {
    return "使い方: frameslv [オプション]\n"
           "\n"
           "作業フォルダの FRAMESLV.IN を解き、結果を frameslv.zlv、frameslv.lst、frameslv.dsp に\n"
           "書きます。解けないときは理由を frameslv.err に 1 行で書きます。\n"
           "\n"
           "  --self-weight     部材の自重 (密度 x 断面積) を下向きの等分布荷重として加える\n"
           "                    密度が kg/cm3 なら荷重は kgf/cm\n"
           "  --p-delta         軸力による 2 次の効果 (幾何剛性) を反復して加える\n"
           "  --modal N         低い方から N 個の固有振動数とモードを frameslv.mod に書く\n"
           "  --mass KIND       その質量: consistent (整合、既定) または lumped (集中)\n"
           "  --gravity G       質量 = 重量 / G (既定 980.665 cm/s2)\n"
           "  --buckling N      低い方から N 個の座屈荷重係数とモードを frameslv.buc に書く\n"
           "  --threads N       使うスレッドの最大数 (既定は機械の数。結果は変わらない)\n"
           "  --check           入力を調べて報告するだけで解かない\n"
           "  --help            この説明を表示する\n"
           "  --version         版を表示する\n";
}

} // namespace frameslv
