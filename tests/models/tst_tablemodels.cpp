#include "models/ctcorrections.h"
#include "models/customchannels.h"
#include "models/doublespinboxdelegate.h"
#include "models/locators.h"
#include "models/spinboxdelegate.h"
#include "models/valuecomparison.h"
#include "support.h"

#include <QAbstractItemModelTester>
#include <QtTest>

#include <memory>

using TestSupport::modelRows;

namespace {

const QString ctHeader = "address\tchannel\tgain*100\t phase*10";
const QString locHeader = "Addr\tver\tEnabled\tTested";
const QString customHeader = "address\tchannel\tr_loc\tlower\tupper";
const QString monitorLine
        = "UKI\t9.6.43\t1111111100000000\t1111111100000000\t1111111100000000\t0000000000000000";
const QString locatorLine
        = "5\t2.1.7\t1111000000000001\t1110000000000001\t1100000000000001\t1000000000000000";

std::unique_ptr<QAbstractItemModel> makeModel(const QString &kind, const QStringList &reply)
{
    if (kind == "ct")
        return std::make_unique<CtCorrections>(QStringList{ctHeader} + reply);
    if (kind == "custom")
        return std::make_unique<CustomChannels>(QStringList{customHeader} + reply);
    return std::make_unique<Locators>(QStringList{locHeader} + reply);
}

// The text a model writes back to the device, header first; none for the versions list.
QStringList textOf(const QAbstractItemModel *model)
{
    if (const auto *ct = qobject_cast<const CtCorrections *>(model))
        return ct->toText();
    if (const auto *custom = qobject_cast<const CustomChannels *>(model))
        return custom->toText();
    return {};
}

} // namespace

// Device replies of the CT corrections, versions list and custom channels shown as tables.
class tst_TableModels : public QObject
{
    Q_OBJECT
private slots:
    void parse_data();
    void parse();
    void headers();
    void ctEdit_data();
    void ctEdit();
    void ctMarks();
    void editors_data();
    void editors();
    void comparison_data();
    void comparison();
};

