#include "idecore.h"

#include "../dev/devicedb.h"

namespace Core {

DEV::DeviceDb *IdeCore::deviceDataBase()
{
    static DEV::DeviceDb db;
    return &db;
}

} // namespace Core
