// keladmin-inspect: opens a data description with the library's importers,
// as the front end does, and prints the data-source description it yields;
// or reads a lookup file and prints its entries, messages and label counts.
#include "model_KelAdmin.h"
#include "CSProDataImport.h"
#include "CSProJsonDataImport.h"

#include <QApplication>
#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QMessageBox>
#include <QRegularExpression>
#include <QScopedPointer>
#include <QTextStream>

#include <cstdio>
#include <exception>
#include <memory>

#include <unistd.h>

namespace {

const char *const Program = "keladmin-inspect";

enum ExitCode { ExitOk = 0, ExitInputError = 1, ExitUsage = 2 };

const char *const UsageText =
    "Usage:\n"
    "  keladmin-inspect [--format cspro|cspro8|spss|stata] [--json]\n"
    "                   [--decimal ask|yes-to-all|no-to-all] [--verbose] FILE\n"
    "  keladmin-inspect --lookup FILE --separator tab|comma|semicolon|colon|blank\n"
    "                   [--check] [--max-messages N] [--json] [--verbose]\n"
    "  keladmin-inspect --help\n";

const char *const HelpText =
    "\n"
    "Opens a data description with the importer of its format, as the front end\n"
    "does (openFile, then TKxDataProvider::genericGetFieldsFrom), and prints the\n"
    "data-source description: provider id and type, record-type start and length,\n"
    "the groups (record types) and one row per field with its name, label, type,\n"
    "start, size, decimals, minimum, maximum, missing and not-applicable codes,\n"
    "group and value labels.\n"
    "\n"
    "Formats, detected from the content unless --format is given:\n"
    "  cspro    CSPro text dictionary (.dcf), first line [Dictionary]\n"
    "  cspro8   CSPro 8 JSON dictionary, first character {\n"
    "  spss     SPSS system file (.sav, .zsav), magic $FL2 or $FL3\n"
    "  stata    Stata data file (.dta): <stata_dta> (versions 117-119) or a\n"
    "           first byte 104-119 followed by a byte-order byte 1 or 2\n"
    "\n"
    "Options:\n"
    "  --format F        force the format F instead of detecting it\n"
    "  --json            print one JSON document instead of the aligned table\n"
    "  --decimal MODE    answer of the decimal-code prompt of CSPro text\n"
    "                    dictionaries (a value set with a code such as 0.5):\n"
    "                    no-to-all (default) drops such value sets, yes-to-all\n"
    "                    turns those codes into 0, ask shows the dialog; ask needs\n"
    "                    a display and is answered no-to-all without one\n"
    "  --lookup FILE     read FILE as a lookup file (one key and label a line)\n"
    "  --separator S     separator between key and label in the lookup file;\n"
    "                    blank also takes several blanks as one separator\n"
    "  --check           also check key sizes, duplicate keys and separators; the\n"
    "                    messages start with the line number and \"_\"\n"
    "  --max-messages N  messages after which the 'too many' message is issued\n"
    "                    (default 100)\n"
    "  --verbose         also show the library's debug log on stderr\n"
    "  --help            show this text\n"
    "\n"
    "Names and labels are printed as read; control characters in them (such as\n"
    "the occurrence numbers of CSPro text items) are shown as \\uXXXX.\n"
    "\n"
    "Exit status: 0 success, 1 the file is missing, unreadable, unrecognised,\n"
    "yields no fields or entries, or the library reported an error (one line on\n"
    "stderr names the file and the problem), 2 wrong usage.\n";

struct Options
{
    bool help = false;
    bool json = false;
    bool verbose = false;
    QString format;  // empty: detect
    QString decimal; // empty: default
    QString file;
    bool lookup = false;
    QString separator;
    bool check = false;
    int maxMessages = 100;
};

bool verboseLog = false;

void messageHandler(QtMsgType type, const QMessageLogContext &, const QString &message)
{
    // The library traces every field to the debug log; keep it quiet unless asked.
    if ((type == QtDebugMsg || type == QtInfoMsg) && !verboseLog)
        return;
    std::fprintf(stderr, "%s\n", message.toLocal8Bit().constData());
}

// Control characters become \uXXXX so that a hostile name cannot drive the terminal.
QString printable(const QString &text)
{
    QString out;
    out.reserve(text.size());
    for (const QChar c : text) {
        const ushort u = c.unicode();
        if (u < 0x20 || (u >= 0x7f && u < 0xa0))
            out += QStringLiteral("\\u%1").arg(u, 4, 16, QLatin1Char('0'));
        else
            out += c;
    }
    return out;
}

// Library error messages span several lines; the error report is one line.
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
    const QString line = QStringLiteral("%1: %2: %3\n").arg(QLatin1String(Program), printable(file), problem);
    std::fputs(line.toLocal8Bit().constData(), stderr);
    std::fflush(stderr);
}

