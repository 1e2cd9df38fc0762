#include "app/launcher.h"

int main(int argc, char** argv) { return quarrydex::Launcher(argc, argv).run(); }
