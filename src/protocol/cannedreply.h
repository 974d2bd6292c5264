#pragma once

#include <QString>

// The reply a small installation would give to a command, from fixed sample data; a development
// aid that lets reply parsing and the pages run without hardware. Empty means no answer.
QString cannedReply(const QString &command);