int usageError(const QString &problem)
{
    const QString line = QStringLiteral("%1: %2\n").arg(QLatin1String(Program), problem);
    std::fputs(line.toLocal8Bit().constData(), stderr);
    std::fputs(UsageText, stderr);
    return ExitUsage;
}

//! Parses argv; returns an empty text on success, else the problem.
QString parseArguments(const QStringList &args, Options &o)
{
    bool formatGiven = false;
    bool decimalGiven = false;
    bool separatorGiven = false;
    bool maxGiven = false;
    for (int i = 0; i < args.size(); ++i) {
        const QString &a = args.at(i);
        auto value = [&](QString *out) -> bool {
            if (i + 1 >= args.size())
                return false;
            *out = args.at(++i);
            return true;
        };
        if (a == QLatin1String("--help") || a == QLatin1String("-h")) {
            o.help = true;
        } else if (a == QLatin1String("--json")) {
            o.json = true;
        } else if (a == QLatin1String("--verbose")) {
            o.verbose = true;
        } else if (a == QLatin1String("--check")) {
            o.check = true;
        } else if (a == QLatin1String("--format")) {
            if (!value(&o.format))
                return QStringLiteral("--format needs a value");
            if (!QStringList{"cspro", "cspro8", "spss", "stata"}.contains(o.format))
                return QStringLiteral("unknown format '%1' (cspro, cspro8, spss or stata)").arg(printable(o.format));
            formatGiven = true;
        } else if (a == QLatin1String("--decimal")) {
            if (!value(&o.decimal))
                return QStringLiteral("--decimal needs a value");
            if (!QStringList{"ask", "yes-to-all", "no-to-all"}.contains(o.decimal))
                return QStringLiteral("unknown decimal answer '%1' (ask, yes-to-all or no-to-all)")
                    .arg(printable(o.decimal));
            decimalGiven = true;
        } else if (a == QLatin1String("--lookup")) {
            if (!o.file.isEmpty() || o.lookup)
                return QStringLiteral("only one file can be inspected");
            if (!value(&o.file))
                return QStringLiteral("--lookup needs a file");
            o.lookup = true;
        } else if (a == QLatin1String("--separator")) {
            if (!value(&o.separator))
                return QStringLiteral("--separator needs a value");
            if (!QStringList{"tab", "comma", "semicolon", "colon", "blank"}.contains(o.separator))
                return QStringLiteral("unknown separator '%1' (tab, comma, semicolon, colon or blank)")
                    .arg(printable(o.separator));
            separatorGiven = true;
        } else if (a == QLatin1String("--max-messages")) {
            QString n;
            if (!value(&n))
                return QStringLiteral("--max-messages needs a number");
            bool ok = false;
            const qlonglong v = n.toLongLong(&ok);
            if (!ok || v < 0)
                return QStringLiteral("--max-messages needs a number of 0 or more, not '%1'").arg(printable(n));
            o.maxMessages = static_cast<int>(qMin<qlonglong>(v, 1000000000));
            maxGiven = true;
        } else if (a == QLatin1String("--")) {
            for (++i; i < args.size(); ++i) {
                if (!o.file.isEmpty())
                    return QStringLiteral("only one file can be inspected");
                o.file = args.at(i);
            }
        } else if (a.startsWith(QLatin1Char('-')) && a.size() > 1) {
            return QStringLiteral("unknown option '%1'").arg(printable(a));
        } else {
            if (!o.file.isEmpty())
                return QStringLiteral("only one file can be inspected");
            o.file = a;
        }
    }
    if (o.help)
        return QString();
    if (o.file.isEmpty())
        return QStringLiteral("no file given");
    if (o.lookup && (formatGiven || decimalGiven))
        return QStringLiteral("--format and --decimal apply to dictionaries, not to --lookup");
    if (o.lookup && !separatorGiven)
        return QStringLiteral("--lookup needs --separator");
    if (!o.lookup && (separatorGiven || maxGiven || o.check))
        return QStringLiteral("--separator, --check and --max-messages apply to --lookup only");
    return QString();
}

