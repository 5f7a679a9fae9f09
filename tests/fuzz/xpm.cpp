// XPM files as bitmaps of the port, and as pictures of a control.

#include "fuzz/FuzzInput.h"

#include "Graphics/glResources/TglBitmap.h"
#include "foundation/TerrorHandler.h"
#include "ui/QlirnStaticPicture.h"

#include <QApplication>

extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv)
{
    new QApplication(*argc, *argv);
    delete TerrorHandler::install(nullptr);
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {});
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static const MemoryFile file(1000);
    file.write(FuzzInput(data, size).rest());

    const TglBitmap bitmap(file.path().c_str());
    FUZZ_CHECK(bool(bitmap.fBits) == (bitmap.fWidth > 0 && bitmap.fHeight > 0));
    const std::size_t bytes = bitmap.fBits ? bitmap.rowBytes() * bitmap.fHeight : 0;
    for (std::size_t i = bytes; i-- > 0;) // bits past the width are never set
        FUZZ_CHECK(bitmap.fWidth % 16 != 0 ? i % bitmap.rowBytes() != bitmap.rowBytes() - 1 || bitmap.fWidth % 16 > 8 ||
                                                 bitmap.fBits.get()[i] == 0
                                           : true);

    QlirnStaticPicture picture(nullptr);
    picture.setPicture(file.path().c_str());
    return 0;
}
