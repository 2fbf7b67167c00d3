#ifndef LOADERMANAGER_H
#define LOADERMANAGER_H

#include "model_kelAdmin_export.h"

#include <QObject>
#include <QString>
#include <QStringList>

class TDataImport;

/*! \file LoaderManager.h
 * \brief The importer registry and its free functions.
 */

//! Description of one importer type handed to RegisterLoader; nothing reads it.
struct MODEL_KELADMIN_EXPORT TDataProviderProperties
{
    QString typeName; //!< the type name an importer reports ("CSPRO", "SPSS", ...)
    QString label;    //!< a label for the user
};

/*! \brief The importer registry.
 *
 * Inert by design: registration stores nothing and every look-up starts from
 * a fresh, empty registry, so GetDataClassLoader always fails with error 107.
 * Callers (the data provider) cope with that outcome.
 */
class MODEL_KELADMIN_EXPORT TLoaderManager : public QObject
{
    Q_OBJECT
public:
    //! A manager with an empty list of type names.
    TLoaderManager();
    //! Destroys the QObject part only: the name list outlives its manager.
    ~TLoaderManager() override;

    //! Makes a new, empty registry the current one; the previous one is not released.
    static void InitDataClassLoader();
    //! Kept in the interface; does nothing.
    static void DestroyDataClassLoader();
    //! Stores nothing; throws error 106 when the registry is not initialised.
    static void RegisterLoader(TDataProviderProperties *properties);

    //! The registered type names: always empty, since registration stores nothing.
    QStringList *getTypeNames() const { return typeNames; }

private:
    QStringList *typeNames;
};

//! The current registry; null until InitDataClassLoader or GetDataClassLoader.
MODEL_KELADMIN_EXPORT extern TLoaderManager *_pLoaderManager;

//! Throws error 106 before InitDataClassLoader; false for every type after it.
MODEL_KELADMIN_EXPORT bool IsTypeRegister(QString type);
//! Replaces the registry by an empty one and throws error 107 with \a type.
MODEL_KELADMIN_EXPORT TDataImport *GetDataClassLoader(QString type);

#endif // LOADERMANAGER_H
