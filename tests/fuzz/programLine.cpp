// The arguments of portview, one a line.

#include "fuzz/FuzzInput.h"

#include "TcommandLine.h"

#include <QCoreApplication>

extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv)
{
    new QCoreApplication(*argc, *argv);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string_view text = FuzzInput(data, size).rest();
    const QStringList arguments = QString::fromUtf8(text.data(), int(text.size())).split('\n');
    const TcommandLine line = TcommandLine::parse(QStringList("portview") + arguments);
    FUZZ_CHECK((line.fRequest == TcommandLine::kRun) == line.fText.isEmpty());
    for (const int side : {line.fSize.width(), line.fSize.height()})
        FUZZ_CHECK(line.fRequest != TcommandLine::kRun ||
                   (side >= TcommandLine::kMinSide && side <= TcommandLine::kMaxSide));
    return 0;
}
