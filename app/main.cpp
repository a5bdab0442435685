#include "app/CommandLine.h"

int main(int argc, char** argv) { return vonta::RunCommandLine(argc, argv); }
