#ifndef READNOTE_H
#define READNOTE_H

#include "model_kelAdmin_export.h"

#include <QList>
#include <QString>

/*! \brief Stable identifiers of the reading notes' kinds.
 *
 * Scripts rely on these texts: a kind is never renamed once released.
 */
namespace TReadNoteKind {
//! CSPro text: a command's value came from another line, or its own line was ignored.
constexpr const char KeyFromOtherLine[] = "key-from-other-line";
//! CSPro: a special value ("MISSING", "NOTAPPL", ...) did not become a missing or not-applicable code.
constexpr const char SpecialNotRead[] = "special-not-read";
//! CSPro text: a value set was read and not attached to its item.
constexpr const char ValueSetDropped[] = "value-set-dropped";
//! CSPro text: decimal codes were turned into "0" by the answer to the decimal prompt.
constexpr const char ValueCodesChanged[] = "value-codes-changed";
//! CSPro: a linked value set has no values of its own while an earlier set with its link has.
constexpr const char LinkedValueSetEmpty[] = "linked-value-set-empty";
//! CSPro text: only one occurrence copy of the dictionary's first item receives its value set.
constexpr const char OccurrenceValueSet[] = "occurrence-value-set";
//! CSPro text: a line held bytes that could not be decoded.
constexpr const char UndecodableText[] = "undecodable-text";
//! CSPro JSON: an item's "decimals" are not read. SPSS and Stata: the decimals of a
//! numeric variable's format (F8.2, %10.2f) are not kept.
constexpr const char DecimalsNotRead[] = "decimals-not-read";
//! CSPro JSON: a subitem is read as an item of its own.
constexpr const char SubitemReadAsItem[] = "subitem-read-as-item";
//! CSPro JSON: a range is stored as one code "low:high".
constexpr const char RangeCode[] = "range-code";
//! CSPro JSON: occurrence labels are not read.
constexpr const char OccurrenceLabelsNotRead[] = "occurrence-labels-not-read";
//! CSPro: a bound against hostile input clipped occurrences, items or value-set copies.
constexpr const char LimitReached[] = "limit-reached";
//! SPSS: a format width of two or more digits was read as its first digit.
constexpr const char WidthFirstDigit[] = "width-first-digit";
//! SPSS: a format whose second character is no digit (COMMA9.2, DATE11) gave the width 0.
constexpr const char WidthNotRead[] = "width-not-read";
//! SPSS and Stata: a value label of the value -1 was left out.
constexpr const char LabelMinusOneDropped[] = "label-minus-one-dropped";
//! SPSS: a labelled value was cut to an integer for a variable without decimals.
constexpr const char LabelValueTruncated[] = "label-value-truncated";
//! SPSS and Stata: the label of a missing value (Stata's .a to .z, system missing) became an ordinary code.
constexpr const char MissingLabelAsCode[] = "missing-label-as-code";
//! SPSS and Stata: a name or label outside ASCII was read as ASCII or Latin-1.
constexpr const char TextNotAscii[] = "text-not-ascii";
//! SPSS: a shared label set was cut to integers by an earlier variable.
constexpr const char LabelSetTruncated[] = "label-set-truncated";
//! SPSS and Stata: the variable's user-missing values are not carried.
constexpr const char UserMissingNotRead[] = "user-missing-not-read";
//! SPSS and Stata: the variable names a label set the file does not define.
constexpr const char LabelSetMissing[] = "label-set-missing";
//! SPSS and Stata: a label set that no variable names.
constexpr const char LabelSetUnused[] = "label-set-unused";
//! CSPro text: a label with one segment per language ("Oui|Yes") kept whole, bars included.
constexpr const char LanguageLabelsJoined[] = "language-labels-joined";
//! CSPro JSON: relative positions: record items without "start" placed from column 1 of the record,
//! on top of the record type and the identification items.
constexpr const char StartNotRelative[] = "start-not-relative";
//! CSPro text: a quoted code kept its closing quote ('ADD' became ADD').
constexpr const char QuotedCodeBent[] = "quoted-code-bent";
//! CSPro: a code holding blanks ('1  ') runs into its label in the field's "code label" value labels.
constexpr const char PaddedCodeSplit[] = "padded-code-split";
//! CSPro text: a range (Value=1:18) kept as its two bound codes.
constexpr const char RangeSplit[] = "range-split";
//! CSPro: a whole-number item of 10 or more digits typed REAL.
constexpr const char WideIntegerAsReal[] = "wide-integer-as-real";
//! CSPro: no record type (RecordTypeLen=0): no field gets a group, identification items included.
constexpr const char GroupNotSet[] = "group-not-set";
//! CSPro JSON: a value with several "pairs" kept its first pair only.
constexpr const char FirstPairOnly[] = "first-pair-only";
//! CSPro: a start, length, count or number of decimals that is no whole number in range
//! replaced by the default, or kept negative.
constexpr const char NumberOutOfRange[] = "number-out-of-range";
//! CSPro: a code of an integer field written with 6 significant digits (99999999 became 1e+08).
constexpr const char CodeRounded[] = "code-rounded";
//! CSPro text: the copies of a repeated item named with a control character (AGE_ and U+0001).
constexpr const char OccurrenceNameControl[] = "occurrence-name-control";
//! CSPro JSON: an audio, document, geometry or image item read as a numeric field.
constexpr const char BinaryItemAsNumber[] = "binary-item-as-number";
//! CSPro: a subitem of a repeating item given once, not once per occurrence of its parent.
constexpr const char SubitemOccurrencesOnce[] = "subitem-occurrences-once";
//! CSPro text: an identification item of a lower level put in the group of the record read before it.
constexpr const char IdItemInRecordGroup[] = "id-item-in-record-group";
//! CSPro JSON: a record or an item that CSPro skips as malformed (no name, an unknown content type,
//! a length, count or start out of range, a subitem without its parent) read all the same.
constexpr const char MalformedItemKept[] = "malformed-item-kept";
//! CSPro JSON: a value that CSPro skips as malformed (no pairs, a pair with neither a code nor a
//! range of two) kept with the code the reading made of it.
constexpr const char MalformedValueKept[] = "malformed-value-kept";
//! CSPro JSON: a code written as a JSON number (1 rather than "1") read as the empty code.
constexpr const char NumericCodeNotRead[] = "numeric-code-not-read";
//! CSPro text: a carriage return inside a line dropped by the reading.
constexpr const char CarriageReturnDropped[] = "carriage-return-dropped";
} // namespace TReadNoteKind

