#include "models/valuecomparison.h"
#include "protocol/safewrite.h"
#include "protocol/uki.h"
#include "settings/ukiconfigeditor.h"
#include "settings/ukpsconfigeditor.h"
#include "stats/statgraphwidget.h"
#include "support.h"
#include "ui/aboutdialog.h"
#include "ui/comparedialog.h"
#include "ui/configdialog.h"
#include "ui/mainwindow.h"

#include <QtTest>

#include <functional>

using Factory = std::function<QWidget *()>;
Q_DECLARE_METATYPE(Factory)

namespace {

// Whether a field has a text beside it: a label that names it as buddy, a label in the same row
// of its grid layout, or a label right before it in a box layout (the forms' tool bars).
bool hasLabel(const QWidget *top, QWidget *field)
{
    for (const QLabel *label : top->findChildren<QLabel *>())
        if (label->buddy() == field && !label->text().isEmpty())
            return true;
    const QWidget *parent = field->parentWidget();
    for (QLayout *layout : parent->findChildren<QLayout *>()) {
        auto grid = qobject_cast<QGridLayout *>(layout);
        const int index = layout->indexOf(field);
        if (index > 0 && qobject_cast<QBoxLayout *>(layout)) {
            auto label = qobject_cast<QLabel *>(layout->itemAt(index - 1)->widget());
            if (label && !label->text().isEmpty())
                return true;
        }
        if (!grid || index < 0)
            continue;
        int row, column, rowSpan, columnSpan;
        grid->getItemPosition(index, &row, &column, &rowSpan, &columnSpan);
        for (int c = 0; c < grid->columnCount(); ++c) {
            QLayoutItem *item = grid->itemAtPosition(row, c);
            auto label = item ? qobject_cast<QLabel *>(item->widget()) : nullptr;
            if (label && !label->text().isEmpty())
                return true;
        }
    }
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
    Uki m_uki;
    SafeWrite m_writer{&m_uki};
};

void tst_Forms::forms_data()
{
    QTest::addColumn<Factory>("factory");
    QTest::newRow("UkiConfigEditor") << Factory([] { return new UkiConfigEditor; });
    QTest::newRow("UkpsConfigEditor") << Factory([] { return new UkpsConfigEditor; });
    QTest::newRow("StatGraphWidget")
            << Factory([this] { return new StatGraphWidget(&m_uki, &m_writer); });
    QTest::newRow("MainWindow") << Factory([] { return new MainWindow; });
    QTest::newRow("ConfigDialog") << Factory([] { return new ConfigDialog; });
    QTest::newRow("CompareDialog")
            << Factory([] { return new CompareDialog(new ValueComparison, "f.csv"); });
    QTest::newRow("AboutDialog") << Factory([] { return new AboutDialog; });
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
        // The archive filter's items depend on the device variant and come with the archive.
        if (combo && combo->count() == 0 && name != "cbArchiveFilter")
            problems << "no items " + name;
        if (!hasLabel(form.get(), field))
            problems << "no label " + name;
    }
    QCOMPARE(problems.join('\n'), QString());
}

QTEST_MAIN(tst_Forms)
#include "tst_forms.moc"
