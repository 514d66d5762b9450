// The daemon slpd.
#include "slpd/server/program.h"

int main(int argc, char** argv) {
  return slp::RunProgram(argc, argv);
}
