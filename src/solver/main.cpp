#include "solver/run.h"

#include <iostream>

int main() {
    return frameslv::run(".", std::cout, std::cerr);
}
