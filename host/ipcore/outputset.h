#pragma once

#include "../hostglobal.h"

#include <QString>
#include <QStringList>

#include <memory>

namespace IPCore {

// The files a core generates into its output folder, made to appear
// together. While a set is open, the next makeDirs call names the set's
// folder, and then:
//
//  - makeDirs locks the folder (with the file ".NAME.lock" beside it, NAME
//    being the folder's name), waiting while a set of another process holds
//    it; restores or removes what interrupted sets left beside the folder;
//    and prepares a staging folder beside it that holds the folder's other
//    files (a folder that an open set of this process holds already is
//    simply ready);
//  - generateFile writes the files of the folder into the staging folder;
//  - commit() puts the staging folder in the place of the folder in one
//    step and removes the old one; abort(), or the end of a set not
//    committed, discards the staging folder and whatever makeDirs created.
//
// The folder thus holds its old files until the commit and all new files
// after it, also when a run is killed at any point; the next set of the same
// folder clears what the killed run left. Calls without an open set, and
// for other folders, work as always.
class IPHOST_EXPORT OutputSet
{
public:
    OutputSet();
    ~OutputSet();
    OutputSet(const OutputSet &) = delete;
    OutputSet &operator=(const OutputSet &) = delete;

    // False, with lastError() telling why, when the new files cannot be put
    // in place; the folder then holds its old files.
    bool commit();
    void abort();
    // The set's output folder; empty until makeDirs names it.
    QString folder() const;
    // The paths in the output folder written for this set.
    QStringList files() const;
    // Where a writer other than generateFile puts path, a file of the set's
    // folder: its place in the staging folder, and path becomes one of the
    // set's files. Empty while the set holds no folder.
    QString writePath(const QString &path);
    // Leaves path, a file the folder holds, out of the new set; false when
    // the set holds no folder or the file cannot be removed from it.
    bool remove(const QString &path);

    class Private;

private:
    std::unique_ptr<Private> d;
};

} // namespace IPCore
