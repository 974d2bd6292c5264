#include "app/programsettings.h"
#include "ui/configdialog.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QSerialPortInfo>
#include <QTabWidget>
#include <QtTest>

static const QString marker = " (отсутствует в системе)";

class tst_ConfigDialog : public QObject
{
    Q_OBJECT
private slots:
    void variantButtonsHidden();
    void platformPortsListed();
    void portChoice_data();
    void portChoice();
    void typedPort();
    void variant_data();
    void variant();
    void acceptedByOk();

private:
    static QComboBox *ports(ConfigDialog &dialog, const QStringList &names);
};

// The platform's list replaced by a known one.
QComboBox *tst_ConfigDialog::ports(ConfigDialog &dialog, const QStringList &names)
{
    auto combo = dialog.findChild<QComboBox *>("cbComPort");
    combo->clear();
    combo->addItems(names);
    return combo;
}

void tst_ConfigDialog::variantButtonsHidden()
{
    ConfigDialog dialog;
    dialog.show();
    QVERIFY(QTest::qWaitForWindowExposed(&dialog));
    QVERIFY(dialog.findChild<QGroupBox *>("groupBox_2")->isHidden());
    QVERIFY(dialog.findChild<QComboBox *>("cbComPort")->isVisible());
}

void tst_ConfigDialog::platformPortsListed()
{
    QStringList expected;
    const QList<QSerialPortInfo> infos = QSerialPortInfo::availablePorts();
    for (const QSerialPortInfo &info : infos)
        expected << info.portName();

    ConfigDialog dialog;
    auto combo = dialog.findChild<QComboBox *>("cbComPort");
    QStringList listed;
    for (int i = 0; i < combo->count(); ++i)
        listed << combo->itemText(i);
    QCOMPARE(listed, expected);
}

void tst_ConfigDialog::portChoice_data()
{
    QTest::addColumn<QStringList>("present");
    QTest::addColumn<QString>("port");
    QTest::addColumn<QStringList>("listed");
    QTest::addColumn<int>("selected");
    QTest::addColumn<QString>("stored");

    const QStringList three{"ttyS0", "ttyS1", "ttyUSB0"};
    QTest::newRow("present port selected") << three << "ttyUSB0" << three << 2 << "ttyUSB0";
    QTest::newRow("missing port listed second")
            << three << "ttyUSB7" << QStringList{"ttyS0", "ttyUSB7" + marker, "ttyS1", "ttyUSB0"}
            << 1 << "ttyUSB7";
    QTest::newRow("lookup is case-sensitive")
            << three << "TTYS0" << QStringList{"ttyS0", "TTYS0" + marker, "ttyS1", "ttyUSB0"} << 1
            << "TTYS0";
    QTest::newRow("missing port, one port present")
            << QStringList{"COM1"} << "COM3" << QStringList{"COM1", "COM3" + marker} << 1 << "COM3";
    QTest::newRow("missing port, no ports at all")
            << QStringList() << "ttyACM0" << QStringList{"ttyACM0" + marker} << 0 << "ttyACM0";
    QTest::newRow("missing symlink path")
            << QStringList{"ttyS0"} << "/tmp/kiranto-sim"
            << QStringList{"ttyS0", "/tmp/kiranto-sim" + marker} << 1 << "/tmp/kiranto-sim";
    QTest::newRow("no port configured keeps first") << three << "" << three << 0 << "ttyS0";
}

void tst_ConfigDialog::portChoice()
{
    QFETCH(QStringList, present);
    QFETCH(QString, port);
    QFETCH(QStringList, listed);
    QFETCH(int, selected);
    QFETCH(QString, stored);

    ConfigDialog dialog;
    QComboBox *combo = ports(dialog, present);
    ProgramSettings settings;
    settings.port = port;
    dialog.setSettings(settings);

    QStringList items;
    for (int i = 0; i < combo->count(); ++i)
        items << combo->itemText(i);
    QCOMPARE(items, listed);
    QCOMPARE(combo->currentIndex(), selected);
    ProgramSettings out;
    out.port = "stale";
    dialog.getSettings(out);
    QCOMPARE(out.port, stored);
}

void tst_ConfigDialog::typedPort()
{
    ConfigDialog dialog;
    QComboBox *combo = ports(dialog, {"ttyS0"});
    QVERIFY(combo->isEditable());
    dialog.show();
    QVERIFY(QTest::qWaitForWindowExposed(&dialog));
    combo->lineEdit()->clear();
    QTest::keyClicks(combo->lineEdit(), "/tmp/kiranto-sim");

    ProgramSettings out;
    dialog.getSettings(out);
    QCOMPARE(out.port, QString("/tmp/kiranto-sim"));
}

void tst_ConfigDialog::variant_data()
{
    QTest::addColumn<int>("in");
    QTest::addColumn<QString>("checked");
    QTest::addColumn<int>("out");
    QTest::newRow("ukps-ks") << 0 << "rbUkpsKs" << 0;
    QTest::newRow("ukps-ab") << 1 << "rbUkpsAb" << 1;
    QTest::newRow("ukps-ks-2") << 2 << "rbUkpsKs2" << 2;
    QTest::newRow("uki-kiranto comes back as ukps-ks-2") << 3 << "rbUkpsKs2" << 2;
    QTest::newRow("unknown value") << 9 << "rbUkpsKs2" << 2;
    QTest::newRow("negative value") << -1 << "rbUkpsKs2" << 2;
}

void tst_ConfigDialog::variant()
{
    QFETCH(int, in);
    QFETCH(QString, checked);
    QFETCH(int, out);

    ConfigDialog dialog;
    ProgramSettings settings;
    settings.port = "ttyS0";
    settings.variant = in;
    dialog.setSettings(settings);

    const QList<QRadioButton *> buttons = dialog.findChildren<QRadioButton *>();
    QCOMPARE(buttons.size(), 4);
    for (const QRadioButton *button : buttons)
        QCOMPARE(button->isChecked(), button->objectName() == checked);

    ProgramSettings result;
    result.variant = 42;
    dialog.getSettings(result);
    QCOMPARE(result.variant, out);
}

void tst_ConfigDialog::acceptedByOk()
{
    ConfigDialog dialog;
    ports(dialog, {"ttyS0"});
    ProgramSettings settings;
    settings.port = "ttyUSB3";
    settings.variant = 3;
    dialog.setSettings(settings);
    dialog.show();
    QVERIFY(QTest::qWaitForWindowExposed(&dialog));

    auto box = dialog.findChild<QDialogButtonBox *>("buttonBox");
    box->button(QDialogButtonBox::Ok)->click();
    QCOMPARE(dialog.result(), int(QDialog::Accepted));
    dialog.getSettings(settings);
    QCOMPARE(settings.port, QString("ttyUSB3"));
    QCOMPARE(settings.variant, 2);

    ConfigDialog second;
    second.show();
    QVERIFY(QTest::qWaitForWindowExposed(&second));
    second.findChild<QDialogButtonBox *>("buttonBox")->button(QDialogButtonBox::Cancel)->click();
    QCOMPARE(second.result(), int(QDialog::Rejected));
}

QTEST_MAIN(tst_ConfigDialog)
#include "tst_configdialog.moc"
