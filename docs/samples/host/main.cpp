// A program of the host with the replaced library: what the port writes goes through the host's own TimageFile.

#include "Graphics/3dPort/T3dPort.h"
#include "Graphics/glResources/TglPixels.h"

#include <QApplication>

#include <cstring>

int main(int argc, char** argv)
{
    const QApplication application(argc, argv);
    TglPixels block(TglPixels::kRgb, 2, 2);
    std::memset(block.pixels(), 200, 12);
    return block.write(Tstring("own.ppm")) ? 0 : 1;
}
