#include "devicedb.h"

namespace DEV {

namespace {

QStringList lanesOfQuads(int quads)
{
    QStringList lanes;
    for (int quad = 0; quad < quads; ++quad) {
        for (int lane = 0; lane < 4; ++lane)
            lanes << QStringLiteral("Q%1 Lane%2").arg(quad).arg(lane);
    }
    return lanes;
}

struct DeviceRow
{
    const char *id;
    const char *part;
    const char *grade;
    int quads;
};

// The devices of the reference host's library: parts of the DVA and DVB
// families and of the general-purpose DVC family, in two grades each.
const DeviceRow deviceRows[] = {
    {"DVA-1-C2I1", "DVA-1", "C2/I1", 1},
    {"DVA-2-I2", "DVA-2", "I2", 2},
    {"DVB-1-C2I1", "DVB-1", "C2/I1", 1},
    {"DVB-4-C1", "DVB-4", "C1", 2},
    {"DVC-1-C2I1", "DVC-1", "C2/I1", 2},
    {"DVC-2-I2", "DVC-2", "I2", 1},
};

QList<DeviceArg> builtInDevices()
{
    QList<DeviceArg> devices;
    for (const DeviceRow &row : deviceRows) {
        devices << DeviceArg(QString::fromLatin1(row.id), QString::fromLatin1(row.part),
                             QString::fromLatin1(row.grade), lanesOfQuads(row.quads));
    }
    return devices;
}

} // namespace

DeviceDb::DeviceDb() : m_devices(builtInDevices()) {}

DeviceDb::DeviceDb(const QList<DeviceArg> &devices) : m_devices(devices) {}

DeviceArg DeviceDb::findDevice(const QString &id) const
{
    for (const DeviceArg &device : m_devices) {
        if (device.id() == id)
            return device;
    }
    return DeviceArg();
}

} // namespace DEV
