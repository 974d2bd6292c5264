#pragma once

#include <QCoreApplication>
#include <QString>

class DfuFile;

// Writes a known one-target firmware file and reads it back to prove the writer sound.
class DfuSelfTest
{
    Q_DECLARE_TR_FUNCTIONS(DfuSelfTest)

public:
    static QString fileName() { return QStringLiteral("test.dfu"); }

    // The file written: one target of two chunks with fixed contents.
    static DfuFile sample();

    // Writes fileName() into folder (replacing an old one), reads it back and checks the prefix,
    // every size and the CRC. Returns false with the reason in *error (if given).
    static bool run(const QString &folder, QString *error = nullptr);
};
