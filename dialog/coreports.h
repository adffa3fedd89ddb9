#pragma once

#include "../config/configkeys.h"
#include "portfigure.h"

#include <QVector>

namespace IPCPRI {

// One port of the generated core as its top level declares it.
struct CorePort
{
    enum Direction { Input, Output };

    QString name; // without the bit range
    Direction direction = Input;
    int width = 1;
};

// What the define files choose of the core's ports: the first speed class
// set decides the data path, the Ethernet interface is MII unless only GMII
// is set, and each optional-port flag adds its group.
FigureChoices figureChoices(const ConfigMap &record);

// The ports of the core a record configures, in the order of its symbol.
QVector<CorePort> corePorts(const ConfigMap &record);

// A port by its symbol entry: "iq_tx_data_i[15:0]" is the 16-bit input
// "iq_tx_data_i".
CorePort corePort(const Utils::PinFigure &pin);

} // namespace IPCPRI
