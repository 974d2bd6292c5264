#include "models/ctcorrections.h"
#include "models/doublespinboxdelegate.h"
#include "models/spinboxdelegate.h"

#include <QDoubleSpinBox>
#include <QLineEdit>
#include <QSpinBox>
#include <QTableView>
#include <QTableWidget>
#include <QtTest>

#include <memory>

namespace {
const QStringList corrLines = {"address\tchannel\tgain*100\t phase*10", "1\t3\t250\t-25"};

// Types into the editor's line without confirming, as a user does before leaving the cell.
void typeText(QWidget *editor, const QString &text)
{
    auto line = editor->findChild<QLineEdit *>();
    QVERIFY(line);
    line->setText(text);
}
} // namespace

class tst_Delegates : public QObject
{
    Q_OBJECT
private slots:
    void doubleEditor_data();
    void doubleEditor();
    void doubleCommit_data();
    void doubleCommit();
    void doubleCommitInView();
    void intEditor();
    void intCommit_data();
    void intCommit();
    void geometry();
    void doubleDisplay_data();
    void doubleDisplay();
};

void tst_Delegates::doubleEditor_data()
{
    QTest::addColumn<int>("column");
    QTest::addColumn<double>("minimum");
    QTest::addColumn<double>("maximum");
    QTest::addColumn<double>("step");
    QTest::addColumn<int>("decimals");
    QTest::addColumn<double>("loaded");

    QTest::newRow("gain") << 2 << 0.01 << 999.0 << 0.01 << 2 << 2.5;
    QTest::newRow("phase") << 3 << -360.0 << 360.0 << 0.1 << 1 << -2.5;
}

void tst_Delegates::doubleEditor()
{
    QFETCH(int, column);
    QFETCH(double, minimum);
    QFETCH(double, maximum);
    QFETCH(double, step);
    QFETCH(int, decimals);
    QFETCH(double, loaded);

    CtCorrections model(corrLines);
    DoubleSpinBoxDelegate delegate(minimum, maximum, step, decimals);
    QWidget parent;
    const QModelIndex index = model.index(0, column);
    std::unique_ptr<QWidget> editor(delegate.createEditor(&parent, QStyleOptionViewItem(), index));
    auto spinBox = qobject_cast<QDoubleSpinBox *>(editor.get());
    QVERIFY(spinBox);
    QCOMPARE(spinBox->parentWidget(), &parent);
    QVERIFY(!spinBox->hasFrame());
    QCOMPARE(spinBox->minimum(), minimum);
    QCOMPARE(spinBox->maximum(), maximum);
    QCOMPARE(spinBox->singleStep(), step);
    QCOMPARE(spinBox->decimals(), decimals);

    delegate.setEditorData(spinBox, index);
    QCOMPARE(spinBox->value(), loaded);
}

void tst_Delegates::doubleCommit_data()
{
    QTest::addColumn<int>("column");
    QTest::addColumn<QString>("typed");
    QTest::addColumn<uint>("gain");
    QTest::addColumn<int>("phase");

    QTest::newRow("gain 1.15 stores 114") << 2 << "1.15" << 114u << -25;
    QTest::newRow("gain 999") << 2 << "999.00" << 99900u << -25;
    QTest::newRow("gain 0.29 stores 28") << 2 << "0.29" << 28u << -25;
    QTest::newRow("gain above the limit keeps the value") << 2 << "1000" << 250u << -25;
    QTest::newRow("phase -12.3") << 3 << "-12.3" << 250u << -123;
    QTest::newRow("phase 360") << 3 << "360.0" << 250u << 3600;
}

void tst_Delegates::doubleCommit()
{
    QFETCH(int, column);
    QFETCH(QString, typed);
    QFETCH(uint, gain);
    QFETCH(int, phase);

    CtCorrections model(corrLines);
    DoubleSpinBoxDelegate gainDelegate(0.01, 999.0, 0.01, 2);
    DoubleSpinBoxDelegate phaseDelegate(-360.0, 360.0, 0.1, 1);
    DoubleSpinBoxDelegate &delegate = column == 2 ? gainDelegate : phaseDelegate;
    const QModelIndex index = model.index(0, column);
    std::unique_ptr<QWidget> editor(delegate.createEditor(nullptr, QStyleOptionViewItem(), index));
    delegate.setEditorData(editor.get(), index);
    typeText(editor.get(), typed);
    delegate.setModelData(editor.get(), &model, index);
    QCOMPARE(model.rowAt(0).gain, gain);
    QCOMPARE(model.rowAt(0).phase, phase);
}

