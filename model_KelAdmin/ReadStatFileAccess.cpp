#include "ReadStatFileAccess_p.h"

#include "GenericField.h"

#include <QFile>

#include <cstring>

namespace kxreadstat {

namespace {

// Offset and length of the creation date ("dd mmm yy") in a SAV header:
// record type 4, product name 60, five 32-bit fields 20, bias 8.
constexpr qint64 SavDateOffset = 92;
constexpr int SavDateLength = 9;
constexpr char NeutralSavDate[SavDateLength + 1] = "01 Jan 70";

//! File access for ReadStat: buffered, as ReadStat asks for a few bytes at a
//! time (its own access makes a system call of each), and keeping track of
//! the position, so that a SAV header's date can be replaced on its way in.
struct PatchedIo
{
    QFile file;
    qint64 position = 0;
    bool patchesSavDate = false;
    //! The header's date as the file holds it, before the replacement.
    QByteArray originalDate = QByteArray(SavDateLength, ' ');
};

int ioOpen(const char *path, void *ctx)
{
    auto *io = static_cast<PatchedIo *>(ctx);
    io->file.setFileName(QFile::decodeName(path));
    io->position = 0;
    return io->file.open(QIODevice::ReadOnly) ? 0 : -1;
}

int ioClose(void *ctx)
{
    static_cast<PatchedIo *>(ctx)->file.close();
    return 0;
}

readstat_off_t ioSeek(readstat_off_t offset, readstat_io_flags_t whence, void *ctx)
{
    auto *io = static_cast<PatchedIo *>(ctx);
    qint64 base = 0;
    if (whence == READSTAT_SEEK_CUR)
        base = io->position;
    else if (whence == READSTAT_SEEK_END)
        base = io->file.size();
    if ((offset > 0 && base > std::numeric_limits<qint64>::max() - offset) || base + offset < 0)
        return -1;
    const qint64 target = base + offset;
    if (!io->file.seek(target))
        return -1;
    io->position = target;
    return target;
}

ssize_t ioRead(void *buf, size_t nbyte, void *ctx)
{
    auto *io = static_cast<PatchedIo *>(ctx);
    const qint64 wanted = static_cast<qint64>(qMin<size_t>(nbyte, std::numeric_limits<qint64>::max()));
    const qint64 got = io->file.read(static_cast<char *>(buf), wanted);
    if (got <= 0)
        return got;
    // Only a SAV header's date field changes; SPSS writes its month in the
    // user's language, which ReadStat would reject.
    const qint64 from = io->patchesSavDate ? qMax(io->position, SavDateOffset) : 0;
    const qint64 to = io->patchesSavDate ? qMin(io->position + got, SavDateOffset + SavDateLength) : 0;
    for (qint64 at = from; at < to; ++at) {
        char &byte = static_cast<char *>(buf)[at - io->position];
        io->originalDate[int(at - SavDateOffset)] = byte;
        byte = NeutralSavDate[at - SavDateOffset];
    }
    io->position += got;
    return got;
}

readstat_error_t ioUpdate(long, readstat_progress_handler, void *, void *)
{
    return READSTAT_OK;
}

// Accepts the value labels of the variable pass without keeping them: with no
// value-label handler at all, ReadStat gives SAV strings longer than 8 bytes
// no label-set name.
int ignoreValueLabel(const char *, readstat_value_t, const char *, void *)
{
    return READSTAT_HANDLER_OK;
}

} // namespace

void Dictionary::startRead()
{
    labelSets.sets.clear();
    rowCount = -1;
    variableCount = 0;
    facts = FileFacts();
    parseError = READSTAT_OK;
}

void Dictionary::addVariable(TGenericField *field, const readstat_variable_t *variable)
{
    variables.append(field);
    variablesByName.insert(readstat_variable_get_name(variable), field);
}

void Dictionary::copyMetadata(const readstat_metadata_t *metadata)
{
    rowCount = metadata->row_count;
    variableCount = metadata->var_count;
}

QStringList Dictionary::labelSetNames() const
{
    QStringList names;
    for (auto it = labelSets.sets.cbegin(); it != labelSets.sets.cend(); ++it)
        names.append(QString::fromUtf8(it.key()));
    return names;
}

namespace {

// Every pass goes through these handlers, which hand the importer's own
// handlers the importer. ReadStat 1.1 hands the variable handler a Stata
// label-set name straight from the file's fixed-width field, with no
// terminating NUL when the name fills the field, so a Stata name is copied,
// bounded by the field width of the file's format version, first.
struct Pass
{
    FileKind kind = FileKind::Sav;
    void *importer = nullptr;
    PassHandlers handlers;
    size_t labelSetWidth = 9; // the narrowest field, until the metadata tells the version
    const PatchedIo *io = nullptr;
};

//! The date of a SAV header ("dd mmm yy", also with dashes or blank-padded
//! numbers) read as ReadStat reads it: English month names, years before 70
//! in the 2000s. Invalid for anything else, such as a month in another language.
QDate savHeaderDate(const QByteArray &text)
{
    static const char months[] = "JANFEBMARAPRMAYJUNJULAUGSEPOCTNOVDEC";
    if (text.size() != SavDateLength || (text[2] != ' ' && text[2] != '-') || (text[6] != ' ' && text[6] != '-'))
        return QDate();
    const auto number = [&text](int at, bool *ok) {
        const QByteArray digits = text.mid(at, 2).trimmed();
        return digits.toInt(ok);
    };
    bool dayOk = false;
    bool yearOk = false;
    const int day = number(0, &dayOk);
    const int year = number(7, &yearOk);
    const QByteArray month = text.mid(3, 3);
    int monthIndex = -1;
    for (int m = 0; m < 12 && monthIndex < 0; ++m) {
        const QByteArray upper(months + 3 * m, 3);
        const QByteArray title = upper.left(1) + upper.mid(1).toLower();
        if (month == upper || month == title)
            monthIndex = m;
    }
    if (!dayOk || !yearOk || monthIndex < 0)
        return QDate();
    return QDate(year < 70 ? 2000 + year : 1900 + year, monthIndex + 1, day);
}

QDateTime creationTime(const Pass &pass, const readstat_metadata_t *metadata)
{
    if (pass.kind == FileKind::Dta)
        return metadata->creation_time == 0 ? QDateTime() : QDateTime::fromSecsSinceEpoch(metadata->creation_time);
    // ReadStat saw the neutral date: the time of day is the file's, the date is taken from the header.
    const QDate date = savHeaderDate(pass.io ? pass.io->originalDate : QByteArray());
    if (!date.isValid())
        return QDateTime();
    return QDateTime(date, QDateTime::fromSecsSinceEpoch(metadata->creation_time).time());
}

QString byteOrderText(readstat_endian_t endianness)
{
    switch (endianness) {
    case READSTAT_ENDIAN_LITTLE:
        return QStringLiteral("little-endian");
    case READSTAT_ENDIAN_BIG:
        return QStringLiteral("big-endian");
    default:
        return QString();
    }
}

void recordMetadata(const Pass &pass, readstat_metadata_t *metadata, Dictionary *dictionary)
{
    dictionary->copyMetadata(metadata);
    FileFacts &facts = dictionary->facts;
    facts.formatVersion = readstat_get_file_format_version(metadata);
    facts.encoding = toText(readstat_get_file_encoding(metadata), TextKind::Utf8);
    facts.byteOrder = byteOrderText(readstat_get_endianness(metadata));
    facts.creationTime = creationTime(pass, metadata);
    facts.label = toText(readstat_get_file_label(metadata), TextKind::Utf8);
}

int passMetadata(readstat_metadata_t *metadata, void *ctx)
{
    auto *pass = static_cast<Pass *>(ctx);
    if (pass->kind == FileKind::Dta) {
        const int version = readstat_get_file_format_version(metadata);
        pass->labelSetWidth = version < 110 ? 9 : version < 118 ? 33 : 129;
    }
    if (pass->handlers.metadata)
        recordMetadata(*pass, metadata, pass->handlers.metadata);
    return READSTAT_HANDLER_OK;
}

int passValueLabel(const char *labelSet, readstat_value_t value, const char *label, void *ctx)
{
    auto *pass = static_cast<Pass *>(ctx);
    return pass->handlers.valueLabels(labelSet, value, label, pass->importer);
}

int passVariable(int index, readstat_variable_t *variable, const char *labelSet, void *ctx)
{
    auto *pass = static_cast<Pass *>(ctx);
    if (!labelSet || pass->kind != FileKind::Dta)
        return pass->handlers.variables(index, variable, labelSet, pass->importer);
    const QByteArray name(labelSet, static_cast<int>(strnlen(labelSet, pass->labelSetWidth)));
    return pass->handlers.variables(index, variable, name.constData(), pass->importer);
}

readstat_error_t parseWithOwnIo(readstat_parser_t *parser, const QByteArray &path, Pass *pass)
{
    PatchedIo io;
    io.patchesSavDate = pass->kind == FileKind::Sav;
    pass->io = &io;
    readstat_set_open_handler(parser, ioOpen);
    readstat_set_close_handler(parser, ioClose);
    readstat_set_seek_handler(parser, ioSeek);
    readstat_set_read_handler(parser, ioRead);
    readstat_set_update_handler(parser, ioUpdate);
    readstat_set_io_ctx(parser, &io);
    // Only a SAV pass that records the metadata sets the handler: with it,
    // ReadStat also converts the file label, which may fail. A Stata pass
    // always sets it, as the label-set width depends on the version.
    if (pass->handlers.metadata || pass->kind == FileKind::Dta)
        readstat_set_metadata_handler(parser, passMetadata);
    const readstat_error_t result = pass->kind == FileKind::Sav ? readstat_parse_sav(parser, path.constData(), pass)
                                                                : readstat_parse_dta(parser, path.constData(), pass);
    // The context lives on this stack frame; the parser must not free it.
    readstat_set_io_ctx(parser, nullptr);
    pass->io = nullptr;
    return result;
}

} // namespace

readstat_error_t parsePass(FileKind kind, const QByteArray &path, const PassHandlers &handlers, void *importer)
{
    // Every pass frees its parser; the label-set entries own copies of their texts.
    readstat_parser_t *parser = readstat_parser_init();
    if (!parser)
        return READSTAT_ERROR_MALLOC;
    Pass pass;
    pass.kind = kind;
    pass.importer = importer;
    pass.handlers = handlers;
    if (handlers.valueLabels)
        readstat_set_value_label_handler(parser, passValueLabel);
    if (handlers.variables)
        readstat_set_variable_handler(parser, passVariable);

    const readstat_error_t result = parseWithOwnIo(parser, path, &pass);
    readstat_parser_free(parser);
    return result;
}

readstat_error_t parseDictionary(FileKind kind, const QString &path, readstat_value_label_handler valueLabels,
                                 readstat_variable_handler variables, void *importer, Dictionary *dictionary)
{
    const QByteArray local = path.toLocal8Bit();
    // Value labels first: the variable pass needs them. Neither pass sets a
    // value handler, so ReadStat skips the data section.
    PassHandlers labels;
    labels.valueLabels = valueLabels;
    labels.metadata = dictionary;
    parsePass(kind, local, labels, importer);

    PassHandlers fields;
    fields.valueLabels = kind == FileKind::Sav ? ignoreValueLabel : nullptr;
    fields.variables = variables;
    return parsePass(kind, local, fields, importer);
}

} // namespace kxreadstat
