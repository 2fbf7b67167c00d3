#ifndef KXCODEBOOKJSON_H
#define KXCODEBOOKJSON_H

/*! \file KxCodebookJson.h
 * \brief A codebook as one JSON object, every text whole.
 *
 * The keys are described by the JSON Schema `keladmin-codebook.schema.json`
 * (installed with the inspector); CodebookJsonSchemaVersion is raised when
 * they change.
 */

#include "KxCodebook.h"

#include <QJsonObject>

class QIODevice;

namespace KxCodebook {

//! The version of the JSON form's keys, the document's "schemaVersion".
constexpr int CodebookJsonSchemaVersion = 1;

/*! The codebook as a JSON object: the data set's facts, then "levels",
 * "records" and "variables" in file order, each variable with its value
 * sets and missing values. Labels are arrays with one text per language
 * (in the order of "languages"); absent facts are null. */
KXCODEBOOK_EXPORT QJsonObject toJson(const Codebook &codebook);

/*! Writes \a codebook to \a device as the indented JSON text of toJson(),
 * byte for byte what QJsonDocument(toJson(codebook)).toJson() gives, but
 * streamed: no JSON object is built, and the text goes out in chunks.
 * Returns false, with the reason in \a error when given, when the device
 * could not be written. */
KXCODEBOOK_EXPORT bool writeJson(const Codebook &codebook, QIODevice *device, QString *error = nullptr);

/*! Appends \a text to \a out as QJsonDocument writes a string: in quotes,
 * with the quote, the backslash and the controls below U+0020 escaped, the
 * rest as UTF-8 (a lone surrogate, which has none, as \\uXXXX). For programs
 * that stream JSON text of their own that must match Qt's. */
KXCODEBOOK_EXPORT void appendJsonString(QByteArray *out, const QString &text);

//! The lower-case name of \a storage: "numeric", "text", "binary".
KXCODEBOOK_EXPORT QString storageName(Storage storage);
//! The lower-case name of \a measure: "nominal", "ordinal", "scale", or "" when unknown.
KXCODEBOOK_EXPORT QString measureName(Measure measure);
//! The lower-case name of \a alignment: "left", "center", "right", or "" when unknown.
KXCODEBOOK_EXPORT QString alignmentName(Alignment alignment);

} // namespace KxCodebook

#endif // KXCODEBOOKJSON_H
