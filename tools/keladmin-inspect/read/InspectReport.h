#ifndef KXINSPECT_INSPECTREPORT_H
#define KXINSPECT_INSPECTREPORT_H

#include <KxCodebook.h>

#include <QList>
#include <QPair>
#include <QString>
#include <QStringList>

namespace kxinspect {

//! One entry of a field's value labels.
struct ValueLabel
{
    QString code;
    QString label;
};

//! One source field as the data provider gives it; texts are kept as read.
struct FieldRow
{
    QString name;
    QString label;
    QString type;
    int start = 0;
    int size = 0;
    int decimals = 0;
    QString minimum;
    QString maximum;
    QString missingCode;
    QString notApplicableCode;
    QString group;
    QList<ValueLabel> valueLabels;
    //! The value labels as the importer writes them ("code label", each ended by a tab), split
    //! only when written (valueLabelsOf()); used when valueLabels is empty.
    QString valueLabelText;
    // Where a CSPro item sits in its dictionary; left as they are for other formats.
    QString record;              //!< name of the record the item was read into, even when group is empty
    bool identification = false; //!< an item of the common record: on every record's line
    bool subItem = false;        //!< a subitem: lies over its parent's columns and takes none of its own
    bool changed = false;        //!< marked on a comparison page: something of it changed
};

//! One group (record type) of the importer: its "name=value" entry split in two.
struct GroupRow
{
    QString entry;
    QString name;
    QString recordType;
    int fieldCount = 0;
};

//! One reading note of the importer.
struct NoteRow
{
    int line = 0;
    QString subject;
    QString kind;
    QString text;
};

//! What an SPSS or Stata file says about itself, from ReadStat's metadata.
struct FileMetadata
{
    bool present = false;  //!< SPSS and Stata files only
    qint64 rowCount = -1;  //!< -1 when the file does not say
    int formatVersion = 0; //!< 0 when unknown
    QString encoding;      //!< empty when unknown
    QString byteOrder;     //!< "little-endian", "big-endian", or empty when unknown
    QString creationTime;  //!< "yyyy-MM-ddTHH:mm:ss" as the file states it, or empty when unknown
    QString label;         //!< the file's own label; empty when it has none
};

//! The data-source description of a dictionary.
struct SourceDescription
{
    QString file; //!< absolute path
    QString format;
    bool formatDetected = false;
    QString providerId;
    QString providerType;    //!< the importer's type name
    QString descriptionType; //!< the type the data provider took over
    int recordTypeStart = 0;
    int recordTypeLength = 0;
    FileMetadata metadata;
};

//! What the lookup reader gave.
struct LookupResult
{
    QString file; //!< absolute path
    QString separator;
    bool checks = false;
    int maxMessages = 0;
    int lines = 0;
    int entries = 0;
    QStringList messages; //!< every message, the cap message among them
    QList<QPair<QString, int>> labelFrequencies; //!< ordered by label
};

/*! \brief Everything the inspector prints about one file, filled once and
 * then handed to a writer; nothing in it is escaped or shortened. */
struct InspectReport
{
    enum class Kind { Dictionary, Lookup };

    Kind kind = Kind::Dictionary;
    SourceDescription source;
    QList<GroupRow> groups;
    QList<FieldRow> fields;
    LookupResult lookup;
    QList<NoteRow> notes; //!< in the order the reader wrote them
    //! CSPro, for the HTML page: the dictionary as CSPro reads it; null when not read.
    KxCodebook::Codebook codebook;
    QString codebookProblem; //!< why the codebook could not be read
};

//! The field's value labels: valueLabels, or else valueLabelText split.
QList<ValueLabel> valueLabelsOf(const FieldRow &field);

} // namespace kxinspect

#endif // KXINSPECT_INSPECTREPORT_H
