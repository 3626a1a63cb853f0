#include "ui/result/age_question.h"

#include "ui/kit/dialogs.h"

namespace kigumi {

bool may_save_results(QWidget* parent, const Model& model, ResultAge age) {
    switch (age) {
    case ResultAge::current:
        return true;
    case ResultAge::old:
        return ask_yes_no(parent,
                          "この結果は今の骨組・断面・支点・荷重で解析したものではありません。"
                          "保存しますか?") == YesNo::yes;
    case ResultAge::unknown:
        return model.N_Beam == 0 ||
               ask_yes_no(parent, "どの骨組・荷重を解析した結果か記録がありません。"
                                  "保存しますか?") == YesNo::yes;
    }
    return false;
}

} // namespace kigumi
