#ifndef KXCODEBOOK_H
#define KXCODEBOOK_H

/*! \file KxCodebook.h
 * \brief The codebook: what a data description file says, as its own format means it.
 *
 * One form for the four formats the library reads (CSPro text and JSON
 * dictionaries, SPSS and Stata files). Every type here is a value: copies are
 * cheap (Qt's containers share their data until one side changes), nothing
 * is owned through a raw pointer, and failures come back as a
 * KxCodebook::Error value, never as an exception.
 */

#include "kxcodebook_export.h"

#include <QDateTime>
#include <QSharedDataPointer>
#include <QString>
#include <QStringList>
#include <QVector>

class QByteArray;

//! The codebook library: a reading of data description files as their formats mean them.
namespace KxCodebook {

//! The kind of file a codebook was read from.
enum class Format {
    Unknown,    //!< not recognised (also: detect it, where a format is asked for)
    CSProText,  //!< CSPro's classic text dictionary (`[Dictionary]` ...)
    CSProJson,  //!< CSPro 8's JSON dictionary
    Spss,       //!< an SPSS system file (`.sav`, `.zsav`)
    Stata       //!< a Stata data file (`.dta`)
};

//! The short name of \a format: "cspro", "cspro8", "spss", "stata", or "" for Format::Unknown.
KXCODEBOOK_EXPORT QString formatName(Format format);
//! The format of a short name given by formatName() (case-insensitive); Format::Unknown otherwise.
KXCODEBOOK_EXPORT Format formatFromName(const QString &name);
/*! The format that a file's first bytes tell (at least 64 of them when the
 * file has that many), or Format::Unknown. A UTF-8 byte-order mark is skipped. */
KXCODEBOOK_EXPORT Format detectFormat(const QByteArray &head);

//! How a variable's values are stored.
enum class Storage {
    Numeric,  //!< numbers
    Text,     //!< characters (CSPro alpha, SPSS and Stata strings)
    Binary    //!< CSPro 8's audio, document, geometry and image items: no columns of text
};

//! The special meaning CSPro gives a code of a value set.
enum class Special {
    None,     //!< an ordinary code
    Missing,  //!< MISSING
    Refused,  //!< REFUSED
    NotAppl,  //!< NOTAPPL: not applicable, usually a blank field
    Default   //!< DEFAULT
};

//! The name CSPro writes for \a special ("MISSING", "REFUSED", "NOTAPPL", "DEFAULT"), or "".
KXCODEBOOK_EXPORT QString specialName(Special special);

//! An SPSS or Stata measurement level.
enum class Measure { Unknown, Nominal, Ordinal, Scale };

//! An SPSS or Stata display alignment.
enum class Alignment { Unknown, Left, Center, Right };

/*! Labels in the data set's languages, in the order of Codebook::languages().
 * The first is the primary label. An empty or missing entry means "the same
 * as the primary label", as in CSPro. */
struct KXCODEBOOK_EXPORT Labels
{
    //! One text per language, as the file gives them.
    QStringList texts;

    //! The primary label (empty when there is none).
    QString primary() const;
    //! The label in language \a language (0-based), falling back to the primary label.
    QString text(int language) const;
    //! No text at all.
    bool isEmpty() const;
    //! A single primary label.
    static Labels of(const QString &primary);

    //! Same texts.
    bool operator==(const Labels &other) const { return texts == other.texts; }
    //! Different texts.
    bool operator!=(const Labels &other) const { return !(*this == other); }
};

//! A language of the data set.
struct KXCODEBOOK_EXPORT Language
{
    QString name;   //!< as the file names it (`EN`, `FR`); empty for an unnamed single language
    QString label;  //!< its label (`English`)
};

//! One code or range of codes of a value, as the file writes it.
struct KXCODEBOOK_EXPORT Code
{
    QString from;          //!< the code, or the lower end of a range (quotes removed, inner spaces kept)
    QString to;            //!< the upper end of a range; empty for a single code
    bool isRange = false;  //!< from:to