/*! \brief One reading note: a place where a reader dropped, shortened or
 * reinterpreted what the file says.
 *
 * Notes never change what is read; they tell the caller what the reading
 * kept instead of what the file says.
 */
class MODEL_KELADMIN_EXPORT TReadNote
{
public:
    //! An empty note: line 0, empty texts.
    TReadNote();
    //! A note on \a subject at \a line of the file, of the kind \a kind, saying \a text.
    TReadNote(int line, const QString &subject, const QString &kind, const QString &text);

    //! 1-based line of the file the note arises from; 0 where lines mean nothing (SPSS, Stata).
    //!@{
    int getLine() const { return line; }
    void setLine(int v) { line = v; }
    //!@}
    //! The item, variable, value set or record the note concerns.
    //!@{
    QString getSubject() const { return subject; }
    void setSubject(const QString &v) { subject = v; }
    //!@}
    //! One of the TReadNoteKind texts.
    //!@{
    QString getKind() const { return kind; }
    void setKind(const QString &v) { kind = v; }
    //!@}
    //! One English sentence: what the file says and what the reading kept instead.
    //!@{
    QString getText() const { return text; }
    void setText(const QString &v) { text = v; }
    //!@}

    //! True when line, subject, kind and text are all equal.
    bool operator==(const TReadNote &other) const;
    //! True when any of line, subject, kind and text differs.
    bool operator!=(const TReadNote &other) const { return !(*this == other); }

private:
    int line = 0;
    QString subject;
    QString kind;
    QString text;
};

//! The notes of one reading, in the order they arose.
using TReadNotes = QList<TReadNote>;

#endif // READNOTE_H
