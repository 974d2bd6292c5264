#include "fuzzinput.h"

#include <QAbstractTableModel>

#include <cstdio>
#include <cstdlib>

namespace {

volatile int sink = 0;

// Hands out indexes for any row and column; other models must refuse them or range-check them.
class ForeignModel final : public QAbstractTableModel
{
public:
    int rowCount(const QModelIndex & = QModelIndex()) const override { return 0; }
    int columnCount(const QModelIndex & = QModelIndex()) const override { return 0; }
    QVariant data(const QModelIndex &, int) const override { return {}; }
    QModelIndex make(int row, int column) const { return createIndex(row, column); }
};

const int roles[] = {
        Qt::DisplayRole,
        Qt::EditRole,
        Qt::FontRole,
        Qt::ToolTipRole,
        Qt::TextAlignmentRole,
        Qt::BackgroundRole,
        Qt::UserRole,
};

} // namespace

namespace Fuzz {

QString latin1(const uint8_t *data, size_t size)
{
    return QString::fromLatin1(reinterpret_cast<const char *>(data), int(size));
}

QStringList replyLines(const QString &reply)
{
    QString text = reply;
    text.replace(QLatin1String("\r\n"), QLatin1String("\n"));
    return text.trimmed().split(QLatin1Char('\n'), Qt::SkipEmptyParts);
}

QStringList replyLines(const uint8_t *data, size_t size)
{
    return replyLines(latin1(data, size));
}

void consume(const QString &text)
{
    sink = sink + text.size();
}

void consume(const QVariant &value)
{
    if (value.isValid())
        consume(value.toString());
}

int touchModel(const QAbstractItemModel &model)
{
    int answered = 0;
    const int rows = model.rowCount();
    const int columns = model.columnCount();
    check(rows >= 0 && columns >= 0, "negative row or column count");
    for (int row = 0; row < rows; ++row) {
        for (int column = 0; column < columns; ++column) {
            const QModelIndex index = model.index(row, column);
            check(index.isValid(), "index() refuses a cell inside the table");
            check(model.rowCount(index) == 0, "a table cell has children");
            consume(QVariant(int(model.flags(index))));
            for (const int role : roles) {
                const QVariant value = model.data(index, role);
                answered += value.isValid() ? 1 : 0;
                consume(value);
            }
        }
        for (const int role : roles)
            consume(model.headerData(row, Qt::Vertical, role));
    }
    for (int section = -1; section <= columns + 8; ++section) {
        for (const int role : roles)
            consume(model.headerData(section, Qt::Horizontal, role));
    }
    check(!model.index(rows, 0).isValid() && !model.index(0, columns).isValid()
                  && !model.index(-1, 0).isValid(),
          "index() accepts a cell outside the table");
    check(!model.data(QModelIndex()).isValid(), "an invalid index answers with a value");

    const ForeignModel foreign;
    for (int row = 0; row <= rows + 1; ++row) {
        for (int column = 0; column <= columns + 8; ++column) {
            if (row < rows && column < columns)
                continue;
            consume(model.data(foreign.make(row, column), Qt::DisplayRole));
            consume(model.data(foreign.make(row, column), Qt::EditRole));
        }
    }
    return answered;
}

void fail(const char *what)
{
    std::fprintf(stderr, "fuzz check failed: %s\n", what);
    std::fflush(stderr);
    std::abort();
}

} // namespace Fuzz
