#include "STATADataImport.h"

#include "ReadStatImportCore_p.h"

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

template <>
struct ReadStatTraits<TSTATAVariable>
{
    static constexpr kxreadstat::FileKind kind = kxreadstat::FileKind::Dta;
    static QString typeName() { return QStringLiteral("STATA"); }
    static constexpr bool restartsVariableList = true;
    static constexpr const char *layoutDebugLine = "TSTATADataImport - selectLayoutSource";
    static constexpr bool printsParseError = true;
    // The unknown-type exit message names this fixed place, not the real
    // source line: the front end relies on the text.
    static constexpr const char *sourcePath = "model_KelAdmin/STATADataImport";
    static constexpr int sourceLine = 282;
    static constexpr readstat_value_label_handler valueLabelHandler = handle_value_label_stata;
    static constexpr readstat_variable_handler variableHandler = handle_variable_stata;

    static const kxreadstat::VariableRules &rules()
    {
        static const kxreadstat::VariableRules stata = [] {
            kxreadstat::VariableRules r;
            r.boundsForStrings = true;
            r.labelText = kxreadstat::TextKind::Latin1;
            r.valueLabelText = kxreadstat::TextKind::Latin1;
            return r;
        }();
        return stata;
    }
};

template class TReadStatImportCore<TSTATAVariable>;

TSTATADataImport::TSTATADataImport() = default;

TSTATADataImport::TSTATADataImport(QString name)
    : TReadStatImportCore(name)
{
}

TSTATADataImport::~TSTATADataImport() = default;

int handle_value_label_stata(const char *labelSet, readstat_value_t value, const char *label, void *importer)
{
    return static_cast<TSTATADataImport *>(importer)->onValueLabel(labelSet, value, label);
}

int handle_variable_stata(int, readstat_variable_t *variable, const char *labelSet, void *importer)
{
    return static_cast<TSTATADataImport *>(importer)->onVariable(variable, labelSet);
}

int handle_metadata_stata(readstat_metadata_t *metadata, void *importer)
{
    return static_cast<TSTATADataImport *>(importer)->onMetadata(metadata);
}