    //! Same code or range.
    bool operator==(const Code &other) const
    {
        return from == other.from && to == other.to && isRange == other.isRange;
    }
};

//! One labelled value of a value set: one or more codes and ranges under one label.
struct KXCODEBOOK_EXPORT Value
{
    QVector<Code> codes;              //!< at least one
    Labels labels;                    //!< per language
    Special special = Special::None;  //!< CSPro's special meaning of the codes
    QString note;                     //!< a note attached to the value
    QString image;                    //!< a picture path, relative to the dictionary's folder
};

//! A set of labelled values attached to a variable.
struct KXCODEBOOK_EXPORT ValueSet
{
    QString name;          //!< the value set's name (SPSS/Stata: the label set's name)
    Labels labels;         //!< its labels
    QString link;          //!< CSPro's link id; sets with the same link share their values
    bool linkFilled = false;  //!< the values were copied from the first set with the same link
    QVector<Value> values;    //!< in file order
};

//! A value, or range of values, that the variable declares as missing.
struct KXCODEBOOK_EXPORT MissingValue
{
    QString from;                  //!< the code (Stata: `.a` to `.z` for extended missing values)
    QString to;                    //!< the upper end of a range; empty for a single code
    bool isRange = false;          //!< from:to
    Special special = Special::None;  //!< CSPro: which special value the code stands for
    QString label;                 //!< its label, when the file gives one
};

//! A label for one occurrence of a repeating record or item.
struct KXCODEBOOK_EXPORT OccurrenceLabel
{
    int occurrence = 0;  //!< 1-based
    Labels labels;       //!< per language
};

//! A level of a CSPro dictionary (questionnaire, person, ...).
struct KXCODEBOOK_EXPORT Level
{
    QString name;   //!< its name
    Labels labels;  //!< its labels
};

//! A record type of a CSPro dictionary.
struct KXCODEBOOK_EXPORT Record
{
    QString name;                  //!< its name
    Labels labels;                 //!< its labels
    int level = 1;                 //!< 1-based level
    QString typeValue;             //!< the record-type code (may be empty)
    bool required = true;          //!< the record must occur in every case
    int maxOccurrences = 1;        //!< how often it may occur in a case
    int length = 0;                //!< record length as CSPro computes it (RecordLen= is not read)
    QVector<OccurrenceLabel> occurrenceLabels;  //!< labels of its occurrences
};

//! One variable (CSPro item or subitem, SPSS or Stata variable), in file order.
struct KXCODEBOOK_EXPORT Variable
{
    QString name;                   //!< as the file writes it
    Labels labels;                  //!< per language
    QString note;                   //!< CSPro's note

    // Where it sits (CSPro)
    QString record;                 //!< the record's name; empty for identification items
    int level = 1;                  //!< 1-based level
    bool isId = false;              //!< an identification item of its level
    int start = 0;                  //!< 1-based first column; 0 where the format has no columns
    int width = 0;                  //!< columns (SPSS/Stata: the format's width) of one occurrence
    int occurrences = 1;            //!< repetitions, laid out one after the other
    QVector<OccurrenceLabel> occurrenceLabels;  //!< labels of its occurrences
    bool isSubitem = false;         //!< a subitem of \a parent
    QString parent;                 //!< the parent item of a subitem

    // What it holds
    Storage storage = Storage::Numeric;  //!< numeric, text or binary
    QString contentType;            //!< CSPro: numeric, alpha, audio, document, geometry, image
    int decimals = 0;               //!< decimal places
    bool decimalMark = false;       //!< CSPro: the data holds the decimal mark
    bool zeroFill = false;          //!< CSPro: leading zeros rather than blanks

    // SPSS and Stata
    QString format;                 //!< the whole format as the file writes it (`F10.2`, `A24`, `%9.2f`)
    int storageWidth = 0;           //!< bytes of storage (Stata: the str width; SPSS: in blocks of 8)
    int displayWidth = 0;           //!< display width
    Measure measure = Measure::Unknown;        //!< measurement level
    Alignment alignment = Alignment::Unknown;  //!< display alignment
    QString labelSet;               //!< name of the value-label set the variable uses

    QVector<ValueSet> valueSets;    //!< CSPro: its value sets; SPSS/Stata: its label set
    QVector<MissingValue> missing;  //!< declared missing values: specials, user-missing, extended

    //! Columns taken by all occurrences (width × occurrences); subitems take none of their own.
    int span() const { return width * occurrences; }
};

class CodebookData;

//! Why reading a codebook failed.
struct KXCODEBOOK_EXPORT Error
{
    //! The kinds of failure.
    enum Kind {
        NoError,         //!< read
        FileNotFound,    //!< no such file
        NotAFile,        //!< a directory or other non-regular file
        Unreadable,      //!< the system refused to read it
        UnknownFormat,   //!< not one of the four formats
        Malformed,       //!< the file breaks its format's rules
        LimitReached     //!< a bound against hostile input was reached
    };
    Kind kind = NoError;  //!< what happened
    QString message;      //!< the reason in words, with values
    int line = 0;         //!< 1-based line (text formats), 0 when none

    //! Whether reading succeeded.
    bool ok() const { return kind == NoError; }
};

/*! The codebook of one data description file: the data set, its levels,
 * records and variables with their value sets and missing values. A null
 * codebook (isNull()) comes back from a failed reading. */
class KXCODEBOOK_EXPORT Codebook
{
public:
    //! A null codebook.
    Codebook();
    //! Shares \a other's data.
    Codebook(const Codebook &other);
    //! Shares \a other's data.
    Codebook &operator=(const Codebook &other);
    ~Codebook();

