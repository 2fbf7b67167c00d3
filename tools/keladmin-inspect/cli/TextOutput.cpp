#include "TextOutput.h"

#include <QLoggingCategory>
#include <QRegularExpression>
#include <QStringList>
#include <QTextStream>

#include <algorithm>
#include <cstdio>

namespace kxinspect {

const char *const ProgramName = "keladmin-inspect";

namespace {

bool verboseLog = false;

void messageHandler(QtMsgType type, const QMessageLogContext &, const QString &message)
{
    // The library traces every field to the debug log; keep it quiet unless asked.
    if ((type == QtDebugMsg || type == QtInfoMsg) && !verboseLog)
        return;
    std::fprintf(stderr, "%s\n", message.toLocal8Bit().constData());
}

bool isControl(ushort u)
{
    return u < 0x20 || (u >= 0x7f && u < 0xa0);
}

} // namespace

QString printable(const QString &text)
{
    // Most texts have nothing to escape: they are handed back as they are, shared.
    if (std::none_of(text.cbegin(), text.cend(), [](QChar c) { return isControl(c.unicode()); }))
        return text;
    QString out;
    out.reserve(text.size());
    for (const QChar c : text) {
        const ushort u = c.unicode();
        if (isControl(u))
            out += QStringLiteral("\\u%1").arg(u, 4, 16, QLatin1Char('0'));
        else
            out += c;
    }
    return out;
}

QString htmlText(const QString &text)
{
    const QString shown = printable(text);
    QString out;
    out.reserve(shown.size());
    for (const QChar c : shown) {
        switch (c.unicode()) {
        case '&': out += QLatin1String("&amp;"); break;
        case '<': out += QLatin1String("&lt;"); break;
        case '>': out += QLatin1String("&gt;"); break;
        case '"': out += QLatin1String("&quot;"); break;
        case '\'': out += QLatin1String("&#39;"); break;
        default: out += c;
        }
    }
    return out;
}

QString oneLine(const QString &text)
{
    QStringList parts;
    for (const QString &line : text.split(QRegularExpression(QStringLiteral("[\r\n]+")), Qt::SkipEmptyParts)) {
        const QString trimmed = line.trimmed();
        if (!trimmed.isEmpty())
            parts << trimmed;
    }
    return printable(parts.join(QStringLiteral("; ")));
}

void printError(const QString &file, const QString &problem)
{
    const QString line = QStringLiteral("%1: %2: %3\n").arg(QLatin1String(ProgramName), printable(file), problem);
    std::fputs(line.toLocal8Bit().constData(), stderr);
    std::fflush(stderr);
}

QTextStream &standardOutput()
{
    static QTextStream out(stdout);
    static bool init = false;
    if (!init) {
        out.setCodec("UTF-8");
        init = true;
    }
    return out;
}

void installMessageFilter()
{
    qInstallMessageHandler(messageHandler);
}

void setVerboseLog(bool verbose, bool traceLinesPossible)
{
    verboseLog = verbose;
    // Turned off at the source too, so the library's trace lines are not even
    // built (a few per field); the handler still drops any that get through.
    // Setting the rules reads Qt's logging configuration (about 0.1 ms), which
    // a run that makes no trace lines does without.
    if (!verbose && traceLinesPossible)
        QLoggingCategory::setFilterRules(QStringLiteral("default.debug=false\ndefault.info=false"));
}

} // namespace kxinspect
