// The program "MSBuild.exe" outside Windows.
#include "engine/front/Programs.h"

int main(int argc, char** argv) { return qx::RunMsBuild({argv + (argc > 0 ? 1 : 0), argv + argc}); }
