#ifndef NOTECOVERAGE_H
#define NOTECOVERAGE_H

#include "ReadNote.h"

#include <QString>
#include <QStringList>
#include <QVector>

namespace kxtest {

/*! One place where the importer's fields differ from the codebook, the
 * reading of a CSPro dictionary as CSPro means it. */
struct ReadingDifference
{
    QString field;        //!< the field as CSPro names it (occurrence k of X is X_k)
    QString aspect;       //!< name, label, start, size, type, decimals, value, missing, notappl, group, absent, extra
    QString file;         //!< what the file says
    QString reading;      //!< what the importer's field holds
    QStringList subjects; //!< subjects a note that accounts for it may have: the item, its value sets, its record
};

//! The note kinds that can account for a difference in \a aspect.
QStringList kindsAccountingFor(const QString &aspect);

//! True when a note in \a notes has one of \a difference's subjects and a kind that accounts for its aspect.
bool isAccountedFor(const ReadingDifference &difference, const TReadNotes &notes);

//! One line: field, aspect, what the file says and what the reading kept.
QString describe(const ReadingDifference &difference);

struct CoverageReport
{
    bool compared = false;  //!< both readings were made
    QString why;            //!< why not, when not compared
    QVector<ReadingDifference> differences;
    QVector<ReadingDifference> unaccounted;  //!< the differences no note accounts for
    TReadNotes notes;                        //!< the importer's notes

    //! The unaccounted differences, one per line, for a failure message.
    QString describeUnaccounted() const;
};

/*! Reads the CSPro dictionary at \a path both ways, the codebook and the
 * importer's fields (the decimal prompt answered No to All), lists every
 * difference and the ones no note accounts for. Not compared when either
 * reading fails or the file is no CSPro dictionary. */
CoverageReport checkNoteCoverage(const QString &path);

} // namespace kxtest

#endif // NOTECOVERAGE_H
