#pragma once

#include <QString>
#include <QVariant>

namespace IPCPRI {
namespace Loading {

// What loading puts into a widget when a stored record lacks its key: the
// value a new core starts with, except where the dialog's widgets keep
// another (see loaddefaults.cpp).
QVariant missingValue(const QString &key);

} // namespace Loading
} // namespace IPCPRI