//! Checks that \a path names a readable, non-empty regular file; the problem otherwise.
QString checkInputFile(const QString &path)
{
    const QFileInfo info(path);
    if (!info.exists())
        return QStringLiteral("no such file");
    if (info.isDir())
        return QStringLiteral("is a directory, not a file");
    QFile f(path);
    if (!f.open(QIODevice::ReadOnly))
        return QStringLiteral("cannot be read (%1)").arg(f.errorString());
    return QString();
}

//! The format told by the first bytes, or an empty text.
QString detectFormat(const QByteArray &head)
{
    QByteArray text = head;
    if (text.startsWith("\xEF\xBB\xBF"))
        text.remove(0, 3);
    if (text.startsWith("$FL2") || text.startsWith("$FL3"))
        return QStringLiteral("spss");
    if (text.startsWith("<stata_dta>"))
        return QStringLiteral("stata");
    // Old binary Stata files: format version 104-119, then the byte order
    // (1 high-low, 2 low-high). The second byte keeps plain text starting
    // with a letter h..s from passing as Stata.
    if (text.size() >= 4) {
        const unsigned char version = static_cast<unsigned char>(text.at(0));
        const unsigned char order = static_cast<unsigned char>(text.at(1));
        if (version >= 104 && version <= 119 && (order == 1 || order == 2))
            return QStringLiteral("stata");
    }
    const QByteArray trimmed = text.trimmed();
    if (trimmed.startsWith('{'))
        return QStringLiteral("cspro8");
    if (trimmed.left(12).toLower() == "[dictionary]")
        return QStringLiteral("cspro");
    return QString();
}

/*! Sends what the library writes to the standard output (the Stata importer
 * reports parse failures there) to a temporary file, so that stdout carries
 * only the inspector's own output. */
class StdoutCapture
{
public:
    StdoutCapture()
    {
        std::fflush(stdout);
        tmp = std::tmpfile();
        if (tmp) {
            saved = dup(fileno(stdout));
            if (saved < 0 || dup2(fileno(tmp), fileno(stdout)) < 0) {
                if (saved >= 0)
                    close(saved);
                saved = -1;
            }
        }
    }
    ~StdoutCapture() { finish(); }
    QString finish()
    {
        if (!tmp)
            return text;
        std::fflush(stdout);
        if (saved >= 0) {
            dup2(saved, fileno(stdout));
            close(saved);
            saved = -1;
        }
        std::rewind(tmp);
        QByteArray bytes;
        char buffer[4096];
        size_t n;
        while ((n = std::fread(buffer, 1, sizeof buffer, tmp)) > 0 && bytes.size() < 65536)
            bytes.append(buffer, static_cast<int>(n));
        std::fclose(tmp);
        tmp = nullptr;
        text = QString::fromLocal8Bit(bytes).trimmed();
        return text;
    }

private:
    FILE *tmp = nullptr;
    int saved = -1;
    QString text;
};

struct ValueLabel
{
    QString code;
    QString label;
};

//! Splits a value-label text (entries "code label" ended by a tab).
QList<ValueLabel> splitValueLabels(const QString &text)
{
    QList<ValueLabel> out;
    const QStringList entries = text.split(QLatin1Char('\t'), Qt::SkipEmptyParts);
    for (const QString &entry : entries) {
        const int blank = entry.indexOf(QLatin1Char(' '));
        if (blank < 0)
            out.append({entry, QString()});
        else
            out.append({entry.left(blank), entry.mid(blank + 1)});
    }
    return out;
}

QTextStream &outStream()
{
    static QTextStream out(stdout);
    static bool init = false;
    if (!init) {
        out.setCodec("UTF-8");
        init = true;
    }
    return out;
}

void printJson(const QJsonObject &object)
{
    QTextStream &out = outStream();
    out << QString::fromUtf8(QJsonDocument(object).toJson(QJsonDocument::Indented));
    out.flush();
}

//! Prints rows as a table whose columns are padded to their widest cell; the last column is not padded.
void printTable(const QStringList &header, const QList<QStringList> &rows)
{
    QVector<int> width(header.size(), 0);
    for (int c = 0; c < header.size(); ++c)
        width[c] = header.at(c).size();
    for (const QStringList &row : rows)
        for (int c = 0; c < row.size() && c < width.size(); ++c)
            width[c] = qMax(width[c], row.at(c).size());
    QTextStream &out = outStream();
    auto printRow = [&](const QStringList &row) {
        QString line;
        for (int c = 0; c < row.size(); ++c) {
            if (c + 1 < row.size())
                line += row.at(c).leftJustified(width[c]) + QStringLiteral("  ");
            else
                line += row.at(c);
        }
        out << line.trimmed() << "\n";
    };
    printRow(header);
    for (const QStringList &row : rows)
        printRow(row);
    out.flush();
}

