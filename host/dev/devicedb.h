#pragma once

#include "devicearg.h"

#include <QList>

namespace DEV {

// The device library: every device the host knows, looked up by identifier.
class IPHOST_EXPORT DeviceDb
{
public:
    DeviceDb();
    explicit DeviceDb(const QList<DeviceArg> &devices);

    // The device with this identifier, or the null device.
    DeviceArg findDevice(const QString &id) const;
    QList<DeviceArg> devices() const { return m_devices; }

private:
    QList<DeviceArg> m_devices;
};

} // namespace DEV
