#pragma once

#include "../hostglobal.h"

#include <QString>

namespace IPCore {
namespace Internal {

// Marks the file generateFile writes before it takes the place of the target.
inline const QString PartialTag = QStringLiteral(".part-");

// For makeDirs: prepares dir when an open output set names or holds it.
// False when no set takes dir; otherwise *ok tells whether it is ready.
bool prepareSetFolder(const QString &dir, const QString &coreName, bool *ok);
// For generateFile: where a file of an open set's folder is written (its
// place in the staging folder, noted as one of the set's files), or path.
QString stagedPath(const QString &path);
// Where the files of a folder are while an open set writes it: its staging
// folder, or the folder itself.
QString stagedFolder(const QString &folder);
// Records why the last makeDirs or generateFile call failed; returns false.
bool fail(const QString &reason);

// Puts the folder staging in the place of target. With exchange the two
// change places in one step and the old content, now under the name
// staging, is removed; without it (or where the file system cannot
// exchange), target is first renamed to old, then staging to target, and
// old is removed: a run killed between the two renames leaves old, which
// the next set of the folder renames back.
IPHOST_EXPORT bool replaceFolder(const QString &staging, const QString &target, const QString &old,
                                 bool exchange);

} // namespace Internal
} // namespace IPCore
