#ifndef STATADATAIMPORT_H
#define STATADATAIMPORT_H

#include "model_kelAdmin_export.h"

#include "GenericField.h"
#include "ReadStatImportCore.h"

#include <QString>

/*! \brief One variable of a Stata data file.
 *
 * Missing when its missing flag is set (nothing sets it); blank only for a
 * string whose trimmed value is empty.
 */
class MODEL_KELADMIN_EXPORT TSTATAVariable : public TGenericField
{
public:
    //! Sets importFlag and clears the missing flag; \a owner is the importer, not owned.
    explicit TSTATAVariable(TDataImport *owner);
    ~TSTATAVariable() override;

    //! The missing flag.
    bool isMissing() override;
    //! Always false.
    bool isNotApplicable() override;
    //! True only for a string whose trimmed value is empty.
    bool isBlank() override;

    //! The missing flag, which isMissing() reports.
    bool getMissing() const { return missing; }
    //! Sets the missing flag.
    void setMissing(bool v) { missing = v; }

private:
    bool missing = false;
};

extern template class TReadStatImportCore<TSTATAVariable>;

/*! \brief Importer of the dictionary of a Stata data file (.dta).
 *
 * openFile() reads the file twice through ReadStat, value labels first and
 * variables second, and never reads the cases. Reopening starts from an
 * empty variable list. A failed variable pass prints
 * "Error processing <path>: <ReadStat error>" on standard output.
 */
class MODEL_KELADMIN_EXPORT TSTATADataImport : public TReadStatImportCore<TSTATAVariable>
{
public:
    //! An importer without a file.
    TSTATADataImport();
    //! An importer of the file \a name.
    explicit TSTATADataImport(QString name);
    ~TSTATADataImport() override;

private:
    friend MODEL_KELADMIN_EXPORT int handle_value_label_stata(const char *, readstat_value_s, const char *, void *);
    friend MODEL_KELADMIN_EXPORT int handle_variable_stata(int, readstat_variable_s *, const char *, void *);
    friend MODEL_KELADMIN_EXPORT int handle_metadata_stata(readstat_metadata_s *, void *);
};

/*! ReadStat callbacks of the Stata importer; \a importer is the
 * TSTATADataImport. Each returns 0 (continue). An unknown value type in a
 * value label ends the process with status 1. */
MODEL_KELADMIN_EXPORT int handle_value_label_stata(const char *labelSet, readstat_value_s value, const char *label,
                                                   void *importer);
//! Makes one TSTATAVariable from ReadStat's variable record, with the value labels of \a labelSet.
MODEL_KELADMIN_EXPORT int handle_variable_stata(int index, readstat_variable_s *variable, const char *labelSet,
                                                void *importer);
//! Copies the row and variable counts; the importer does not register it.
MODEL_KELADMIN_EXPORT int handle_metadata_stata(readstat_metadata_s *metadata, void *importer);

#endif // STATADATAIMPORT_H
