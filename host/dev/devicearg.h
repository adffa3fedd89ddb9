#pragma once

#include "../hostglobal.h"

#include <QString>
#include <QStringList>

namespace DEV {

// One FPGA device of the device library: its identifier, its part name,
// its speed/temperature grade text and the transceiver lanes it has
// (lane display names such as "Q0 Lane0").
class IPHOST_EXPORT DeviceArg
{
public:
    DeviceArg() = default;
    DeviceArg(const QString &id, const QString &device, const QString &condition,
              const QStringList &lanes = {});

    QString id() const { return m_id; }
    QString device() const { return m_device; }
    QString condition() const { return m_condition; }
    QStringList lanes() const { return m_lanes; }

    // A device without identifier is the null device (no device chosen).
    bool isNull() const { return m_id.isEmpty(); }

    bool operator==(const DeviceArg &other) const;
    bool operator!=(const DeviceArg &other) const { return !(*this == other); }

private:
    QString m_id;
    QString m_device;
    QString m_condition;
    QStringList m_lanes;
};

} // namespace DEV
