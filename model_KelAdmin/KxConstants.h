#ifndef KXCONSTANTS_H
#define KXCONSTANTS_H

#include <QString>

/*! \file KxConstants.h
 * \brief Shared constant texts.
 *
 * Each translation unit that includes this header builds its own copy at
 * load time, so every constant exists once per unit.
 */

//! Field type names (type codes 1 integer, 2 real, 3 text).
//!@{
static const QString SSTRING = QStringLiteral("STRING");
static const QString SREAL = QStringLiteral("REAL");
static const QString SINTEGER = QStringLiteral("INTEGER");
//!@}

//! File extensions, their file-type labels and file-dialog filters. Each
//! filter ends in ";;" so that filters can be concatenated into one list.
//!@{
static const QString EXTENSION_DAT = QStringLiteral(".dat");
static const QString EXTENSION_JSON = QStringLiteral(".json");
static const QString EXTENSION_LSD = QStringLiteral(".lsd.json");
static const QString EXTENSION_LSD_FILETYPE = QStringLiteral("Kelvo Config");
static const QString EXTENSION_LSD_SEARCH =
    EXTENSION_LSD_FILETYPE + QStringLiteral(" (*%1)").arg(EXTENSION_LSD, 0, QLatin1Char(' ')) + QStringLiteral(";;");
static const QString EXTENSION_KXDB = QStringLiteral(".kxdb");
static const QString EXTENSION_KXDB_FILETYPE = QStringLiteral("Kelvo Dictionary");
static const QString EXTENSION_KXDB_SEARCH =
    EXTENSION_KXDB_FILETYPE + QStringLiteral(" (*%1)").arg(EXTENSION_KXDB, 0, QLatin1Char(' ')) + QStringLiteral(";;");
static const QString EXTENSION_TXT = QStringLiteral(".txt");
static const QString EXTENSION_WIP = QStringLiteral(".wip.json");
static const QString EXTENSION_WIP_FILETYPE = QStringLiteral("Kelvo Hierarchy");
static const QString EXTENSION_WIP_SEARCH =
    EXTENSION_WIP_FILETYPE + QStringLiteral(" (*%1)").arg(EXTENSION_WIP, 0, QLatin1Char(' ')) + QStringLiteral(";;");
//!@}

//! Separators.
//!@{
static const QString COLONCHR = QStringLiteral(":");
static const QString COMMACHR = QStringLiteral(",");
static const QString ENDLINE = QStringLiteral("\r\n"); // on every platform
static const QString EQUALCHR = QStringLiteral("=");
static const QString SEMICOLONCHR = QStringLiteral(";");
static const QString SPACECHR = QStringLiteral(" ");
static const QString TABCHR = QStringLiteral("\t");
static const QString UNDERSCORE = QStringLiteral("_");
//!@}

//! The text of a yes answer in the tool's files.
static const QString AXYES = QStringLiteral("YES");

//! CSPro dictionary section headers.
//!@{
static const QString HEAD_DICT = QStringLiteral("[Dictionary]");
static const QString HEAD_LEVEL = QStringLiteral("[Level]");
static const QString HEAD_RECORD = QStringLiteral("[Record]");
static const QString HEAD_ITEM = QStringLiteral("[Item]");
static const QString HEAD_VSET = QStringLiteral("[ValueSet]");
static const QString HEAD_COMMON = QStringLiteral("[IdItems]");
static const QString HEAD_RELATION = QStringLiteral("[Relation]");
//!@}

//! CSPro dictionary section types.
//!@{
static const QString TYPE_DICTIONARY = QStringLiteral("DICTIONARY");
static const QString TYPE_RECORD = QStringLiteral("RECORD");
static const QString TYPE_ITEM = QStringLiteral("ITEM");
static const QString TYPE_VALUESET = QStringLiteral("VALUESET");
//!@}

//! CSPro dictionary command words (the keys of key=value lines).
//!@{
static const QString CMD_LABEL = QStringLiteral("Label");
static const QString CMD_NAME = QStringLiteral("Name");
static const QString CMD_NOTE = QStringLiteral("Note");
static const QString CMD_START = QStringLiteral("Start");
static const QString CMD_LEN = QStringLiteral("Len");
static const QString CMD_DATATYPE = QStringLiteral("DataType");
static const QString CMD_ITEMTYPE = QStringLiteral("ItemType");
static const QString CMD_OCCURS = QStringLiteral("Occurrences");
static const QString CMD_OCCLABEL = QStringLiteral("OccurenceLabel");
static const QString CMD_DECIMAL = QStringLiteral("Decimal");
static const QString CMD_DECCHAR = QStringLiteral("DecimalChar");
static const QString CMD_ZEROFILL = QStringLiteral("ZeroFill");
static const QString CMD_MAXRECS = QStringLiteral("MaxRecords");
static const QString CMD_RECLEN = QStringLiteral("RecordLen");
static const QString CMD_RECTYPESTART = QStringLiteral("RecordTypeStart");
static const QString CMD_RECTYPELEN = QStringLiteral("RecordTypeLen");
static const QString CMD_RECTYPEVALUE = QStringLiteral("RecordTypeValue");
static const QString CMD_REQUIRED = QStringLiteral("Required");
static const QString CMD_POSITIONS = QStringLiteral("Positions");
static const QString CMD_VALUE = QStringLiteral("Value");
//!@}

//! Module names that errors are raised under. The wider product has one per
//! component; this library raises errors under these three only.
//!@{
static const QString EM_DataImport = QStringLiteral("DataImport");
static const QString EM_CSPro = QStringLiteral("CSPro");
static const QString EM_CSProValueSet = QStringLiteral("CSProValueSet");
//!@}

#endif // KXCONSTANTS_H
