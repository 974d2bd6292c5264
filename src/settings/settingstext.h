#pragma once

#include <QLatin1String>
#include <QStringList>
#include <QVector>

// The text form shared by the settings records of all monitors: one line "key\tvalue" per
// keyed field, and the write program "set_cfg_key_value" ... "set_cfg_save_1".
namespace SettingsText {

// One keyed field as the text sees it: the device's key, the range accepted from text
// (inclusive) and the index of the field among the record's integers.
struct Field
{
    QLatin1String key;
    qint32 minimum = 0;
    qint32 maximum = 0;
    int slot = 0;
};

// Parses settings lines into values[field.slot]; fields are given in text order. Problems go to
// the debug log only; refused lines leave their field unchanged. With echoLines every line is
// logged first with "Line in UKI config : ". Unknown keys are logged with unknownKeyPrefix.
// Returns the number of values stored.
int parseLines(const QStringList &lines,
               const QVector<Field> &fields,
               qint32 *values,
               QLatin1String unknownKeyPrefix,
               bool echoLines);

// One line "key\tvalue" per field, in the order given.
QStringList renderLines(const QVector<Field> &fields, const qint32 *values);

// One "set_cfg_key_value" per field in the order given, then "set_cfg_save_1".
QStringList writeCommands(const QVector<Field> &fields, const qint32 *values);

} // namespace SettingsText
