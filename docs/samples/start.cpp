// The picture of the program in the folder start.

#define main startMain
#include "start/main.cpp"
#undef main

#include "Sample.h"

static const Sample sample("start", [] { return Sample::drawing(QSize(480, 320), 3, draw); });
