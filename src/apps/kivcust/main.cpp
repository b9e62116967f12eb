// kivcust: customer maintenance from the command line over the reference host.
#include "apps/kivcust/cli.h"

int main(int argc, char** argv) { return kiv::kivcust::RunProgram(argc, argv); }
