#include "image/TxpmUtil.h"

#include "foundation/LirnGetEnv.h"

#include <QDir>
#include <QFileInfo>

namespace {

TstringArray& theSearchPath()
{
    static TstringArray path;
    return path;
}

bool isReadable(const QString& file)
{
    const QFileInfo info(file);
    return info.isFile() && info.isReadable();
}

Tstring nativePath(const QString& file)
{
    return Tstring(QFile::encodeName(file).constData());
}

} // namespace

Tstring TxpmUtil::getFullPathName(const Tstring& name)
{
    if (name.isEmpty())
        return Tstring();
    const QString file = QFile::decodeName(name.asChar());
    if (QDir::isAbsolutePath(file))
        return isReadable(file) ? name : Tstring();

    QStringList candidates;
    for (const Tstring& directory : theSearchPath())
        candidates << QDir(QFile::decodeName(directory.asChar())).filePath(file);
    for (QString entry : QFile::decodeName(LirnGetEnv("XBMLANGPATH")).split(':')) {
        if (entry.contains(QLatin1String("%B")))
            candidates << entry.replace(QLatin1String("%B"), file);
        else if (!entry.isEmpty())
            candidates << QDir(entry).filePath(file);
    }
    for (const QString& candidate : candidates) {
        if (isReadable(candidate))
            return nativePath(candidate);
    }
    return Tstring();
}

void TxpmUtil::addSearchPath(const Tstring& directory)
{
    theSearchPath().append(directory);
}

const TstringArray& TxpmUtil::searchPath()
{
    return theSearchPath();
}