    /*! Reads \a path. With Format::Unknown the format is detected from the
     * content. On failure returns a null codebook and fills \a error. */
    static Codebook fromFile(const QString &path, Error *error = nullptr, Format format = Format::Unknown);
    /*! Reads a CSPro dictionary (text or JSON) from \a data; \a fileName is
     * only recorded. SPSS and Stata files are read with fromFile(). */
    static Codebook fromData(const QByteArray &data, Format format, Error *error = nullptr,
                             const QString &fileName = QString());

    //! No data set: the result of a failed reading.
    bool isNull() const;

    //! The file it was read from.
    QString fileName() const;
    //! Sets the file name.
    void setFileName(const QString &fileName);
    //! The file's format.
    Format format() const;
    //! Sets the format.
    void setFormat(Format format);
    //! The format's version as the file gives it (`CSPro 7.7`, `8.0`, `2`, `118`).
    QString formatVersion() const;
    //! Sets the format version.
    void setFormatVersion(const QString &version);
    //! The text encoding the file's text was decoded from (`UTF-8`, `windows-1252`).
    QString encoding() const;
    //! Sets the encoding.
    void setEncoding(const QString &encoding);
    //! The data set's name (CSPro dictionary name; empty for SPSS and Stata).
    QString name() const;
    //! Sets the name.
    void setName(const QString &name);
    //! The data set's labels (CSPro dictionary label, SPSS/Stata file label).
    Labels labels() const;
    //! Sets the labels.
    void setLabels(const Labels &labels);
    //! The languages of the labels; one unnamed language when the file names none.
    QVector<Language> languages() const;
    //! Sets the languages.
    void setLanguages(const QVector<Language> &languages);
    //! Rows of data the file holds; -1 where it does not say (CSPro).
    qint64 rowCount() const;
    //! Sets the row count.
    void setRowCount(qint64 rows);
    //! When the file was written, where it says (SPSS, Stata).
    QDateTime created() const;
    //! Sets the creation time.
    void setCreated(const QDateTime &created);
    //! 1-based column of the record-type code; 0 without record type.
    int recordTypeStart() const;
    //! Width of the record-type code; 0 without record type.
    int recordTypeLength() const;
    //! Sets the record-type column and width.
    void setRecordType(int start, int length);
    //! CSPro: positions are relative (laid out one after the other).
    bool relativePositions() const;
    //! Sets relative positions.
    void setRelativePositions(bool relative);

    //! The levels (CSPro); one unnamed level for SPSS and Stata.
    QVector<Level> levels() const;
    //! Sets the levels.
    void setLevels(const QVector<Level> &levels);
    //! The records in file order (CSPro); none for SPSS and Stata.
    QVector<Record> records() const;
    //! Sets the records.
    void setRecords(const QVector<Record> &records);
    //! The variables in file order: identification items of each level first.
    QVector<Variable> variables() const;
    //! Sets the variables.
    void setVariables(const QVector<Variable> &variables);

    //! Index of the variable named \a name (case-sensitive) in variables(), or -1.
    int indexOfVariable(const QString &name) const;

private:
    QSharedDataPointer<CodebookData> d;
};

} // namespace KxCodebook

// Every member is one of Qt's implicitly shared types or a plain value, so a
// container moves these values with memcpy when it grows.
//! \cond
Q_DECLARE_TYPEINFO(KxCodebook::Labels, Q_MOVABLE_TYPE);
Q_DECLARE_TYPEINFO(KxCodebook::Language, Q_MOVABLE_TYPE);
Q_DECLARE_TYPEINFO(KxCodebook::Code, Q_MOVABLE_TYPE);
Q_DECLARE_TYPEINFO(KxCodebook::Value, Q_MOVABLE_TYPE);
Q_DECLARE_TYPEINFO(KxCodebook::ValueSet, Q_MOVABLE_TYPE);
Q_DECLARE_TYPEINFO(KxCodebook::MissingValue, Q_MOVABLE_TYPE);
Q_DECLARE_TYPEINFO(KxCodebook::OccurrenceLabel, Q_MOVABLE_TYPE);
Q_DECLARE_TYPEINFO(KxCodebook::Level, Q_MOVABLE_TYPE);
Q_DECLARE_TYPEINFO(KxCodebook::Record, Q_MOVABLE_TYPE);
Q_DECLARE_TYPEINFO(KxCodebook::Variable, Q_MOVABLE_TYPE);
//! \endcond

#endif // KXCODEBOOK_H
