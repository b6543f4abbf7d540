#include "cli/platform.hpp"
#include "cli/run.hpp"

int main(int argc, char** argv) {
    return numcore::cli::run(numcore::cli::startProcess(argc, argv));
}
