#include "UtilFiles.h"

#include "KxConstants.h"
#include "KxWidgets_p.h"

#include <QDir>
#include <QFileInfo>
#include <QStringList>

int UtilFiles::GetFileStatus(QString path)
{
    if (path.isEmpty())
        return StatusNoName;
    if (!DirExists(GetFileDir(path)))
        return StatusFolderMissing;
    QFileInfo info(path);
    if (!info.exists())
        return StatusNewFile;
    if (!info.isWritable())
        return StatusReadOnly;
    return StatusReady;
}

int UtilFiles::GetFileSaveStatus(QString path, QString)
{
    const int status = GetFileStatus(path);
    return status == StatusNewFile ? StatusReady : status;
}

int UtilFiles::CheckFileStatus(QString path)
{
    return GetFileStatus(path);
}

bool UtilFiles::CheckFileSave(QString path, QString)
{
    const int status = CheckFileStatus(path);
    return status == StatusReady || status == StatusNewFile;
}

QString UtilFiles::GetFileDir(QString path)
{
    if (path.isEmpty())
        return QString();
    return QFileInfo(path).absoluteDir().absolutePath();
}

bool UtilFiles::FileExists(QString path)
{
    if (path.isEmpty())
        return false;
    QFileInfo info(path);
    return info.exists() && info.isFile();
}

bool UtilFiles::DirExists(QString path)
{
    if (path.isEmpty())
        return false;
    QFileInfo info(path);
    return info.exists() && info.isDir();
}

bool UtilFiles::FileSizeReachedInKB(QString path, int limitKB)
{
    QFileInfo info(path);
    const qint64 bytes = (!path.isEmpty() && info.exists()) ? info.size() : 0;
    const qint64 kilobytes = bytes / 1024;
    return static_cast<double>(kilobytes) > static_cast<double>(limitKB);
}

QString UtilFiles::getDataBaseEntityFilePath(QString path)
{
    QFileInfo info(path);
    const QString fileName = info.fileName();
    const QString folder = info.absoluteDir().absolutePath();

    // folder = head + tail, the tail keeping its leading "/".
    const int tailAt = folder.lastIndexOf(QLatin1Char('/'));
    const QString tail = tailAt >= 0 ? folder.mid(tailAt) : folder;
    const QString head = tailAt >= 0 ? folder.left(tailAt) : QString();
    const int cutAt = head.lastIndexOf(QLatin1Char('/'));
    const QString grandParent = cutAt >= 0 ? head.left(cutAt) : QString();

    return QDir::toNativeSeparators(grandParent + tail + QLatin1Char('/') + fileName);
}

QString UtilStrings::getBetterPathString(QString path, int width, int fontSize)
{
    // Without the widgets module no width can be measured: the path is kept whole.
    const KxWidgets *widgets = kxwidgets::api();
    if (!widgets)
        return QDir::toNativeSeparators(path);
    // A size of 0 or less is not a point size: the font keeps its default then.
    const auto advance = [widgets, fontSize](const QString &text) {
        return widgets->horizontalAdvance(QStringLiteral("Arial"), fontSize, text);
    };

    const QString backslash = QStringLiteral("\\");
    const QStringList parts = path.split(backslash); // empty parts are kept
    const int count = parts.size();
    const QString last = parts.last();

    QString candidate;
    int n = count;
    while (n >= 1) {
        candidate.clear();
        for (int i = 0; i < n - 1; ++i)
            candidate += parts.at(i) + backslash;
        if (n == count)
            candidate += last;
        else
            candidate += QStringLiteral("...") + backslash + last;

        const qint64 w = advance(candidate);
        --n;
        // The text plus a ten-per-cent margin must fit.
        if (static_cast<qint64>(width) > (w * 11) / 10)
            break;
    }
    return QDir::toNativeSeparators(candidate);
}

QString UtilStrings::setBetterPathInQDockWidget(QString path, int width, QLabel *label)
{
    const QString entityPath = UtilFiles::getDataBaseEntityFilePath(path);
    const QString native = QDir::toNativeSeparators(entityPath);
    if (label && kxwidgets::api())
        kxwidgets::api()->setLabel(label, getBetterPathString(native, width, 10), native);
    return entityPath;
}

QString UtilStrings::returnLineBreak(QString text)
{
    if (text.isEmpty())
        return QString();

    const QString lineBreakToken = QStringLiteral("#\\#n");
    const QString tabToken = QStringLiteral("#\\#t");
    const int length = text.length();
    QString result;
    result.reserve(length);
    int i = 0;
    while (i <= length) {
        const QString here = text.mid(i, 4);
        if (here == lineBreakToken) {
            result += ENDLINE;
            i += 4;
        } else if (here == tabToken) {
            result += TABCHR;
            i += 4;
        } else {
            if (i < length)
                result += text.at(i);
            ++i;
        }
    }
    return result;
}

QString UtilStrings::GetWordSeparator(QString line, int &pos, QString separator, QString quote)
{
    // A negative position is the end-of-line mark of a previous call:
    // there is nothing left to cut.
    if (pos < 0) {
        pos = -1;
        return QString();
    }

    const int length = line.length();
    int i = length + 1;
    if (pos <= length) {
        for (int k = pos; k <= length; ++k) {
            if (line.mid(k, 1) == separator) {
                i = k;
                break;
            }
        }
    }

    const QString field = line.mid(pos, i - pos);
    pos = i < length ? i + 1 : -1;

    if (quote.isEmpty())
        return field;
    // The quote is looked for at the second character and the cut starts at
    // the third one; callers rely on this.
    if (field.mid(1, 1) == quote)
        return field.mid(2, field.length() - 2);
    return field;
}

TKxList::TKxList(bool flag)
    : flag(flag)
{
}

void TKxList::Notify(void *)
{
}

bool TKxList::Remove1(void *)
{
    flag = true;
    return true;
}
