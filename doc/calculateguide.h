#pragma once

#include <QMap>
#include <QString>
#include <QVariant>

namespace Guide {

// The dialog on a core of a project: what OK writes back into the project,
// what Calculate does, the quad bias question and the dialog's messages.
// dialogCommand is the command line that opens a project's core; record a
// stored record whose lane and reference clock the examples use; scratch a
// folder for the file the transceiver generator writes.
QString dialogSection(const QString &dialogCommand, const QMap<QString, QVariant> &record,
                      const QString &scratch);

} // namespace Guide