void tst_TableModels::parse_data()
{
    QTest::addColumn<QString>("kind");
    QTest::addColumn<QStringList>("reply");
    QTest::addColumn<QStringList>("rows");
    QTest::addColumn<QStringList>("text");
    QTest::addColumn<QStringList>("log");

    // A reply line and its row ("" when refused); CT sends back the line's first four fields.
    const auto add = [](QString kind, QString name, QString line, QString row, QString text = {}) {
        const QString header = kind == "ct" ? ctHeader : customHeader;
        if (kind == "ct")
            text = line.trimmed().section('\t', 0, 3);
        QTest::newRow(qPrintable(kind + ": " + name))
                << kind << QStringList{line, "OK"}
                << (row.isEmpty() ? QStringList() : QStringList{row})
                << (row.isEmpty() ? QStringList{header} : QStringList{header, text})
                << QStringList();
    };
    add("ct", "gain /100, phase /10", "1\t3\t100\t-25", "1|3|1|-2.5");
    add("ct", "address 0, channel 1", "0\t1\t1\t0", "0|1|0.01|0");
    add("ct", "limits", "254\t16\t99900\t3600", "254|16|999|360");
    add("ct", "phase has no range", "2\t5\t100\t-99999", "2|5|1|-9999.9");
    add("ct", "spaces trimmed", "  3\t2\t150\t7\r\n", "3|2|1.5|0.7");
    add("ct", "extra fields ignored", "3\t2\t150\t7\tx", "3|2|1.5|0.7");
    // Refused: channel 0, address 255, gain 0, a field short, phase and address not numbers, a
    // fractional gain, an empty line.
    for (const QString &bad :
         QString("1\t0\t100\t0|255\t1\t100\t0|1\t1\t0\t0|1\t1\t100|1\t1\t100\tx|"
                 "a\t1\t100\t0|1\t1\t1.5\t0|")
                 .split('|'))
        add("ct", "refused " + QString(bad).replace('\t', ','), bad, QString());

    add("custom", "OFF", "0\t1\tOFF", "0|1|OFF||", "0\t1\tOFF");
    add("custom", "OFF, fields after it", "3\t16\tOFF\t10\t20", "3|16|OFF||", "3\t16\tOFF");
    add("custom", "enabled", "5\t2\t200\t10\t45", "5|2|200|10|45", "5\t2\t200\t10\t45");
    add("custom", "steps of 5", "5\t2\t200\t12\t47", "5|2|200|10|45", "5\t2\t200\t10\t45");
    add("custom", "limits", "254\t16\t999\t79\t0", "254|16|999|75|0", "254\t16\t999\t75\t0");
    add("custom", "bounds below a step", "1\t1\t1\t4\t4", "1|1|1|0|0", "1\t1\t1\t0\t0");
    add("custom", "extra fields", "5\t2\t200\t10\t45\tx", "5|2|200|10|45", "5\t2\t200\t10\t45");
    add("custom", "trimmed", " 7\t3\tOFF\r\n", "7|3|OFF||", "7\t3\tOFF");
    // Refused: RLoc 0, lower bound 80, address 255, channel 0, "off", fields short, a negative
    // bound, a letter in the address.
    for (const QString &bad :
         QString("5\t2\t0\t10\t45|5\t2\t200\t80\t45|255\t1\tOFF|5\t0\tOFF|5\t2\toff|"
                 "5\t2|5\t2\t200\t10|5\t2\t200\t-5\t45|L5\t2\tOFF")
                 .split('|'))
        add("custom", "refused " + QString(bad).replace('\t', ','), bad, QString(), QString());
    QTest::newRow("custom: repeated channel stays a row")
            << "custom" << QStringList{"5\t2\t200\t12\t47", "5\t2\t300\t10\t45"}
            << QStringList{"5|2|200|10|45", "5|2|300|10|45"}
            << QStringList{customHeader, "5\t2\t200\t10\t45", "5\t2\t300\t10\t45"} << QStringList();

    // name; reply line; row shown; "bad" line or "address" logged
    const auto loc = [](const char *text) {
        const QStringList f = QString::fromUtf8(text).split(';');
        const QString kind = f[3] == "bad" ? "_Bad line in UKI versions list: "
                                           : "Bad address in UKI versions list: ";
        QTest::newRow(qPrintable("versions: " + f[0]))
                << "loc" << QStringList{f[1]}
                << (f[2].isEmpty() ? QStringList() : QStringList{f[2]}) << QStringList()
                << (f[3].isEmpty() ? QStringList() : QStringList{kind + f[1]});
    };
    // clang-format off
    loc("monitor;UKI\t9.6.43\t1111111100000000\t1111111100000000\t1111111100000000\t0000000000000000;УКИ|9.6.43|1111111100000000|1111111100000000|ОООО ОООО XXXX XXXX;");
    loc("monitor 8.0 kept;UKI\t8.0\t0000000000000000\t0000000000000000\t0000000000000000\t0000000000000000;УКИ|8.0|0000000000000000|0000000000000000|XXXX XXXX XXXX XXXX;");
    loc("monitor empty version parts;UKI\t..12.1\t0000000000000000\t0000000000000000\t0000000000000000\t0000000000000000;УКИ|..12.1|0000000000000000|0000000000000000|XXXX XXXX XXXX XXXX;");
    loc("locator, every CT state letter;5\t2.1.7\t1111000000000001\t1110000000000001\t1100000000000001\t1000000000000000;5|2.1.7|1111000000000001|1110000000000001|ЗОиИ XXXX XXXX XXXО;");
    loc("locator old firmware kept;17\t1.0\t1000000000000000\t0000000000000000\t0000000000000000\t0000000000000000;17|1.0|1000000000000000|0000000000000000|ИXXX XXXX XXXX XXXX;");
    loc("short mask reads 0;5\t5.0\t1111\t1111111111111111\t1111111111111111\t0000000000000000;5|5.0|0000000000000000|1111111111111111|XXXX XXXX XXXX XXXX;");
    loc("masks written as 16;200\t1.2.3\t10000000000000001111\t1111\t0100000000000000\t0000000000000000;200|1.2.3|1000000000000000|0000000000000000|ИXXX XXXX XXXX XXXX;");
    loc("other mask characters read 0;9\t3.3\t1x1?000000000000\t0000000000000000\t0000000000000000\t0000000000000000;9|3.3|1010000000000000|0000000000000000|ИXИX XXXX XXXX XXXX;");
    loc("trimmed; 9\t3.3\t1000000000000000\t0000000000000000\t0000000000000000\t0000000000000000\r;9|3.3|1000000000000000|0000000000000000|ИXXX XXXX XXXX XXXX;");
    loc("monitor 7.9.1 dropped;UKI\t7.9.1\t1111111100000000\t1111111100000000\t1111111100000000\t0000000000000000;;");
    loc("monitor without digits;UKI\tbeta\t1111111100000000\t1111111100000000\t1111111100000000\t0000000000000000;;");
    loc("header with more;Addr\tver\tEnabled\tTested\tCT-A\tCT-B;;");
    loc("four fields;5\t5.0\t0000000000001111\t0000000000001111;;bad");
    loc("seven fields;5\t2.1.7\t1111000000000001\t1110000000000001\t1100000000000001\t1000000000000000\t1;;bad");
    loc("empty trailing masks;6\t5.0\t\t\t\t;;bad");
    loc("untrimmed logged as received;  OK\r;;bad");
    loc("bad address;x5\t2.1.7\t1111000000000001\t1110000000000001\t1100000000000001\t1000000000000000;;address");
    loc("lower-case uki;uki\t9.6.43\t1111111100000000\t1111111100000000\t1111111100000000\t0000000000000000;;address");
    loc("negative address;-5\t2.1.7\t1111000000000001\t1110000000000001\t1100000000000001\t1000000000000000;;address");
    const QString badLine = "_Bad line in UKI versions list: ";
    QTest::newRow("versions: whole reply") << "loc" << QStringList{monitorLine, "x\t1\t2", locatorLine, "OK"}
            << QStringList{"УКИ|9.6.43|1111111100000000|1111111100000000|ОООО ОООО XXXX XXXX", "5|2.1.7|1111000000000001|1110000000000001|ЗОиИ XXXX XXXX XXXО"}
            << QStringList() << QStringList{badLine + "x\t1\t2", badLine + "OK"};
    // clang-format on
}

