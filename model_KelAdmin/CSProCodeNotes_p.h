#ifndef CSPROCODENOTES_P_H
#define CSPROCODENOTES_P_H

// What the two CSPro readers, text and JSON, note alike about the codes of
// a value set. Not part of the public API.

#include <QString>
#include <QStringList>

class TCSProValueSet;

//! At most five of \a texts joined by ", ", then "and N more".
QString listedForNote(const QStringList &texts);

/*! The words of a padded-code-split note on the codes of \a valueSet (of an
 * alpha field) that hold blanks, where the field's value labels part a code
 * from its label; empty when none does. */
QString paddedCodesNote(const TCSProValueSet &valueSet);

/*! The words of a code-rounded note on the codes of \a valueSet (of an
 * integer field) that its value labels write rounded to 6 significant
 * digits; empty when none is. */
QString roundedCodesNote(const TCSProValueSet &valueSet);

#endif // CSPROCODENOTES_P_H
