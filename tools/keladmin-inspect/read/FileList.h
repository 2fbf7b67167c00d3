#ifndef KXINSPECT_FILELIST_H
#define KXINSPECT_FILELIST_H

#include <QString>
#include <QStringList>

namespace kxinspect {

//! The suffixes of the files a folder gives: dictionaries and data files.
extern const char *const DescriptionSuffixes[];

/*! The files named in \a arguments, in order, each folder replaced by the
 * dictionaries and data files in it (sorted by name; in its subfolders too
 * when \a recursive). A file named on its own is taken whatever its suffix. */
QStringList filesToInspect(const QStringList &arguments, bool recursive);

} // namespace kxinspect

#endif // KXINSPECT_FILELIST_H
