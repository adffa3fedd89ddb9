#pragma once

// Records for the tests: every key at the value a new core starts with,
// and a typical 9.8304 Gbps core on Q0 Lane1 of a DVA-1 device.

#include <config/configkeys.h>

namespace TestRecords {

namespace Key = IPCPRI::Config::Key;

inline IPCPRI::ConfigMap initial()
{
    IPCPRI::ConfigMap r;
    for (const IPCPRI::Config::KeySpec &row : IPCPRI::Config::recordKeys())
        r.insert(row.key, row.initial);
    r.remove(Key::Mode64b66b); // present only from 8.11008 Gbps on
    return r;
}

inline IPCPRI::ConfigMap typical()
{
    IPCPRI::ConfigMap r = initial();
    r.insert(Key::TargetDevice, QStringLiteral("DVA-1-C2I1"));
    r.insert(Key::File, QStringLiteral("ip1"));
    r.insert(Key::Module, QStringLiteral("cpri_top"));
    r.insert(Key::ChannelSelection, QStringLiteral("Q0 Lane1"));
    r.insert(Key::SpeedSel98304, true);
    r.insert(Key::Rate98304, true);
    r.insert(Key::LineRate, QStringLiteral("9.83040Gbps"));
    r.insert(Key::HighestSpeedIndex, 6);
    r.insert(Key::SpeedEnablesRecord, QStringLiteral("000001000000"));
    return r;
}

inline IPCPRI::ConfigMap with(IPCPRI::ConfigMap record, const QString &key, const QVariant &value)
{
    record.insert(key, value);
    return record;
}

} // namespace TestRecords
