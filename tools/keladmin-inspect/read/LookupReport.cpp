// Fills the report of a lookup file from the lookup reader.
#include "ReportBuilder.h"

#include "FormatDetection.h"
#include "TextOutput.h"

#include "KxErrorManager.h"
#include "KxLookup.h"

#include <QFileInfo>
#include <QTemporaryFile>

namespace kxinspect {

namespace {

int separatorCode(const QString &name)
{
    if (name == QLatin1String("tab"))
        return 1;
    if (name == QLatin1String("comma"))
        return 2;
    if (name == QLatin1String("semicolon"))
        return 3;
    if (name == QLatin1String("colon"))
        return 4;
    return 0;
}

//! Runs the lookup reader with the checks asked for; the problem when the file cannot be read.
QString readLookup(const InspectOptions &o, TKxLookup &lookup, TKxLabelFrequencies &frequencies,
                   QStringList &messages)
{
    const econsistencyCheck mode = o.check ? eFileChecksAndFrequencies : eLabelFrequencies;
    try {
        if (!lookup.consistencyCheck(mode, frequencies, messages))
            return oneLine(lookup.getMessageText());
    } catch (KxErrorManager *e) {
        const QString message = oneLine(e->getErrorMessage());
        delete e;
        return QStringLiteral("cannot be read as a lookup file: %1").arg(message);
    } catch (...) {
        return QStringLiteral("cannot be read as a lookup file: unexpected error");
    }
    return QString();
}

} // namespace

QString fillLookupReport(const InspectOptions &o, InspectReport &report)
{
    // A pipe is read once, into a copy that the lookup then reads by path.
    QTemporaryFile copy;
    QString path;
    QString problem = openInput(o.file, copy, &path);
    if (!problem.isEmpty())
        return problem;

    TKxLookup lookup;
    lookup.setFfileName(path);
    lookup.setSeparator(separatorCode(o.separator));
    lookup.setMaxMessages(o.maxMessages);
    TKxLabelFrequencies frequencies;
    QStringList messages;
    const QString failure = readLookup(o, lookup, frequencies, messages);
    if (!failure.isEmpty())
        return failure;
    if (lookup.getLookupMap().isEmpty())
        return QStringLiteral("no entries read as a lookup file");

    report.kind = InspectReport::Kind::Lookup;
    LookupResult &result = report.lookup;
    result.file = QFileInfo(o.file).absoluteFilePath();  // the stream, not its copy
    result.separator = o.separator;
    result.checks = o.check;
    result.maxMessages = o.maxMessages;
    result.lines = lookup.getLineNumber();
    result.entries = lookup.getLookupMap().size();
    result.messages = messages;
    for (auto it = frequencies.cbegin(); it != frequencies.cend(); ++it)
        result.labelFrequencies.append({it.key(), it.value()});
    return QString();
}

} // namespace kxinspect
