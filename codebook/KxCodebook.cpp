#include "KxCodebook.h"

#include "CodebookReaders_p.h"

#include <QFile>
#include <QFileInfo>
#include <QSharedData>
#include <QTemporaryFile>

namespace KxCodebook {

class CodebookData : public QSharedData
{
public:
    QString fileName;
    Format format = Format::Unknown;
    QString formatVersion;
    QString encoding;
    QString name;
    Labels labels;
    QVector<Language> languages;
    qint64 rowCount = -1;
    QDateTime created;
    int recordTypeStart = 0;
    int recordTypeLength = 0;
    bool relativePositions = false;
    QVector<Level> levels;
    QVector<Record> records;
    QVector<Variable> variables;
};

// --- Free functions -------------------------------------------------------

QString formatName(Format format)
{
    switch (format) {
    case Format::CSProText: return QStringLiteral("cspro");
    case Format::CSProJson: return QStringLiteral("cspro8");
    case Format::Spss: return QStringLiteral("spss");
    case Format::Stata: return QStringLiteral("stata");
    case Format::Unknown: break;
    }
    return QString();
}

Format formatFromName(const QString &name)
{
    for (Format f : {Format::CSProText, Format::CSProJson, Format::Spss, Format::Stata}) {
        if (name.compare(formatName(f), Qt::CaseInsensitive) == 0)
            return f;
    }
    return Format::Unknown;
}

Format detectFormat(const QByteArray &head)
{
    QByteArray text = head;
    if (text.startsWith("\xEF\xBB\xBF"))
        text.remove(0, 3);
    if (text.startsWith("$FL2") || text.startsWith("$FL3"))
        return Format::Spss;
    if (text.startsWith("<stata_dta>"))
        return Format::Stata;
    // Old binary Stata files: format version 104-119, then the byte order
    // (1 high-low, 2 low-high). The second byte keeps plain text starting
    // with a letter h..s from passing as Stata.
    if (text.size() >= 4) {
        const unsigned char version = static_cast<unsigned char>(text.at(0));
        const unsigned char order = static_cast<unsigned char>(text.at(1));
        if (version >= 104 && version <= 119 && (order == 1 || order == 2))
            return Format::Stata;
    }
    const QByteArray trimmed = text.trimmed();
    if (trimmed.startsWith('{'))
        return Format::CSProJson;
    if (trimmed.left(12).toLower() == "[dictionary]")
        return Format::CSProText;
    return Format::Unknown;
}

QString specialName(Special special)
{
    switch (special) {
    case Special::Missing: return QStringLiteral("MISSING");
    case Special::Refused: return QStringLiteral("REFUSED");
    case Special::NotAppl: return QStringLiteral("NOTAPPL");
    case Special::Default: return QStringLiteral("DEFAULT");
    case Special::None: break;
    }
    return QString();
}

// --- Labels ---------------------------------------------------------------

QString Labels::primary() const
{
    return texts.isEmpty() ? QString() : texts.first();
}

QString Labels::text(int language) const
{
    if (language > 0 && language < texts.size() && !texts.at(language).isEmpty())
        return texts.at(language);
    return primary();
}

bool Labels::isEmpty() const
{
    for (const QString &t : texts) {
        if (!t.isEmpty())
            return false;
    }
    return true;
}

Labels Labels::of(const QString &primary)
{
    Labels labels;
    labels.texts << primary;
    return labels;
}

// --- Codebook -------------------------------------------------------------

Codebook::Codebook() = default;
Codebook::Codebook(const Codebook &other) = default;
Codebook &Codebook::operator=(const Codebook &other) = default;
Codebook::~Codebook() = default;

namespace {

Error failure(Error::Kind kind, const QString &message)
{
    Error e;
    e.kind = kind;
    e.message = message;
    return e;
}

Error checkInputFile(const QString &path, QFile *file)
{
    const QFileInfo info(path);
    if (!info.exists())
        return failure(Error::FileNotFound, QStringLiteral("%1: no such file").arg(path));
    if (info.isDir())
        return failure(Error::NotAFile, QStringLiteral("%1: is a directory, not a file").arg(path));
    if (!file->open(QIODevice::ReadOnly))
        return failure(Error::Unreadable, QStringLiteral("%1: cannot be read (%2)").arg(path, file->errorString()));
    return Error();
}

/*! An SPSS or Stata file that can be read only once (a pipe, the standard
 * input): ReadStat reads by path and seeks, so the bytes go to a temporary
 * copy first; the codebook and the messages name \a path. */
Codebook readStreamThroughCopy(QFile &stream, const QString &path, Format format, Error *e)
{
    QTemporaryFile copy;
    if (!copy.open()) {
        *e = failure(Error::Unreadable, QStringLiteral("%1: no room for a copy of the stream (%2)")
                                            .arg(path, copy.errorString()));
        return Codebook();
    }
    char block[65536];
    for (;;) {
        const qint64 n = stream.read(block, sizeof block);
        if (n < 0) {
            *e = failure(Error::Unreadable, QStringLiteral("%1: cannot be read (%2)").arg(path, stream.errorString()));
            return Codebook();
        }
        if (n == 0)
            break;
        if (copy.write(block, n) != n) {
            *e = failure(Error::Unreadable, QStringLiteral("%1: no room for a copy of the stream (%2)")
                                                .arg(path, copy.errorString()));
            return Codebook();
        }
    }
    copy.flush();
    Codebook codebook = detail::readReadStatFile(copy.fileName(), format, e);
    e->message.replace(copy.fileName(), path);
    if (!codebook.isNull())
        codebook.setFileName(path);
    return codebook;
}

} // namespace

Codebook Codebook::fromFile(const QString &path, Error *error, Format format)
{
    Error local;
    Error &e = error ? *error : local;
    e = Error();
    QFile file(path);
    e = checkInputFile(path, &file);
    if (!e.ok())
        return Codebook();
    // Dictionaries are read whole; SPSS and Stata files go to ReadStat by path.
    QByteArray head = file.peek(64);
    if (format == Format::Unknown)
        format = detectFormat(head);
    switch (format) {
    case Format::CSProText:
    case Format::CSProJson: {
        const QByteArray data = file.readAll();
        if (file.error() != QFileDevice::NoError) {
            e = failure(Error::Unreadable, QStringLiteral("%1: cannot be read (%2)").arg(path, file.errorString()));
            return Codebook();
        }
        return fromData(data, format, &e, path);
    }
    case Format::Spss:
    case Format::Stata:
        if (file.isSequential())
            return readStreamThroughCopy(file, path, format, &e);
        file.close();
        return detail::readReadStatFile(path, format, &e);
    case Format::Unknown:
        break;
    }
    e = failure(Error::UnknownFormat,
                head.isEmpty() ? QStringLiteral("%1: empty file, format not recognised").arg(path)
                               : QStringLiteral("%1: format not recognised (not a CSPro text or JSON dictionary, "
                                                "SPSS or Stata file)").arg(path));
    return Codebook();
}

Codebook Codebook::fromData(const QByteArray &data, Format format, Error *error, const QString &fileName)
{
    Error local;
    Error &e = error ? *error : local;
    e = Error();
    switch (format) {
    case Format::CSProText:
        return detail::readCSProText(data, fileName, &e);
    case Format::CSProJson:
        return detail::readCSProJson(data, fileName, &e);
    case Format::Spss:
    case Format::Stata:
    case Format::Unknown:
        break;
    }
    e = failure(Error::UnknownFormat,
                QStringLiteral("only CSPro dictionaries are read from memory; SPSS and Stata files are read by path"));
    return Codebook();
}

bool Codebook::isNull() const { return !d; }

#define KX_CODEBOOK_FIELD(Type, getter, setter, member)          \
    Type Codebook::getter() const { return d ? d->member : CodebookData().member; } \
    void Codebook::setter(const Type &value)                     \
    {                                                            \
        if (!d)                                                  \
            d = new CodebookData;                                \
        d->member = value;                                       \
    }

KX_CODEBOOK_FIELD(QString, fileName, setFileName, fileName)
KX_CODEBOOK_FIELD(QString, formatVersion, setFormatVersion, formatVersion)
KX_CODEBOOK_FIELD(QString, encoding, setEncoding, encoding)
KX_CODEBOOK_FIELD(QString, name, setName, name)
KX_CODEBOOK_FIELD(Labels, labels, setLabels, labels)
KX_CODEBOOK_FIELD(QVector<Language>, languages, setLanguages, languages)
KX_CODEBOOK_FIELD(QDateTime, created, setCreated, created)
KX_CODEBOOK_FIELD(QVector<Level>, levels, setLevels, levels)
KX_CODEBOOK_FIELD(QVector<Record>, records, setRecords, records)
KX_CODEBOOK_FIELD(QVector<Variable>, variables, setVariables, variables)

#undef KX_CODEBOOK_FIELD

Format Codebook::format() const { return d ? d->format : Format::Unknown; }

void Codebook::setFormat(Format format)
{
    if (!d)
        d = new CodebookData;
    d->format = format;
}

qint64 Codebook::rowCount() const { return d ? d->rowCount : -1; }

void Codebook::setRowCount(qint64 rows)
{
    if (!d)
        d = new CodebookData;
    d->rowCount = rows;
}

int Codebook::recordTypeStart() const { return d ? d->recordTypeStart : 0; }
int Codebook::recordTypeLength() const { return d ? d->recordTypeLength : 0; }

void Codebook::setRecordType(int start, int length)
{
    if (!d)
        d = new CodebookData;
    d->recordTypeStart = start;
    d->recordTypeLength = length;
}

bool Codebook::relativePositions() const { return d ? d->relativePositions : false; }

void Codebook::setRelativePositions(bool relative)
{
    if (!d)
        d = new CodebookData;
    d->relativePositions = relative;
}

int Codebook::indexOfVariable(const QString &name) const
{
    if (!d)
        return -1;
    for (int i = 0; i < d->variables.size(); ++i) {
        if (d->variables.at(i).name == name)
            return i;
    }
    return -1;
}

} // namespace KxCodebook
