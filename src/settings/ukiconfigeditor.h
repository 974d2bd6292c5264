#pragma once

#include "settings/ukisettings.h"

#include <QWidget>

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

    // Keeps a copy of the record and shows it.
    void setSettings(const UkiSettings &record);
    // Fills the record from the form. Option bits the form does not show are cleared, except 3
    // and 12, which come from the record last shown; with X9 on the 4-20 mA input, ModeInput
    // keeps what the record held on entry.
    void settings(UkiSettings &record) const;
    // True when the form, read back, differs from the record last shown.
    bool isModified() const;
    // Adapts the form to the monitor's firmware version ("9.6.52").
    void applyFirmwareVersion(const QString &version);

private slots:
    void on_cbX9_currentIndexChanged(int index);
    void on_sbNumUki_valueChanged(int value);

private:
    void showX9Arrangement(bool analogInput);

    Ui::UkiConfigEditor *ui = nullptr;
    UkiSettings m_lastLoaded;
};
