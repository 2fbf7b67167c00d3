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
    TDataImport();
    explicit TDataImport(QString sourceName);
    virtual ~TDataImport();

    virtual QString getDataProviderId() = 0;
    virtual QString getDataProviderType() = 0;
    virtual bool openFile();
    //! The form used for delimited sources; the base does nothing.
    virtual void getDictionary(QList<TKxSourceField *> *out, QStringList *columns);
    //! Opens the file and returns the field names; the caller owns the list.
    virtual QStringList *selectLayoutSource();
    virtual bool isMultiple();
    virtual int getGroupCount();
    virtual QString getGroupName(int i);
    virtual QString getGroupValue(int i);
    virtual int getRecordTypeIndex(QString value);
    virtual QString getRecordTypeCurrent();
    //! A new empty list; the caller owns it.
    virtual QStringList *getLayoutSource();
    virtual int getRecordTypeStart();
    virtual int getRecordTypeSize();

    void registerIOFormat();
    //! Starts a new field list (the old field objects are not deleted) and empties the reading notes.
    void openDataImport();
    bool closeDataImport();
    void initDataImport();
    void addField(TGenericField *field);
    TGenericField *fieldByName(QString name);
    //! The i-th field, or null when i is outside 0 .. count - 1.
    TGenericField *getField(int i);
    int getFieldCount() const;
    QList<TGenericField *> *getFields() const { return fields; }

    //! sourceName becomes the absolute path when a file exists there, else empty.
    void setSourceName(QString path);
    QString getSourceName() const;
    /*! Resolves the data file: the absolute path when it exists, else the
     * description's folder joined directly (no separator) to the file name
     * when that exists, else the absolute path. */
    void setDataSourceName(QString path);
    QString getDataSourceName() const;

    //! Appends one new source field per field; the caller owns them.
    void getDictionary(QList<TKxSourceField *> *out);

    /*! The reading notes of the last openFile(): every place where the file
     * says more than the reading kept. Emptied when openFile() starts. */
    TReadNotes getReadNotes() const { return readNotes; }

    double getOpeningValue() const { return openingValue; }
    int getImportCounter() const { return importCounter; }

protected:
    void addReadNote(const TReadNote &note) { readNotes.append(note); }
    void addReadNotes(const TReadNotes &notes) { readNotes.append(notes); }

    QString sourceName;
    QList<TGenericField *> *fields = nullptr;
    QString dataSourceName;
    QMap<QString, TGenericField *> fieldIndex;
    // Set by the importers' openFile(); kept for callers outside this library.
    double openingValue = 0.0;
    int importCounter = 0;
    TReadNotes readNotes;
};

#endif // DATAIMPORT_H
