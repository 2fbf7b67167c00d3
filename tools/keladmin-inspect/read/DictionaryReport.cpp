// Fills the report of a dictionary from the importer and the data provider.
#include "ReportBuilder.h"

#include "FormatDetection.h"
#include "ReadFailure.h"
#include "StdoutCapture.h"
#include "TextOutput.h"

#include "CSProDataImport.h"
#include "CSProDictionary.h"
#include "CSProJsonDataImport.h"
#include "DataImport.h"
#include "KxConstants.h"
#include "KxDataProvider.h"
#include "KxErrorManager.h"
#include "KxSourceField.h"
#include "SPSSDataImport.h"
#include "STATADataImport.h"

#include <QDateTime>
#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QTemporaryFile>
#include <QTextStream>

#include <exception>
#include <memory>

namespace kxinspect {

namespace {

/*! The importer and the data provider, alive while the report is filled.
 * The library leaves the fields and the dictionary model to its caller; the
 * report holds copies of what it shows, so all of it goes with this. */
struct OpenedDictionary
{
    std::unique_ptr<TDataImport> importer;
    TKxDataProvider provider;
    QString libraryOutput; //!< what the library wrote to stdout while reading

    OpenedDictionary() = default;
    OpenedDictionary(const OpenedDictionary &) = delete;
    OpenedDictionary &operator=(const OpenedDictionary &) = delete;
    ~OpenedDictionary()
    {
        releaseImporterModel();
        if (QList<TKxSourceField *> *sourceFields = provider.getSourceFields()) {
            qDeleteAll(*sourceFields);
            sourceFields->clear();
        }
    }

    //! Deletes the importer's fields and the dictionary model; the provider's source fields stay.
    void releaseImporterModel()
    {
        if (!importer)
            return;
        if (QList<TGenericField *> *fields = importer->getFields()) {
            qDeleteAll(*fields);
            fields->clear();
        }
        // The fields pointed into the model; nothing does now.
        if (auto *text = dynamic_cast<TCSProDataImport *>(importer.get()))
            releaseReader(*text);
        else if (auto *json = dynamic_cast<TCSProJsonDataImport *>(importer.get()))
            releaseReader(*json);
    }

private:
    template <class Importer>
    static void releaseReader(Importer &importer)
    {
        if (auto *reader = importer.getDictionaryReader()) {
            reader->releaseModel();
            delete reader;
            importer.setDictionaryReader(nullptr);
        }
    }
};

/*! The CSPro text importer gets its decimal prompt answered before reading,
 * unless the prompt is asked for and can really be shown. */
TDataImport *createImporter(const QString &format, const QString &path, const InspectOptions &o,
                            bool dialogPossible, const WarningSink &warn)
{
    if (format == QLatin1String("cspro")) {
        auto *importer = new TCSProDataImport(path);
        if (o.decimal == QLatin1String("yes-to-all")) {
            importer->setDecimalChoice(TDecimalChoice::YesToAll);
        } else if (o.decimal != QLatin1String("ask")) {
            importer->setDecimalChoice(TDecimalChoice::NoToAll);
        } else if (!dialogPossible) {
            warn(QStringLiteral("note: no display, the decimal prompt is answered no-to-all"));
            importer->setDecimalChoice(TDecimalChoice::NoToAll);
        }
        return importer;
    }
    if (format == QLatin1String("cspro8"))
        return new TCSProJsonDataImport(path);
    if (format == QLatin1String("spss"))
        return new TSPSSDataImport(path);
    return new TSTATADataImport(path);
}

//! Lines of the file as the CSPro text reader splits it: text mode, QTextStream::readLine.
int linesAsRead(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text))
        return 0;
    QTextStream in(&file);
    int count = 0;
    for (; !in.atEnd(); in.readLine())
        ++count;
    return count;
}

/*! Error 242 of the CSPro text reader carries the 0-based index of the
 * failing line as one character, the code of which keeps only 16 bits; this
 * says the 1-based line in decimal, " (line N of the file)", and an empty
 * text for any other error. */
QString lineOfReaderError(const KxErrorManager &e, const QString &path)
{
    const QString detail = e.getMessageText();
    if (e.getErrorNumber() != 242 || detail.size() != 1)
        return QString();
    const int line = detail.at(0).unicode() + 1;
    if (linesAsRead(path) <= 0x10000)
        return QStringLiteral(" (line %1 of the file)").arg(line);
    return QStringLiteral(" (line %1 of the file, or a multiple of 65536 lines further: the line is kept in 16 bits)")
        .arg(line);
}

//! Opens the file and hands the importer to the data provider; the problem when the library fails.
QString openDictionary(const QString &format, const QString &path, const InspectOptions &o, bool dialogPossible,
                       const WarningSink &warn, OpenedDictionary &opened)
{
    const QString prefix = QStringLiteral("cannot be read as %1: ").arg(format);
    try {
        opened.importer.reset(createImporter(format, path, o, dialogPossible, warn));
        StdoutCapture capture;
        opened.importer->openFile();
        opened.libraryOutput = capture.finish();
        opened.provider.genericGetFieldsFrom(opened.importer.get());
    } catch (KxErrorManager *e) {
        const QString message = oneLine(e->getErrorMessage()) + lineOfReaderError(*e, path);
        delete e;
        return prefix + message;
    } catch (const std::exception &e) {
        return prefix + oneLine(QString::fromLocal8Bit(e.what()));
    } catch (...) {
        return prefix + QStringLiteral("unexpected error");
    }
    return QString();
}

