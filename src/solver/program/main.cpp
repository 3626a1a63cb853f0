#include "solver/program/options.h"
#include "solver/program/run.h"
#include "solver/program/start.h"
#include "solver/text/output.h"
#include "solver/text/signals.h"

#include <iostream>

int main(int count, char** arguments) {
    frameslv::prepare_process();
    frameslv::Options options;
    if (const frameslv::Fault fault =
            frameslv::read_options({arguments + 1, arguments + count}, options)) {
        std::cerr << fault.text << "\n";
        return static_cast<int>(fault.code);
    }
    if (options.help)
        std::cout << frameslv::help_text();
    else if (options.version)
        std::cout << "frameslv " FRAMESLV_VERSION "\n";
    else {
        frameslv::remove_when_ended(frameslv::temporary_names());
        return frameslv::run(".", options.settings, std::cout, std::cerr);
    }
    return 0;
}
