#include "project/gate.h"

#include "base/check.h"
#include "base/float.h"
#include "base/message.h"
#include "project/project_fault.h"

#include <cstdlib>
#include <string>

namespace kigumi {

namespace {

// Tells solids that an edit made from those that it found.
struct SolidsMark {
    explicit SolidsMark(const Solids& solids)
        : records(solids.trio.data()), count(solids.n_trio), volume(solids.Volume) {}
    bool operator==(const SolidsMark& o) const {
        return records == o.records && count == o.count && same_float(volume, o.volume);
    }

    const Trio* records;
    std::int32_t count;
    float volume;
};

// Checks the tables after an edit; -1, the change being taken back, when they are broken.
int check(Work& work, std::string_view name) {
    const char* fault = find_project_fault(work.project);
    if (fault == nullptr) {
        return 0;
    }
    KIGUMI_CHECK(!work.strict, "%.*s: %s", static_cast<int>(name.size()), name.data(), fault);
    work.history.restore(work.project);
    return refuse("「" + std::string(name) + "」は内部の検査に通らなかったので取り消しました（" +
                  fault + "）");
}

} // namespace

bool faults_are_fatal() {
#ifndef NDEBUG
    return true;
#else
    return std::getenv("KIGUMI_STRICT") != nullptr;
#endif
}

int change(Work& work, std::string_view name, const std::function<int(Project&)>& edit,
           OnFailure on_failure) {
    Project& project = work.project;
    const SolidsMark before(project.solids);
    const int status = edit(project);
    if (status < 0 && on_failure == OnFailure::take_back) {
        work.history.restore(project);
        return status;
    }
    if (check(work, name) < 0) {
        return -1;
    }
    if (work.history.members_differ(project) && before == SolidsMark(project.solids)) {
        empty_derived(project);
    }
    work.history.commit(name, project);
    return status;
}

int derive(Work& work, const std::function<int(Project&)>& edit) {
    const int status = edit(work.project);
    if (status < 0) {
        work.history.restore(work.project);
        return status;
    }
    if (check(work, work.history.undo_name()) < 0) {
        return -1;
    }
    work.history.amend(work.project);
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
