#pragma once

#include <QStringList>
#include <QVariant>

#include <cstddef>
#include <cstdint>

class QAbstractItemModel;

// Shared helpers of the fuzz targets: the input cut the way the tool cuts a device reply, a walk
// over every cell of a model, and a hard stop when a property of the code does not hold.
namespace Fuzz {

// The input bytes as Latin-1 text, unchanged.
QString latin1(const uint8_t *data, size_t size);

// The input as the engine reads a reply: Latin-1, "\r\n" made "\n", white space removed at both
// ends, split at "\n" with empty parts dropped.
QStringList replyLines(const uint8_t *data, size_t size);
QStringList replyLines(const QString &reply);

// Reads every cell for the display, edit, font and a few other roles, every header section, and
// cells one row and two columns past the end through indexes of a foreign model, so that reads
// outside the table show up. Returns the number of cells that answered with a value.
int touchModel(const QAbstractItemModel &model);

// Keeps a value alive so that the reads above are not optimised away.
void consume(const QVariant &value);
void consume(const QString &text);

// Prints what failed and aborts: the fuzzer keeps the input as a crash.
[[noreturn]] void fail(const char *what);
inline void check(bool ok, const char *what)
{
    if (!ok)
        fail(what);
}

} // namespace Fuzz
