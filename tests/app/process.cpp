#include "process.h"

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace kigumi::test {

namespace {

// In the child: output into files, then the program.
[[noreturn]] void become_kigumi(const fs::path& folder, const fs::path& out, const fs::path& err,
                                std::vector<std::string> arguments) {
    const auto redirect = [](const fs::path& path, int to) {
        return dup2(open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600), to) >= 0;
    };
    std::vector<char*> argv = {const_cast<char*>("kigumi")};
    for (std::string& argument : arguments) {
        argv.push_back(argument.data());
    }
    argv.push_back(nullptr);
    if (redirect(out, STDOUT_FILENO) && redirect(err, STDERR_FILENO) &&
        chdir(folder.c_str()) == 0) {
        execv(KIGUMI_PROGRAM, argv.data());
    }
    _exit(127);
}

} // namespace

Outcome run_kigumi(const fs::path& folder, const std::vector<std::string>& arguments) {
    fs::path out = folder;
    fs::path err = folder;
    out += ".stdout";
    err += ".stderr";
    const pid_t child = fork();
    if (child == 0) {
        become_kigumi(folder, out, err, arguments);
    }
    Outcome outcome;
    int status = 0;
    if (child > 0 && waitpid(child, &status, 0) == child && WIFEXITED(status)) {
        outcome.status = WEXITSTATUS(status);
    }
    outcome.out = read_file(out).value_or("");
    outcome.err = read_file(err).value_or("");
    fs::remove(out);
    fs::remove(err);
    return outcome;
}

} // namespace kigumi::test
