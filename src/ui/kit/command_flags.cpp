#include "ui/kit/command_flags.h"

namespace kigumi {

CommandFlags command_flags(const Project& project, bool results) {
    const bool empty = project.stage == Stage::empty;
    const bool made = project.stage == Stage::made || project.stage == Stage::loaded;
    const bool loaded = project.stage == Stage::loaded;
    const bool any = project.model.N_Node > 0 || project.model.N_Beam > 0;
    CommandFlags flags{};
    flags.SaveProjectMenu = any;
    flags.SaveAsMenu = any;
    flags.KihonHenkouMenu = made && project.generated;
    flags.KihonMenu = empty;
    flags.TegakiMenu = empty;
    flags.JikuDataReadMenu = empty;
    flags.SaveFileMenu = made;
    flags.HoneSaveMenu = loaded;
    flags.FrameSlvSaveMenu = loaded;
    flags.KaisekiMenu = loaded;
    flags.KekkaHozonMenu = results;
    flags.SaigoKaisekiMenu = empty;
    flags.KekkaHyoujiMenu = made && project.result.N_Stress > 0;
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
