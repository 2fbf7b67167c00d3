#ifndef TESTSUPPORT_H
#define TESTSUPPORT_H

#include <QMessageBox>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

#include <functional>

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
//! Writes \a bytes to \a name inside \a dir and returns the path.
QString writeFile(const QTemporaryDir &dir, const QString &name, const QByteArray &bytes);
//! Runs \a f, expects a KxErrorManager* thrown; returns its number and message, deletes it.
bool catchKxError(const std::function<void()> &f, int *number = nullptr, QString *message = nullptr,
                  QString *text = nullptr);

} // namespace kxtest

#endif // TESTSUPPORT_H
