// The picture of the program in the folder start.

#define main startMain
#include "start/main.cpp" // NOLINT(bugprone-suspicious-include): a program of its own, for users to build
#undef main

#include "Sample.h"

static const Sample sample("start", [] { return Sample::drawing(QSize(480, 320), 3, draw); });
