#ifndef KXCODEBOOKDIFF_H
#define KXCODEBOOKDIFF_H

/*! \file KxCodebookDiff.h
 * \brief What changed between two codebooks: two rounds of a survey, or two
 * forms of one dictionary.
 */

#include "KxCodebook.h"

#include <QString>
#include <QVector>

namespace KxCodebook {

//! The kinds of change, most serious first within each subject.
enum class ChangeKind {
    RecordAdded,           //!< a record only the new codebook has
    RecordRemoved,         //!< a record only the old codebook has
    RecordTypeChanged,     //!< a record's record-type value
    RecordLengthChanged,   //!< a record's length
    VariableAdded,         //!< a variable only the new codebook has (no partner found)
    VariableRemoved,       //!< a variable only the old codebook has (no partner found)
    VariableRenamed,       //!< no variable of the old name on the new side; a partner found (Change::detail says how)
    VariableMoved,         //!< its start column
    VariableResized,       //!< its width
    OccurrencesChanged,    //!< its number of occurrences
    RecordChanged,         //!< the record it belongs to
    TypeChanged,           //!< its storage or content type
    DecimalsChanged,       //!< its decimal places
    FormatChanged,         //!< SPSS/Stata: its format text
    MissingChanged,        //!< its declared missing values
    ValueSetAdded,         //!< a value set only the new side has
    ValueSetRemoved,       //!< a value set only the old side has
    ValueAdded,            //!< a code or range only the new value set has
    ValueRemoved,          //!< a code or range only the old value set has
    ValueRangeChanged,     //!< a range's ends, matched by its label
    ValueRelabelled,       //!< the same code, another label (per language)
    LabelChanged           //!< a variable's, record's or value set's label (per language)
};

//! The stable name of \a kind ("variable-moved", ...), as the JSON output and scripts use it.
KXCODEBOOK_EXPORT QString changeKindName(ChangeKind kind);
//! How serious \a kind is: 3 layout (columns, records), 2 content (types, codes, missing values), 1 wording.
KXCODEBOOK_EXPORT int changeSeverity(ChangeKind kind);

//! One change between the two codebooks.
struct KXCODEBOOK_EXPORT Change
{
    ChangeKind kind = ChangeKind::LabelChanged;  //!< what changed
    QString record;     //!< the record concerned (the new side's, else the old side's); empty for none
    QString variable;   //!< the variable concerned, by its new name (its old name when removed)
    QString valueSet;   //!< the value set concerned
    QString value;      //!< the code or range concerned ("1", "0:17")
    QString language;   //!< for a label: the language's name, empty for the primary
    QString oldValue;   //!< what the old codebook says (empty when added)
    QString newValue;   //!< what the new codebook says (empty when removed)
    QString detail;     //!< for a rename: "same record, start and width" or "same label"
};

//! What to leave out of a comparison.
struct KXCODEBOOK_EXPORT CompareOptions
{
    //! Leave label wording out: no LabelChanged, ValueRelabelled (for those who care about the layout only).
    bool ignoreLabels = false;
};

//! The outcome of compare().
struct KXCODEBOOK_EXPORT Comparison
{
    //! The changes, grouped by record (in the new codebook's order), most serious first within a record.
    QVector<Change> changes;
    //! Both sides have columns (CSPro); false when one is SPSS or Stata: no position changes are reported.
    bool positionsCompared = true;

    //! No change at all.
    bool isEmpty() const { return changes.isEmpty(); }
};

/*! Compares \a before with \a after. Variables are matched by name, then the
 * ones left over by record, start and width, then by label; matching is
 * linear in the number of variables. Alpha codes right-trimmed, key order,
 * line ends, encodings and re-numbered link ids are no changes. */
KXCODEBOOK_EXPORT Comparison compare(const Codebook &before, const Codebook &after,
                                     const CompareOptions &options = CompareOptions());

} // namespace KxCodebook

#endif // KXCODEBOOKDIFF_H
