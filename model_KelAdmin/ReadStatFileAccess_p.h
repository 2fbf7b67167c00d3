#ifndef READSTATFILEACCESS_P_H
#define READSTATFILEACCESS_P_H

// Internal to the SPSS and Stata importers: the passes of ReadStat over a
// file through the library's own buffered file access, and what the file
// says about itself. Not part of the public API.

#include "ReadStatVariables_p.h"

#include <QByteArray>
#include <QDateTime>
#include <QList>
#include <QMap>
#include <QString>
#include <QStringList>

#include <readstat.h>

class TGenericField;

namespace kxreadstat {

enum class FileKind { Sav, Dta };

//! What the file says about itself, from ReadStat's metadata record.
struct FileFacts
{
    int formatVersion = 0;  //!< 0 when unknown
    QString encoding;       //!< empty when unknown
    QString byteOrder;      //!< "little-endian", "big-endian" or empty
    QDateTime creationTime; //!< invalid when unknown
    QString label;
};

//! What an importer holds between and after the passes.
struct Dictionary
{
    QList<TGenericField *> variables;
    //! Keyed by the address of ReadStat's name text; filled, never consulted.
    QMap<const void *, TGenericField *> variablesByName;
    LabelSets labelSets;
    //! -1 when the file does not say.
    qint64 rowCount = -1;
    qint64 variableCount = 0;
    FileFacts facts;
    //! ReadStat's result of the last variable pass (READSTAT_OK before any).
    int parseError = READSTAT_OK;

    //! Empties the label sets and forgets what the last file said.
    void startRead();
    void addVariable(TGenericField *field, const readstat_variable_t *variable);
    //! Keeps the first two members of the record: row count and variable count.
    void copyMetadata(const readstat_metadata_t *metadata);
    QStringList labelSetNames() const;
};

//! The handlers of one pass; null ones are not set.
struct PassHandlers
{
    readstat_value_label_handler valueLabels = nullptr;
    readstat_variable_handler variables = nullptr;
    //! When not null, the pass records the file's metadata here.
    Dictionary *metadata = nullptr;
};

/*! Runs one pass of ReadStat over \a path (local 8-bit encoding) with only the
 * given handlers, each receiving \a importer, and frees the parser. SAV files
 * are read through a handler that presents a neutral creation date, so
 * headers written with a non-English month name are accepted. */
readstat_error_t parsePass(FileKind kind, const QByteArray &path, const PassHandlers &handlers, void *importer);

/*! The two passes of a dictionary read; returns the result of the second.
 * The first pass (value labels) also records the file's metadata in
 * \a dictionary. A SAV file delivers it after every value label, so the
 * file-label conversion ReadStat then adds cannot cut the labels short; a
 * Stata pass always had a metadata handler. */
readstat_error_t parseDictionary(FileKind kind, const QString &path, readstat_value_label_handler valueLabels,
                                 readstat_variable_handler variables, void *importer, Dictionary *dictionary);

} // namespace kxreadstat

#endif // READSTATFILEACCESS_P_H
