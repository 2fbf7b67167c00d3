#ifndef TESTSUPPORT_H
#define TESTSUPPORT_H

#include "ReadNote.h"

#include <gtest/gtest.h>

#include <QMessageBox>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

#include <functional>
#include <string>

class KxErrorManager;

namespace kxtest {

//! Collects Qt log messages while alive (debug, warning, ...).
class MessageCollector
{
public:
    MessageCollector();
    ~MessageCollector();
    QStringList messages() const;
    bool contains(const QString &line) const;

private:
    QtMessageHandler previous;
};

//! Turns Qt's debug output of the default category off while alive, as QT_LOGGING_RULES="default.debug=false" does.
class DebugOutputOff
{
public:
    DebugOutputOff();
    ~DebugOutputOff();
    DebugOutputOff(const DebugOutputOff &) = delete;
    DebugOutputOff &operator=(const DebugOutputOff &) = delete;
};

/*! Presses buttons of the active modal widget, one per dialog, in the given
 * order. Records each dialog it saw so the test can check texts. */
class ModalPresser
{
public:
    struct Seen
    {
        QString text;
        QString informativeText;
        QString title;
        QMessageBox::Icon icon = QMessageBox::NoIcon;
        QMessageBox::StandardButtons buttons;
        QMessageBox::StandardButton defaultButton = QMessageBox::NoButton;
        bool richText = false;
        QSize minimumSize;
    };

    explicit ModalPresser(QList<QMessageBox::StandardButton> answers);
    ~ModalPresser();
    QList<Seen> seen() const { return seenDialogs; }

private:
    void poll();
    QList<QMessageBox::StandardButton> answers;
    QList<Seen> seenDialogs;
    class QTimer *timer;
};

//! Path of a fixture under tests/data.
QString dataPath(const QString &name);
//! Path of a bundled sample under samples/ (the census story and its lookup).
QString samplePath(const QString &name);
/*! Reads the CSPro dictionary at \a path both ways, the codebook and the
 * importer's fields, and fails the running test on every difference no
 * reading note accounts for. Files the codebook cannot read are left alone. */
void expectNotesAccountForEveryDifference(const QString &path);
//! Writes \a bytes to \a name inside \a dir and returns the path. A CSPro
//! dictionary (.dcf, .json) is checked by expectNotesAccountForEveryDifference().
QString writeFile(const QTemporaryDir &dir, const QString &name, const QByteArray &bytes);
/*! A path that exists, is no folder and cannot be opened for reading: a file
 * written into \a dir with no permissions, or, for root (who may read any
 * file), a kernel setting that is write-only for everyone. Empty when this
 * machine offers neither; the caller then skips. */
QString unreadableFile(const QTemporaryDir &dir);
//! Runs \a f, expects a KxErrorManager* thrown; returns its number and message, deletes it.
bool catchKxError(const std::function<void()> &f, int *number = nullptr, QString *message = nullptr,
                  QString *text = nullptr);

// Reading notes, one line each, so that a failing comparison shows both lists.
inline std::string describeNotes(const TReadNotes &notes)
{
    std::string out;
    for (const TReadNote &note : notes) {
        out += QStringLiteral("%1 | %2 | %3 | %4\n")
                   .arg(QString::number(note.getLine()), note.getSubject(), note.getKind(), note.getText())
                   .toStdString();
    }
    return out;
}

//! A note where lines mean nothing (SPSS, Stata, CSPro JSON): line 0.
inline TReadNote fileNote(const char *subject, const char *kind, const char *text)
{
    return TReadNote(0, QString::fromUtf8(subject), QString::fromUtf8(kind), QString::fromUtf8(text));
}

inline void expectNotes(const TReadNotes &actual, const TReadNotes &expected)
{
    EXPECT_EQ(describeNotes(actual), describeNotes(expected));
}

} // namespace kxtest

#endif // TESTSUPPORT_H
