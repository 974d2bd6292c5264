#pragma once

#include "settings/ukisettings.h"

#include <QWidget>

class ChangeMarks;

namespace Ui {
class UkiConfigEditor;
}

// The form that shows and edits the 23 settings of the insulation monitor.
class UkiConfigEditor : public QWidget
{
    Q_OBJECT
public:
    explicit UkiConfigEditor(QWidget *parent = nullptr);
    ~UkiConfigEditor() override;

    // Keeps a copy of the record and shows it; what the form shows now becomes the baseline
    // against which changed fields are marked.
    void setSettings(const UkiSettings &record);
    // Shows the values of these settings lines over the form's current values; the baseline
    // stays, so the fields they change are marked.
    void takeLines(const QStringList &lines);
    // Fills the record from the form. Option bits the form does not show are cleared, except 3
    // and 12, which come from the record last shown; with X9 on the 4-20 mA input, ModeInput
    // keeps what the record held on entry.
    void settings(UkiSettings &record) const;
    // True when the form, read back, differs from the record last shown.
    bool isModified() const;
    // The number of keys whose values differ from the baseline.
    int changedCount() const;
    // The text of the label of the key's field ("Rуст1" for "RisoM3s1"); the option bits of
    // "Flags" give all their labels. Empty for a key without a field.
    QString labelFor(const QString &key) const;
    // Adapts the form to the monitor's firmware version ("9.6.52").
    void applyFirmwareVersion(const QString &version);

signals:
    void changedCountChanged(int count);

private slots:
    void on_cbX9_currentIndexChanged(int index);
    void on_sbNumUki_valueChanged(int value);

private:
    void showRecord(const UkiSettings &record);
    void showX9Arrangement(bool analogInput);

    Ui::UkiConfigEditor *ui = nullptr;
    UkiSettings m_lastLoaded;
    ChangeMarks *m_marks = nullptr;
};
