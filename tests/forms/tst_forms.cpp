#include "settings/ukiconfigeditor.h"
#include "settings/ukpsconfigeditor.h"
#include "support.h"
#include "ui/configdialog.h"
#include "ui/mainwindow.h"

#include <QtTest>

#include <functional>

using Factory = std::function<QWidget *()>;
Q_DECLARE_METATYPE(Factory)

namespace {

// Whether a label with a text names the field as its buddy.
bool hasLabel(const QWidget *top, const QWidget *field)
{
    for (const QLabel *label : top->findChildren<QLabel *>())
        if (label->buddy() == field && !label->text().isEmpty())
            return true;
    return false;
}

} // namespace

class tst_Forms : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QVERIFY(m_install.isValid()); }
    void forms_data();
    void forms();

private:
    TestSupport::ScratchInstall m_install;
};

void tst_Forms::forms_data()
{
    QTest::addColumn<Factory>("factory");
    QTest::newRow("UkiConfigEditor") << Factory([] { return new UkiConfigEditor; });
    QTest::newRow("UkpsConfigEditor") << Factory([] { return new UkpsConfigEditor; });
    QTest::newRow("MainWindow") << Factory([] { return new MainWindow; });
    QTest::newRow("ConfigDialog") << Factory([] { return new ConfigDialog; });
}

// Every field has its label, every spin box a real range, every list items.
void tst_Forms::forms()
{
    QFETCH(Factory, factory);
    std::unique_ptr<QWidget> form(factory());
    QStringList problems;
    for (QWidget *field : form->findChildren<QWidget *>()) {
        const QString name = field->objectName();
        auto spin = qobject_cast<QSpinBox *>(field);
        auto real = qobject_cast<QDoubleSpinBox *>(field);
        auto combo = qobject_cast<QComboBox *>(field);
        auto slider = qobject_cast<QSlider *>(field);
        if (name.startsWith("qt_") || !(spin || real || combo || slider))
            continue;
        if ((spin && spin->minimum() >= spin->maximum())
            || (real && real->minimum() >= real->maximum())
            || (slider && slider->minimum() >= slider->maximum()))
            problems << "no range " + name;
        // The archive filter's items depend on the device variant and come with the archive;
        // its label stands before it in the archive page's tool bar.
        if (name == "cbArchiveFilter")
            continue;
        if (combo && combo->count() == 0)
            problems << "no items " + name;
        if (!hasLabel(form.get(), field))
            problems << "no label " + name;
    }
    QCOMPARE(problems.join('\n'), QString());
}

QTEST_MAIN(tst_Forms)
#include "tst_forms.moc"
