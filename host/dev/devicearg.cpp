#include "devicearg.h"

namespace DEV {

DeviceArg::DeviceArg(const QString &id, const QString &device, const QString &condition,
                     const QStringList &lanes)
    : m_id(id), m_device(device), m_condition(condition), m_lanes(lanes)
{}

bool DeviceArg::operator==(const DeviceArg &other) const
{
    return m_id == other.m_id && m_device == other.m_device && m_condition == other.m_condition
           && m_lanes == other.m_lanes;
}

} // namespace DEV
