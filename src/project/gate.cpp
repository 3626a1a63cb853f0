#include "project/gate.h"

#include "base/check.h"
#include "base/message.h"
#include "model/validate.h"

#include <string>

namespace kigumi {

int change(Work& work, std::string_view name, const std::function<int(Project&)>& edit,
           OnFailure on_failure) {
    const int status = edit(work.project);
    if (status < 0 && on_failure == OnFailure::take_back) {
        work.history.restore(work.project);
        return status;
    }
    const bool finished = work.project.stage == Stage::made || work.project.stage == Stage::loaded;
    if (const char* fault = find_model_fault(work.project.model, finished)) {
#ifndef NDEBUG
        KIGUMI_CHECK(false, "%.*s: %s", static_cast<int>(name.size()), name.data(), fault);
#endif
        work.history.restore(work.project);
        return refuse("「" + std::string(name) +
                      "」は内部の検査に通らなかったので取り消しました（" + fault + "）");
    }
    work.history.commit(name, work.project);
    return status;
}

int derive(Work& work, const std::function<int(Project&)>& edit) {
    const int status = edit(work.project);
    if (status < 0) {
        work.history.restore(work.project);
    } else {
        work.history.amend(work.project);
    }
    return status;
}

bool undo(Work& work) {
    const bool can = work.history.can_undo();
    work.history.undo(work.project);
    return can;
}

bool redo(Work& work) {
    const bool can = work.history.can_redo();
    work.history.redo(work.project);
    return can;
}

} // namespace kigumi
