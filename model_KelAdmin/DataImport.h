#ifndef DATAIMPORT_H
#define DATAIMPORT_H

#include "model_kelAdmin_export.h"

#include "ReadNote.h"

#include <QList>
#include <QMap>
#include <QString>
#include <QStringList>

class TGenericField;
class TKxSourceField;

/*! \brief Abstract base of every importer.
 *
 * An importer is given the path of a data description, reads it in
 * openFile() and leaves an ordered list of generic fields with a name index.
 * The base never deletes the fields: they outlive their importer.
 */
class MODEL_KELADMIN_EXPORT TDataImport
{
public:
    //! An importer without a description; the field list is allocated empty.
    TDataImport();
    //! An importer of the description \a sourceName, stored as given (not resolved as setSourceName() does).
    explicit TDataImport(QString sourceName);
    //! Releases the texts and the name index; neither the field list nor the fields.
    virtual ~TDataImport();

    //! A text naming this importer and its description, stamped on every source field.
    virtual QString getDataProviderId() = 0;
    //! The type name of the format: "CSPRO", "CSPRO8", "SPSS" or "STATA".
    virtual QString getDataProviderType() = 0;
    /*! Reads the description at getSourceName() into the field list. The
     * base reads nothing and returns false; the importers return true and
     * report a failed reading by fewer fields or by the reader's error. */
    virtual bool openFile();
    //! The form used for delimited sources; the base does nothing.
    virtual void getDictionary(QList<TKxSourceField *> *out, QStringList *columns);
    //! Opens the file and returns the field names; the caller owns the list.
    virtual QStringList *selectLayoutSource();
    //! Whether the source has several record types; false in the base.
    virtual bool isMultiple();
    //! The number of groups (records of a multi-record source); 0 in the base.
    virtual int getGroupCount();
    //! The name of the i-th group; empty in the base.
    virtual QString getGroupName(int i);
    //! The value that identifies the i-th group; empty in the base.
    virtual QString getGroupValue(int i);
    //! The index of the record whose type value is \a value; -1 in the base.
    virtual int getRecordTypeIndex(QString value);
    //! The record type value being read; empty in the base.
    virtual QString getRecordTypeCurrent();
    //! A new empty list; the caller owns it.
    virtual QStringList *getLayoutSource();
    //! Where the record type value starts in a data line; 0 in the base.
    virtual int getRecordTypeStart();
    //! The width of the record type value; 0 in the base.
    virtual int getRecordTypeSize();

    //! Does nothing: no format of this library needs registering.
    void registerIOFormat();
    //! Starts a new field list (the old field objects are not deleted) and empties the reading notes.
    void openDataImport();
    //! Does nothing and returns true: nothing is left open after openFile().
    bool closeDataImport();
    //! Asks for getDataProviderType() and drops it; a hook the importers' constructors call.
    void initDataImport();
    /*! Appends \a field to the list and indexes it by name. A later field of
     * the same name takes over the index entry; both stay in the list. */
    void addField(TGenericField *field);
    //! The field named exactly \a name (case-sensitive), the last one added under it; null when none.
    TGenericField *fieldByName(QString name);
    //! The i-th field, or null when i is outside 0 .. count - 1.
    TGenericField *getField(int i);
    //! The number of fields in the list, including any with the same name.
    int getFieldCount() const;
    //! The field list itself, in import order; neither it nor the fields belong to the caller.
    QList<TGenericField *> *getFields() const { return fields; }

    //! sourceName becomes the absolute path when a file exists there, else empty.
    void setSourceName(QString path);
    //! The path of the data description: as constructed, or as setSourceName() resolved it.
    QString getSourceName() const;
    /*! Resolves the data file: the absolute path when it exists, else the
     * description's folder joined directly (no separator) to the file name
     * when that exists, else the absolute path. */
    void setDataSourceName(QString path);
    //! The path of the data file as setDataSourceName() resolved it; it may not exist.
    QString getDataSourceName() const;

    //! Appends one new source field per field; the caller owns them.
    void getDictionary(QList<TKxSourceField *> *out);

    /*! The reading notes of the last openFile(): every place where the file
     * says more than the reading kept. Emptied when openFile() starts. */
    TReadNotes getReadNotes() const { return readNotes; }

    //! 1.0 once an importer's openFile() has run, else 0.0; nothing in this library reads it.
    double getOpeningValue() const { return openingValue; }
    //! 1 once a CSPro importer's openFile() has run, else 0; nothing in this library reads it.
    int getImportCounter() const { return importCounter; }

protected:
    //! Adds one note to those of the current reading.
    void addReadNote(const TReadNote &note) { readNotes.append(note); }
    //! Adds a reader's notes, in their order, to those of the current reading.
    void addReadNotes(const TReadNotes &notes) { readNotes.append(notes); }

    QString sourceName;                           //!< see getSourceName()
    QList<TGenericField *> *fields = nullptr;     //!< see getFields(); never deleted by the importer
    QString dataSourceName;                       //!< see getDataSourceName()
    QMap<QString, TGenericField *> fieldIndex;    //!< field name to field, for fieldByName()
    // Set by the importers' openFile(); kept for callers outside this library.
    double openingValue = 0.0;                    //!< see getOpeningValue()
    int importCounter = 0;                        //!< see getImportCounter()
    TReadNotes readNotes;                         //!< see getReadNotes()
};

#endif // DATAIMPORT_H
