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

// A part of the library, with its transceiver quads and the grades it is sold in.
struct PartRow
{
    const char *part;
    int quads;
    QStringList grades;
};

// The grades of a family: the top grade first.
const QStringList gradesAandC = {QStringLiteral("C2/I1"), QStringLiteral("I2")};
const QStringList gradesB = {QStringLiteral("C2/I1"), QStringLiteral("C1")};

// The parts of the reference host's library: the DVA and DVB families and
// the general-purpose DVC family. The small parts have one quad of
// transceivers, the larger ones two.
const PartRow partRows[] = {
    {"DVA-1", 1, gradesAandC}, {"DVA-2", 2, gradesAandC},
    {"DVB-1", 1, gradesB},     {"DVB-2", 1, gradesB},
    {"DVB-3", 2, gradesB},     {"DVB-4", 2, gradesB},
    {"DVB-5", 2, gradesB},     {"DVB-6", 2, gradesB},
    {"DVC-1", 2, gradesAandC}, {"DVC-2", 1, {QStringLiteral("I2")}},
};

// A device's identifier: the part and its grade without "/" ("DVA-1-C2I1").
QString deviceId(const QString &part, QString grade)
{
    return part + QLatin1Char('-') + grade.remove(QLatin1Char('/'));
}

QList<DeviceArg> builtInDevices()
{
    QList<DeviceArg> devices;
    for (const PartRow &row : partRows) {
        const QString part = QString::fromLatin1(row.part);
        for (const QString &grade : row.grades)
            devices << DeviceArg(deviceId(part, grade), part, grade, lanesOfQuads(row.quads));
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
