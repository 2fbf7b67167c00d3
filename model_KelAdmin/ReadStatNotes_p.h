#ifndef READSTATNOTES_P_H
#define READSTATNOTES_P_H

// Internal to the SPSS and Stata importers: the reading notes, one English
// sentence each, on what a variable or label set loses in the reading.

#include "ReadStatVariables_p.h"

namespace kxreadstat {

//! label-set-missing: \a variable names \a labelSet, of which the file holds no labels.
TReadNote labelSetMissingNote(const QString &variable, const char *labelSet);
//! label-set-unused: no variable names \a labelSet, which holds \a labels labels.
TReadNote labelSetUnusedNote(const QByteArray &labelSet, int labels);

//! text-not-ascii: a name or label with bytes outside ASCII that the reading takes byte by byte.
void addTextNotes(TReadNotes *notes, const QString &variable, const char *name, const char *label,
                  TextKind labelKind);
//! text-not-ascii for the labels of a label set read as \a kind (one note a label).
void addLabelTextNotes(TReadNotes *notes, const char *labelSet, const QList<ValueLabelEntry> &entries,
                       TextKind kind);
/*! width-first-digit, width-not-read and decimals-not-read: what the format
 * says against the width \a keptWidth the field kept. */
void addFormatNotes(TReadNotes *notes, const QString &variable, const char *format, int keptWidth, bool numeric,
                    const VariableRules &rules);
//! user-missing-not-read: the user-missing values and ranges the variable declares.
void addUserMissingNote(TReadNotes *notes, const QString &variable, const readstat_variable_t *record);

/*! The notes on the entries of one label set as one variable reads them:
 * label-minus-one-dropped, missing-label-as-code, label-value-truncated, and
 * one label-set-truncated for the entries an earlier variable cut. */
class EntryNotes
{
public:
    /*! \a cuts: this variable cuts the entries to integers itself; \a cutBy:
     * the earlier variable that cut them in place, if any. */
    EntryNotes(TReadNotes *notes, const QString &variable, const char *labelSet, int decimals, bool cuts,
               const QString &cutBy);

    //! One entry after this variable's rules: \a kept is its value text, \a skipped whether it was left out.
    void add(const ValueLabelEntry &entry, const QString &kept, bool skipped);
    //! Gives the label-set-truncated note, when an earlier cut changed values.
    void finish();

private:
    TReadNotes *notes;
    QString variable;
    const char *labelSet;
    int decimals;
    bool cuts;
    QString cutBy;
    QStringList changedByEarlierCut;
};

} // namespace kxreadstat

#endif // READSTATNOTES_P_H
