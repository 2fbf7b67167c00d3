#include "STATADataImport.h"

#include "ReadStatCommon_p.h"

#include <QDebug>

#include <cstdio>

TSTATAVariable::TSTATAVariable(TDataImport *owner)
    : TGenericField(owner)
{
    importFlag = true;
}

TSTATAVariable::~TSTATAVariable() = default;

bool TSTATAVariable::isMissing()
{
    return missing;
}

bool TSTATAVariable::isNotApplicable()
{
    return false;
}

bool TSTATAVariable::isBlank()
{
    return fieldType == 3 && valueText().trimmed().isEmpty();
}

TSTATADataImport::TSTATADataImport()
    : dictionary(new kxreadstat::Dictionary)
{
}

TSTATADataImport::TSTATADataImport(QString name)
    : TDataImport(name)
    , dictionary(new kxreadstat::Dictionary)
{
    initDataImport();
}

// The variables belong to the field list by now, which outlives the importer.
TSTATADataImport::~TSTATADataImport()
{
    delete dictionary;
}

QString TSTATADataImport::getDataProviderId()
{
    return getDataProviderType() + QStringLiteral("_") + getSourceName();
}

QString TSTATADataImport::getDataProviderType()
{
    return QStringLiteral("STATA");
}

bool TSTATADataImport::openFile()
{
    openDataImport();
    dictionary->variables.clear();
    dictionary->variablesByName.clear();
    // 1.0 marks an opened importer for callers outside this library.
    openingValue = 1.0;
    openRead(getSourceName());
    return true;
}

QStringList *TSTATADataImport::selectLayoutSource()
{
    qDebug() << "TSTATADataImport - selectLayoutSource";
    return TDataImport::selectLayoutSource();
}

void TSTATADataImport::openRead(QString path)
{
    dictionary->labelSets.sets.clear();
    const readstat_error_t result = kxreadstat::parseDictionary(
        kxreadstat::FileKind::Dta, path, handle_value_label_stata, handle_variable_stata, this);
    // The variables read before a failure are kept.
    for (TGenericField *field : qAsConst(dictionary->variables))
        addField(field);
    if (result != READSTAT_OK) {
        std::printf("Error processing %s: %d\n", path.toLocal8Bit().constData(), static_cast<int>(result));
        std::fflush(stdout);
    }
}

QList<TGenericField *> TSTATADataImport::getVariables() const
{
    return dictionary->variables;
}

QStringList TSTATADataImport::getLabelSetNames() const
{
    return dictionary->labelSetNames();
}

qint64 TSTATADataImport::getRowCount() const
{
    return dictionary->rowCount;
}

qint64 TSTATADataImport::getVariableCount() const
{
    return dictionary->variableCount;
}

int handle_value_label_stata(const char *labelSet, readstat_value_t value, const char *label, void *importer)
{
    auto *self = static_cast<TSTATADataImport *>(importer);
    return kxreadstat::collectValueLabel(&self->dictionary->labelSets, labelSet, value, label,
                                         "model_KelAdmin/STATADataImport", 282);
}

int handle_variable_stata(int, readstat_variable_t *variable, const char *labelSet, void *importer)
{
    auto *self = static_cast<TSTATADataImport *>(importer);
    kxreadstat::VariableRules rules;
    rules.boundsForStrings = true;
    rules.labelText = kxreadstat::TextKind::Latin1;
    rules.valueLabelText = kxreadstat::TextKind::Latin1;

    auto *field = new TSTATAVariable(self);
    kxreadstat::describeVariable(field, variable, &self->dictionary->labelSets, labelSet, rules);
    self->dictionary->addVariable(field, variable);
    return READSTAT_HANDLER_OK;
}

int handle_metadata_stata(readstat_metadata_t *metadata, void *importer)
{
    static_cast<TSTATADataImport *>(importer)->dictionary->copyMetadata(metadata);
    return READSTAT_HANDLER_OK;
}
