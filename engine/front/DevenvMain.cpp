// The program "devenv.com" outside Windows.
#include "engine/front/Programs.h"

int main(int argc, char** argv) { return qx::RunDevenv({argv + (argc > 0 ? 1 : 0), argv + argc}); }
