#ifndef KXCODEBOOK_READERS_P_H
#define KXCODEBOOK_READERS_P_H

// The format readers behind Codebook::fromFile() and Codebook::fromData().
// Each returns a filled codebook, or a null one with *error set (never null).

#include "KxCodebook.h"

#include <QByteArray>
#include <QString>

namespace KxCodebook {
namespace detail {

//! CSPro's classic text dictionary, from the file's bytes.
Codebook readCSProText(const QByteArray &data, const QString &fileName, Error *error);
//! CSPro 8's JSON dictionary, from the file's bytes.
Codebook readCSProJson(const QByteArray &data, const QString &fileName, Error *error);
//! An SPSS or Stata file, by path, through ReadStat.
Codebook readReadStatFile(const QString &path, Format format, Error *error);

} // namespace detail
} // namespace KxCodebook

#endif // KXCODEBOOK_READERS_P_H