QList<TKxSourceField *> sourceFieldsOf(const TKxDataProvider &provider)
{
    return provider.getSourceFields() ? *provider.getSourceFields() : QList<TKxSourceField *>();
}

//! The JSON reader is silent by contract, so the file is parsed again here for the parser's complaint.
QString jsonProblemOfFile(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return QString();
    return jsonProblem(file.readAll());
}

/*! ReadStat's own message for the error that stopped the reading of an SPSS
 * or Stata file (Importer: TSPSSDataImport or TSTATADataImport), with its
 * code; empty for other importers and when the reading went through. */
template <class Importer>
QString readStatProblemOf(TDataImport &importer)
{
    const auto *readStat = dynamic_cast<const Importer *>(&importer);
    if (!readStat || readStat->getParseError() == 0)
        return QString();
    return QStringLiteral("ReadStat: %1 (error %2)").arg(readStat->getParseErrorText(), QString::number(readStat->getParseError()));
}

QString readStatProblem(TDataImport &importer)
{
    const QString spss = readStatProblemOf<TSPSSDataImport>(importer);
    return spss.isEmpty() ? readStatProblemOf<TSTATADataImport>(importer) : spss;
}

/*! The reason in words, when one is known, why the importer gave no fields:
 * the JSON parser's complaint, ReadStat's message, or else what the library
 * wrote to stdout while reading. */
QString reasonOfEmptyReading(const QString &format, const QString &path, const OpenedDictionary &opened)
{
    if (format == QLatin1String("cspro8")) {
        const QString problem = jsonProblemOfFile(path);
        if (!problem.isEmpty())
            return problem;
    }
    const QString readStat = readStatProblem(*opened.importer);
    if (!readStat.isEmpty())
        return oneLine(readStat);
    return opened.libraryOutput.isEmpty() ? QString() : oneLine(opened.libraryOutput);
}

/*! Copies what an SPSS or Stata file says about itself; false for other
 * importers. Importer: TSPSSDataImport or TSTATADataImport. */
template <class Importer>
bool copyFileMetadata(TDataImport &importer, FileMetadata &out)
{
    const auto *readStat = dynamic_cast<const Importer *>(&importer);
    if (!readStat)
        return false;
    out.present = true;
    out.rowCount = readStat->getRowCount();
    out.formatVersion = readStat->getFileFormatVersion();
    out.encoding = readStat->getFileEncoding();
    out.byteOrder = readStat->getByteOrder();
    const QDateTime created = readStat->getCreationTime();
    out.creationTime = created.isValid() ? created.toString(QStringLiteral("yyyy-MM-ddTHH:mm:ss")) : QString();
    out.label = readStat->getFileLabel();
    return true;
}

void describeFileMetadata(TDataImport &importer, FileMetadata &out)
{
    if (!copyFileMetadata<TSPSSDataImport>(importer, out))
        copyFileMetadata<TSTATADataImport>(importer, out);
}

QString whyNoFields(const QString &format, const QString &path, const OpenedDictionary &opened)
{
    QString why = QStringLiteral("no fields read as %1").arg(format);
    const QString reason = reasonOfEmptyReading(format, path, opened);
    if (!reason.isEmpty())
        why += QStringLiteral(" (%1)").arg(reason);
    return why;
}

void describeSource(const OpenedDictionary &opened, const QString &path, const QString &format, bool detected,
                    SourceDescription &source)
{
    source.file = path;
    source.format = format;
    source.formatDetected = detected;
    source.providerId = opened.provider.getDataProviderId();
    source.providerType = opened.importer->getDataProviderType();
    source.descriptionType = opened.provider.getDataProviderType();
    source.recordTypeStart = opened.provider.getRecordTypeStart();
    source.recordTypeLength = opened.provider.getRecordTypeSize();
}

FieldRow fieldRowOf(const TKxSourceField &f)
{
    FieldRow row;
    row.name = f.getFieldName();
    row.label = f.getLabel();
    row.type = f.getFieldType();
    row.start = f.getStart();
    row.size = f.getSize();
    row.decimals = f.getDecimals();
    row.minimum = f.getMinimum();
    row.maximum = f.getMaximum();
    row.missingCode = f.getMissingCode();
    row.notApplicableCode = f.getNotApplicableCode();
    row.group = f.getGroup();
    return row;
}

