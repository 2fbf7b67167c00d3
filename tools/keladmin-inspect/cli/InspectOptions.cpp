#include "InspectOptions.h"

#include "TextOutput.h"

#include <QFileInfo>

namespace kxinspect {

namespace {

//! Which options were given, for the checks of their combination.
struct GivenOptions
{
    bool format = false;
    bool decimal = false;
    bool separator = false;
    bool maxMessages = false;
};

//! Walks the arguments; an option's value is the argument after it.
class ArgumentReader
{
public:
    explicit ArgumentReader(const QStringList &args)
        : args(args)
    {
    }
    bool atEnd() const { return index >= args.size(); }
    QString next() { return args.at(index++); }
    //! Takes the next argument as a value; false when there is none.
    bool takeValue(QString *out)
    {
        if (atEnd())
            return false;
        *out = next();
        return true;
    }

private:
    const QStringList &args;
    int index = 0;
};

QString setFile(InspectOptions &o, const QString &file)
{
    if (o.lookup && !o.file.isEmpty())
        return QStringLiteral("only one file can be inspected");
    if (o.file.isEmpty())
        o.file = file;
    o.files << file;
    return QString();
}

QString readFormat(ArgumentReader &reader, InspectOptions &o)
{
    if (!reader.takeValue(&o.format))
        return QStringLiteral("--format needs a value");
    if (!QStringList{"cspro", "cspro8", "spss", "stata"}.contains(o.format))
        return QStringLiteral("unknown format '%1' (cspro, cspro8, spss or stata)").arg(printable(o.format));
    return QString();
}

QString readDecimal(ArgumentReader &reader, InspectOptions &o)
{
    if (!reader.takeValue(&o.decimal))
        return QStringLiteral("--decimal needs a value");
    if (!QStringList{"ask", "yes-to-all", "no-to-all"}.contains(o.decimal))
        return QStringLiteral("unknown decimal answer '%1' (ask, yes-to-all or no-to-all)").arg(printable(o.decimal));
    return QString();
}

QString readLookup(ArgumentReader &reader, InspectOptions &o)
{
    if (!o.file.isEmpty() || o.lookup)
        return QStringLiteral("only one file can be inspected");
    if (!reader.takeValue(&o.file))
        return QStringLiteral("--lookup needs a file");
    o.files << o.file;
    o.lookup = true;
    return QString();
}

QString readHtml(ArgumentReader &reader, InspectOptions &o)
{
    if (!reader.takeValue(&o.html) || o.html.isEmpty())
        return QStringLiteral("--html needs a file");
    return QString();
}

QString readSeparator(ArgumentReader &reader, InspectOptions &o)
{
    if (!reader.takeValue(&o.separator))
        return QStringLiteral("--separator needs a value");
    if (!QStringList{"tab", "comma", "semicolon", "colon", "blank"}.contains(o.separator))
        return QStringLiteral("unknown separator '%1' (tab, comma, semicolon, colon or blank)")
            .arg(printable(o.separator));
    return QString();
}

QString readMaxMessages(ArgumentReader &reader, InspectOptions &o)
{
    QString n;
    if (!reader.takeValue(&n))
        return QStringLiteral("--max-messages needs a number");
    bool ok = false;
    const qlonglong v = n.toLongLong(&ok);
    if (!ok || v < 0)
        return QStringLiteral("--max-messages needs a number of 0 or more, not '%1'").arg(printable(n));
    o.maxMessages = static_cast<int>(qMin<qlonglong>(v, 1000000000));
    return QString();
}

//! Everything after "--" is a file name, even when it starts with a dash.
QString readFilesAfterDashDash(ArgumentReader &reader, InspectOptions &o)
{
    while (!reader.atEnd()) {
        const QString problem = setFile(o, reader.next());
        if (!problem.isEmpty())
            return problem;
    }
    return QString();
}

bool readSwitch(const QString &a, InspectOptions &o)
{
    if (a == QLatin1String("--help") || a == QLatin1String("-h"))
        o.help = true;
    else if (a == QLatin1String("--version"))
        o.version = true;
    else if (a == QLatin1String("--json"))
        o.json = true;
    else if (a == QLatin1String("--csv"))
        o.csv = true;
    else if (a == QLatin1String("--wide"))
        o.wide = true;
    else if (a == QLatin1String("--no-notes"))
        o.noNotes = true;
    else if (a == QLatin1String("--fail-on-notes"))
        o.failOnNotes = true;
    else if (a == QLatin1String("--verbose"))
        o.verbose = true;
    else if (a == QLatin1String("--check"))
        o.check = true;
    else if (a == QLatin1String("--codebook"))
        o.codebook = true;
    else if (a == QLatin1String("--diff"))
        o.diff = true;
    else if (a == QLatin1String("--ignore-labels"))
        o.ignoreLabels = true;
    else if (a == QLatin1String("--recursive"))
        o.recursive = true;
    else
        return false;
    return true;
}

//! Reads one argument and the value it takes.
QString readArgument(ArgumentReader &reader, InspectOptions &o, GivenOptions &given)
{
    const QString a = reader.next();
    if (readSwitch(a, o))
        return QString();
    if (a == QLatin1String("--format")) {
        given.format = true;
        return readFormat(reader, o);
    }
    if (a == QLatin1String("--decimal")) {
        given.decimal = true;
        return readDecimal(reader, o);
    }
    if (a == QLatin1String("--lookup"))
        return readLookup(reader, o);
    if (a == QLatin1String("--html"))
        return readHtml(reader, o);
    if (a == QLatin1String("--ddi")) {
        if (!reader.takeValue(&o.ddi) || o.ddi.isEmpty())
            return QStringLiteral("--ddi needs a file (- for the standard output)");
        return QString();
    }
    if (a == QLatin1String("--separator")) {
        given.separator = true;
        return readSeparator(reader, o);
    }
    if (a == QLatin1String("--max-messages")) {
        given.maxMessages = true;
        return readMaxMessages(reader, o);
    }
    if (a == QLatin1String("--"))
        return readFilesAfterDashDash(reader, o);
    if (a.startsWith(QLatin1Char('-')) && a.size() > 1)
        return QStringLiteral("unknown option '%1'").arg(printable(a));
    return setFile(o, a);
}

//! Whether the two names lead to one file, through links when it exists.
bool sameFile(const QString &a, const QString &b)
{
    const QFileInfo fa(a), fb(b);
    if (fa.exists() && fb.exists())
        return fa.canonicalFilePath() == fb.canonicalFilePath();
    return fa.absoluteFilePath() == fb.absoluteFilePath();
}

//! Options that belong to one kind of file only.
//! --diff OLD NEW and --ddi OUT: their own modes, with the options that apply to them.
QString checkCodebookModes(const InspectOptions &o, const GivenOptions &given)
{
    if (o.diff && !o.ddi.isEmpty())
        return QStringLiteral("--diff and --ddi cannot be combined");
    if (o.diff && o.files.size() != 2)
        return QStringLiteral("--diff needs two files, the old and the new");
    if (o.diff && (o.csv || o.codebook || o.lookup || given.decimal || o.noNotes || o.failOnNotes || o.wide))
        return QStringLiteral("--diff takes --json, --html, --ignore-labels and --format only");
    if (!o.ddi.isEmpty() && (o.json || o.csv || o.lookup || !o.html.isEmpty() || given.decimal || o.noNotes
                             || o.failOnNotes || o.wide))
        return QStringLiteral("--ddi takes --format and --codebook only");
    if (o.ignoreLabels && !o.diff)
        return QStringLiteral("--ignore-labels applies to --diff");
    if (!o.ddi.isEmpty() && o.ddi != QLatin1String("-") && sameFile(o.ddi, o.file))
        return QStringLiteral("--ddi would overwrite the inspected file");
    if (o.diff && !o.html.isEmpty() && (sameFile(o.html, o.file) || sameFile(o.html, o.files.value(1))))
        return QStringLiteral("--html would overwrite a compared file");
    return QString();
}

QString checkCombination(const InspectOptions &o, const GivenOptions &given)
{
    if (o.file.isEmpty())
        return QStringLiteral("no file given");
    const QString mode = checkCodebookModes(o, given);
    if (!mode.isEmpty())
        return mode;
    if (severalFiles(o) && (o.csv || !o.html.isEmpty() || !o.ddi.isEmpty() || o.codebook))
        return QStringLiteral("--csv, --html, --ddi and --codebook take one file");
    if (o.recursive && (o.lookup || o.diff))
        return QStringLiteral("--recursive applies to folders of dictionaries and data files");
    if (o.json && o.csv)
        return QStringLiteral("--json and --csv cannot be combined");
    if (o.lookup && (given.format || given.decimal))
        return QStringLiteral("--format and --decimal apply to dictionaries, not to --lookup");
    if (o.lookup && !given.separator)
        return QStringLiteral("--lookup needs --separator");
    if (!o.lookup && (given.separator || given.maxMessages || o.check))
        return QStringLiteral("--separator, --check and --max-messages apply to --lookup only");
    if (o.lookup && !o.html.isEmpty())
        return QStringLiteral("--html applies to dictionaries, not to --lookup");
    if (o.codebook && o.lookup)
        return QStringLiteral("--codebook applies to dictionaries, not to --lookup");
    if (o.codebook && (given.decimal || o.noNotes || o.failOnNotes || !o.html.isEmpty()))
        return QStringLiteral("--decimal, --no-notes, --fail-on-notes and --html apply to the front end's reading, "
                              "not to --codebook");
    if (!o.diff && !o.html.isEmpty() && sameFile(o.html, o.file))
        return QStringLiteral("--html would overwrite the inspected file");
    return QString();
}

} // namespace

bool severalFiles(const InspectOptions &o)
{
    if (o.diff || o.lookup)
        return false;
    return o.files.size() > 1 || (o.files.size() == 1 && QFileInfo(o.files.first()).isDir());
}

QString parseArguments(const QStringList &args, InspectOptions &o)
{
    GivenOptions given;
    ArgumentReader reader(args);
    while (!reader.atEnd()) {
        const QString problem = readArgument(reader, o, given);
        if (!problem.isEmpty())
            return problem;
    }
    if (o.help || o.version)
        return QString();
    const QString problem = checkCombination(o, given);
    if (problem.isEmpty() && o.diff)
        o.newFile = o.files.value(1);
    return problem;
}

} // namespace kxinspect
