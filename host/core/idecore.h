#pragma once

#include "../hostglobal.h"

namespace DEV {
class DeviceDb;
}

namespace Core {

class IPHOST_EXPORT IdeCore
{
public:
    // The process-wide device library; never null.
    static DEV::DeviceDb *deviceDataBase();
};

} // namespace Core