void tst_Delegates::doubleCommitInView()
{
    CtCorrections model(corrLines);
    QTableView view;
    DoubleSpinBoxDelegate delegate(0.01, 999.0, 0.01, 2);
    view.setModel(&model);
    view.setItemDelegateForColumn(2, &delegate);
    view.show();
    QVERIFY(QTest::qWaitForWindowExposed(&view));

    const QModelIndex index = model.index(0, 2);
    view.edit(index);
    QWidget *editor = view.indexWidget(index);
    QVERIFY(qobject_cast<QDoubleSpinBox *>(editor));
    QCOMPARE(editor->geometry(), view.visualRect(index));
    typeText(editor, "1.15");
    QTest::keyClick(editor, Qt::Key_Return);
    // The view commits on Return from a queued call.
    QTRY_COMPARE(model.rowAt(0).gain, 114u);
    QVERIFY(model.isModified(0));
    QTRY_VERIFY(!view.indexWidget(index));
}

void tst_Delegates::intEditor()
{
    QTableWidget table(1, 1);
    table.setItem(0, 0, new QTableWidgetItem("45"));
    SpinBoxDelegate delegate(0, 75, 5);
    const QModelIndex index = table.model()->index(0, 0);
    std::unique_ptr<QWidget> editor(delegate.createEditor(&table, QStyleOptionViewItem(), index));
    auto spinBox = qobject_cast<QSpinBox *>(editor.get());
    QVERIFY(spinBox);
    QVERIFY(!spinBox->hasFrame());
    QCOMPARE(spinBox->minimum(), 0);
    QCOMPARE(spinBox->maximum(), 75);
    QCOMPARE(spinBox->singleStep(), 5);
    delegate.setEditorData(spinBox, index);
    QCOMPARE(spinBox->value(), 45);

    table.item(0, 0)->setText("OFF");
    delegate.setEditorData(spinBox, index);
    QCOMPARE(spinBox->value(), 0);
}

void tst_Delegates::intCommit_data()
{
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("stored");

    QTest::newRow("typed value kept as typed") << "37"
                                               << "37";
    QTest::newRow("upper limit") << "999"
                                 << "999";
    QTest::newRow("zero") << "0"
                          << "0";
    QTest::newRow("above the limit keeps the value") << "1000"
                                                     << "200";
    QTest::newRow("not a number keeps the value") << "abc"
                                                  << "200";
}

void tst_Delegates::intCommit()
{
    QFETCH(QString, typed);
    QFETCH(QString, stored);

    QTableWidget table(1, 1);
    table.setItem(0, 0, new QTableWidgetItem("200"));
    SpinBoxDelegate delegate(0, 999, 1);
    const QModelIndex index = table.model()->index(0, 0);
    std::unique_ptr<QWidget> editor(delegate.createEditor(nullptr, QStyleOptionViewItem(), index));
    delegate.setEditorData(editor.get(), index);
    typeText(editor.get(), typed);
    delegate.setModelData(editor.get(), table.model(), index);
    QCOMPARE(table.item(0, 0)->text(), stored);
}

void tst_Delegates::geometry()
{
    QStyleOptionViewItem option;
    option.rect = QRect(10, 20, 130, 24);
    DoubleSpinBoxDelegate realDelegate(0.0, 1.0, 0.1, 1);
    SpinBoxDelegate intDelegate(0, 10, 1);
    for (const QStyledItemDelegate *delegate : {static_cast<QStyledItemDelegate *>(&realDelegate),
                                                static_cast<QStyledItemDelegate *>(&intDelegate)}) {
        std::unique_ptr<QWidget> editor(delegate->createEditor(nullptr, option, QModelIndex()));
        delegate->updateEditorGeometry(editor.get(), option, QModelIndex());
        QCOMPARE(editor->geometry(), option.rect);
    }
}

void tst_Delegates::doubleDisplay_data()
{
    QTest::addColumn<int>("decimals");
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<QString>("locale");
    QTest::addColumn<QString>("text");
    QTest::newRow("gain 1 shows two decimals") << 2 << QVariant(1.0) << "C"
                                               << "1.00";
    QTest::newRow("gain in a Russian locale") << 2 << QVariant(0.99) << "ru_RU"
                                              << "0,99";
    QTest::newRow("phase with one decimal") << 1 << QVariant(-2.5) << "C"
                                            << "-2.5";
    QTest::newRow("whole phase") << 1 << QVariant(10.0) << "C"
                                 << "10.0";
    QTest::newRow("text is left alone") << 2 << QVariant(QString("OFF")) << "C"
                                        << "OFF";
}

void tst_Delegates::doubleDisplay()
{
    QFETCH(int, decimals);
    QFETCH(QVariant, value);
    QFETCH(QString, locale);
    QFETCH(QString, text);
    const DoubleSpinBoxDelegate delegate(-360.0, 999.0, 0.1, decimals);
    QCOMPARE(delegate.displayText(value, QLocale(locale)), text);
}

QTEST_MAIN(tst_Delegates)
#include "tst_delegates.moc"
