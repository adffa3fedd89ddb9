#pragma once

#include <dialog/recordcheck.h>

#include <QMap>
#include <QString>
#include <QVariant>

namespace IPSERDESIP {
class BaseProtocol;
}

namespace CpriHost {

// What a record must be before its core is generated: one the core's dialog
// would have written. No text holds a control character; the record's
// device is one the core supports; the file and module names pass the
// dialog frame's name rules; and the core's dialog, opened on the record
// for its device in the project the registry holds and accepted untouched,
// hands back the same record, key for key (IPCPRI::RecordCheck).
class RecordRules
{
public:
    // The protocol says which devices the core supports; the descriptor
    // gives the frame's default file and module names.
    RecordRules(IPSERDESIP::BaseProtocol &protocol, const QMap<QString, QVariant> &descriptor);

    // Why the record may not be generated, in one line, or an empty text.
    QString problem(const QMap<QString, QVariant> &record) const;

    // What the host's dialog frame holds once it has opened a record: its
    // device (the project's when the record names none), names, language
    // and synthesis tool, as the frame keeps them.
    IPCPRI::RecordCheck::Frame frameFor(const QMap<QString, QVariant> &record) const;

private:
    IPSERDESIP::BaseProtocol &m_protocol;
    QMap<QString, QVariant> m_descriptor;
};

} // namespace CpriHost
