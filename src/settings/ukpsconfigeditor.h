#pragma once

#include "settings/ukpssettings.h"

#include <QVector>
#include <QWidget>

class ChangeMarks;
class QLabel;

namespace Ui {
class UkpsConfigEditor;
}

// The form on which the settings of the network and battery monitors are shown and edited.
class UkpsConfigEditor : public QWidget
{
    Q_OBJECT
public:
    explicit UkpsConfigEditor(QWidget *parent = nullptr);
    ~UkpsConfigEditor() override;

    // Keeps a copy of the record and shows it; what the form shows now becomes the baseline
    // against which changed fields are marked.
    void setSettings(const UkpsSettings &settings);
    // Shows the values of these settings lines over the form's current values; the baseline
    // stays, so the fields they change are marked.
    void takeLines(const QStringList &lines);
    // Fills the record from the form. AddrUki, NumUki and Flags bits 3 and 4 come from the
    // record last shown; Tcust, Riso420, CapSopt, TempDly and the reserved words keep what the
    // target held.
    void settings(UkpsSettings &target) const;
    // True when the form, read into a default record, differs from the record last shown.
    bool isModified() const;
    // The number of keys whose values differ from the baseline.
    int changedCount() const;
    // The text of the label of the key's field; the option bits of "Flags" give all their
    // labels. Empty for a key without a field.
    QString labelFor(const QString &key) const;

    // Enables the low-charge-current signal and its delay for the firmware versions that know it.
    void applyFirmwareVersion(const QString &version);
    // Shows the fields of a device variant: 0 ukps-ks, 1 ukps-ab, 2 ukps-ks-2. The form starts
    // as variant 0; the same variant again changes nothing, other numbers are ignored.
    void applyVariant(int variant);

    // The version text split at "." (empty parts dropped), each part as an unsigned number; a
    // part that is not a number reads as 0.
    static QVector<uint> parseVersion(const QString &version);

signals:
    void changedCountChanged(int count);

private:
    void showRecord(const UkpsSettings &settings);
    void adaptToVariant(int variant);
    static void showRow(QWidget *field, QLabel *label, bool shown);

    Ui::UkpsConfigEditor *ui = nullptr;
    UkpsSettings m_lastLoaded;
    ChangeMarks *m_marks = nullptr;
    int m_variant = -1;
};
