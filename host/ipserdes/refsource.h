#pragma once

#include <QString>
#include <QtGlobal>

namespace IPSERDESIP {

// A reference-clock source as the resource registry keeps it. The registry
// owns every record; cores read them and never write or free them.
struct REF_SOURCE
{
    QString serdesName;     // the registry's name of the source, e.g. "q0_refclk0"
    qint32 userCount = 0;   // cores whose route uses the source
    double frequency = 0.0; // MHz, fixed by the first user; 0.0 while unused
};

} // namespace IPSERDESIP