void tst_TableModels::parse()
{
    QFETCH(QString, kind);
    QFETCH(QStringList, reply);
    QFETCH(QStringList, rows);
    QFETCH(QStringList, text);
    QFETCH(QStringList, log);

    TestSupport::MessageCapture capture;
    const auto model = makeModel(kind, reply);
    QCOMPARE(capture.messages(), log);
    QAbstractItemModelTester tester(model.get(),
                                    QAbstractItemModelTester::FailureReportingMode::QtTest);
    QCOMPARE(modelRows(model.get()), rows);
    QCOMPARE(textOf(model.get()), text);
    for (int cell = 0; cell < model->rowCount() * model->columnCount(); ++cell) {
        const int column = cell % model->columnCount();
        const QModelIndex index = model->index(cell / model->columnCount(), column);
        QCOMPARE(bool(model->flags(index) & Qt::ItemIsEditable), kind == "ct" && column >= 2);
    }
}

// The column titles the user sees over each table.
void tst_TableModels::headers()
{
    QStringList titles;
    for (const char *kind : {"ct", "custom", "loc"}) {
        const auto model = makeModel(kind, {});
        for (int section = 0; section < model->columnCount(); ++section)
            titles << model->headerData(section, Qt::Horizontal).toString();
    }
    QCOMPARE(
            titles.join('|'),
            QString("Адрес|Канал|Коэфф. усиления|Сдвиг фазы|Адрес|Канал|RLoc|Нижний порог|"
                    "Верхний порог|Адрес|Версия ПО|Маска каналов|Маска тестирования|Состояние ТТ"));
}

void tst_TableModels::ctEdit_data()
{
    // column|value put in row "1 3 100 -25"|row written back|marked modified
    QTest::addColumn<QString>("row");
    // 1.15 * 100 is just below 115 in binary floating point.
    for (const char *row : {"2|1.15|1\t3\t114\t-25|1",
                            "2|1|1\t3\t100\t-25|0",
                            "3|-2.59|1\t3\t100\t-25|0",
                            "3|2.59|1\t3\t100\t25|1",
                            "3|-360|1\t3\t100\t-3600|1",
                            "0|5|1\t3\t100\t-25|0",
                            "2|abc|1\t3\t100\t-25|0"})
        QTest::newRow(QString(row).section('|', 0, 1).toUtf8()) << QString(row);
}