// ---------------------------------------------------------------- dictionaries

/*! The CSPro text importer with the decimal prompt decided before reading.
 * The importer creates its reader and loads in one step, so this does the
 * same steps as its openFile() with the reader's 'to all' answer preset. */
TDataImport *createImporter(const QString &format, const QString &path, const Options &o)
{
    if (format == QLatin1String("cspro")) {
        auto *importer = new TCSProDataImport(path);
        if (o.decimal == QLatin1String("yes-to-all")) {
            importer->setDecimalChoice(1, QMessageBox::YesToAll);
        } else if (o.decimal != QLatin1String("ask")) {
            importer->setDecimalChoice(2, QMessageBox::NoToAll);
        } else if (!qobject_cast<QApplication *>(QCoreApplication::instance())) {
            printError(o.file, QStringLiteral("note: no display, the decimal prompt is answered no-to-all"));
            importer->setDecimalChoice(2, QMessageBox::NoToAll);
        }
        return importer;
    }
    if (format == QLatin1String("cspro8"))
        return new TCSProJsonDataImport(path);
    if (format == QLatin1String("spss"))
        return new TSPSSDataImport(path);
    return new TSTATADataImport(path);
}

QString groupNameOf(const QString &entry)
{
    const int eq = entry.indexOf(EQUALCHR);
    return eq < 0 ? entry : entry.left(eq);
}

