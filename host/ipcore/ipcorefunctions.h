#pragma once

#include "../hostglobal.h"
#include "../dev/devicearg.h"

#include <QMap>
#include <QString>
#include <QStringList>
#include <QVariant>

QT_BEGIN_NAMESPACE
class QWidget;
QT_END_NAMESPACE

namespace IPCore {

// Reads an IP-core descriptor ("*.ipspec"). The file is UTF-8 text, one
// entry per line:
//
//     # comment                      ignored, as are blank lines
//     key = value                    sets key to the text value
//     key += value                   appends value to the string list key
//
// Keys and values are trimmed; a value may be empty. A key given with "+="
// is always a string list (one "+=" line gives a one-element list); a key
// given with "=" is a text. A line without "=" is a syntax error. A file
// that cannot be read, or any syntax error, gives an empty map.
IPHOST_EXPORT QMap<QString, QVariant> processIPInfoSpec(const QString &path);

// True when the descriptor has a non-empty "ipcore.id", "ipcore.name" and
// "ipcore.version".
IPHOST_EXPORT bool checkCommonInfo(const QMap<QString, QVariant> &info);

// Whether a core may be placed on the device. An entry of either list is a
// part name, a device identifier or "*" (every device). A device named by
// the unsupported list is refused; otherwise an empty supported list
// admits every device and a non-empty one admits the devices it names.
// The null device is never supported.
IPHOST_EXPORT bool isSupported(const DEV::DeviceArg &device, const QStringList &unsupported,
                               const QStringList &supported);

// Creates dir and its parents. False, with lastError() telling why, when
// it cannot. While an OutputSet is open, makeDirs and generateFile write a
// set's folder as one set (see outputset.h).
IPHOST_EXPORT bool makeDirs(const QString &dir, const QString &coreName);

// Writes lines to path as UTF-8, each followed by "\n". The file is
// written atomically: it either holds every line or keeps what it held
// before. A non-empty header is written first, as comment lines "// ...".
// False, with lastError() telling why, when the file cannot be written.
IPHOST_EXPORT bool generateFile(const QString &path, const QStringList &lines, QWidget *parent,
                                const QString &header);

// The highest folder each makeDirs call outside an output set created, in
// the order they came (none for a folder that was there).
IPHOST_EXPORT QStringList createdFolders();

// The reason of the last failed makeDirs or generateFile call.
IPHOST_EXPORT QString lastError();
// Paths generateFile has written since the last clearWrittenFiles().
IPHOST_EXPORT QStringList writtenFiles();
IPHOST_EXPORT void clearWrittenFiles();

} // namespace IPCore
