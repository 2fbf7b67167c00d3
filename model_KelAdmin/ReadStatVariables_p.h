#ifndef READSTATVARIABLES_P_H
#define READSTATVARIABLES_P_H

// Internal to the SPSS and Stata importers: the value-label store and the
// rules by which both describe a variable as a field, with the reading notes
// they give. Not part of the public API.

#include "ReadNote.h"

#include <QByteArray>
#include <QList>
#include <QMap>
#include <QString>

#include <readstat.h>

class TGenericField;

namespace kxreadstat {

//! One value label of a label set, as read in the value-label pass.
struct ValueLabelEntry
{
    // (-1.0, -1) marks an entry that holds no number.
    double doubleValue = -1.0;
    qint32 intValue = -1;
    bool hasString = false;
    QByteArray stringValue;
    QByteArray label;
    // What the file gave, kept for the reading notes only: the entry's double
    // before any cut to an integer, and the missing value it stands for
    // ('a' to 'z' for Stata's .a to .z, '.' for system missing, 0 for none).
    bool fromDouble = false;
    double fileDouble = 0.0;
    char missingTag = 0;
};

//! The entries of one label set and what the reading did with them.
struct LabelSet
{
    //! In the order ReadStat delivered them.
    QList<ValueLabelEntry> entries;
    //! Some variable of the variable pass named the set.
    bool named = false;
    //! The notes on its labels' text were given (once per set).
    bool textNoted = false;
    //! The first variable without decimals that cut its entries to integers in place.
    QString cutBy;
};

//! Label-set name → its entries.
struct LabelSets
{
    QMap<QByteArray, LabelSet> sets;
};

//! How the text ReadStat hands over is turned into QString.
enum class TextKind {
    Ascii,  //!< plain ASCII; Qt reads it as Latin-1, so other bytes map one to one
    Latin1,
    Utf8    //!< ReadStat's own output encoding
};

/*! Adds one (label set, value, label) triple to \a sets. An unknown value
 * type writes "<where>:<line> unsupported type!" to stderr and ends the
 * process with status 1. Returns 0 (continue). */
int collectValueLabel(LabelSets *sets, const char *labelSet, readstat_value_t value, const char *label,
                      const char *where, int line);

//! What differs between the importers when a variable is described.
struct VariableRules
{
    //! SPSS: a float or double without decimals in its format is an integer.
    bool realNeedsDecimals = false;
    //! SPSS: the width is the second character of the format; Stata: the storage width.
    bool widthFromFormat = false;
    //! Stata: string variables get the bound texts too.
    bool boundsForStrings = false;
    //! SPSS: value-label entries of a variable without decimals become integers.
    bool truncateWholeNumbers = false;
    TextKind labelText = TextKind::Ascii;      //!< the variable's label
    TextKind valueLabelText = TextKind::Utf8;  //!< the labels of its value labels
};

/*! Fills \a field from ReadStat's variable record: type, name, label, width,
 * bound texts and the value labels of \a labelSet (when the set exists).
 * Every place where the field keeps less than the file says is appended to
 * \a notes; the notes change nothing in the field. */
void describeVariable(TGenericField *field, const readstat_variable_t *variable, LabelSets *sets,
                      const char *labelSet, const VariableRules &rules, TReadNotes &notes);

//! One label-set-unused note for every set that no variable named.
TReadNotes unusedLabelSetNotes(const LabelSets &sets);

QString toText(const char *text, TextKind kind);
//! Number of decimals of a format text (F8.2 → 2, %10.2f → 2, A20 → 0); 0 when absent.
int formatDecimals(const char *format);
//! The second character of a format text as one decimal digit; 0 when it is no digit.
int formatWidthDigit(const char *format);
//! The digit 9 repeated \a count times (clamped to 0 .. 65535).
QString nines(qint64 count);

} // namespace kxreadstat

#endif // READSTATVARIABLES_P_H