int inspectDictionary(const Options &o)
{
    const QString problem = checkInputFile(o.file);
    if (!problem.isEmpty()) {
        printError(o.file, problem);
        return ExitInputError;
    }
    const QString path = QFileInfo(o.file).absoluteFilePath();

    QString format = o.format;
    const bool detected = format.isEmpty();
    if (detected) {
        QFile f(path);
        if (!f.open(QIODevice::ReadOnly)) {
            printError(o.file, QStringLiteral("cannot be read (%1)").arg(f.errorString()));
            return ExitInputError;
        }
        const QByteArray head = f.read(64);
        if (head.isEmpty()) {
            printError(o.file, QStringLiteral("empty file, format not recognised"));
            return ExitInputError;
        }
        format = detectFormat(head);
        if (format.isEmpty()) {
            printError(o.file, QStringLiteral("format not recognised (not a CSPro text or JSON dictionary, SPSS or "
                                              "Stata file); --format forces one"));
            return ExitInputError;
        }
    }

    std::unique_ptr<TDataImport> importer;
    TKxDataProvider provider;
    QString libraryOutput;
    try {
        importer.reset(createImporter(format, path, o));
        StdoutCapture capture;
        importer->openFile();
        libraryOutput = capture.finish();
        provider.genericGetFieldsFrom(importer.get());
    } catch (KxErrorManager *e) {
        const QString message = oneLine(e->getErrorMessage());
        delete e;
        printError(o.file, QStringLiteral("cannot be read as %1: %2").arg(format, message));
        return ExitInputError;
    } catch (const std::exception &e) {
        printError(o.file, QStringLiteral("cannot be read as %1: %2").arg(format, oneLine(QString::fromLocal8Bit(e.what()))));
        return ExitInputError;
    } catch (...) {
        printError(o.file, QStringLiteral("cannot be read as %1: unexpected error").arg(format));
        return ExitInputError;
    }

    const QList<TKxSourceField *> fields = provider.getSourceFields() ? *provider.getSourceFields()
                                                                       : QList<TKxSourceField *>();
    if (fields.isEmpty()) {
        QString why = QStringLiteral("no fields read as %1").arg(format);
        if (!libraryOutput.isEmpty())
            why += QStringLiteral(" (%1)").arg(oneLine(libraryOutput));
        printError(o.file, why);
        return ExitInputError;
    }
    if (!libraryOutput.isEmpty())
        printError(o.file, QStringLiteral("warning: %1").arg(oneLine(libraryOutput)));

    QStringList groups;
    for (int i = 0; i < importer->getGroupCount(); ++i)
        groups << importer->getGroupName(i);
    const QString importerType = importer->getDataProviderType();

    if (o.json) {
        QJsonObject root;
        root.insert(QStringLiteral("file"), path);
        root.insert(QStringLiteral("format"), format);
        root.insert(QStringLiteral("formatDetected"), detected);
        root.insert(QStringLiteral("providerId"), provider.getDataProviderId());
        root.insert(QStringLiteral("providerType"), importerType);
        root.insert(QStringLiteral("descriptionType"), provider.getDataProviderType());
        root.insert(QStringLiteral("recordTypeStart"), provider.getRecordTypeStart());
        root.insert(QStringLiteral("recordTypeLength"), provider.getRecordTypeSize());
        QJsonArray jsonGroups;
        for (const QString &g : groups) {
            const int eq = g.indexOf(EQUALCHR);
            QJsonObject jg;
            jg.insert(QStringLiteral("name"), groupNameOf(g));
            jg.insert(QStringLiteral("recordType"), eq < 0 ? QString() : g.mid(eq + 1));
            jsonGroups.append(jg);
        }
        root.insert(QStringLiteral("groups"), jsonGroups);
        QJsonArray jsonFields;
        for (TKxSourceField *f : fields) {
            QJsonObject jf;
            jf.insert(QStringLiteral("name"), f->getFieldName());
            jf.insert(QStringLiteral("label"), f->getLabel());
            jf.insert(QStringLiteral("type"), f->getFieldType());
            jf.insert(QStringLiteral("start"), f->getStart());
            jf.insert(QStringLiteral("size"), f->getSize());
            jf.insert(QStringLiteral("decimals"), f->getDecimals());
            jf.insert(QStringLiteral("minimum"), f->getMinimum());
            jf.insert(QStringLiteral("maximum"), f->getMaximum());
            jf.insert(QStringLiteral("missingCode"), f->getMissingCode());
            jf.insert(QStringLiteral("notApplicableCode"), f->getNotApplicableCode());
            jf.insert(QStringLiteral("group"), f->getGroup());
            QJsonArray labels;
            for (const ValueLabel &vl : splitValueLabels(f->getValueLabels()))
                labels.append(QJsonObject{{QStringLiteral("code"), vl.code}, {QStringLiteral("label"), vl.label}});
            jf.insert(QStringLiteral("valueLabels"), labels);
            jsonFields.append(jf);
        }
        root.insert(QStringLiteral("fields"), jsonFields);
        printJson(root);
        return ExitOk;
    }

    QTextStream &out = outStream();
    const QString descriptionType = provider.getDataProviderType();
    out << "File:              " << printable(path) << "\n";
    out << "Format:            " << format << (detected ? " (detected)" : " (forced)") << "\n";
    out << "Provider id:       " << printable(provider.getDataProviderId()) << "\n";
    out << "Provider type:     " << importerType;
    if (descriptionType != importerType)
        out << " (description type: " << (descriptionType.isEmpty() ? QStringLiteral("none") : descriptionType)
            << ")";
    out << "\n";
    out << "Record type:       start " << provider.getRecordTypeStart() << ", length "
        << provider.getRecordTypeSize() << "\n";
    out << "Groups:            " << groups.size() << "\n";
    for (const QString &g : groups) {
        int count = 0;
        for (TKxSourceField *f : fields)
            count += f->getGroup() == groupNameOf(g) ? 1 : 0;
        out << "  " << printable(g) << "  (" << count << (count == 1 ? " field" : " fields") << ")\n";
    }
    out << "Fields:            " << fields.size() << "\n\n";

    QList<QStringList> rows;
    for (TKxSourceField *f : fields) {
        QStringList labels;
        for (const ValueLabel &vl : splitValueLabels(f->getValueLabels()))
            labels << printable(vl.code) + QLatin1Char('=') + printable(vl.label);
        rows << QStringList{printable(f->getFieldName()),
                            printable(f->getLabel()),
                            f->getFieldType(),
                            QString::number(f->getStart()),
                            QString::number(f->getSize()),
                            QString::number(f->getDecimals()),
                            printable(f->getMinimum()),
                            printable(f->getMaximum()),
                            printable(f->getMissingCode()),
                            printable(f->getNotApplicableCode()),
                            printable(f->getGroup()),
                            labels.join(QStringLiteral("; "))};
    }
    printTable({"NAME", "LABEL", "TYPE", "START", "SIZE", "DEC", "MIN", "MAX", "MISSING", "NOTAPPL", "GROUP",
                "VALUE LABELS"},
               rows);
    return ExitOk;
}

// ---------------------------------------------------------------- lookups

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

