#include "support/PictureComparison.h"

#include <QCommandLineParser>
#include <QCoreApplication>

#include <cstdio>

int main(int argc, char** argv)
{
    QCoreApplication application(argc, argv);
    QCommandLineParser parser;
    parser.setApplicationDescription(
        "Compares two pictures. Ends with 0 when they match, 1 when not, 2 without pictures.");
    parser.addHelpOption();
    parser.addPositionalArgument("wanted", "the picture as it should be");
    parser.addPositionalArgument("got", "the picture as it is");
    const QCommandLineOption channel("channel", "Difference in a channel that does not count, 0 to 255.", "number",
                                     "2");
    const QCommandLineOption share("share", "Share of the pixels, 0 to 1, that may differ by more.", "number", "0");
    const QCommandLineOption difference("difference", "Where to write the picture of the differences.", "file");
    parser.addOptions({channel, share, difference});
    parser.process(application);

    const QStringList files = parser.positionalArguments();
    if (files.size() != 2)
        parser.showHelp(2);
    const QImage wanted(files[0]);
    const QImage got(files[1]);
    if (wanted.isNull() || got.isNull()) {
        std::fprintf(stderr, "cannot read %s\n", qPrintable(wanted.isNull() ? files[0] : files[1]));
        return 2;
    }
    const PictureComparison comparison(wanted, got, parser.value(channel).toInt());
    if (!comparison.sameSize) {
        std::printf("%d x %d instead of %d x %d\n", got.width(), got.height(), wanted.width(), wanted.height());
        return 1;
    }
    std::printf("largest difference %d, %g %% of the pixels beyond %s\n", comparison.largest, 100 * comparison.share,
                qPrintable(parser.value(channel)));
    if (parser.isSet(difference) && !comparison.difference.save(parser.value(difference))) {
        std::fprintf(stderr, "cannot write %s\n", qPrintable(parser.value(difference)));
        return 2;
    }
    return comparison.share <= parser.value(share).toDouble() ? 0 : 1;
}
