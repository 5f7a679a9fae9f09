#include "support/Pictures.h"

#include "support/PictureComparison.h"

#include <QDir>

::testing::AssertionResult matchesPicture(const QImage& got, const QString& name, PictureTolerance tolerance)
{
    const QString stored = QStringLiteral(TEST_PICTURES "/%1.png").arg(name);
    if (got.isNull())
        return ::testing::AssertionFailure() << "nothing was drawn for " << qPrintable(name);
    if (qEnvironmentVariableIntValue("UPDATE_PICTURES") != 0) {
        QDir().mkpath(QStringLiteral(TEST_PICTURES));
        return got.save(stored) ? ::testing::AssertionSuccess()
                                : ::testing::AssertionFailure() << "cannot write " << qPrintable(stored);
    }

    const QImage wanted(stored);
    const PictureComparison comparison(wanted, got, tolerance.channel);
    if (comparison.sameSize && comparison.share <= tolerance.share)
        return ::testing::AssertionSuccess();

    QDir().mkpath(QStringLiteral(TEST_DIFFERENCES));
    const QString base = QStringLiteral(TEST_DIFFERENCES "/%1-").arg(name);
    const bool written = got.save(base + QStringLiteral("got.png"));
    auto failure = ::testing::AssertionFailure();
    if (wanted.isNull()) {
        failure << "there is no picture " << qPrintable(stored) << " yet (UPDATE_PICTURES=1 stores one)";
    } else if (!comparison.sameSize) {
        failure << "the picture is " << got.width() << " x " << got.height() << " instead of " << wanted.width()
                << " x " << wanted.height();
    } else {
        failure << 100 * comparison.share << " % of the pixels differ by more than " << tolerance.channel
                << ", at most " << comparison.largest << "; allowed are " << 100 * tolerance.share << " %";
        comparison.difference.save(base + QStringLiteral("difference.png"));
    }
    if (!wanted.isNull())
        wanted.save(base + QStringLiteral("wanted.png"));
    return failure << "\nSee " << qPrintable(base) << "*.png" << (written ? "" : " (could not be written)");
}