int inspectLookup(const Options &o)
{
    const QString problem = checkInputFile(o.file);
    if (!problem.isEmpty()) {
        printError(o.file, problem);
        return ExitInputError;
    }
    const QString path = QFileInfo(o.file).absoluteFilePath();
    const QString separator = o.separator;

    TKxLookup lookup;
    lookup.setFfileName(path);
    lookup.setSeparator(separatorCode(separator));
    lookup.setMaxMessages(o.maxMessages);
    TKxLabelFrequencies frequencies;
    QStringList messages;
    const econsistencyCheck mode = o.check ? eFileChecksAndFrequencies : eLabelFrequencies;
    try {
        if (!lookup.consistencyCheck(mode, frequencies, messages)) {
            printError(o.file, oneLine(lookup.getMessageText()));
            return ExitInputError;
        }
    } catch (KxErrorManager *e) {
        const QString message = oneLine(e->getErrorMessage());
        delete e;
        printError(o.file, QStringLiteral("cannot be read as a lookup file: %1").arg(message));
        return ExitInputError;
    } catch (...) {
        printError(o.file, QStringLiteral("cannot be read as a lookup file: unexpected error"));
        return ExitInputError;
    }

    const int entries = lookup.getLookupMap().size();
    if (entries == 0) {
        printError(o.file, QStringLiteral("no entries read as a lookup file"));
        return ExitInputError;
    }

    if (o.json) {
        QJsonObject root;
        root.insert(QStringLiteral("file"), path);
        root.insert(QStringLiteral("separator"), separator);
        root.insert(QStringLiteral("checks"), o.check);
        root.insert(QStringLiteral("maxMessages"), o.maxMessages);
        root.insert(QStringLiteral("lines"), lookup.getLineNumber());
        root.insert(QStringLiteral("entries"), entries);
        root.insert(QStringLiteral("messages"), QJsonArray::fromStringList(messages));
        QJsonArray jsonFrequencies;
        for (auto it = frequencies.cbegin(); it != frequencies.cend(); ++it)
            jsonFrequencies.append(
                QJsonObject{{QStringLiteral("label"), it.key()}, {QStringLiteral("count"), it.value()}});
        root.insert(QStringLiteral("labelFrequencies"), jsonFrequencies);
        printJson(root);
        return ExitOk;
    }

    QTextStream &out = outStream();
    out << "Lookup file:       " << printable(path) << "\n";
    out << "Separator:         " << separator << "\n";
    out << "Checks:            " << (o.check ? "on" : "off") << "\n";
    out << "Lines:             " << lookup.getLineNumber() << "\n";
    out << "Entries:           " << entries << "\n";
    out << "Messages:          " << messages.size() << "\n";
    for (const QString &m : messages)
        out << "  " << printable(m) << "\n";
    out << "Label frequencies: " << frequencies.size() << "\n\n";
    QList<QStringList> rows;
    for (auto it = frequencies.cbegin(); it != frequencies.cend(); ++it)
        rows << QStringList{QString::number(it.value()), printable(it.key())};
    printTable({"COUNT", "LABEL"}, rows);
    return ExitOk;
}

//! A dialog can be shown only on a real display; offscreen or minimal platforms would wait forever.
bool displayAvailable()
{
    const QByteArray platform = qgetenv("QT_QPA_PLATFORM");
    if (platform.startsWith("offscreen") || platform.startsWith("minimal"))
        return false;
    return !qgetenv("DISPLAY").isEmpty() || !qgetenv("WAYLAND_DISPLAY").isEmpty();
}

} // namespace

int main(int argc, char **argv)
{
    qInstallMessageHandler(messageHandler);

    QStringList args;
    for (int i = 1; i < argc; ++i)
        args << QString::fromLocal8Bit(argv[i]);
    Options o;
    const QString problem = parseArguments(args, o);
    if (!problem.isEmpty())
        return usageError(problem);
    if (o.help) {
        std::fputs(UsageText, stdout);
        std::fputs(HelpText, stdout);
        return ExitOk;
    }
    verboseLog = o.verbose;

    // Only an explicit request to ask, with a display, gets a GUI application;
    // everything else runs without one and never opens a dialog.
    QScopedPointer<QCoreApplication> app;
    if (!o.lookup && o.decimal == QLatin1String("ask") && displayAvailable()) {
        app.reset(new QApplication(argc, argv));
    } else {
        app.reset(new QCoreApplication(argc, argv));
    }

    return o.lookup ? inspectLookup(o) : inspectDictionary(o);
}
