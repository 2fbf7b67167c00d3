#ifndef KXINSPECT_READFAILURE_H
#define KXINSPECT_READFAILURE_H

#include <QByteArray>
#include <QString>

namespace kxinspect {

//! A place in a text file, both 1-based.
struct TextPosition
{
    int line = 1;
    int column = 1; //!< in characters of UTF-8 text
};

//! Where byte \a offset of the UTF-8 text \a data is; an offset past the end is the end.
TextPosition positionOfOffset(const QByteArray &data, int offset);

/*! Why \a data is no JSON dictionary: the JSON parser's error text with the
 * line and column of its offset, or that the document is not an object.
 * Empty when \a data is a JSON object. */
QString jsonProblem(const QByteArray &data);

} // namespace kxinspect

#endif // KXINSPECT_READFAILURE_H
