// The runs that need the codebook library only (--codebook, --ddi, --diff),
// shared by the inspector's two modules: keladmin-inspect-codebook.so, which
// the program loads for them without the front end's library, and the
// inspector proper.
#include "CodebookRuns.h"

#include "CodebookWriters.h"
#include "DiffPage.h"
#include "DiffWriters.h"
#include "FileOutput.h"
#include "HelpText.h"
#include "TextOutput.h"
#include "Usage.h"
#include "WriteSettings.h"

#include <KxCodebookDdi.h>
#include <model_KelAdmin_version.h>

#include <QFileDevice>
#include <QTextStream>

namespace kxinspect {

namespace {

/*! Reads \a file with the codebook library; on failure says why on stderr
 * and returns a null codebook. */
KxCodebook::Codebook readCodebook(const QString &file, const QString &format)
{
    KxCodebook::Error error;
    const KxCodebook::Codebook codebook =
        KxCodebook::Codebook::fromFile(file, &error, KxCodebook::formatFromName(format));
    if (!error.ok()) {
        // The codebook's messages start with the file's name; the error line names it once.
        QString problem = error.message;
        if (problem.startsWith(file + QLatin1String(": ")))
            problem = problem.mid(file.size() + 2);
        printError(file, problem);
    }
    return codebook;
}

//! --codebook: the file read by the codebook library, as its own format means it.
int inspectCodebook(const InspectOptions &o)
{
    const KxCodebook::Codebook codebook = readCodebook(o.file, o.format);
    if (codebook.isNull())
        return ExitInputError;
    WriteSettings settings;
    settings.wideLabels = o.wide;
    if (o.json)
        writeCodebookJson(codebook, standardOutput());
    else if (o.csv)
        writeCodebookCsv(codebook, standardOutput());
    else
        writeCodebookTable(codebook, settings, standardOutput());
    return ExitOk;
}

//! --ddi OUT: the codebook as a DDI Codebook 2.5 document, to OUT or ("-") the standard output.
int inspectDdi(const InspectOptions &o)
{
    const KxCodebook::Codebook codebook = readCodebook(o.file, o.format);
    if (codebook.isNull())
        return ExitInputError;
    KxCodebook::DdiOptions options;
    options.producer = QStringLiteral("keladmin-inspect");
    options.producerVersion = QLatin1String(MODEL_KELADMIN_VERSION_STRING);
    const auto writeDocument = [&](QIODevice *device) { return KxCodebook::writeDdi(codebook, device, options); };
    if (o.ddi == QLatin1String("-")) {
        // Streamed; a failed write stays in the device's error, which finishOutput() reports.
        QTextStream &out = standardOutput();
        out.flush();
        writeDocument(out.device());
        if (auto *file = qobject_cast<QFileDevice *>(out.device()))
            file->flush();
        return ExitOk;
    }
    const QString failure = writeFileWhole(o.ddi, writeDocument);
    if (!failure.isEmpty()) {
        printError(o.ddi, failure);
        return ExitOutputError;
    }
    return ExitOk;
}

//! --diff OLD NEW: what changed between the two files' codebooks; 0 no change, ExitChanges changes.
int inspectDiff(const InspectOptions &o)
{
    DiffReport report;
    report.oldFile = o.file;
    report.newFile = o.newFile;
    report.oldCodebook = readCodebook(o.file, o.format);
    report.newCodebook = readCodebook(o.newFile, o.format);
    if (report.oldCodebook.isNull() || report.newCodebook.isNull())
        return ExitInputError;
    report.ignoreLabels = o.ignoreLabels;
    KxCodebook::CompareOptions options;
    options.ignoreLabels = o.ignoreLabels;
    report.comparison = KxCodebook::compare(report.oldCodebook, report.newCodebook, options);
    WriteSettings settings;
    if (o.json)
        writeDiffJson(report, standardOutput());
    else
        writeDiffTable(report, settings, standardOutput());
    if (!o.html.isEmpty()) {
        const QString failure = writeFileWhole(o.html, diffPage(report).toUtf8());
        if (!failure.isEmpty()) {
            printError(o.html, failure);
            return ExitOutputError;
        }
    }
    return report.comparison.isEmpty() ? ExitOk : ExitChanges;
}

} // namespace

QStringList argumentsOf(int argc, char **argv)
{
    QStringList args;
    for (int i = 1; i < argc; ++i)
        args << QString::fromLocal8Bit(argv[i]);
    return args;
}

bool readsWithFrontEnd(const InspectOptions &o)
{
    if (severalFiles(o))
        return true;
    return !o.diff && o.ddi.isEmpty() && !o.codebook;
}

int inspectWithCodebook(const InspectOptions &o)
{
    if (o.diff)
        return inspectDiff(o);
    if (!o.ddi.isEmpty())
        return inspectDdi(o);
    return inspectCodebook(o);
}

int finishOutput(int status, int writeError)
{
    QTextStream &out = standardOutput();
    out.flush();
    // The stream's file keeps the reason of a failed write; the C library's
    // error flag covers what went to stdout directly.
    const auto *file = qobject_cast<QFileDevice *>(out.device());
    QString why = file && file->error() != QFileDevice::NoError ? file->errorString() : QString();
    const char *flushFailure = standardOutputFailure(writeError);
    if (why.isEmpty() && flushFailure)
        why = QString::fromLocal8Bit(flushFailure);
    if (why.isEmpty())
        return status;
    printError(QStringLiteral("standard output"), why);
    return status == ExitInputError || status == ExitUsage ? status : ExitOutputError;
}

} // namespace kxinspect
