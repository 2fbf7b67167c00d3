#ifndef CODEBOOKTESTSUPPORT_H
#define CODEBOOKTESTSUPPORT_H

#include <KxCodebook.h>

#include <QByteArray>
#include <QString>
#include <QTemporaryDir>

#include <ostream>

namespace cbtest {

//! The path of a bundled sample file (samples/NAME).
QString samplePath(const char *name);

//! A temporary folder that writes files for one test and removes them after.
class TempFiles
{
public:
    //! Writes \a bytes to a file called \a name in the folder; returns its path.
    QString write(const QString &name, const QByteArray &bytes);
    //! The folder's path.
    QString path() const { return dir.path(); }

private:
    QTemporaryDir dir;
};

//! Reads a CSPro text dictionary from \a text; fails the test on an error.
KxCodebook::Codebook readText(const QByteArray &text);
//! Reads a CSPro JSON dictionary from \a json; fails the test on an error.
KxCodebook::Codebook readJson(const QByteArray &json);
//! The variable named \a name of \a book; fails the test when there is none.
KxCodebook::Variable variable(const KxCodebook::Codebook &book, const QString &name);

} // namespace cbtest

// GoogleTest prints Qt strings readably.
QT_BEGIN_NAMESPACE
void PrintTo(const QString &s, std::ostream *os);
QT_END_NAMESPACE

#endif // CODEBOOKTESTSUPPORT_H
