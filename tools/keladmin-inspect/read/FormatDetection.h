#ifndef KXINSPECT_FORMATDETECTION_H
#define KXINSPECT_FORMATDETECTION_H

#include <QByteArray>
#include <QString>

class QTemporaryFile;

namespace kxinspect {

//! Checks that \a path names a readable regular file; the problem otherwise, else an empty text.
QString checkInputFile(const QString &path);
//! The format told by a file's first bytes ("cspro", "cspro8", "spss", "stata"), or an empty text.
QString detectFormat(const QByteArray &head);
/*! Reads the first bytes of \a path and sets \a format to what they tell;
 * returns the problem when the file is empty, unreadable or not recognised. */
QString detectFileFormat(const QString &path, QString *format);

/*! The path to read \a path by: \a path itself when it is a regular file;
 * else (a pipe, the standard input, which can be read only once) the path
 * of \a copy, which receives all its bytes. Empty, with the reason in
 * \a problem, when the copy cannot be made. */
QString readablePath(const QString &path, QTemporaryFile &copy, QString *problem);

/*! checkInputFile() and readablePath() in one: sets \a absolutePath to the
 * absolute path to read \a path by (\a copy's for a pipe) and returns an
 * empty text, or returns the problem. */
QString openInput(const QString &path, QTemporaryFile &copy, QString *absolutePath);

} // namespace kxinspect

#endif // KXINSPECT_FORMATDETECTION_H