void tst_TableModels::ctEdit()
{
    QFETCH(QString, row);
    const QStringList f = row.split('|');
    const bool modified = f[3] == "1";
    bool number = false;
    const double value = f[1].toDouble(&number);
    CtCorrections model({ctHeader, "1\t3\t100\t-25", "1\t4\t250\t12"});
    QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
    model.setData(model.index(0, f[0].toInt()), number ? QVariant(value) : QVariant(f[1]));
    QCOMPARE(model.toText(), QStringList({ctHeader, f[2], "1\t4\t250\t12"}));
    QCOMPARE(model.isModified(0), modified);
    QCOMPARE(model.data(model.index(0, 3), Qt::FontRole).isValid(), modified);
    QVERIFY(!model.isModified(1));
}

void tst_TableModels::ctMarks()
{
    CtCorrections model({ctHeader, "1\t3\t100\t-25", "1\t4\t250\t12", "7\t16\t99900\t0"});
    QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
    QVERIFY(model.setData(model.index(0, 3), 4.0));
    model.markSaved(0);
    QVERIFY(!model.isModified(0));
    QCOMPARE(model.rowAt(0).savedPhase, 40);
    model.markDifferences(
            CtCorrections({ctHeader, "1\t3\t100\t40", "1\t4\t251\t12", "7\t15\t99900\t0"}));
    QCOMPARE(QList<bool>({model.isModified(0), model.isModified(1), model.isModified(2)}),
             QList<bool>({false, true, true}));
    QCOMPARE(model.rowAt(1).gain, 250u);
}

void tst_TableModels::editors_data()
{
    QTest::addColumn<QString>("row");
    // "<editor>|<typed>|<committed>": gain and phase of CT row "1 3 250 -25", an integer cell
    // holding "200", or the text a real editor shows for a value.
    for (const char *row : {"gain|1.15|1\t3\t114\t-25",
                            "phase|-12.34|1\t3\t250\t-25",
                            "phase|-12.3|1\t3\t250\t-123",
                            "int|37|37",
                            "show2|1|1.00",
                            "show2ru|0.99|0,99",
                            "show1|-2.5|-2.5",
                            "show2|OFF|OFF"})
        QTest::newRow(QString(row).replace('\t', ' ').toUtf8()) << QString(row);
}

void tst_TableModels::editors()
{
    QFETCH(QString, row);
    const QStringList parts = row.split('|');
    const QString kind = parts[0];
    if (kind.startsWith("show")) {
        const DoubleSpinBoxDelegate delegate(-360.0, 999.0, 0.1, kind.mid(4, 1).toInt());
        bool number = false;
        const double value = parts[1].toDouble(&number);
        QCOMPARE(delegate.displayText(number ? QVariant(value) : QVariant(parts[1]),
                                      QLocale(kind.endsWith("ru") ? "ru_RU" : "C")),
                 parts[2]);
        return;
    }
    CtCorrections model({ctHeader, "1\t3\t250\t-25"});
    QTableWidget table(1, 1);
    table.setItem(0, 0, new QTableWidgetItem("200"));
    DoubleSpinBoxDelegate gain(0.01, 999.0, 0.01, 2);
    DoubleSpinBoxDelegate phase(-360.0, 360.0, 0.1, 1);
    SpinBoxDelegate integer(0, 999, 1);
    QStyledItemDelegate *delegate = kind == "gain" ? &gain
                                    : kind == "phase"
                                            ? &phase
                                            : static_cast<QStyledItemDelegate *>(&integer);
    QAbstractItemModel *target = kind == "int" ? table.model() : &model;
    const QModelIndex index = target->index(0, kind == "int" ? 0 : kind == "gain" ? 2 : 3);
    std::unique_ptr<QWidget> editor(delegate->createEditor(nullptr, QStyleOptionViewItem(), index));
    delegate->setEditorData(editor.get(), index);
    editor->findChild<QLineEdit *>()->setText(parts[1]);
    delegate->setModelData(editor.get(), target, index);
    QCOMPARE(kind == "int" ? table.item(0, 0)->text() : model.toText().at(1), parts[2]);
}