//! The importer's groups, "name=value" each, with the number of fields in each.
QList<GroupRow> groupsOf(TDataImport &importer, const QList<FieldRow> &fields)
{
    // One pass over the fields: a dictionary may have thousands of records.
    QHash<QString, int> fieldsByGroup;
    for (const FieldRow &f : fields)
        ++fieldsByGroup[f.group];
    QList<GroupRow> groups;
    for (int i = 0; i < importer.getGroupCount(); ++i) {
        GroupRow group;
        group.entry = importer.getGroupName(i);
        const int eq = group.entry.indexOf(EQUALCHR);
        group.name = eq < 0 ? group.entry : group.entry.left(eq);
        group.recordType = eq < 0 ? QString() : group.entry.mid(eq + 1);
        group.fieldCount = fieldsByGroup.value(group.name);
        groups.append(group);
    }
    return groups;
}

/*! The placement of each item in a CSPro dictionary: its record, whether it
 * is an identification item and whether a subitem. The importer makes one
 * field per item in the reader's order; anything else is left unplaced. */
template <class Reader>
void placeItems(Reader *reader, QList<FieldRow> &fields)
{
    if (!reader || reader->getItemsCount() != fields.size())
        return;
    for (int i = 0; i < fields.size(); ++i) {
        const TCSProItem *item = reader->getItem(i);
        if (!item || item->name != fields.at(i).name)
            continue;
        fields[i].record = item->record ? item->record->name : QString();
        fields[i].identification = item->record && item->record == reader->getCommonRecord();
        fields[i].subItem = item->isSubItem != 0;
    }
}

void placeCSProItems(TDataImport &importer, QList<FieldRow> &fields)
{
    if (auto *text = dynamic_cast<TCSProDataImport *>(&importer))
        placeItems(text->getDictionaryReader(), fields);
    else if (auto *json = dynamic_cast<TCSProJsonDataImport *>(&importer))
        placeItems(json->getDictionaryReader(), fields);
}

QList<NoteRow> notesOf(const TDataImport &importer)
{
    QList<NoteRow> notes;
    for (const TReadNote &note : importer.getReadNotes())
        notes.append({note.getLine(), note.getSubject(), note.getKind(), note.getText()});
    return notes;
}

} // namespace

QString fillDictionaryReport(const InspectOptions &o, bool dialogPossible, const WarningSink &warn,
                             InspectReport &report, ModelMemory model)
{
    // A pipe is read once, into a copy that every step then reads by path.
    QTemporaryFile copy;
    QString path;
    QString problem = openInput(o.file, copy, &path);
    if (!problem.isEmpty())
        return problem;

    QString format = o.format;
    const bool detected = format.isEmpty();
    if (detected) {
        const QString unknown = detectFileFormat(path, &format);
        if (!unknown.isEmpty())
            return unknown;
    }

    // Freeing a model of hundreds of thousands of small objects costs about
    // as much as reading it; a run of one file leaves that to its exit.
    std::unique_ptr<OpenedDictionary> owned(new OpenedDictionary);
    OpenedDictionary &opened = *owned;
    const QString failure = openDictionary(format, path, o, dialogPossible, warn, opened);
    if (!failure.isEmpty())
        return failure;
    const QList<TKxSourceField *> fields = sourceFieldsOf(opened.provider);
    if (fields.isEmpty())
        return whyNoFields(format, path, opened);
    const QString stoppedEarly = readStatProblem(*opened.importer);
    if (!stoppedEarly.isEmpty())
        warn(QStringLiteral("warning: the reading stopped early: %1").arg(oneLine(stoppedEarly)));
    else if (!opened.libraryOutput.isEmpty())
        warn(QStringLiteral("warning: %1").arg(oneLine(opened.libraryOutput)));

    report.kind = InspectReport::Kind::Dictionary;
    describeSource(opened, path, format, detected, report.source);
    if (copy.isOpen()) {
        // Read from the copy of a stream: the report names the stream.
        const QString named = QFileInfo(o.file).absoluteFilePath();
        report.source.file = named;
        report.source.providerId.replace(path, named);
    }
    describeFileMetadata(*opened.importer, report.source.metadata);
    const int firstRow = report.fields.size();
    for (const TKxSourceField *f : fields)
        report.fields.append(fieldRowOf(*f));
    placeCSProItems(*opened.importer, report.fields);
    report.groups = groupsOf(*opened.importer, report.fields);
    report.notes = notesOf(*opened.importer);
    // The value labels are split once the model has gone, so that the two
    // never take memory at the same time, unless the model stays to the end.
    if (model == ModelMemory::LeaveToExit)
        owned.release();
    else
        opened.releaseImporterModel();
    // A model left to the end keeps the value labels' texts, which the report
    // shares and splits one field at a time as it is written.
    for (int i = 0; i < fields.size(); ++i) {
        if (model == ModelMemory::LeaveToExit)
            report.fields[firstRow + i].valueLabelText = fields.at(i)->getValueLabels();
        else
            report.fields[firstRow + i].valueLabels = splitValueLabels(fields.at(i)->getValueLabels());
    }
    if (!o.html.isEmpty() && (format == QLatin1String("cspro") || format == QLatin1String("cspro8"))) {
        // The page shows the file's own meaning beside the front end's reading.
        KxCodebook::Error error;
        report.codebook = KxCodebook::Codebook::fromFile(path, &error);
        if (!error.ok())
            report.codebookProblem = error.message;
    }
    return QString();
}

} // namespace kxinspect
