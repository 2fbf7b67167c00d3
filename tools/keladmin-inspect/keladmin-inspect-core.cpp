// The inspector itself, loaded by the keladmin-inspect program when it has
// more to do than print its help: opens a data description with the
// library's importers, as the front end does, and prints the data-source
// description it yields; or reads a lookup file and prints its entries,
// messages and label counts. The work is done in the rooms beside it (cli/,
// read/, write/): the options, the report that the importers fill, one writer
// per output. The codebook's runs (--codebook, --ddi, --diff) are
// cli/CodebookRuns, which keladmin-inspect-codebook.so runs too.
#include "CodebookRuns.h"
#include "CsvWriter.h"
#include "FileList.h"
#include "HtmlWriter.h"
#include "InspectOptions.h"
#include "InspectReport.h"
#include "JsonWriter.h"
#include "ReportBuilder.h"
#include "TableWriter.h"
#include "TextOutput.h"
#include "Usage.h"
#include "WriteSettings.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QMap>
#include <QSet>
#include <QScopedPointer>
#include <QTextStream>


#include <dlfcn.h>

#include <cerrno>
#include <cstdio>

using namespace kxinspect;

namespace {

//! A dialog can be shown only on a real display; offscreen or minimal platforms would wait forever.
bool displayAvailable()
{
    const QByteArray platform = qgetenv("QT_QPA_PLATFORM");
    if (platform.startsWith("offscreen") || platform.startsWith("minimal"))
        return false;
    return !qgetenv("DISPLAY").isEmpty() || !qgetenv("WAYLAND_DISPLAY").isEmpty();
}

/*! A QApplication made by keladmin-inspect-gui.so, which sits beside this
 * module; null (with the reason on stderr) when it cannot be loaded. */
QCoreApplication *newGuiApplication(int &argc, char **argv)
{
    Dl_info info;
    if (!dladdr(reinterpret_cast<void *>(&newGuiApplication), &info) || !info.dli_fname)
        return nullptr;
    const QString folder = QFileInfo(QString::fromLocal8Bit(info.dli_fname)).absolutePath();
    const QByteArray path = QFile::encodeName(folder + QStringLiteral("/keladmin-inspect-gui.so"));
    void *module = dlopen(path.constData(), RTLD_NOW | RTLD_LOCAL);
    using Make = QCoreApplication *(*)(int &, char **);
    const Make make = module ? reinterpret_cast<Make>(dlsym(module, "kx_inspect_gui_application")) : nullptr;
    if (!make) {
        const char *why = dlerror();
        printError(QString::fromLocal8Bit(path), QString::fromLocal8Bit(why ? why : "cannot be loaded"));
        return nullptr;
    }
    return make(argc, argv);
}

//! 3 or 4 when the report holds what --fail-on-notes or --check makes a script stop at.
int exitStatusOf(const InspectReport &report, const InspectOptions &o)
{
    if (o.check && report.kind == InspectReport::Kind::Lookup && !report.lookup.messages.isEmpty())
        return ExitLookupMessages;
    if (o.failOnNotes && !report.notes.isEmpty())
        return ExitNotes;
    return ExitOk;
}


//! The statuses by how bad they are: success, notes, lookup messages, a file not read, output lost.
int worseStatus(int a, int b)
{
    const auto rank = [](int status) {
        switch (status) {
        case ExitOk: return 0;
        case ExitNotes: return 1;
        case ExitLookupMessages: return 2;
        case ExitInputError: return 3;
        default: return 4;
        }
    };
    return rank(b) > rank(a) ? b : a;
}

//! What several files gave, for the closing summary.
struct FilesSummary
{
    int read = 0;
    int withNotes = 0;
    QMap<QString, int> filesByNoteKind;            //!< kind -> files with at least one note of it
    QList<QPair<QString, QString>> failures;       //!< file, problem
};

void countNotes(const InspectReport &report, FilesSummary &summary)
{
    if (report.notes.isEmpty())
        return;
    ++summary.withNotes;
    QSet<QString> kinds;
    for (const NoteRow &n : report.notes)
        kinds.insert(n.kind);
    for (const QString &kind : kinds)
        ++summary.filesByNoteKind[kind];
}

void writeSummaryTable(const FilesSummary &s, QTextStream &out)
{
    out << "Summary:\n";
    out << "  Files read:        " << s.read << "\n";
    out << "  Files failed:      " << s.failures.size() << "\n";
    out << "  Files with notes:  " << s.withNotes << "\n";
    if (!s.filesByNoteKind.isEmpty()) {
        int width = 0;
        for (auto it = s.filesByNoteKind.cbegin(); it != s.filesByNoteKind.cend(); ++it)
            width = qMax(width, it.key().size());
        out << "  Files by note kind:\n";
        for (auto it = s.filesByNoteKind.cbegin(); it != s.filesByNoteKind.cend(); ++it)
            out << "    " << it.key().leftJustified(width + 2) << it.value() << "\n";
    }
    if (!s.failures.isEmpty()) {
        out << "  Failed:\n";
        for (const auto &f : s.failures)
            out << "    " << printable(f.first) << ": " << oneLine(f.second) << "\n";
    }
}

QJsonObject jsonOfSummary(const FilesSummary &s)
{
    QJsonArray kinds;
    for (auto it = s.filesByNoteKind.cbegin(); it != s.filesByNoteKind.cend(); ++it)
        kinds.append(QJsonObject{{QStringLiteral("kind"), it.key()}, {QStringLiteral("files"), it.value()}});
    QJsonArray failures;
    for (const auto &f : s.failures)
        failures.append(QJsonObject{{QStringLiteral("file"), f.first}, {QStringLiteral("problem"), f.second}});
    return QJsonObject{{QStringLiteral("read"), s.read},
                       {QStringLiteral("failed"), s.failures.size()},
                       {QStringLiteral("withNotes"), s.withNotes},
                       {QStringLiteral("filesByNoteKind"), kinds},
                       {QStringLiteral("failures"), failures}};
}

/*! Several files or folders: one report per file (a failing file does not
 * stop the others), then a summary; --json gives one document holding them
 * all. The status is the worst of the files'. */
int inspectSeveral(const InspectOptions &o, bool dialogPossible)
{
    const QStringList files = filesToInspect(o.files, o.recursive);
    if (files.isEmpty()) {
        printError(o.files.join(QStringLiteral(", ")), QStringLiteral("no dictionaries or data files (.dcf, .json, "
                                                                         ".sav, .zsav, .dta) found"));
        return ExitInputError;
    }
    WriteSettings settings;
    settings.wideLabels = o.wide;
    settings.notes = !o.noNotes;
    QTextStream &out = standardOutput();
    FilesSummary summary;
    QJsonArray reports;
    int status = ExitOk;
    for (const QString &file : files) {
        InspectOptions one = o;
        one.file = file;
        one.files = QStringList{file};
        const WarningSink warn = [&file](const QString &warning) { printError(file, warning); };
        InspectReport report;
        const QString problem = fillDictionaryReport(one, dialogPossible, warn, report);
        if (!problem.isEmpty()) {
            printError(file, problem);
            summary.failures.append({file, problem});
            status = worseStatus(status, ExitInputError);
            if (o.json)
                reports.append(QJsonObject{{QStringLiteral("file"), file}, {QStringLiteral("problem"), problem}});
            continue;
        }
        ++summary.read;
        countNotes(report, summary);
        status = worseStatus(status, exitStatusOf(report, one));
        if (o.json) {
            reports.append(QJsonObject{{QStringLiteral("file"), file},
                                       {QStringLiteral("report"), jsonOfReport(report, settings)}});
        } else {
            out << "==> " << printable(file) << " <==\n";
            writeTableReport(report, settings, out);
            out << "\n";
        }
    }
    if (o.json) {
        const QJsonObject document{{QStringLiteral("schemaVersion"), JsonSchemaVersion},
                                   {QStringLiteral("kind"), QStringLiteral("files")},
                                   {QStringLiteral("files"), reports},
                                   {QStringLiteral("summary"), jsonOfSummary(summary)}};
        out << QString::fromUtf8(QJsonDocument(document).toJson(QJsonDocument::Indented));
    } else {
        writeSummaryTable(summary, out);
    }
    out.flush();
    return status;
}

int inspect(const InspectOptions &o, bool dialogPossible)
{
    if (severalFiles(o))
        return inspectSeveral(o, dialogPossible);
    if (!readsWithFrontEnd(o))
        return inspectWithCodebook(o);
    const WarningSink warn = [&o](const QString &warning) { printError(o.file, warning); };
    // The one report of this run, like the importer's model, is left to the
    // operating system at exit: freeing it piece by piece would cost about
    // as much as writing it.
    InspectReport &report = *new InspectReport;
    const QString problem = o.lookup ? fillLookupReport(o, report)
                                     : fillDictionaryReport(o, dialogPossible, warn, report, ModelMemory::LeaveToExit);
    if (!problem.isEmpty()) {
        printError(o.file, problem);
        return ExitInputError;
    }
    WriteSettings settings;
    settings.wideLabels = o.wide;
    settings.notes = !o.noNotes;
    if (o.json)
        writeJsonReport(report, settings, standardOutput());
    else if (o.csv)
        writeCsvReport(report, standardOutput());
    else
        writeTableReport(report, settings, standardOutput());
    if (!o.html.isEmpty()) {
        const QString failure = writeHtmlFile(report, settings, o.html);
        if (!failure.isEmpty()) {
            printError(o.html, failure);
            return ExitOutputError;
        }
    }
    return exitStatusOf(report, o);
}

} // namespace

//! The inspector's main(), called by the keladmin-inspect program with its own arguments.
extern "C" __attribute__((visibility("default"))) int kx_inspect_main(int argc, char **argv)
{
    installMessageFilter();

    InspectOptions o;
    const QString problem = parseArguments(argumentsOf(argc, argv), o);
    if (!problem.isEmpty())
        return usageError(problem);
    if (o.help)
        return finishOutput(ExitOk, printHelp());
    if (o.version)
        return finishOutput(ExitOk, printVersion());
    setVerboseLog(o.verbose, readsWithFrontEnd(o));

    // Only an explicit request to ask, with a display, gets a GUI application;
    // everything else runs without one and never opens a dialog.
    QScopedPointer<QCoreApplication> app;
    bool dialogPossible = !o.lookup && o.decimal == QLatin1String("ask") && displayAvailable();
    if (dialogPossible)
        app.reset(newGuiApplication(argc, argv));
    if (!app) {
        dialogPossible = false;
        app.reset(new QCoreApplication(argc, argv));
    }

    return finishOutput(inspect(o, dialogPossible));
}