void tst_TableModels::comparison_data()
{
    // kind # editor's lines # file's lines # rows "label|key|current|file", '*' after the marked
    // ones # counts different, equal, only current, only file # the table's lines after the
    // file's values are taken, '*' after the edited (bold) rows
    QTest::addColumn<QString>("row");
    // clang-format off
    QTest::newRow("settings: equal, different, editor only, file only, labels") << "settings#A\t1;B\t2;C\t3#D\t4;B\t 5 \t;no tab;A\t1#Адрес|A|1|1;Rуст1|B|2|5*;|C|3|*;|D||4*#1 1 1 1#";
    QTest::newRow("settings: the last of a repeated key counts") << "settings#A\t1;A\t2#A\t2#Адрес|A|2|2#0 1 0 0#";
    QTest::newRow("sorted by key, as kiranto-cli reports") << "sorted#B\t1;A\t1;A\t2#C\t3;A\t2#Адрес|A|2|2;Rуст1|B|1|*;|C||3*#0 1 1 1#";
    QTest::newRow("corrections as the table shows them") << "shown#1\t3\t115\t-25;1\t4\t100\t0;2\t9\t100\t1#1\t4\t114\t0;1\t3\t115\t-25;7\t1\t100\t7;bad#|1/3|1.15 / -2.5|1.15 / -2.5;|1/4|1.00 / 0.0|1.14 / 0.0*;|2/9|1.00 / 0.1|*;|7/1||1.00 / 0.7*#1 1 1 1#1\t3\t115\t-25;1\t4\t114\t0*;2\t9\t100\t1";
    QTest::newRow("corrections in their text form") << "text#1\t3\t115\t-25#1\t3\t115\t-24;1\t16\t1\t0#|1\t3|115\t-25|115\t-24*;|1\t16||1\t0*#1 0 0 1#1\t3\t115\t-24*";
    // clang-format on
}

// Rows in the editor's order then the file's, the marked rows, the counts; corrections taken
// from the file become edited rows with the file's exact values.
void tst_TableModels::comparison()
{
    QFETCH(QString, row);
    const QStringList f = row.split('#');
    const QString kind = f[0];
    const QStringList currentLines = QStringList{ctHeader} + f[1].split(';');
    const QStringList fileLines = QStringList{ctHeader} + f[2].split(';');
    CtCorrections table(currentLines);
    const CtCorrections fileTable(fileLines);
    ValueComparison::Entries left, right;
    if (kind == "settings" || kind == "sorted") {
        left = ValueComparison::settingsEntries(f[1].split(';'));
        right = ValueComparison::settingsEntries(f[2].split(';'));
        if (kind == "sorted") {
            left = ValueComparison::sortedByKey(left);
            right = ValueComparison::sortedByKey(right);
        }
    } else if (kind == "shown") {
        left = ValueComparison::shownCorrectionEntries(table, QLocale::c());
        right = ValueComparison::shownCorrectionEntries(fileTable, QLocale::c());
    } else {
        left = ValueComparison::correctionEntries(currentLines);
        right = ValueComparison::correctionEntries(fileLines);
    }
    ValueComparison model;
    QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
    model.compare(left, right, {{"A", "Адрес"}, {"B", "Rуст1"}});
    QStringList rows = modelRows(&model);
    for (int i = 0; i < rows.size(); ++i) {
        if (model.index(i, 0).data(Qt::FontRole).value<QFont>().bold())
            rows[i] += '*';
    }
    using State = ValueComparison::State;
    QCOMPARE(QString("%1#%2 %3 %4 %5")
                     .arg(rows.join(';'))
                     .arg(model.count(State::Different))
                     .arg(model.count(State::Equal))
                     .arg(model.count(State::OnlyCurrent))
                     .arg(model.count(State::OnlyFile)),
             f[3] + '#' + f[4]);
    table.takeValues(fileTable);
    QStringList taken = table.toText().mid(1);
    for (int i = 0; i < taken.size(); ++i) {
        if (table.isModified(i))
            taken[i] += '*';
    }
    if (!f[5].isEmpty())
        QCOMPARE(taken.join(';'), f[5]);
}

QTEST_MAIN(tst_TableModels)
#include "tst_tablemodels.moc"
