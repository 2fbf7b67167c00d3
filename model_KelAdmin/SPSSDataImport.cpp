#include "SPSSDataImport.h"

#include "ReadStatCommon_p.h"

TSPSSVariable::TSPSSVariable(TDataImport *owner)
    : TGenericField(owner)
{
    importFlag = true;
}

TSPSSVariable::~TSPSSVariable() = default;

bool TSPSSVariable::isMissing()
{
    return true;
}

bool TSPSSVariable::isNotApplicable()
{
    return false;
}

bool TSPSSVariable::isBlank()
{
    return fieldType == 3 && valueText().trimmed().isEmpty();
}

TSPSSDataImport::TSPSSDataImport()
    : dictionary(new kxreadstat::Dictionary)
{
}

TSPSSDataImport::TSPSSDataImport(QString name)
    : TDataImport(name)
    , dictionary(new kxreadstat::Dictionary)
{
    initDataImport();
}

// The variables belong to the field list by now, which outlives the importer.
TSPSSDataImport::~TSPSSDataImport()
{
    delete dictionary;
}

QString TSPSSDataImport::getDataProviderId()
{
    return getDataProviderType() + QStringLiteral("_") + getSourceName();
}

QString TSPSSDataImport::getDataProviderType()
{
    return QStringLiteral("SPSS");
}

// The variable list is not emptied: a second call lists every variable twice.
bool TSPSSDataImport::openFile()
{
    openDataImport();
    // 1.0 marks an opened importer for callers outside this library.
    openingValue = 1.0;
    openRead(getSourceName());
    return true;
}

QStringList *TSPSSDataImport::selectLayoutSource()
{
    return TDataImport::selectLayoutSource();
}

void TSPSSDataImport::openRead(QString path)
{
    dictionary->labelSets.sets.clear();
    // A file ReadStat cannot read simply gives fewer (or no) fields.
    kxreadstat::parseDictionary(kxreadstat::FileKind::Sav, path, handle_value_label_spss, handle_variable_spss,
                                this);
    for (TGenericField *field : qAsConst(dictionary->variables))
        addField(field);
}

QList<TGenericField *> TSPSSDataImport::getVariables() const
{
    return dictionary->variables;
}

QStringList TSPSSDataImport::getLabelSetNames() const
{
    return dictionary->labelSetNames();
}

qint64 TSPSSDataImport::getRowCount() const
{
    return dictionary->rowCount;
}

qint64 TSPSSDataImport::getVariableCount() const
{
    return dictionary->variableCount;
}

int handle_value_label_spss(const char *labelSet, readstat_value_t value, const char *label, void *importer)
{
    auto *self = static_cast<TSPSSDataImport *>(importer);
    return kxreadstat::collectValueLabel(&self->dictionary->labelSets, labelSet, value, label,
                                         "model_KelAdmin/SPSSDataImport", 304);
}

int handle_variable_spss(int, readstat_variable_t *variable, const char *labelSet, void *importer)
{
    auto *self = static_cast<TSPSSDataImport *>(importer);
    kxreadstat::VariableRules rules;
    rules.realNeedsDecimals = true;
    rules.widthFromFormat = true;
    rules.truncateWholeNumbers = true;
    rules.labelText = kxreadstat::TextKind::Ascii;
    rules.valueLabelText = kxreadstat::TextKind::Utf8;

    auto *field = new TSPSSVariable(self);
    kxreadstat::describeVariable(field, variable, &self->dictionary->labelSets, labelSet, rules);
    self->dictionary->addVariable(field, variable);
    return READSTAT_HANDLER_OK;
}

int handle_metadata_spss(readstat_metadata_t *metadata, void *importer)
{
    static_cast<TSPSSDataImport *>(importer)->dictionary->copyMetadata(metadata);
    return READSTAT_HANDLER_OK;
}
