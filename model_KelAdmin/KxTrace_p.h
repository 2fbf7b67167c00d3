#ifndef KXTRACE_P_H
#define KXTRACE_P_H

// The library's fixed trace lines: the same messages as qDebug() gives (debug
// type, category "default"), but the category is asked before the line is
// built, so a program that turns debug output off ("default.debug=false")
// does not pay for formatting lines nobody sees.

#include <QDebug>
#include <QLoggingCategory>

namespace kxtrace {

inline const QLoggingCategory &defaultCategory()
{
    return *QLoggingCategory::defaultCategory();
}

} // namespace kxtrace

#define KX_TRACE() qCDebug(kxtrace::defaultCategory)

#endif // KXTRACE_P_H
