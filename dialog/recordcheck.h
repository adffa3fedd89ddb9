#pragma once

#include "recordfindings.h"
#include "../config/configkeys.h"

#include <dev/devicearg.h>

#include <QString>
#include <QStringList>

namespace IPCPRI {

// What the configuration dialog does with a stored record when it is opened
// on it and accepted untouched, worked out without a window: loading with
// its widgets' ways (exclusive boxes, lists that offer only their items,
// spin boxes' ranges, masked fields), the checks of accepting and the
// silent calculation, with the same rules the dialog's slots call and the
// registry the dialog would see.
//
// A stored record is one the dialog would write when the dialog hands it
// back key for key, accepting it passes every check, and each field holds
// what the dialog keeps of an entry typed into it.
class RecordCheck
{
public:
    // What the host's dialog frame holds once it has opened the record, and
    // what its own checks of the file and module names say on OK (nothing
    // when the names pass).
    struct Frame
    {
        DEV::DeviceArg device;
        QString synthesisTool;
        int languageIndex = 0;
        QString file;
        QString module;
        QString fileProblem;
        QString moduleProblem;
    };

    using Finding = RecordFinding;

    // coreType is the core's identifier, the record's "type". The
    // calculation writes its register file into a temporary folder only.
    RecordCheck(const QString &coreType, const Frame &frame);

    Finding check(const ConfigMap &record) const;
    // The record the dialog hands back, or an empty one with the reason
    // when accepting refuses it.
    ConfigMap handedBack(const ConfigMap &record, QString *refusal = nullptr) const;

    // The values the dialog offers in a list for a key, given the lanes the
    // registry reports and the device's part name; empty for any other key.
    static QStringList offered(const QString &key, const QStringList &lanes,
                               const QString &partName);

private:
    class Opened;
    Finding firstChange(const ConfigMap &record, const Opened &opened, bool unofferedOnly) const;

    QString m_coreType;
    Frame m_frame;
};

} // namespace IPCPRI
