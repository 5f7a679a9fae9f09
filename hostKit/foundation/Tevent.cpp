#include "foundation/Tevent.h"

// Defined here rather than inline: every library of a process must see the same ones, whatever its symbol visibility.
bool Tevent::fsIsDragging = false;
bool Tevent::fsUseDevice = false;
double Tevent::fsDevicePressure = 0;
int Tevent::fsTabletPointerType = 1;

Tevent::~Tevent() = default;
