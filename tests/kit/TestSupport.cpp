#include "TestSupport.h"

#include "NoteCoverage.h"

#include "KxErrorManager.h"

#include <QAbstractButton>
#include <QApplication>
#include <QLoggingCategory>
#include <QPushButton>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QMutex>
#include <QTimer>

namespace kxtest {

namespace {
QStringList g_messages;
QMutex g_mutex;

void collect(QtMsgType, const QMessageLogContext &, const QString &message)
{
    QMutexLocker lock(&g_mutex);
    g_messages.append(message);
}
} // namespace

MessageCollector::MessageCollector()
{
    QMutexLocker lock(&g_mutex);
    g_messages.clear();
    previous = qInstallMessageHandler(collect);
}

MessageCollector::~MessageCollector()
{
    qInstallMessageHandler(previous);
}

QStringList MessageCollector::messages() const
{
    QMutexLocker lock(&g_mutex);
    return g_messages;
}

bool MessageCollector::contains(const QString &line) const
{
    return messages().contains(line);
}

DebugOutputOff::DebugOutputOff()
{
    QLoggingCategory::setFilterRules(QStringLiteral("default.debug=false"));
}

DebugOutputOff::~DebugOutputOff()
{
    QLoggingCategory::setFilterRules(QString());
}

ModalPresser::ModalPresser(QList<QMessageBox::StandardButton> answers)
    : answers(answers)
    , timer(new QTimer)
{
    QObject::connect(timer, &QTimer::timeout, [this] { poll(); });
    timer->start(20);
}

ModalPresser::~ModalPresser()
{
    timer->stop();
    delete timer;
}

void ModalPresser::poll()
{
    auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
    if (!box || answers.isEmpty())
        return;
    Seen s;
    s.text = box->text();
    s.informativeText = box->informativeText();
    s.title = box->windowTitle();
    s.icon = box->icon();
    s.buttons = box->standardButtons();
    s.defaultButton = box->defaultButton() ? box->standardButton(box->defaultButton()) : QMessageBox::NoButton;
    s.richText = box->textFormat() == Qt::RichText;
    s.minimumSize = box->minimumSize();
    seenDialogs.append(s);
    QAbstractButton *button = box->button(answers.takeFirst());
    if (button)
        button->click();
    else
        box->reject();
}

QString dataPath(const QString &name)
{
    return QDir(QStringLiteral(KX_TEST_DATA_DIR)).filePath(name);
}

QString samplePath(const QString &name)
{
    return QDir(QStringLiteral(KX_SAMPLES_DIR)).filePath(name);
}

namespace {

bool openableForReading(const QString &path)
{
    QFile f(path);
    return f.open(QIODevice::ReadOnly);
}

} // namespace

QString unreadableFile(const QTemporaryDir &dir)
{
    const QString path = writeFile(dir, QStringLiteral("unreadable.txt"), "1\tOne\n");
    QFile::setPermissions(path, QFileDevice::Permissions());
    if (!openableForReading(path))
        return path;
    // Write-only for root as well: the kernel checks its own settings' modes.
    const QString kernelSetting = QStringLiteral("/proc/sys/vm/compact_memory");
    if (QFileInfo(kernelSetting).isFile() && !openableForReading(kernelSetting))
        return kernelSetting;
    return QString();
}

void expectNotesAccountForEveryDifference(const QString &path)
{
    const CoverageReport report = checkNoteCoverage(path);
    if (report.compared && !report.unaccounted.isEmpty())
        ADD_FAILURE() << "differences between the codebook and the importer's fields that no note accounts for, in "
                      << path.toStdString() << ":\n" << report.describeUnaccounted().toStdString();
}

QString writeFile(const QTemporaryDir &dir, const QString &name, const QByteArray &bytes)
{
    const QString path = dir.filePath(name);
    QFile f(path);
    if (f.open(QIODevice::WriteOnly)) {
        f.write(bytes);
        f.close();
    }
    if (name.endsWith(QLatin1String(".dcf")) || name.endsWith(QLatin1String(".json")))
        expectNotesAccountForEveryDifference(path);
    return path;
}

bool catchKxError(const std::function<void()> &f, int *number, QString *message, QString *text)
{
    try {
        f();
    } catch (KxErrorManager *e) {
        if (number)
            *number = e->getErrorNumber();
        if (message)
            *message = e->getErrorMessage();
        if (text)
            *text = e->getMessageText();
        delete e;
        return true;
    }
    return false;
}

} // namespace kxtest
