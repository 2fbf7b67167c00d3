#include "FileList.h"

#include <QDirIterator>
#include <QFileInfo>

namespace kxinspect {

const char *const DescriptionSuffixes[] = {"dcf", "json", "sav", "zsav", "dta", nullptr};

namespace {

bool isDescription(const QFileInfo &info)
{
    const QString suffix = info.suffix().toLower();
    for (const char *const *s = DescriptionSuffixes; *s; ++s) {
        if (suffix == QLatin1String(*s))
            return true;
    }
    return false;
}

QStringList filesInFolder(const QString &folder, bool recursive)
{
    QStringList files;
    QDirIterator it(folder, QDir::Files | QDir::Readable | QDir::NoDotAndDotDot,
                    recursive ? QDirIterator::Subdirectories : QDirIterator::NoIteratorFlags);
    while (it.hasNext()) {
        it.next();
        if (isDescription(it.fileInfo()))
            files << it.filePath();
    }
    files.sort();
    return files;
}

} // namespace

QStringList filesToInspect(const QStringList &arguments, bool recursive)
{
    QStringList files;
    for (const QString &argument : arguments) {
        if (QFileInfo(argument).isDir())
            files << filesInFolder(argument, recursive);
        else
            files << argument;
    }
    return files;
}

} // namespace kxinspect
