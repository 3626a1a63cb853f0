#include "ui/kit/command_flags.h"

namespace kigumi {

CommandFlags command_flags(const CommandState& state) {
    const bool empty = state.stage == Stage::empty;
    const bool made = state.stage == Stage::made || state.stage == Stage::loaded;
    const bool loaded = state.stage == Stage::loaded;
    CommandFlags flags{};
    flags.KihonMenu = empty;
    flags.TegakiMenu = empty;
    flags.JikuDataReadMenu = empty;
    flags.SaveFileMenu = made;
    flags.HoneSaveMenu = loaded;
    flags.FrameSlvSaveMenu = loaded;
    flags.KaisekiMenu = loaded;
    flags.KekkaHozonMenu = state.results;
    flags.SaigoKaisekiMenu = empty;
    flags.ExitMenu = true;
    flags.SetutenShiteiMenu = made;
    flags.HyoujiMenu = made;
    flags.SetutenMeishouMenu = made;
    flags.BuzaiBangouMenu = made;
    flags.KoteiStutenMenu = loaded;
    flags.KajyuryouMenu = loaded;
    return flags;
}

} // namespace kigumi
