#include "TcommandLine.h"

#include <gtest/gtest.h>

namespace {

TcommandLine parsed(const char* arguments)
{
    return TcommandLine::parse(QString::fromLatin1(arguments).split(QLatin1Char(' ')));
}

} // namespace

TEST(TcommandLine, SaysWhatIsWrong)
{
    const struct
    {
        const char* arguments;
        const char* part;
    } cases[] = {
        {"portview --bogus", "bogus"},
        {"portview --size", "size"},
        {"portview --size 640", "--size"},
        {"portview --size 0x480", "--size"},
        {"portview --size 9000x10", "--size"},
        {"portview --size 99999999999x480", "--size"},
        {"portview --size -64x48", "--size"},
        {"portview --shading round", "flat or smooth"},
        {"portview --views 4", "one or four"},
        {"portview a.obj b.obj", "b.obj"},
        {"portview --snapshot=", "--snapshot"},
        {"portview ", "empty"},
        {"portview --surface wood", "cube"},
        {"portview --filter soft", "linear"},
        {"portview --texture=", "--texture"},
        {"portview --gallery=", "--gallery"},
        {"portview --gallery a b.obj", "--gallery"},
#ifdef PORTVIEW_PYTHON
        {"portview --script=", "--script"},
        {"portview --gallery a --script b.py", "--script"},
#endif
    };
    for (const auto& each : cases) {
        const TcommandLine line = parsed(each.arguments);
        EXPECT_EQ(line.fRequest, TcommandLine::kError) << each.arguments;
        EXPECT_TRUE(line.fText.contains(QLatin1String(each.part))) << line.fText.toStdString();
        EXPECT_TRUE(line.fText.endsWith(QLatin1Char('.'))) << line.fText.toStdString();
    }
    // Help is given whatever else is there.
    EXPECT_EQ(parsed("portview --help a b c").fRequest, TcommandLine::kHelp);
    EXPECT_EQ(parsed("portview -v").fRequest, TcommandLine::kVersion);
}
