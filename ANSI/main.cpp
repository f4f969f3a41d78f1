#include "cfe.h"

int main(int argc, char** argv) {
  compiler_main(argc, argv);
}
