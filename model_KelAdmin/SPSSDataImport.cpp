#include "SPSSDataImport.h"

#include "ReadStatImportCore_p.h"

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

template <>
struct ReadStatTraits<TSPSSVariable>
{
    static constexpr kxreadstat::FileKind kind = kxreadstat::FileKind::Sav;
    static QString typeName() { return QStringLiteral("SPSS"); }
    // A second openFile() lists every variable twice.
    static constexpr bool restartsVariableList = false;
    static constexpr const char *layoutDebugLine = nullptr;
    // The result of the passes is not examined: a file that cannot be read gives no fields and no message.
    static constexpr bool printsParseError = false;
    // The unknown-type exit message names this fixed place, not the real
    // source line: the front end relies on the text.
    static constexpr const char *sourcePath = "model_KelAdmin/SPSSDataImport";
    static constexpr int sourceLine = 304;
    static constexpr readstat_value_label_handler valueLabelHandler = handle_value_label_spss;
    static constexpr readstat_variable_handler variableHandler = handle_variable_spss;

    static const kxreadstat::VariableRules &rules()
    {
        static const kxreadstat::VariableRules spss = [] {
            kxreadstat::VariableRules r;
            r.realNeedsDecimals = true;
            r.widthFromFormat = true;
            r.truncateWholeNumbers = true;
            r.labelText = kxreadstat::TextKind::Ascii;
            r.valueLabelText = kxreadstat::TextKind::Utf8;
            return r;
        }();
        return spss;
    }
};

template class TReadStatImportCore<TSPSSVariable>;

TSPSSDataImport::TSPSSDataImport() = default;

TSPSSDataImport::TSPSSDataImport(QString name)
    : TReadStatImportCore(name)
{
}

TSPSSDataImport::~TSPSSDataImport() = default;

int handle_value_label_spss(const char *labelSet, readstat_value_t value, const char *label, void *importer)
{
    return static_cast<TSPSSDataImport *>(importer)->onValueLabel(labelSet, value, label);
}

int handle_variable_spss(int, readstat_variable_t *variable, const char *labelSet, void *importer)
{
    return static_cast<TSPSSDataImport *>(importer)->onVariable(variable, labelSet);
}

int handle_metadata_spss(readstat_metadata_t *metadata, void *importer)
{
    return static_cast<TSPSSDataImport *>(importer)->onMetadata(metadata);
}
